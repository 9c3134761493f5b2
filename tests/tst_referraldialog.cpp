#include "app/Identity.h"
#include "tests/support/PageParts.h"
#include "tests/support/Painted.h"
#include "ui/Catalogue.h"
#include "ui/ReferralCode.h"
#include "ui/ReferralDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTranslator>

#include <memory>

namespace {

const QString codeKey = QStringLiteral("referral_code");
const QString saved = QStringLiteral("Saved ✓");
const QString invalid = QStringLiteral("Invalid code — must be exactly 6 letters or digits");

constexpr int closeDelayMs = 1200;
// Timers that end this much before or after another are in that order on every machine: they are
// served in the order in which they are due.
constexpr int marginMs = 100;

QString storedCode()
{
    return QSettings{}.value(codeKey).toString();
}

} // namespace

class tst_ReferralDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void widgetTree();
    void texts();
    void storedCodeIsShown_data();
    void storedCodeIsShown();
    void storedCodeIsSelected();
    void endlessStoredCode();
    void validEntries_data();
    void validEntries();
    void invalidEntries_data();
    void invalidEntries();
    void atMostTwelveCharacters();
    void pastedLineBreaks();
    void storedBeforeItIsAnnounced();
    void messageHasItsColourAtOnce();
    void growsWithTheMessage();
    void shorterMessageMovesNothing();
    void contextMenuIsDark();
    void anotherTryAfterAnError();
    void enterSavesOnce();
    void enterOnTheButton();
    void closesAfterTheDelay();
    void fieldStaysLiveWhileItCloses();
    void laterErrorDoesNotKeepItOpen();
    void endedWithoutSaving_data();
    void endedWithoutSaving();
    void changeOfLanguage();
    void settingsThatCannotBeWritten();
    void keyboardOrder();
    void itsEndIsNotTheProgramsEnd();

private:
    void type(const QString &text);
    QLabel *status() const { return dialog->findChild<QLabel *>(QStringLiteral("status")); }
    QString state() const { return status()->property("state").toString(); }
    QPushButton *cancelButton() const { return buttons->button(QDialogButtonBox::Cancel); }
    void note(const QString &what) { events += what; }
    void noteAfter(int ms, const QString &what);

    std::unique_ptr<ui::ReferralDialog> dialog;
    QLineEdit *edit = nullptr;
    QDialogButtonBox *buttons = nullptr;
    QPushButton *save = nullptr;
    QStringList announced;
    QStringList events;
};

void tst_ReferralDialog::initTestCase()
{
    app::setIdentity();
}

void tst_ReferralDialog::init()
{
    QSettings{}.clear();
    announced.clear();
    events.clear();
    dialog = std::make_unique<ui::ReferralDialog>(nullptr);
    edit = dialog->findChild<QLineEdit *>();
    buttons = dialog->findChild<QDialogButtonBox *>();
    const auto all = buttons->buttons();
    save = nullptr;
    for (QAbstractButton *button : all) {
        if (buttons->buttonRole(button) == QDialogButtonBox::AcceptRole) {
            save = qobject_cast<QPushButton *>(button);
        }
    }
    QVERIFY(save != nullptr);
    connect(dialog.get(), &ui::ReferralDialog::referralSaved, this,
            [this](const QString &code) { announced += code; });
    connect(dialog.get(), &QDialog::finished, this, [this] { note(QStringLiteral("finished")); });
}

void tst_ReferralDialog::cleanup()
{
    dialog.reset();
}

void tst_ReferralDialog::type(const QString &text)
{
    edit->clear();
    edit->insert(text);
}

void tst_ReferralDialog::noteAfter(int ms, const QString &what)
{
    QTimer::singleShot(ms, Qt::PreciseTimer, dialog.get(), [this, what] { note(what); });
}

void tst_ReferralDialog::widgetTree()
{
    QVERIFY(!dialog->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    QVERIFY(dialog->isModal());
    QVERIFY(status()->isHidden());
    QCOMPARE(buttons->buttons().size(), 2);
    QVERIFY(cancelButton() != nullptr);
    QCOMPARE(cancelButton()->text().remove(QLatin1Char{'&'}), QStringLiteral("Cancel"));
}

void tst_ReferralDialog::texts()
{
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Referral Code"));
    QCOMPARE(dialog->findChild<QLabel *>()->text(), QStringLiteral("Enter your referral code:"));
    QCOMPARE(edit->placeholderText(), QStringLiteral("e.g. ABC123"));
    QCOMPARE(save->text(), QStringLiteral("Save"));
}

void tst_ReferralDialog::storedCodeIsShown_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("shown");

    const QString code = QStringLiteral("aBc123");
    QTest::newRow("nothing") << QVariant{} << QString{};
    QTest::newRow("empty") << QVariant{QString{QLatin1String{""}}} << QString{};
    QTest::newRow("a code") << QVariant{code} << code;
    QTest::newRow("no valid code") << QVariant{QStringLiteral("A-1")} << QStringLiteral("A-1");
    QTest::newRow("too long") << QVariant{QString{20, QLatin1Char{'a'}}}
                              << QString{12, QLatin1Char{'a'}};
    QTest::newRow("bytes") << QVariant{QByteArray{"ABC123"}} << QStringLiteral("ABC123");
    QTest::newRow("number") << QVariant{123456} << QStringLiteral("123456");
    QTest::newRow("list") << QVariant{QStringList{code, code}} << QString{};
    QTest::newRow("map") << QVariant{QVariantMap{{code, code}}} << QString{};
}

void tst_ReferralDialog::storedCodeIsShown()
{
    QFETCH(QVariant, stored);
    if (stored.isValid()) {
        QSettings{}.setValue(codeKey, stored);
    }
    const ui::ReferralDialog later{nullptr};
    QTEST(later.findChild<QLineEdit *>()->text(), "shown");
}

void tst_ReferralDialog::storedCodeIsSelected()
{
    QSettings{}.setValue(codeKey, QStringLiteral("ABC123"));
    ui::ReferralDialog later{nullptr};
    later.show();
    QVERIFY(QTest::qWaitForWindowActive(&later));
    QCOMPARE(later.findChild<QLineEdit *>()->selectedText(), QStringLiteral("ABC123"));
}

void tst_ReferralDialog::endlessStoredCode()
{
    constexpr int length = 10'000'000;
    QSettings{}.setValue(codeKey, QString{length, QLatin1Char{'x'}});
    ui::ReferralDialog later{nullptr};
    later.show();
    auto *const field = later.findChild<QLineEdit *>();
    QCOMPARE(field->text().size(), 12);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(later.findChild<QLabel *>(QStringLiteral("status"))->text(), invalid);
    field->setText(QStringLiteral("ABC123"));
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(storedCode(), QStringLiteral("ABC123"));
}

void tst_ReferralDialog::validEntries_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("code");

    const auto row = [](const char *name, const QString &entry, const char *code) {
        QTest::newRow(name) << entry << QString{QLatin1String{code}};
    };
    row("capitals and digits", QStringLiteral("ABC123"), "ABC123");
    row("case is kept", QStringLiteral("aBcDeF"), "aBcDeF");
    row("digits only", QStringLiteral("000000"), "000000");
    row("blanks around", QStringLiteral("  abc123 "), "abc123");
    row("tab and line feed around", QStringLiteral("\tabc123\n"), "abc123");
    row("no-break space around", QStringLiteral("\u00a0abc123\u00a0"), "abc123");
    row("ideographic space around", QStringLiteral("\u3000abc123"), "abc123");
}

void tst_ReferralDialog::validEntries()
{
    QFETCH(QString, entry);
    QFETCH(QString, code);
    edit->setText(entry);
    save->click();
    QCOMPARE(announced, QStringList{code});
    QCOMPARE(QSettings{}.value(codeKey), QVariant{code});
    QCOMPARE(edit->text(), code);
    QCOMPARE(status()->text(), saved);
    QCOMPARE(state(), QStringLiteral("ok"));
    QVERIFY(!status()->isHidden());
    QVERIFY(!save->isEnabled());
    QVERIFY(events.isEmpty());
}

void tst_ReferralDialog::invalidEntries_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("left");

    const auto row = [](const char *name, const QString &entry, const QString &left = {}) {
        QTest::newRow(name) << entry << (left.isNull() ? entry : left);
    };
    row("nothing", QString{QLatin1String{""}});
    row("only blanks", QStringLiteral("      "), QString{QLatin1String{""}});
    row("five characters", QStringLiteral("ABC12"));
    row("five and a blank", QStringLiteral("ABC12 "), QStringLiteral("ABC12"));
    row("seven characters", QStringLiteral("ABC1234"));
    row("twelve characters", QStringLiteral("ABC123ABC123"));
    row("blank inside", QStringLiteral("ABC 123"));
    row("six with a blank inside", QStringLiteral("ABC 12"));
    row("hyphen", QStringLiteral("ABC-12"));
    row("underscore", QStringLiteral("ABC_12"));
    row("umlaut", QStringLiteral("ÄBC123"));
    row("umlaut of two characters", QStringLiteral("A\u0308BC12"));
    row("Cyrillic look-alike", QStringLiteral("АBC123"));
    row("Greek look-alike", QStringLiteral("ABC12Α"));
    row("full-width letters", QStringLiteral("ＡＢＣ１２３"));
    row("Arabic digits", QStringLiteral("ABC١٢٣"));
    row("dotless i", QStringLiteral("ıBC123"));
    row("Kelvin sign", QStringLiteral("\u212aBC123"));
    row("right-to-left mark before", QStringLiteral("\u200fABC123"));
    row("right-to-left mark instead", QStringLiteral("ABC12\u200f"));
    row("right-to-left override", QStringLiteral("\u202e321CBA"));
    row("zero-width space", QStringLiteral("ABC\u200b123"));
    row("byte order mark", QStringLiteral("\ufeffABC123"));
    row("line feed inside", QStringLiteral("ABC\n123"));
    row("null inside", QStringLiteral("ABC12") + QChar{QChar::Null});
    row("emoji", QStringLiteral("😀ABC1"));
}

void tst_ReferralDialog::invalidEntries()
{
    QFETCH(QString, entry);
    edit->setText(entry);
    save->click();
    QCOMPARE(announced, QStringList{});
    QVERIFY(QSettings{}.allKeys().isEmpty());
    QTEST(edit->text(), "left");
    QCOMPARE(status()->text(), invalid);
    QCOMPARE(state(), QStringLiteral("error"));
    QVERIFY(!status()->isHidden());
    QVERIFY(save->isEnabled());
    QVERIFY(events.isEmpty());
}

void tst_ReferralDialog::atMostTwelveCharacters()
{
    type(QStringLiteral("   ABC123   XYZ"));
    QCOMPARE(edit->text(), QStringLiteral("   ABC123   "));
    save->click();
    QCOMPARE(announced, QStringList{QStringLiteral("ABC123")});

    type(QStringLiteral("        ABC123"));
    QTest::keyClick(edit, Qt::Key_Return);
    QCOMPARE(status()->text(), invalid);
    QCOMPARE(edit->text(), QStringLiteral("ABC1"));
}

void tst_ReferralDialog::pastedLineBreaks()
{
    const auto paste = [this](const QString &text) {
        QGuiApplication::clipboard()->setText(text);
        edit->clear();
        edit->paste();
        save->click();
    };
    paste(QStringLiteral("ABC\r\n123"));
    QCOMPARE(announced, QStringList{});
    QCOMPARE(status()->text(), invalid);
    paste(QStringLiteral("\r\nABC123\r\n"));
    QCOMPARE(announced, QStringList{QStringLiteral("ABC123")});
    QCOMPARE(edit->text(), QStringLiteral("ABC123"));
}

void tst_ReferralDialog::storedBeforeItIsAnnounced()
{
    QStringList seen;
    connect(dialog.get(), &ui::ReferralDialog::referralSaved, dialog.get(), [&seen, this] {
        seen = QStringList{storedCode(), edit->text(), status()->text()};
        seen += save->isEnabled() ? QStringLiteral("enabled") : QStringLiteral("disabled");
    });
    type(QStringLiteral(" ABC123"));
    save->click();
    const QStringList expected{QStringLiteral("ABC123"), QStringLiteral("ABC123"), QString{},
                               QStringLiteral("enabled")};
    QCOMPARE(seen, expected);
}

void tst_ReferralDialog::messageHasItsColourAtOnce()
{
    dialog->show();
    save->click();
    QCOMPARE(status()->palette().color(QPalette::WindowText), QColor(0xE2, 0x58, 0x22));
    type(QStringLiteral("ABC123"));
    save->click();
    QCOMPARE(status()->palette().color(QPalette::WindowText), QColor(0x4C, 0xAF, 0x50));
}

void tst_ReferralDialog::growsWithTheMessage()
{
    dialog->show();
    const int before = dialog->height();
    save->click();
    QCoreApplication::sendPostedEvents();
    QVERIFY(dialog->height() > before);
    QVERIFY(status()->height() >= status()->heightForWidth(status()->width()));
    QVERIFY(edit->height() >= edit->sizeHint().height());
    QVERIFY(save->height() >= save->sizeHint().height());
    const int grown = dialog->height();
    save->click();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(dialog->height(), grown);
}

void tst_ReferralDialog::shorterMessageMovesNothing()
{
    dialog->show();
    save->click();
    QCoreApplication::sendPostedEvents();
    const auto places = [this] {
        const auto *const prompt = dialog->findChild<QLabel *>();
        return QList<QRect>{dialog->geometry(), prompt->geometry(), edit->geometry(),
                            status()->geometry(), buttons->geometry()};
    };
    const QList<QRect> before = places();
    const int needed = status()->heightForWidth(status()->width());
    type(QStringLiteral("ABC123"));
    save->click();
    QCoreApplication::sendPostedEvents();
    if (status()->heightForWidth(status()->width()) >= needed) {
        QSKIP("With these fonts the later message is not the shorter one");
    }
    QCOMPARE(places(), before);
}

void tst_ReferralDialog::contextMenuIsDark()
{
    const std::unique_ptr<QMenu> menu{edit->createStandardContextMenu()};
    menu->ensurePolished();
    menu->resize(menu->sizeHint());
    const QRect item = menu->actionGeometry(menu->actions().constFirst());
    QCOMPARE(support::painted(*menu).pixelColor(item.left() + 3, item.center().y()),
             QColor(0x23, 0x25, 0x48));
}

void tst_ReferralDialog::anotherTryAfterAnError()
{
    dialog->show();
    type(QStringLiteral("ABC12"));
    save->click();
    QCOMPARE(status()->text(), invalid);
    type(QStringLiteral("ABC123"));
    QCOMPARE(status()->text(), invalid);
    save->click();
    QCOMPARE(status()->text(), saved);
    QCOMPARE(announced, QStringList{QStringLiteral("ABC123")});
    QCOMPARE(storedCode(), QStringLiteral("ABC123"));
}

void tst_ReferralDialog::enterSavesOnce()
{
    dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    QCOMPARE(dialog->focusWidget(), edit);
    type(QStringLiteral("ABC123"));
    QTest::keyClick(dialog->windowHandle(), Qt::Key_Return);
    QCOMPARE(announced, QStringList{QStringLiteral("ABC123")});
    QVERIFY(dialog->isVisible());
}

void tst_ReferralDialog::enterOnTheButton()
{
    dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    type(QStringLiteral("ABC123"));
    save->setFocus();
    QTest::keyClick(dialog->windowHandle(), Qt::Key_Enter);
    QCOMPARE(announced, QStringList{QStringLiteral("ABC123")});
}

void tst_ReferralDialog::closesAfterTheDelay()
{
    type(QStringLiteral("ABC123"));
    dialog->open();
    noteAfter(closeDelayMs - marginMs, QStringLiteral("before"));
    save->click();
    noteAfter(closeDelayMs + marginMs, QStringLiteral("after"));
    QTRY_COMPARE(events.size(), 3);
    const QStringList expected{QStringLiteral("before"), QStringLiteral("finished"),
                               QStringLiteral("after")};
    QCOMPARE(events, expected);
    QCOMPARE(dialog->result(), static_cast<int>(QDialog::Accepted));
    QVERIFY(!dialog->isVisible());
}

void tst_ReferralDialog::fieldStaysLiveWhileItCloses()
{
    type(QStringLiteral("ABC123"));
    dialog->open();
    save->click();
    bool entered = false;
    QTimer::singleShot(closeDelayMs / 2, Qt::PreciseTimer, dialog.get(), [this, &entered] {
        type(QStringLiteral("XYZ789"));
        QTest::keyClick(edit, Qt::Key_Return);
        noteAfter(closeDelayMs - marginMs, QStringLiteral("close of the second"));
        entered = true;
    });
    QTRY_VERIFY(entered);
    const QStringList both{QStringLiteral("ABC123"), QStringLiteral("XYZ789")};
    QCOMPARE(announced, both);
    QCOMPARE(storedCode(), QStringLiteral("XYZ789"));
    QVERIFY(!save->isEnabled());
    QTRY_VERIFY(events.size() >= 2);
    const QStringList expected{QStringLiteral("finished"), QStringLiteral("close of the second")};
    QCOMPARE(events.mid(0, 2), expected);
}

void tst_ReferralDialog::laterErrorDoesNotKeepItOpen()
{
    type(QStringLiteral("ABC123"));
    dialog->open();
    save->click();
    type(QStringLiteral("ABC12"));
    QTest::keyClick(edit, Qt::Key_Return);
    QCOMPARE(status()->text(), invalid);
    QTRY_COMPARE(events, QStringList{QStringLiteral("finished")});
    QCOMPARE(dialog->result(), static_cast<int>(QDialog::Accepted));
    QCOMPARE(announced, QStringList{QStringLiteral("ABC123")});
    QCOMPARE(storedCode(), QStringLiteral("ABC123"));
}

void tst_ReferralDialog::endedWithoutSaving_data()
{
    QTest::addColumn<QString>("way");

    for (const char *way : {"cancel", "escape", "title bar"}) {
        QTest::newRow(way) << QString{QLatin1String{way}};
    }
}

void tst_ReferralDialog::endedWithoutSaving()
{
    QFETCH(QString, way);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    type(QStringLiteral("ABC12"));
    save->click();
    type(QStringLiteral("ABC123"));
    if (way == QLatin1String{"cancel"}) {
        QTest::mouseClick(cancelButton(), Qt::LeftButton);
    } else if (way == QLatin1String{"escape"}) {
        QTest::keyClick(dialog->windowHandle(), Qt::Key_Escape);
    } else {
        dialog->close();
    }
    QCOMPARE(events, QStringList{QStringLiteral("finished")});
    QCOMPARE(dialog->result(), static_cast<int>(QDialog::Rejected));
    QCOMPARE(announced, QStringList{});
    QVERIFY(QSettings{}.allKeys().isEmpty());
}

void tst_ReferralDialog::changeOfLanguage()
{
    save->click();
    const auto texts = [this] {
        return QStringList{dialog->windowTitle(), dialog->findChild<QLabel *>()->text(),
                           edit->placeholderText(), save->text()};
    };
    QTranslator translator;
    QVERIFY(ui::catalogue::load(translator, QStringLiteral("ru")));
    QCoreApplication::installTranslator(&translator);
    const QStringList russian{QStringLiteral("Реферальный код"),
                              QStringLiteral("Введите реферальный код:"),
                              QStringLiteral("например, ABC123"), QStringLiteral("Сохранить")};
    QTRY_COMPARE(texts(), russian);
    QCOMPARE(status()->text(), invalid);
    type(QStringLiteral("ABC123"));
    save->click();
    QCOMPARE(status()->text(), QStringLiteral("Сохранено ✓"));
}

void tst_ReferralDialog::settingsThatCannotBeWritten()
{
    // Even the superuser cannot put a file where a folder is.
    const QString file = QSettings{}.fileName();
    QFile::remove(file);
    QVERIFY(QDir{}.mkpath(file + QStringLiteral("/in the way")));
    type(QStringLiteral("ABC123"));
    dialog->open();
    save->click();
    QCOMPARE(announced, QStringList{QStringLiteral("ABC123")});
    QCOMPARE(status()->text(), saved);
    QTRY_COMPARE(events, QStringList{QStringLiteral("finished")});
    QVERIFY(QFileInfo{file}.isDir());
    QVERIFY(QDir{file}.removeRecursively());
}

void tst_ReferralDialog::keyboardOrder()
{
    dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    edit->setObjectName(QStringLiteral("code"));
    save->setObjectName(QStringLiteral("save"));
    cancelButton()->setObjectName(QStringLiteral("cancel"));
    QStringList round = support::tabRound(dialog.get());
    QCOMPARE(round.size(), 3);
    QCOMPARE(round.takeLast(), QStringLiteral("code"));
    // The order of the two buttons depends on the desktop.
    round.sort();
    const QStringList expected{QStringLiteral("cancel"), QStringLiteral("save")};
    QCOMPARE(round, expected);
    QVERIFY(save->isDefault());
}

void tst_ReferralDialog::itsEndIsNotTheProgramsEnd()
{
    const QSignalSpy lastClosed{qApp, &QGuiApplication::lastWindowClosed};
    dialog->show();
    QTimer::singleShot(0, dialog.get(), [this] {
        dialog->close();
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    QApplication::exec();
    QVERIFY(!dialog->isVisible());
    QCOMPARE(lastClosed.size(), 0);
}

QTEST_MAIN(tst_ReferralDialog)

#include "tst_referraldialog.moc"
