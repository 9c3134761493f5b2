#include "app/Identity.h"
#include "tests/support/Languages.h"
#include "tests/support/MessageFile.h"
#include "ui/Catalogue.h"
#include "ui/CopyButton.h"
#include "ui/MainWindow.h"
#include "ui/MenuItem.h"
#include "ui/NoticeDialog.h"
#include "ui/PillLabel.h"
#include "ui/ReferralDialog.h"
#include "ui/SettingsDialog.h"
#include "ui/SideMenu.h"
#include "ui/SupportDialog.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QSettings>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QTest>
#include <QTextDocument>
#include <QToolButton>
#include <QTranslator>

#include <array>
#include <memory>

namespace {

/// The scale of the desktop, and its dots per inch for fonts.
struct View
{
    const char *scale;
    const char *dotsPerInch;
};

// 96 dots per inch is the default, 144 a text size of 150 %.
constexpr std::array views{View{"1", "96"},    View{"1.25", "96"}, View{"1.5", "96"},
                           View{"2", "96"},    View{"3", "96"},    View{"1", "144"},
                           View{"1.5", "144"}, View{"3", "144"}};
constexpr char scaleVariable[] = "QT_SCALE_FACTOR";
constexpr char dotsVariable[] = "QT_FONT_DPI";

// As large as the desktops' own default font gets.
constexpr int pointSize = 11;
constexpr double pointsPerInch = 72.0;

// At both ends of a row of the language list.
constexpr int listMargin = 10;

const QString clientId = QStringLiteral("123e4567-e89b-12d3-a456-426614174000");
const QString widestCode = QStringLiteral("WWWWWW");

QSize textSize(const QWidget *widget, const QString &text)
{
    return widget->fontMetrics().size(Qt::TextSingleLine, text);
}

bool hasRoom(const QSize &room, const QSize &needed)
{
    return needed.width() <= room.width() && needed.height() <= room.height();
}

// Where a widget has one line of a fixed height, a letter of another font is taller than the room
// for its own font's line, but the line holds its ink.
QSize inkSize(const QWidget *widget, const QString &text)
{
    return {textSize(widget, text).width(), widget->fontMetrics().tightBoundingRect(text).height()};
}

bool isWhole(const QLabel *label)
{
    if (const auto *const pill = qobject_cast<const ui::PillLabel *>(label)) {
        return pill->shownText() == pill->text();
    }
    if (label->textFormat() == Qt::RichText) {
        return label->wordWrap() ? label->heightForWidth(label->width()) <= label->height()
                                 : hasRoom(label->size(), label->sizeHint());
    }
    const QSize room = label->contentsRect().size();
    if (!label->wordWrap()) {
        return hasRoom(room, textSize(label, label->text()));
    }
    const QRect wrapped = label->fontMetrics().boundingRect(
        QRect{0, 0, room.width(), QWIDGETSIZE_MAX}, Qt::TextWordWrap, label->text());
    return hasRoom(room, wrapped.size());
}

bool isWhole(const QPushButton *button)
{
    if (const auto *const copy = qobject_cast<const ui::CopyButton *>(button)) {
        const QString beginning = clientId.left(12);
        return copy->shownText() == copy->text() ||
               (copy->text() == clientId && copy->shownText().startsWith(beginning));
    }
    QStyleOptionButton option;
    option.initFrom(button);
    const QRect room =
        button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button);
    return hasRoom(room.size(), textSize(button, button->text()));
}

bool isWhole(const QComboBox *combo)
{
    QStyleOptionComboBox option;
    option.initFrom(combo);
    option.editable = false;
    const QRect room = combo->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                      QStyle::SC_ComboBoxEditField, combo);
    for (int i = 0; i < combo->count(); ++i) {
        if (!hasRoom(room.size(), inkSize(combo, combo->itemText(i)))) {
            return false;
        }
    }
    return true;
}

bool isWhole(const QLineEdit *edit)
{
    // The margin that Qt leaves at both ends of a line edit's contents.
    constexpr int innerMargin = 2;
    QStyleOptionFrame option;
    option.initFrom(edit);
    const QSize room =
        edit->style()->subElementRect(QStyle::SE_LineEditContents, &option, edit).size() -
        QSize{2 * innerMargin, 0};
    return hasRoom(room, inkSize(edit, edit->placeholderText())) &&
           hasRoom(room, inkSize(edit, widestCode));
}

bool isWhole(const QWidget *widget)
{
    if (const auto *const label = qobject_cast<const QLabel *>(widget)) {
        return isWhole(label);
    }
    if (const auto *const button = qobject_cast<const QPushButton *>(widget)) {
        return isWhole(button);
    }
    if (const auto *const combo = qobject_cast<const QComboBox *>(widget)) {
        return isWhole(combo);
    }
    if (const auto *const edit = qobject_cast<const QLineEdit *>(widget)) {
        return isWhole(edit);
    }
    if (qobject_cast<const ui::MenuItem *>(widget) != nullptr) {
        return hasRoom(widget->size(), widget->sizeHint());
    }
    const auto *const tool = qobject_cast<const QToolButton *>(widget);
    return tool == nullptr || hasRoom(tool->size(), textSize(tool, tool->text()));
}

bool showsText(const QWidget *widget)
{
    const auto *const label = qobject_cast<const QLabel *>(widget);
    return (label != nullptr && !label->text().isEmpty()) ||
           qobject_cast<const QAbstractButton *>(widget) != nullptr ||
           qobject_cast<const QComboBox *>(widget) != nullptr ||
           qobject_cast<const QLineEdit *>(widget) != nullptr;
}

QString textOf(const QWidget *widget)
{
    if (const auto *const edit = qobject_cast<const QLineEdit *>(widget)) {
        return edit->placeholderText();
    }
    return widget->property("text").toString();
}

QString described(const QWidget *widget)
{
    return QStringLiteral("%1 \"%2\" (%3 wide)")
        .arg(QLatin1String{widget->metaObject()->className()}, textOf(widget))
        .arg(widget->width());
}

/// The parts of a screen that show text; one inside another widget counts with that widget.
QList<const QWidget *> textWidgets(const QWidget *screen)
{
    QList<const QWidget *> found;
    const auto all = screen->findChildren<QWidget *>();
    for (const QWidget *widget : all) {
        const bool inside = qobject_cast<const QComboBox *>(widget->parentWidget()) != nullptr ||
                            qobject_cast<const QLineEdit *>(widget->parentWidget()) != nullptr;
        if (widget->isVisible() && widget->window() == screen->window() && !inside &&
            showsText(widget)) {
            found += widget;
        }
    }
    return found;
}

/// The first thing that is wrong with a screen; empty if every text on it can be read.
QString trouble(const QWidget *screen)
{
    const QList<const QWidget *> widgets = textWidgets(screen);
    if (widgets.isEmpty()) {
        return QStringLiteral("nothing to see");
    }
    for (const QWidget *widget : widgets) {
        const QRect place{widget->mapTo(screen, QPoint{}), widget->size()};
        if (!screen->rect().contains(place)) {
            return described(widget) + QStringLiteral(" sticks out");
        }
        if (!isWhole(widget)) {
            return described(widget) + QStringLiteral(" is cut");
        }
        for (const QWidget *other : widgets) {
            const QRect otherPlace{other->mapTo(screen, QPoint{}), other->size()};
            if (other != widget && place.intersects(otherPlace)) {
                return described(widget) + QStringLiteral(" overlaps ") + described(other);
            }
        }
    }
    return {};
}

} // namespace

class tst_TextFit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void mainScreen_data() { everyTag(); }
    void mainScreen();
    void menu_data() { everyTag(); }
    void menu();
    void settingsPage_data() { everyTag(); }
    void settingsPage();
    void supportPage_data() { everyTag(); }
    void supportPage();
    void referralDialog_data() { everyTag(); }
    void referralDialog();
    void noticeDialog_data() { everyTag(); }
    void noticeDialog();
    void nothingWasForgotten_data() { everyTag(); }
    void nothingWasForgotten();

private:
    static void everyTag();
    // What is wrong with a screen once its layouts have settled; remembers the texts on it.
    QString look(const QWidget *screen);

    QString tag;
    std::unique_ptr<QTranslator> translator;
    QHash<QString, QSet<QString>> seen;
};

#define LOOK(screen)                                                                               \
    do {                                                                                           \
        const QString found = look(screen);                                                        \
        QVERIFY2(found.isEmpty(), qUtf8Printable(found));                                          \
    } while (false)

void tst_TextFit::everyTag()
{
    QTest::addColumn<QString>("tag");
    const QStringList tags = support::languageTags();
    for (const QString &each : tags) {
        QTest::newRow(qUtf8Printable(each)) << each;
    }
}

void tst_TextFit::initTestCase()
{
    app::setIdentity();
    const QString family = QStringLiteral("DejaVu Sans");
    QApplication::setFont(QFont{family, pointSize});
    QVERIFY2(QFontInfo{QApplication::font()}.family() == family,
             "The font DejaVu Sans is missing (Debian: fonts-dejavu-core)");
    QVERIFY2(!QFontDatabase{}.families(QFontDatabase::Japanese).isEmpty(),
             "No font has Japanese letters (Debian: fonts-noto-cjk)");
    QCOMPARE(qApp->devicePixelRatio(), qgetenv(scaleVariable).toDouble());
    QCOMPARE(QFontInfo{QApplication::font()}.pixelSize(),
             qRound(pointSize * qgetenv(dotsVariable).toDouble() / pointsPerInch));

    QSettings service{QSettings::SystemScope, QStringLiteral("IXOVPN"),
                      QStringLiteral("IxoService")};
    service.setValue(QStringLiteral("client_id"), clientId);
    service.sync();
    QCOMPARE(service.status(), QSettings::NoError);
}

void tst_TextFit::init()
{
    QSettings{}.clear();
    QSettings{}.setValue(QStringLiteral("referral_code"), widestCode);
    tag = QLatin1String{QTest::currentDataTag()};
    translator = std::make_unique<QTranslator>();
    QVERIFY(ui::catalogue::load(*translator, tag));
    QCoreApplication::installTranslator(translator.get());
}

void tst_TextFit::cleanup()
{
    translator.reset();
}

QString tst_TextFit::look(const QWidget *screen)
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    const auto widgets = textWidgets(screen);
    for (const QWidget *widget : widgets) {
        seen[tag].insert(textOf(widget));
    }
    // A layout may need another turn of the event loop.
    const bool isFine = QTest::qWaitFor([screen] { return trouble(screen).isEmpty(); });
    return isFine ? QString{} : trouble(screen);
}

void tst_TextFit::mainScreen()
{
    MainWindow window;
    const QWidget *const screen = window.centralWidget();
    window.show();
    LOOK(screen);

    QMetaObject::invokeMethod(&window, "onToggleClicked");
    LOOK(screen);
    QMetaObject::invokeMethod(&window, "onServiceConnectionChanged", Q_ARG(bool, true));
    LOOK(screen);
    for (const char *message :
         {"config-bytes: 999999999", "status: fetching", "status: running", "status: stopping",
          "status: stopped", "status: subscription_expired", "status: failed"}) {
        QMetaObject::invokeMethod(&window, "onServiceMessage",
                                  Q_ARG(QString, QString{QLatin1String{message}}));
        LOOK(screen);
    }
}

void tst_TextFit::menu()
{
    MainWindow window;
    auto *const menu = window.findChild<ui::SideMenu *>();
    window.show();
    menu->openMenu();
    auto *const slide = menu->findChild<QPropertyAnimation *>();
    slide->setCurrentTime(slide->duration());
    LOOK(menu);
}

void tst_TextFit::settingsPage()
{
    MainWindow window;
    auto *const page = window.findChild<ui::SettingsDialog *>();
    window.show();
    page->openPage(tag);
    LOOK(page);
    QCOMPARE(page->geometry(), QRect(QPoint{}, window.size()));

    auto *const combo = page->findChild<QComboBox *>();
    combo->showPopup();
    QCoreApplication::processEvents();
    QVERIFY(combo->view()->isVisible());
    // A row is as wide as Qt's menus would make it, the list as wide as the combo box.
    const QAbstractItemView *const list = combo->view();
    const int width = list->viewport()->width() - 2 * listMargin;
    for (int i = 0; i < combo->count(); ++i) {
        const QRect row = list->visualRect(combo->model()->index(i, 0));
        QVERIFY2(hasRoom({width, row.height()}, inkSize(list, combo->itemText(i))),
                 qUtf8Printable(combo->itemText(i)));
    }
    combo->hidePopup();
}

void tst_TextFit::supportPage()
{
    MainWindow window;
    auto *const page = window.findChild<ui::SupportDialog *>();
    window.show();
    page->openPage();
    LOOK(page);
    QCOMPARE(page->geometry(), QRect(QPoint{}, window.size()));

    const auto buttons = page->findChildren<QPushButton *>();
    QCOMPARE(buttons.size(), 3);
    for (QPushButton *button : buttons) {
        QTest::mouseClick(button, Qt::LeftButton);
    }
    LOOK(page);
}

void tst_TextFit::referralDialog()
{
    ui::ReferralDialog dialog{nullptr};
    dialog.show();
    LOOK(&dialog);

    auto *const edit = dialog.findChild<QLineEdit *>();
    edit->clear();
    LOOK(&dialog);
    QTest::keyClick(edit, Qt::Key_Return);
    LOOK(&dialog);
    edit->setText(widestCode);
    QTest::keyClick(edit, Qt::Key_Return);
    LOOK(&dialog);
}

void tst_TextFit::noticeDialog()
{
    const QString text = translator->translate(
        "ui::SupportDialog", "For any questions about VPN operation, please contact us:");
    ui::NoticeDialog dialog{(text + QLatin1Char{' '}).repeated(2), nullptr};
    dialog.show();
    LOOK(&dialog);
}

void tst_TextFit::nothingWasForgotten()
{
    using Row = std::pair<QString, QString>;
    const auto row = [](const char *context, const char *source) {
        return Row{QLatin1String{context}, QLatin1String{source}};
    };
    // Texts that are shown nowhere, or where the desktop makes as much room as they need.
    const QList<Row> elsewhere{
        row("MainWindow", "Exit"),
        row("MainWindow", "Settings"),
        row("MainWindow", "Support"),
        row("ui::NoticeDialog", "Notice"),
        row("ui::ReferralDialog", "Referral Code"),
        row("ui::SettingsDialog", "Back"),
        row("ui::SupportDialog", "Back"),
        row("ui::SupportDialog", "Click to copy"),
    };
    QFile file{ui::catalogue::path(tag)};
    QVERIFY(file.open(QIODevice::ReadOnly));
    const auto messages = support::MessageFile::parse(file.readAll()).messages;
    QVERIFY(!messages.isEmpty());
    for (const support::MessageFile::Message &message : messages) {
        QString text = message.translations.constFirst();
        text.replace(QLatin1String{"%1"}, QLatin1String{"999999999"});
        QVERIFY2(elsewhere.contains({message.context, message.source}) ||
                     seen.value(tag).contains(text),
                 qUtf8Printable(text));
    }
}

#undef LOOK

/// Without a scale in its environment, this test runs itself once with each view.
int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsSet(scaleVariable)) {
        QApplication application{argc, argv};
        tst_TextFit test;
        return QTest::qExec(&test, argc, argv);
    }
    QCoreApplication application{argc, argv};
    int failures = 0;
    for (const View &view : views) {
        qInfo("At a scale of %s and %s dots per inch:", view.scale, view.dotsPerInch);
        qputenv(scaleVariable, view.scale);
        qputenv(dotsVariable, view.dotsPerInch);
        failures += QProcess::execute(QCoreApplication::applicationFilePath(),
                                      QCoreApplication::arguments().mid(1)) != 0;
    }
    return failures;
}

#include "tst_textfit.moc"
