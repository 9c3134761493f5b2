#include "tests/support/PageParts.h"

#include <QApplication>
#include <QBoxLayout>
#include <QImage>
#include <QLabel>
#include <QTest>
#include <QToolButton>

namespace support {

namespace {

constexpr int manyPresses = 50;

template <typename T> T *required(T *part, const char *what)
{
    if (part == nullptr) {
        qFatal("The page has no %s where it should be", what);
    }
    return part;
}

bool isClose(QRgb found, QRgb expected)
{
    constexpr int roundingAndGradientStep = 2;
    const auto near = [](int a, int b) { return std::abs(a - b) <= roundingAndGradientStep; };
    return near(qRed(found), qRed(expected)) && near(qGreen(found), qGreen(expected)) &&
           near(qBlue(found), qBlue(expected)) && qAlpha(found) == qAlpha(expected);
}

} // namespace

PageParts::PageParts(const QWidget *page)
{
    auto *const root = required(qobject_cast<QVBoxLayout *>(page->layout()), "column");
    if (root->count() != 3) {
        qFatal("The page's column has %d items", root->count());
    }
    auto *const header = required(qobject_cast<QHBoxLayout *>(root->itemAt(0)->layout()), "header");
    if (header->count() != 3 || header->stretch(2) != 1) {
        qFatal("The header does not end in a stretch after two widgets");
    }
    back = required(qobject_cast<QToolButton *>(header->itemAt(0)->widget()), "back button");
    title = required(qobject_cast<QLabel *>(header->itemAt(1)->widget()), "title");
    separator = required(root->itemAt(1)->widget(), "separator");
    body = required(qobject_cast<QVBoxLayout *>(root->itemAt(2)->layout()), "body");

    const auto expect = [](const QLayout *layout, const char *expected) {
        if (measures(layout) != QLatin1String{expected}) {
            qFatal("%s instead of %s", qPrintable(measures(layout)), expected);
        }
    };
    expect(root, "0 0 0 0, 0");
    expect(header, "16 14 16 10, 10");
    expect(body, "22 20 22 20, 16");
}

StyleRules pageRulesAnd(const QString &others)
{
    return styleRules(QStringLiteral(R"(
        QLabel { color: #F2F2FA; font-size: 13px }
        QLabel#section { color: #8B8DA8; font-size: 11px; letter-spacing: 0.5px }
        QToolButton#back { background: rgba(255,255,255,20); color: #F2F2FA; border: none;
                           border-radius: 10px; padding: 5px 12px; font-size: 14px }
        QToolButton#back:hover { background: rgba(255,255,255,45) }
    )") + others);
}

QString measures(const QLayout *layout)
{
    const QMargins margins = layout->contentsMargins();
    return QStringLiteral("%1 %2 %3 %4, %5")
        .arg(margins.left())
        .arg(margins.top())
        .arg(margins.right())
        .arg(margins.bottom())
        .arg(layout->spacing());
}

bool hasGradient(QWidget *page)
{
    const QImage picture = page->grab().toImage();
    return isClose(picture.pixel(0, 0), qRgb(27, 29, 61)) &&
           isClose(picture.pixel(0, picture.height() / 2), qRgb(21, 22, 48)) &&
           isClose(picture.pixel(0, picture.height() - 1), qRgb(15, 16, 36));
}

QStringList tabRound(const QWidget *window, bool back)
{
    QStringList names;
    const QWidget *const start = window->focusWidget();
    const QWidget *last = start;
    for (int i = 0; i < manyPresses; ++i) {
        QTest::keyClick(window->windowHandle(), back ? Qt::Key_Backtab : Qt::Key_Tab);
        const QWidget *const now = window->focusWidget();
        if (now == nullptr) {
            break;
        }
        if (now != last) {
            const QString name = now->objectName();
            names += name.isEmpty() ? QString{QLatin1String{now->metaObject()->className()}} : name;
        }
        if (now == start) {
            break;
        }
        last = now;
    }
    return names;
}

} // namespace support
