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
