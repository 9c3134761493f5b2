#include "tests/support/Contents.h"
#include "tests/support/Pictures.h"
#include "tests/support/WindowBench.h"
#include "ui/NoticeDialog.h"
#include "ui/ReferralDialog.h"
#include "ui/SettingsDialog.h"
#include "ui/SideMenu.h"
#include "ui/SupportDialog.h"

#include <QApplication>
#include <QFile>
#include <QPropertyAnimation>
#include <QSettings>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <cstdlib>

namespace {

/// A widget, its font and colours, and where it is in its window.
struct Place
{
    QString name;
    QString look;
    QRect rect;
};

QString nameOf(const QWidget *widget)
{
    const QString type = QString::fromLatin1(widget->metaObject()->className());
    return widget->objectName().isEmpty() ? type : type + QLatin1Char{'#'} + widget->objectName();
}

/// As the style sheets have it: size and weight of the letters, their colour and the one beneath,
/// the size that the text and its padding ask for, and two pixels that are no text: of a rounded
/// corner and of the upper border.
QString lookOf(QWidget *widget)
{
    const auto named = [](const QColor &colour) { return colour.name(QColor::HexArgb); };
    const QPalette palette = widget->palette();
    const QImage picture = support::drawn(*widget, 1.0);
    return QStringLiteral("%1px/%2 %3 on %4, %5 x %6, %7 %8")
        .arg(widget->font().pixelSize())
        .arg(widget->font().weight())
        .arg(named(palette.color(widget->foregroundRole())),
             named(palette.color(widget->backgroundRole())))
        .arg(widget->sizeHint().width())
        .arg(widget->sizeHint().height())
        .arg(named(picture.pixelColor(picture.rect().contains(2, 2) ? QPoint{2, 2} : QPoint{})),
             named(picture.pixelColor(picture.width() / 2, 0)));
}

/// The widget and all visible ones in it, one level of indentation for each generation.
void collect(QWidget *widget, int depth, QList<Place> &places)
{
    places.append({QString{depth * 2, QLatin1Char{' '}} + nameOf(widget),
                   lookOf(widget),
                   {widget->mapTo(widget->window(), {}), widget->size()}});
    for (QObject *object : widget->children()) {
        auto *const child = qobject_cast<QWidget *>(object);
        if (child != nullptr && !child->isWindow() && child->isVisible()) {
            collect(child, depth + 1, places);
        }
    }
}

QList<Place> placesOf(QWidget *widget)
{
    // Only grabbing activates the layouts.
    widget->grab();
    QList<Place> places;
    collect(widget, 0, places);
    return places;
}

QByteArray listed(const QList<Place> &places)
{
    QByteArray text;
    for (const Place &place : places) {
        text += QStringLiteral("%1 %2 %3 %4 %5; %6\n")
                    .arg(place.name)
                    .arg(place.rect.x())
                    .arg(place.rect.y())
                    .arg(place.rect.width())
                    .arg(place.rect.height())
                    .arg(place.look)
                    .toLatin1();
    }
    return text;
}

QByteArray reference(const QString &page)
{
    return support::contents(QStringLiteral(IXOVPN_TESTS "/references/layout/") + page);
}

QList<Place> parse(const QByteArray &text)
{
    QList<Place> places;
    for (const QByteArray &line : text.split('\n')) {
        QStringList words =
            QString::fromLatin1(line).section(QLatin1Char{';'}, 0, 0).split(QLatin1Char{' '});
        if (words.size() < 5) {
            continue;
        }
        const auto number = [&words] { return words.takeLast().toInt(); };
        const int height = number();
        const int width = number();
        const int y = number();
        const int x = number();
        places.append({words.join(QLatin1Char{' '}), {}, {x, y, width, height}});
    }
    return places;
}

/// Other systems draw the same font in other ways: a line is up to three pixels lower or higher,
/// and with each line the difference grows.
bool isAlike(const Place &found, const Place &expected)
{
    constexpr int ofALine = 3;
    constexpr int ofAColumn = 12;
    constexpr int ofAText = 10;
    const QRect &a = found.rect;
    const QRect &b = expected.rect;
    const auto within = [](int some, int other, int limit) {
        return std::abs(some - other) <= limit;
    };
    return found.name == expected.name && within(a.x(), b.x(), ofALine) &&
           within(a.y(), b.y(), ofAColumn) && within(a.width(), b.width(), ofAText) &&
           within(a.height(), b.height(), ofAColumn);
}

/// True for widgets whose size no text changes.
bool isFixed(const Place &place)
{
    const QString name = place.name.trimmed();
    return name == QLatin1String{"MainWindow"} || name == QLatin1String{"ui::ToggleSwitch"} ||
           name == QLatin1String{"ui::SideMenu"} || name == QLatin1String{"ui::SettingsDialog"} ||
           name == QLatin1String{"ui::SupportDialog"} || place.rect.height() == 1;
}

} // namespace

/// Where every widget of every page is, the same on every system but for what the drawing of
/// letters changes; and on Linux, its letters and colours.
class tst_Layout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void mainScreen();
    void menu();
    void settings();
    void support();
    void referral();
    void notice();

private:
    static void check(const QString &page, QWidget *widget);
};

void tst_Layout::initTestCase()
{
    support::WindowBench::resetWorld();
    QSettings{}.setValue(QStringLiteral("referral_code"), QStringLiteral("ABC123"));
    QApplication::setFont(QFont{QStringLiteral("DejaVu Sans"), 9});
}

void tst_Layout::check(const QString &page, QWidget *widget)
{
    const QList<Place> found = placesOf(widget);
    const QByteArray text = listed(found);
    // After a change of the look: set this, run, and read the difference before it is kept.
    if (qEnvironmentVariableIsSet("IXOVPN_UPDATE_REFERENCES")) {
        QFile file{QStringLiteral(IXOVPN_TESTS "/references/layout/") + page};
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        QSKIP("The reference is written and not compared");
    }
    const QByteArray known = reference(page);
    if (QGuiApplication::platformName() == QLatin1String{"offscreen"}) {
        QCOMPARE(text.split('\n'), known.split('\n'));
        return;
    }
    const QList<Place> expected = parse(known);
    QVERIFY2(!expected.isEmpty() && found.size() == expected.size(), text.constData());
    for (int i = 0; i < found.size(); ++i) {
        const Place &place = found.at(i);
        const Place &model = expected.at(i);
        QVERIFY2(isAlike(place, model) &&
                     (!isFixed(model) || place.rect.size() == model.rect.size()),
                 (listed({place}) + "instead of\n" + listed({model})).constData());
    }
}

void tst_Layout::mainScreen()
{
    const support::WindowBench bench{support::WindowBench::Service::IsAway};
    check(QStringLiteral("main"), bench.window.get());
}

void tst_Layout::menu()
{
    const support::WindowBench bench{support::WindowBench::Service::IsAway};
    bench.menuButton()->click();
    const auto *const slide = bench.sideMenu()->findChild<QPropertyAnimation *>();
    QTRY_COMPARE(slide->state(), QAbstractAnimation::Stopped);
    check(QStringLiteral("menu"), bench.sideMenu());
}

void tst_Layout::settings()
{
    const support::WindowBench bench{support::WindowBench::Service::IsAway};
    bench.settingsPage()->openPage(QStringLiteral("en"));
    check(QStringLiteral("settings"), bench.settingsPage());
}

void tst_Layout::support()
{
    const support::WindowBench bench{support::WindowBench::Service::IsAway};
    auto *const page = bench.window->findChild<ui::SupportDialog *>();
    page->openPage();
    check(QStringLiteral("support"), page);
}

void tst_Layout::referral()
{
    ui::ReferralDialog dialog{nullptr};
    dialog.show();
    check(QStringLiteral("referral"), &dialog);
}

void tst_Layout::notice()
{
    ui::NoticeDialog dialog{QStringLiteral("Hello"), nullptr};
    dialog.show();
    check(QStringLiteral("notice"), &dialog);
}

QTEST_MAIN(tst_Layout)

#include "tst_layout.moc"
