#include "app/Identity.h"
#include "ui/CopyButton.h"
#include "ui/MainWindow.h"
#include "ui/MenuItem.h"
#include "ui/NoticeDialog.h"
#include "ui/ReferralDialog.h"
#include "ui/SettingsDialog.h"
#include "ui/SideMenu.h"
#include "ui/SupportDialog.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>
#include <QToolButton>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

// The minimum of the Web Content Accessibility Guidelines 2.1 for text that is not large (1.4.3,
// AA).
constexpr double enough = 4.5;

// A device pixel ratio at which the strokes of every letter have an inside.
constexpr int fineness = 6;

// As relative luminance and contrast ratio are defined there.
double luminance(const QColor &colour)
{
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

int difference(const QColor &one, const QColor &other)
{
    return std::abs(one.red() - other.red()) + std::abs(one.green() - other.green()) +
           std::abs(one.blue() - other.blue());
}

QImage picture(QWidget *window, const QRect &part)
{
    QImage image{part.size() * fineness, QImage::Format_RGB32};
    image.setDevicePixelRatio(fineness);
    image.fill(Qt::magenta);
    QPainter painter{&image};
    window->render(&painter, QPoint{}, QRegion{part},
                   QWidget::DrawWindowBackground | QWidget::DrawChildren);
    return image;
}

/// The least contrast of a text with what lies beneath it, measured on a picture with the text and
/// one without, pixel by pixel inside the letters. 0 if there is no text.
double measured(QWidget *window, const QRect &part, const std::function<void()> &removeText)
{
    const QImage with = picture(window, part);
    // The layout does not change before the event loop runs again.
    removeText();
    const QImage without = picture(window, part);

    int most = 0;
    QColor inside;
    for (int y = 0; y < with.height(); ++y) {
        for (int x = 0; x < with.width(); ++x) {
            const QColor ink = with.pixelColor(x, y);
            const int here = difference(ink, without.pixelColor(x, y));
            if (here > most) {
                most = here;
                inside = ink;
            }
        }
    }
    double least = 0.0;
    for (int y = 0; y < with.height() && most > 0; ++y) {
        for (int x = 0; x < with.width(); ++x) {
            const QColor ink = with.pixelColor(x, y);
            const QColor ground = without.pixelColor(x, y);
            // The edges are a mixture; what does not change is another thing of the same colour.
            if (ink == inside && difference(ink, ground) * 10 >= most * 7) {
                const double here = contrast(ink, ground);
                least = least == 0.0 ? here : std::min(least, here);
            }
        }
    }
    return least;
}

double measured(QWidget *widget)
{
    const QRect part{widget->mapTo(widget->window(), QPoint{}), widget->size()};
    auto *const combo = qobject_cast<QComboBox *>(widget);
    auto *const edit = qobject_cast<QLineEdit *>(widget);
    const QString text = widget->property("text").toString();
    const QString placeholder = edit == nullptr ? QString{} : edit->placeholderText();
    const int index = combo == nullptr ? -1 : combo->currentIndex();
    const double result = measured(widget->window(), part, [&] {
        if (combo != nullptr) {
            combo->setCurrentIndex(-1);
        } else {
            widget->setProperty("text", QString{});
        }
        if (edit != nullptr) {
            edit->setPlaceholderText({});
        }
    });
    if (combo != nullptr) {
        combo->setCurrentIndex(index);
    } else {
        widget->setProperty("text", text);
    }
    if (edit != nullptr) {
        edit->setPlaceholderText(placeholder);
    }
    return result;
}

} // namespace

class tst_Contrast : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void measureItself();
    void documentIsTrue();

private:
    void mainScreen();
    void menu();
    void settingsPage();
    void supportPage();
    void referralDialog();
    void noticeDialog();
    void toolTips();

    /// Records a contrast below the minimum, which the document has to name.
    void check(const QString &what, double ratio);
    void check(const QString &what, QWidget *widget) { check(what, measured(widget)); }
    /// Also where the gradient behind its parent is lightest and darkest.
    void checkOnGradient(const QString &what, QWidget *widget);
    void checkHovered(const QString &what, QWidget *widget);

    /// The contrasts below the minimum, to one decimal place: those in the document and the
    /// measured.
    QMap<QString, QString> documented;
    QMap<QString, QString> found;
};

void tst_Contrast::initTestCase()
{
    app::setIdentity();
    QFile file{QStringLiteral(IXOVPN_ACCESSIBILITY_DOCUMENT)};
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    static const QRegularExpression row{QStringLiteral("^\\| ([^|]+) \\| ([0-9.]+) : 1 \\|"),
                                        QRegularExpression::MultilineOption};
    for (auto it = row.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        documented.insert(match.captured(1).trimmed(), match.captured(2));
    }
}

void tst_Contrast::init()
{
    QSettings{}.clear();
}

void tst_Contrast::check(const QString &what, double ratio)
{
    QVERIFY2(ratio > 0.0, qUtf8Printable(what + QStringLiteral(": no text was seen")));
    qInfo("%s: %.2f", qUtf8Printable(what), ratio);
    if (ratio < enough) {
        found.insert(what, QString::number(ratio, 'f', 1));
    }
}

void tst_Contrast::checkOnGradient(const QString &what, QWidget *widget)
{
    const QPoint place = widget->pos();
    check(what, widget);
    widget->move(place.x(), 0);
    check(what + QStringLiteral(", at the top"), widget);
    widget->move(place.x(), widget->parentWidget()->height() - widget->height());
    check(what + QStringLiteral(", at the bottom"), widget);
    widget->move(place);
}

void tst_Contrast::checkHovered(const QString &what, QWidget *widget)
{
    const QRect part{widget->mapTo(widget->window(), QPoint{}), widget->size()};
    const QImage before = picture(widget->window(), part);
    widget->setAttribute(Qt::WA_UnderMouse, true);
    // Push buttons also need an event to look hovered.
    const QPointF middle = QRectF{widget->rect()}.center();
    QMouseEvent move{QEvent::MouseMove, middle, Qt::NoButton, Qt::NoButton, Qt::NoModifier};
    QCoreApplication::sendEvent(widget, &move);
    QVERIFY2(picture(widget->window(), part) != before, qUtf8Printable(what));
    check(what + QStringLiteral(", under the mouse"), widget);
    widget->setAttribute(Qt::WA_UnderMouse, false);
}

void tst_Contrast::measureItself()
{
    QCOMPARE(contrast(Qt::black, Qt::white), 21.0);
    QVERIFY(std::abs(contrast(QColor{0x77, 0x77, 0x77}, Qt::white) - 4.48) < 0.005);
    QLabel label{QStringLiteral("grey")};
    label.setStyleSheet(QStringLiteral("background: white; color: rgba(0, 0, 0, 136);"));
    label.show();
    // 255 - 136 is 0x77.
    QVERIFY(std::abs(measured(&label) - 4.48) < 0.005);
    label.setText({});
    QCOMPARE(measured(&label), 0.0);
}

void tst_Contrast::mainScreen()
{
    MainWindow window;
    window.show();
    QCoreApplication::processEvents();
    for (const char *name : {"title", "status", "hint", "pill"}) {
        checkOnGradient(QStringLiteral("Main screen, ") + QLatin1String{name},
                        window.findChild<QLabel *>(QLatin1String{name}));
    }
    auto *const menuButton = window.findChild<QToolButton *>(QStringLiteral("menu"));
    check(QStringLiteral("Main screen, menu button"), menuButton);
    checkHovered(QStringLiteral("Main screen, menu button"), menuButton);
}

void tst_Contrast::menu()
{
    MainWindow window;
    window.show();
    auto *const menu = window.findChild<ui::SideMenu *>();
    menu->openMenu();
    auto *const slide = menu->findChild<QPropertyAnimation *>();
    slide->setCurrentTime(slide->duration());
    const auto rows = menu->findChildren<ui::MenuItem *>();
    QCOMPARE(rows.size(), 4);
    for (ui::MenuItem *row : rows) {
        const QString what = QStringLiteral("Menu, ") + row->text();
        check(what, row);
        checkHovered(what, row);
        row->setDown(true);
        check(what + QStringLiteral(", pressed"), row);
        row->setDown(false);
    }
}

void tst_Contrast::settingsPage()
{
    MainWindow window;
    window.show();
    auto *const page = window.findChild<ui::SettingsDialog *>();
    page->openPage(QStringLiteral("en"));
    QCoreApplication::processEvents();
    const auto labels = page->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        checkOnGradient(QStringLiteral("Settings, ") + label->text(), label);
    }
    for (QAbstractButton *button : page->findChildren<QAbstractButton *>()) {
        const QString what = QStringLiteral("Settings, button ") + button->text();
        check(what, button);
        checkHovered(what, button);
    }
    auto *const combo = page->findChild<QComboBox *>();
    check(QStringLiteral("Settings, choice"), combo);

    combo->showPopup();
    QCoreApplication::processEvents();
    QAbstractItemView *const list = combo->view();
    for (const int row : {0, 1}) {
        const QRect place = list->visualRect(combo->model()->index(row, 0));
        const QRect part{list->viewport()->mapTo(list->window(), place.topLeft()), place.size()};
        check(row == 0 ? QStringLiteral("Settings, list, chosen")
                       : QStringLiteral("Settings, list"),
              measured(list->window(), part, [&] { combo->setItemText(row, {}); }));
    }
}

void tst_Contrast::supportPage()
{
    QSettings{}.setValue(QStringLiteral("referral_code"), QStringLiteral("ABC123"));
    MainWindow window;
    window.show();
    auto *const page = window.findChild<ui::SupportDialog *>();
    page->openPage();
    QCoreApplication::processEvents();
    for (QLabel *label : page->findChildren<QLabel *>()) {
        const QString what =
            label->textFormat() == Qt::RichText ? QStringLiteral("link") : label->text();
        checkOnGradient(QStringLiteral("Support, ") + what, label);
    }
    for (QAbstractButton *button : page->findChildren<QAbstractButton *>()) {
        const QString what = QStringLiteral("Support, button ") + button->text();
        check(what, button);
        checkHovered(what, button);
    }
}

void tst_Contrast::referralDialog()
{
    ui::ReferralDialog dialog{nullptr};
    dialog.show();
    QCoreApplication::processEvents();
    auto *const edit = dialog.findChild<QLineEdit *>();
    auto *const status = dialog.findChild<QLabel *>(QStringLiteral("status"));
    check(QStringLiteral("Referral code, prompt"), dialog.findChild<QLabel *>());
    check(QStringLiteral("Referral code, example"), edit);
    for (QPushButton *button : dialog.findChildren<QPushButton *>()) {
        const QString what = QStringLiteral("Referral code, button ") + button->text();
        check(what, button);
        checkHovered(what, button);
    }
    QTest::keyClick(edit, Qt::Key_Return);
    QCoreApplication::processEvents();
    check(QStringLiteral("Referral code, invalid"), status);
    edit->setText(QStringLiteral("ABC123"));
    check(QStringLiteral("Referral code, code"), edit);
    QTest::keyClick(edit, Qt::Key_Return);
    QCoreApplication::processEvents();
    check(QStringLiteral("Referral code, saved"), status);
    check(QStringLiteral("Referral code, button Save, disabled"),
          dialog.findChild<QPushButton *>());
}

void tst_Contrast::noticeDialog()
{
    ui::NoticeDialog dialog{QStringLiteral("Text"), nullptr};
    ui::NoticeDialog linked{QStringLiteral("<a href=\"https://ixovpn.example/\">Link</a>"),
                            nullptr};
    dialog.show();
    linked.show();
    QCoreApplication::processEvents();
    check(QStringLiteral("Notice, text"), dialog.findChild<QLabel *>());
    const QRect whole = linked.rect();
    auto *const link = linked.findChild<QLabel *>();
    check(QStringLiteral("Notice, link"), measured(&linked, whole, [link] { link->setText({}); }));
    auto *const ok = dialog.findChild<QPushButton *>();
    check(QStringLiteral("Notice, button OK"), ok);
    checkHovered(QStringLiteral("Notice, button OK"), ok);
}

void tst_Contrast::toolTips()
{
    MainWindow window;
    window.show();
    auto *const page = window.findChild<ui::SupportDialog *>();
    page->openPage();
    const auto tip = [](QWidget *widget, const QString &text) -> QLabel * {
        QToolTip::showText({10, 10}, text, widget);
        for (QWidget *each : QApplication::topLevelWidgets()) {
            if (each->inherits("QTipLabel") && each->isVisible()) {
                return static_cast<QLabel *>(each);
            }
        }
        return nullptr;
    };
    check(QStringLiteral("Tool tip on a page"),
          tip(page->findChild<QToolButton *>(), QStringLiteral("Back")));
    check(QStringLiteral("Tool tip of a copy button"),
          tip(page->findChild<ui::CopyButton *>(), QStringLiteral("Click to copy")));
    check(QStringLiteral("Tool tip of the pill"),
          tip(window.findChild<QLabel *>(QStringLiteral("pill")), QStringLiteral("more")));
}

void tst_Contrast::documentIsTrue()
{
    mainScreen();
    menu();
    settingsPage();
    // Before a code is stored, which would be shown in place of the example.
    referralDialog();
    supportPage();
    noticeDialog();
    toolTips();
    // Older releases of Qt draw an example as strong as a text.
    const QString example = QStringLiteral("Referral code, example");
    QVERIFY(documented.contains(example));
    if (!found.contains(example)) {
        documented.remove(example);
    }
    // The document's figures are those of the platform offscreen: other platforms draw letters in
    // other ways, and use the system's colours for tool tips.
    if (QGuiApplication::platformName() != QLatin1String{"offscreen"}) {
        QStringList low = found.keys();
        low.erase(std::remove_if(low.begin(), low.end(),
                                 [](const QString &what) {
                                     return what.startsWith(QLatin1String{"Tool tip"});
                                 }),
                  low.end());
        QCOMPARE(low, documented.keys());
        return;
    }
    QCOMPARE(found, documented);
}

QTEST_MAIN(tst_Contrast)

#include "tst_contrast.moc"
