#include "app/Identity.h"
#include "tests/support/PageParts.h"
#include "ui/Catalogue.h"
#include "ui/CopyButton.h"
#include "ui/SupportDialog.h"
#include "ui/SupportLink.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTranslator>
#include <QVBoxLayout>

#include <array>
#include <memory>

using support::PageParts;

namespace {

constexpr QSize parentExtent{360, 560};
constexpr int feedbackMs = 1500;
// Timers that end this much before or after another are in that order on every machine: they are
// served in the order in which they are due.
constexpr int marginMs = 100;

const QString codeKey = QStringLiteral("referral_code");
const QString idKey = QStringLiteral("client_id");
const QString version = QStringLiteral("4.5.6");
const QString id = QStringLiteral("123e4567-e89b-12d3-a456-426614174000");
const QString code = QStringLiteral("ABC123");
const QString copied = QStringLiteral("Copied!");

QSettings &serviceSettings()
{
    static QSettings settings{QSettings::SystemScope, QStringLiteral("IXOVPN"),
                              QStringLiteral("IxoService")};
    return settings;
}

QString clipboard()
{
    return QGuiApplication::clipboard()->text(QClipboard::Clipboard);
}

} // namespace

class tst_SupportDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void widgetTree();
    void paintsTheGradient();
    void link();
    void versionAndIdAreReadOnce();
    void withoutAnId_data();
    void withoutAnId();
    void withoutAVersion();
    void idOfAnotherType();
    void serviceSettingsAreNotWritten();
    void usersStoreOfTheServiceDoesNotCount();
    void clientsOwnSettingsHoldNoId();
    void referralRow_data();
    void referralRow();
    void referralRowFollowsTheStoredCode();
    void referralRowKeepsItsPlace_data();
    void referralRowKeepsItsPlace();
    void coversItsParent();
    void withoutAParent();
    void backButton();
    void copyShowsFeedback();
    void copyWhileFeedbackShows();
    void everyTimerRestores();
    void feedbackEndsWithTheValueOfTheClick();
    void copiesWhatThePropertySays();
    void feedbackSurvivesAChangeOfLanguage();
    void changeOfLanguage();
    void longIdKeepsItsBeginning();
    void idOfAnyContent_data();
    void idOfAnyContent();
    void ampersandIsPainted();
    void buttonGivesWay();
    void endlessId();
    void keyboardGoesRoundInThePage();
    void keysCopy_data();
    void keysCopy();
    void clickLeavesTheKeyboardWhereItIs();
    void escapeGoesBack();

private:
    void make();
    QWidget *row(int index) const;
    QLabel *caption(int index) const;
    QPushButton *button(int index) const;
    QList<QPushButton *> buttons() const;
    void storeId(const QVariant &value) const;
    void note(const QString &what) { events += what; }
    void noteAfter(int ms, const QPushButton *shown);

    std::unique_ptr<QWidget> window;
    QPushButton *behind = nullptr;
    ui::SupportDialog *page = nullptr;
    QStringList events;
};

void tst_SupportDialog::initTestCase()
{
    app::setIdentity();
}

void tst_SupportDialog::init()
{
    QSettings{}.clear();
    QCoreApplication::setApplicationVersion(version);
    storeId(id);
    QGuiApplication::clipboard()->clear();
    events.clear();
    make();
}

void tst_SupportDialog::cleanup()
{
    window.reset();
}

void tst_SupportDialog::make()
{
    window = std::make_unique<QWidget>();
    window->resize(parentExtent);
    behind = new QPushButton{window.get()};
    behind->setObjectName(QStringLiteral("behind"));
    page = new ui::SupportDialog{window.get()};
    connect(page, &ui::SupportDialog::closeRequested, this,
            [this] { note(QStringLiteral("close")); });
}

// The rows come after two captions, the text, the link and the gap.
QWidget *tst_SupportDialog::row(int index) const
{
    constexpr int before = 5;
    return PageParts{page}.body->itemAt(before + index)->widget();
}

QLabel *tst_SupportDialog::caption(int index) const
{
    return qobject_cast<QLabel *>(row(index)->layout()->itemAt(0)->widget());
}

QPushButton *tst_SupportDialog::button(int index) const
{
    return qobject_cast<QPushButton *>(row(index)->layout()->itemAt(1)->widget());
}

QList<QPushButton *> tst_SupportDialog::buttons() const
{
    return page->findChildren<QPushButton *>(QStringLiteral("copy"));
}

void tst_SupportDialog::storeId(const QVariant &value) const
{
    serviceSettings().setValue(idKey, value);
    serviceSettings().sync();
    QCOMPARE(serviceSettings().status(), QSettings::NoError);
}

void tst_SupportDialog::noteAfter(int ms, const QPushButton *shown)
{
    QTimer::singleShot(ms, Qt::PreciseTimer, page, [this, shown] { note(shown->text()); });
}

void tst_SupportDialog::widgetTree()
{
    QVERIFY(page->isHidden());
    const std::array values{version, id, QString{}};
    for (int i = 0; i < 3; ++i) {
        const QString &value = values.at(static_cast<std::size_t>(i));
        QCOMPARE(button(i)->text(), value);
        QCOMPARE(button(i)->property("copyValue").toString(), value);
        QCOMPARE(row(i)->isHidden(), value.isEmpty());
    }
}

void tst_SupportDialog::paintsTheGradient()
{
    page->openPage();
    QVERIFY(support::hasGradient(page));
}

void tst_SupportDialog::link()
{
    const auto *const label = page->findChild<QLabel *>(QStringLiteral("link"));
    QCOMPARE(label->textFormat(), Qt::RichText);
    QCOMPARE(label->textInteractionFlags(), Qt::TextBrowserInteraction);
    QVERIFY(label->openExternalLinks());
    QCOMPARE(label->palette().color(QPalette::Link), QColor(255, 138, 78));
    QVERIFY(ui::supportLink().startsWith(QLatin1String{"https://"}));
    QCOMPARE(label->text(),
             QStringLiteral("<a style=\"color:#FF8A4E;text-decoration:none;font-weight:600;\""
                            " href=\"%1\">%1</a>")
                 .arg(ui::supportLink()));
}

void tst_SupportDialog::versionAndIdAreReadOnce()
{
    QCoreApplication::setApplicationVersion(QStringLiteral("9.9"));
    storeId(QStringLiteral("later"));
    page->openPage();
    QCOMPARE(button(0)->text(), version);
    QCOMPARE(button(1)->text(), id);
    make();
    QCOMPARE(button(0)->text(), QStringLiteral("9.9"));
    QCOMPARE(button(1)->text(), QStringLiteral("later"));
}

void tst_SupportDialog::withoutAnId_data()
{
    QTest::addColumn<QVariant>("stored");

    QTest::newRow("none") << QVariant{};
    QTest::newRow("empty") << QVariant{QString{QLatin1String{""}}};
    QTest::newRow("list") << QVariant{QStringList{id, id}};
}

void tst_SupportDialog::withoutAnId()
{
    QFETCH(QVariant, stored);
    if (stored.isValid()) {
        storeId(stored);
    } else {
        serviceSettings().remove(idKey);
        serviceSettings().sync();
    }
    make();
    QCOMPARE(PageParts{page}.body->count(), 8);
    QCOMPARE(buttons().size(), 2);
    QCOMPARE(caption(0)->text(), QStringLiteral("Version:"));
    QCOMPARE(caption(1)->text(), QStringLiteral("Referral:"));

    storeId(id);
    page->openPage();
    QCOMPARE(buttons().size(), 2);
}

void tst_SupportDialog::withoutAVersion()
{
    QCoreApplication::setApplicationVersion({});
    make();
    QCOMPARE(buttons().size(), 2);
    QCOMPARE(caption(0)->text(), QStringLiteral("Your ID:"));
    QCOMPARE(caption(1)->text(), QStringLiteral("Referral:"));
}

void tst_SupportDialog::idOfAnotherType()
{
    storeId(42);
    make();
    QCOMPARE(button(1)->text(), QStringLiteral("42"));
    storeId(QByteArray{"bytes"});
    make();
    QCOMPARE(button(1)->text(), QStringLiteral("bytes"));
}

void tst_SupportDialog::serviceSettingsAreNotWritten()
{
    page->openPage();
    button(1)->click();
    serviceSettings().sync();
    QCOMPARE(serviceSettings().allKeys(), QStringList{idKey});
    QCOMPARE(serviceSettings().value(idKey).toString(), id);
    QVERIFY(QSettings{}.allKeys().isEmpty());
}

void tst_SupportDialog::usersStoreOfTheServiceDoesNotCount()
{
    QSettings users{QSettings::UserScope, QStringLiteral("IXOVPN"), QStringLiteral("IxoService")};
    users.setValue(idKey, QStringLiteral("the user's own"));
    users.sync();
    make();
    QCOMPARE(button(1)->text(), id);
    users.clear();
}

void tst_SupportDialog::clientsOwnSettingsHoldNoId()
{
    serviceSettings().remove(idKey);
    serviceSettings().sync();
    QSettings{}.setValue(idKey, id);
    make();
    QCOMPARE(buttons().size(), 2);
}

void tst_SupportDialog::referralRow_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("shown");

    QTest::newRow("nothing") << QVariant{} << false;
    QTest::newRow("a code") << QVariant{code} << true;
    QTest::newRow("bytes") << QVariant{QByteArray{"ABC123"}} << true;
    QTest::newRow("number of six digits") << QVariant{123456} << true;
    QTest::newRow("empty") << QVariant{QString{QLatin1String{""}}} << false;
    QTest::newRow("five characters") << QVariant{QStringLiteral("ABC12")} << false;
    QTest::newRow("seven characters") << QVariant{QStringLiteral("ABC1234")} << false;
    QTest::newRow("line feed at the end") << QVariant{QStringLiteral("ABC123\n")} << false;
    QTest::newRow("blank before") << QVariant{QStringLiteral(" ABC123")} << false;
    QTest::newRow("look-alike") << QVariant{QStringLiteral("АBC123")} << false;
    QTest::newRow("list") << QVariant{QStringList{code, code}} << false;
    QTest::newRow("endless") << QVariant{QString{10'000'000, QLatin1Char{'x'}}} << false;
}

void tst_SupportDialog::referralRow()
{
    QFETCH(QVariant, stored);
    QFETCH(bool, shown);
    if (stored.isValid()) {
        QSettings{}.setValue(codeKey, stored);
    }
    page->openPage();
    QCOMPARE(!row(2)->isHidden(), shown);
    const QString value = shown ? stored.toString() : QString{};
    QCOMPARE(button(2)->text(), value);
    QCOMPARE(button(2)->property("copyValue").toString(), value);
}

void tst_SupportDialog::referralRowFollowsTheStoredCode()
{
    page->openPage();
    QVERIFY(row(2)->isHidden());
    QSettings{}.setValue(codeKey, code);
    QVERIFY(row(2)->isHidden());
    page->hide();
    page->openPage();
    QVERIFY(!row(2)->isHidden());
    QCOMPARE(button(2)->text(), code);

    QSettings{}.setValue(codeKey, QStringLiteral("XYZ789"));
    page->openPage();
    QCOMPARE(button(2)->text(), QStringLiteral("XYZ789"));
    button(2)->click();
    QCOMPARE(clipboard(), QStringLiteral("XYZ789"));

    QSettings{}.remove(codeKey);
    page->openPage();
    QVERIFY(row(2)->isHidden());
}

void tst_SupportDialog::referralRowKeepsItsPlace_data()
{
    QTest::addColumn<bool>("hasVersion");
    QTest::addColumn<bool>("hasId");

    QTest::newRow("below the ID") << true << true;
    QTest::newRow("below the version") << true << false;
    QTest::newRow("below the ID alone") << false << true;
    QTest::newRow("below the caption") << false << false;
}

void tst_SupportDialog::referralRowKeepsItsPlace()
{
    QFETCH(bool, hasVersion);
    QFETCH(bool, hasId);
    QCoreApplication::setApplicationVersion(hasVersion ? version : QString{});
    storeId(hasId ? id : QString{QLatin1String{""}});
    make();
    QSettings{}.setValue(codeKey, code);
    page->openPage();
    const int place = static_cast<int>(hasVersion) + static_cast<int>(hasId);
    QCOMPARE(buttons().size(), place + 1);
    QCOMPARE(button(place)->text(), code);
    const QVBoxLayout *const body = PageParts{page}.body;
    QCOMPARE(body->stretch(body->count() - 1), 1);
    QCOMPARE(body->indexOf(row(place)), body->count() - 2);
}

void tst_SupportDialog::coversItsParent()
{
    auto *const later = new QPushButton{window.get()};
    later->setGeometry(0, 0, 50, 50);
    page->openPage();
    QCOMPARE(page->geometry(), QRect(QPoint{}, parentExtent));
    QVERIFY(window->childAt(2, 2) == page);
}

void tst_SupportDialog::withoutAParent()
{
    ui::SupportDialog alone{nullptr};
    QVERIFY(alone.isHidden());
    alone.openPage();
    QVERIFY(alone.isVisible());
}

void tst_SupportDialog::backButton()
{
    page->openPage();
    QTest::mouseClick(PageParts{page}.back, Qt::LeftButton);
    QCOMPARE(events, QStringList{QStringLiteral("close")});
    QVERIFY(!page->isHidden());
}

void tst_SupportDialog::copyShowsFeedback()
{
    page->openPage();
    noteAfter(feedbackMs - marginMs, button(1));
    QTest::mouseClick(button(1), Qt::LeftButton);
    QCOMPARE(clipboard(), id);
    QCOMPARE(button(1)->text(), copied);
    QCOMPARE(button(1)->property("copyValue").toString(), id);
    QCOMPARE(button(0)->text(), version);
    noteAfter(feedbackMs + marginMs, button(1));
    QTRY_COMPARE(events.size(), 2);
    const QStringList expected{copied, id};
    QCOMPARE(events, expected);
}

void tst_SupportDialog::copyWhileFeedbackShows()
{
    page->openPage();
    button(0)->click();
    QGuiApplication::clipboard()->setText(QStringLiteral("something else"));
    button(0)->click();
    QCOMPARE(button(0)->text(), copied);
    QCOMPARE(clipboard(), version);
}

void tst_SupportDialog::everyTimerRestores()
{
    page->openPage();
    button(0)->click();
    noteAfter(feedbackMs + marginMs, button(0));
    bool again = false;
    QTimer::singleShot(feedbackMs / 2, Qt::PreciseTimer, page, [this, &again] {
        button(0)->click();
        noteAfter(feedbackMs + marginMs, button(0));
        again = true;
    });
    QTRY_VERIFY(again);
    QCOMPARE(button(0)->text(), copied);
    QTRY_COMPARE(events.size(), 2);
    const QStringList expected{version, version};
    QCOMPARE(events, expected);
}

void tst_SupportDialog::feedbackEndsWithTheValueOfTheClick()
{
    QSettings{}.setValue(codeKey, code);
    page->openPage();
    button(2)->click();
    noteAfter(feedbackMs + marginMs, button(2));
    QSettings{}.setValue(codeKey, QStringLiteral("XYZ789"));
    page->openPage();
    QCOMPARE(button(2)->text(), QStringLiteral("XYZ789"));
    QTRY_COMPARE(events, QStringList{code});
    button(2)->click();
    QCOMPARE(clipboard(), QStringLiteral("XYZ789"));
}

void tst_SupportDialog::copiesWhatThePropertySays()
{
    button(0)->setText(QStringLiteral("shown"));
    button(0)->click();
    QCOMPARE(clipboard(), version);
}

void tst_SupportDialog::feedbackSurvivesAChangeOfLanguage()
{
    page->openPage();
    button(0)->click();
    noteAfter(feedbackMs + marginMs, button(0));
    QTranslator translator;
    QVERIFY(ui::catalogue::load(translator, QStringLiteral("ru")));
    QCoreApplication::installTranslator(&translator);
    QTRY_COMPARE(button(0)->toolTip(), QStringLiteral("Нажмите, чтобы скопировать"));
    QCOMPARE(button(0)->text(), copied);
    QTRY_COMPARE(events, QStringList{version});
    button(0)->click();
    QCOMPARE(button(0)->text(), QStringLiteral("Скопировано!"));
}

void tst_SupportDialog::changeOfLanguage()
{
    const PageParts parts{page};
    const auto texts = [this, &parts] {
        QStringList all{parts.back->toolTip(), parts.title->text()};
        for (const int i : {0, 1, 4}) {
            all += qobject_cast<QLabel *>(parts.body->itemAt(i)->widget())->text();
        }
        for (int i = 0; i < 3; ++i) {
            all << caption(i)->text() << button(i)->toolTip();
        }
        return all;
    };
    const QString click = QStringLiteral("Click to copy");
    const QStringList english{
        QStringLiteral("Back"),
        QStringLiteral("Support"),
        QStringLiteral("CONTACT"),
        QStringLiteral("For any questions about VPN operation, please contact us:"),
        QStringLiteral("INFO"),
        QStringLiteral("Version:"),
        click,
        QStringLiteral("Your ID:"),
        click,
        QStringLiteral("Referral:"),
        click,
    };
    QCOMPARE(texts(), english);
    const QString linkText = page->findChild<QLabel *>(QStringLiteral("link"))->text();

    QTranslator translator;
    QVERIFY(ui::catalogue::load(translator, QStringLiteral("pl")));
    QCoreApplication::installTranslator(&translator);
    QStringList polish;
    for (const QString &text : english) {
        polish += translator.translate("ui::SupportDialog", text.toUtf8().constData());
    }
    QTRY_COMPARE(texts(), polish);
    QCOMPARE(button(0)->text(), version);
    QCOMPARE(page->findChild<QLabel *>(QStringLiteral("link"))->text(), linkText);

    serviceSettings().remove(idKey);
    serviceSettings().sync();
    QCoreApplication::setApplicationVersion({});
    make();
    QCoreApplication::removeTranslator(&translator);
    QTRY_COMPARE(caption(0)->text(), QStringLiteral("Referral:"));
}

void tst_SupportDialog::longIdKeepsItsBeginning()
{
    window->show();
    page->openPage();
    QCoreApplication::sendPostedEvents();
    const auto *const shortened = qobject_cast<ui::CopyButton *>(button(1));
    QCOMPARE(shortened->text(), id);
    QVERIFY(shortened->shownText() != id);
    QVERIFY(shortened->shownText().endsWith(QChar{0x2026}));
    QVERIFY(id.startsWith(shortened->shownText().chopped(1)));
    QVERIFY(shortened->shownText().size() > 12);
    const QRect place{shortened->mapTo(page, QPoint{}), shortened->size()};
    QVERIFY(place.right() < parentExtent.width() - 22);
    QCOMPARE(caption(1)->width(), caption(1)->sizeHint().width());
    QCOMPARE(page->geometry(), QRect(QPoint{}, parentExtent));

    QCOMPARE(qobject_cast<ui::CopyButton *>(button(0))->shownText(), version);
    QCOMPARE(button(0)->size(), button(0)->sizeHint());
}

void tst_SupportDialog::idOfAnyContent_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("shown");

    const auto row = [](const char *name, const QString &value, const QString &shown) {
        QTest::newRow(name) << value << shown;
    };
    row("ampersand", QStringLiteral("a&b"), QStringLiteral("a&b"));
    row("markup", QStringLiteral("<b>a</b>"), QStringLiteral("<b>a</b>"));
    row("line breaks", QStringLiteral("a\nb\u2028c"), QStringLiteral("a b c"));
    row("place-holder", QStringLiteral("%1"), QStringLiteral("%1"));
    row("blanks around", QStringLiteral(" a "), QStringLiteral(" a "));
    row("beyond ASCII", QStringLiteral("ид日"), QStringLiteral("ид日"));
}

void tst_SupportDialog::idOfAnyContent()
{
    QFETCH(QString, value);
    storeId(value);
    make();
    window->show();
    page->openPage();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(button(1)->text(), value);
    QTEST(qobject_cast<ui::CopyButton *>(button(1))->shownText(), "shown");
    QVERIFY(button(1)->height() < 2 * button(0)->height());
    button(1)->click();
    QCOMPARE(clipboard(), value);
}

void tst_SupportDialog::ampersandIsPainted()
{
    ui::CopyButton button{QStringLiteral("a&b"), nullptr};
    QPushButton reference{QStringLiteral("a&&b")};
    for (QPushButton *each : {static_cast<QPushButton *>(&button), &reference}) {
        each->setAutoDefault(false);
        each->resize(100, 30);
    }
    QCOMPARE(button.grab().toImage(), reference.grab().toImage());
}

void tst_SupportDialog::buttonGivesWay()
{
    const ui::CopyButton button{id, nullptr};
    QVERIFY(button.minimumSizeHint().width() < button.sizeHint().width() / 2);
    QCOMPARE(button.sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
}

void tst_SupportDialog::endlessId()
{
    const QString endless{10'000'000, QLatin1Char{'x'}};
    storeId(endless);
    make();
    window->show();
    page->openPage();
    QCoreApplication::sendPostedEvents();
    QVERIFY(button(1)->width() < parentExtent.width());
    button(1)->click();
    QCOMPARE(clipboard(), endless);
}

void tst_SupportDialog::keyboardGoesRoundInThePage()
{
    QSettings{}.setValue(codeKey, code);
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    behind->setFocus();
    page->openPage();
    QCOMPARE(window->focusWidget(), PageParts{page}.back);
    const QStringList forth{QStringLiteral("link"), QStringLiteral("copy"), QStringLiteral("copy"),
                            QStringLiteral("copy"), QStringLiteral("back")};
    const QStringList back{QStringLiteral("copy"), QStringLiteral("copy"), QStringLiteral("copy"),
                           QStringLiteral("link"), QStringLiteral("back")};
    QCOMPARE(support::tabRound(window.get()), forth);
    QCOMPARE(support::tabRound(window.get(), true), back);

    QSettings{}.remove(codeKey);
    page->openPage();
    QCOMPARE(support::tabRound(window.get()).size(), 4);
}

void tst_SupportDialog::keysCopy_data()
{
    QTest::addColumn<int>("key");

    QTest::newRow("space bar") << static_cast<int>(Qt::Key_Space);
    QTest::newRow("Return") << static_cast<int>(Qt::Key_Return);
    QTest::newRow("Enter") << static_cast<int>(Qt::Key_Enter);
}

void tst_SupportDialog::keysCopy()
{
    QFETCH(int, key);
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    page->openPage();
    button(1)->setFocus();
    QTest::keyClick(window->windowHandle(), static_cast<Qt::Key>(key));
    QCOMPARE(clipboard(), id);
}

void tst_SupportDialog::clickLeavesTheKeyboardWhereItIs()
{
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    page->openPage();
    QTest::mouseClick(button(0), Qt::LeftButton);
    QCOMPARE(button(0)->text(), copied);
    QVERIFY(PageParts{page}.back->hasFocus());
    // Who uses the keyboard sees where it is.
    const QImage without = button(0)->grab().toImage();
    // Past the link.
    QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
    QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
    QVERIFY(button(0)->hasFocus());
    QVERIFY(button(0)->grab().toImage() != without);
}

void tst_SupportDialog::escapeGoesBack()
{
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    page->openPage();
    for (int i = 0; i < 4; ++i) {
        QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
        QCOMPARE(events.size(), i + 1);
        QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
    }
    QVERIFY(!page->isHidden());
}

QTEST_MAIN(tst_SupportDialog)

#include "tst_supportdialog.moc"
