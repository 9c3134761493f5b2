#include "app/Identity.h"
#include "tests/support/Languages.h"
#include "tests/support/PageParts.h"
#include "ui/Catalogue.h"
#include "ui/SettingsDialog.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>
#include <QScrollBar>
#include <QSettings>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>
#include <QToolButton>
#include <QTranslator>
#include <QVBoxLayout>

#include <memory>

using support::PageParts;

namespace {

constexpr QSize parentExtent{360, 560};

} // namespace

class tst_SettingsDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void paintsTheGradient();
    void languageTable();
    void opening_data();
    void opening();
    void selectionIsResetAtEveryOpening();
    void coversItsParent();
    void coversWhatLiesOnItsParent();
    void doesNotFollowItsParent();
    void withoutAParent();
    void saveWithoutAChange();
    void saveOfAnotherLanguage();
    void savingDoesNotChangeWhatIsInForce();
    void unknownLanguageInForce();
    void backButton();
    void changeOfLanguage();
    void savesNothingItself();
    void keyboardGoesRoundInThePage();
    void keyboardLeavesWithThePage();
    void escapeGoesBack();
    void escapeClosesTheListFirst();
    void enterSaves();
    void enterGoesBack_data();
    void enterGoesBack();
    void listIsDarkAllOver();
    void listShowsEveryLanguage_data();
    void listShowsEveryLanguage();

private:
    QLabel *section() const { return page->findChild<QLabel *>(QStringLiteral("section")); }

    std::unique_ptr<QWidget> window;
    QPushButton *behind = nullptr;
    ui::SettingsDialog *page = nullptr;
    QComboBox *combo = nullptr;
    QPushButton *save = nullptr;
    QStringList emitted;
};

void tst_SettingsDialog::initTestCase()
{
    app::setIdentity();
}

void tst_SettingsDialog::init()
{
    QSettings{}.clear();
    window = std::make_unique<QWidget>();
    window->resize(parentExtent);
    behind = new QPushButton{QStringLiteral("behind"), window.get()};
    behind->setObjectName(QStringLiteral("behind"));
    page = new ui::SettingsDialog{window.get()};
    combo = page->findChild<QComboBox *>();
    save = page->findChild<QPushButton *>(QStringLiteral("save"));
    emitted.clear();
    connect(page, &ui::SettingsDialog::languageChanged, this,
            [this](const QString &tag) { emitted += QStringLiteral("language ") + tag; });
    connect(page, &ui::SettingsDialog::closeRequested, this,
            [this] { emitted += QStringLiteral("close"); });
}

void tst_SettingsDialog::cleanup()
{
    window.reset();
}

void tst_SettingsDialog::paintsTheGradient()
{
    page->openPage(QStringLiteral("en"));
    QVERIFY(support::hasGradient(page));
}

void tst_SettingsDialog::languageTable()
{
    QStringList rows;
    QStringList tags;
    for (int i = 0; i < combo->count(); ++i) {
        tags += combo->itemData(i, Qt::UserRole).toString();
        rows += combo->itemData(i, Qt::UserRole).toString() + QLatin1Char{' '} + combo->itemText(i);
        QCOMPARE(combo->itemData(i, Qt::UserRole).type(), QVariant::String);
    }
    const QStringList expected{
        QStringLiteral("en English"),    QStringLiteral("ru Русский"),
        QStringLiteral("de Deutsch"),    QStringLiteral("fr Français"),
        QStringLiteral("es Español"),    QStringLiteral("it Italiano"),
        QStringLiteral("pt Português"),  QStringLiteral("br Português (BR)"),
        QStringLiteral("ja 日本語"),     QStringLiteral("nl Nederlands"),
        QStringLiteral("pl Polski"),     QStringLiteral("tr Türkçe"),
        QStringLiteral("uk Українська"), QStringLiteral("cs Čeština"),
    };
    // New languages come behind these.
    QCOMPARE(QStringList{rows.mid(0, expected.size())}, expected);
    tags.sort();
    QCOMPARE(tags, support::languageTags());
    QVERIFY(!combo->isEditable());
}

void tst_SettingsDialog::opening_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<int>("row");

    const auto row = [](const char *name, const char *tag, int index) {
        QTest::newRow(name) << QString::fromUtf8(tag) << index;
    };
    row("English", "en", 0);
    row("European Portuguese", "pt", 6);
    row("Brazilian Portuguese", "br", 7);
    row("Czech", "cs", 13);
    row("nothing", "", 0);
    row("unknown", "xx", 0);
    row("capitals", "RU", 0);
    row("mixed case", "Br", 0);
    row("a locale", "pt_BR", 0);
    row("a name instead of a tag", "Deutsch", 0);
    row("a part of a tag", "c", 0);
    row("a longer tag", "csx", 0);
    row("a pattern", "c*", 0);
    row("a blank behind", "cs ", 0);
}

void tst_SettingsDialog::opening()
{
    QFETCH(QString, tag);
    combo->setCurrentIndex(3);
    page->openPage(tag);
    QTEST(combo->currentIndex(), "row");
    QVERIFY(!page->isHidden());
    QCOMPARE(emitted, QStringList{});
}

void tst_SettingsDialog::selectionIsResetAtEveryOpening()
{
    page->openPage(QStringLiteral("ja"));
    combo->setCurrentIndex(2);
    page->hide();
    page->openPage(QStringLiteral("ja"));
    QCOMPARE(combo->currentData().toString(), QStringLiteral("ja"));
}

void tst_SettingsDialog::coversItsParent()
{
    page->openPage(QStringLiteral("en"));
    QCOMPARE(page->geometry(), QRect(QPoint{}, parentExtent));
}

void tst_SettingsDialog::coversWhatLiesOnItsParent()
{
    auto *const later = new QPushButton{window.get()};
    later->setGeometry(0, 0, 50, 50);
    page->openPage(QStringLiteral("en"));
    QVERIFY(window->childAt(20, 200) == page);
    QVERIFY(window->childAt(2, 2) == page);
}

void tst_SettingsDialog::doesNotFollowItsParent()
{
    page->openPage(QStringLiteral("en"));
    window->resize(parentExtent * 2);
    QCOMPARE(page->size(), parentExtent);
    page->openPage(QStringLiteral("en"));
    QCOMPARE(page->size(), parentExtent * 2);
}

void tst_SettingsDialog::withoutAParent()
{
    ui::SettingsDialog alone{nullptr};
    QVERIFY(alone.isHidden());
    alone.openPage(QStringLiteral("de"));
    QVERIFY(alone.isVisible());
    QCOMPARE(alone.findChild<QComboBox *>()->currentText(), QStringLiteral("Deutsch"));
}

void tst_SettingsDialog::saveWithoutAChange()
{
    page->openPage(QStringLiteral("br"));
    combo->setCurrentIndex(0);
    combo->setCurrentIndex(7);
    save->click();
    QCOMPARE(emitted, QStringList{QStringLiteral("close")});
    QVERIFY(!page->isHidden());
}

void tst_SettingsDialog::saveOfAnotherLanguage()
{
    page->openPage(QStringLiteral("en"));
    combo->setCurrentIndex(7);
    save->click();
    const QStringList expected{QStringLiteral("language br"), QStringLiteral("close")};
    QCOMPARE(emitted, expected);
    QVERIFY(!page->isHidden());
}

void tst_SettingsDialog::savingDoesNotChangeWhatIsInForce()
{
    page->openPage(QStringLiteral("en"));
    combo->setCurrentIndex(1);
    save->click();
    save->click();
    combo->setCurrentIndex(0);
    save->click();
    const QStringList expected{QStringLiteral("language ru"), QStringLiteral("close"),
                               QStringLiteral("language ru"), QStringLiteral("close"),
                               QStringLiteral("close")};
    QCOMPARE(emitted, expected);
}

void tst_SettingsDialog::unknownLanguageInForce()
{
    page->openPage(QStringLiteral("xx"));
    save->click();
    const QStringList expected{QStringLiteral("language en"), QStringLiteral("close")};
    QCOMPARE(emitted, expected);
}

void tst_SettingsDialog::backButton()
{
    page->openPage(QStringLiteral("en"));
    combo->setCurrentIndex(5);
    QTest::mouseClick(PageParts{page}.back, Qt::LeftButton);
    QCOMPARE(emitted, QStringList{QStringLiteral("close")});
    QVERIFY(!page->isHidden());
}

void tst_SettingsDialog::changeOfLanguage()
{
    const PageParts parts{page};
    const auto *const label =
        qobject_cast<QLabel *>(parts.body->itemAt(1)->layout()->itemAt(0)->widget());
    const auto texts = [this, &parts, label] {
        return QStringList{parts.back->toolTip(), parts.title->text(), label->text(), save->text(),
                           section()->text()};
    };
    const QStringList english{QStringLiteral("Back"), QStringLiteral("Settings"),
                              QStringLiteral("Language"), QStringLiteral("Save"),
                              QStringLiteral("LANGUAGE")};
    QCOMPARE(texts(), english);

    QTranslator translator;
    QVERIFY(ui::catalogue::load(translator, QStringLiteral("ru")));
    QCoreApplication::installTranslator(&translator);
    const QStringList russian{QStringLiteral("Назад"), QStringLiteral("Настройки"),
                              QStringLiteral("Язык"), QStringLiteral("Сохранить"),
                              QStringLiteral("LANGUAGE")};
    QTRY_COMPARE(texts(), russian);
    QCOMPARE(combo->itemText(0), QStringLiteral("English"));

    const ui::SettingsDialog later{window.get()};
    QCOMPARE(later.findChild<QLabel *>(QStringLiteral("section"))->text(), QStringLiteral("ЯЗЫК"));

    QCoreApplication::removeTranslator(&translator);
    QTRY_COMPARE(texts(), english);
}

void tst_SettingsDialog::savesNothingItself()
{
    page->openPage(QStringLiteral("en"));
    combo->setCurrentIndex(1);
    save->click();
    QVERIFY(QSettings{}.allKeys().isEmpty());
    QVERIFY(qApp->findChildren<QTranslator *>().isEmpty());
}

void tst_SettingsDialog::keyboardGoesRoundInThePage()
{
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    behind->setFocus();
    page->openPage(QStringLiteral("en"));
    QCOMPARE(window->focusWidget(), PageParts{page}.back);
    const QStringList forth{QStringLiteral("QComboBox"), QStringLiteral("save"),
                            QStringLiteral("back")};
    const QStringList back{QStringLiteral("save"), QStringLiteral("QComboBox"),
                           QStringLiteral("back")};
    QCOMPARE(support::tabRound(window.get()), forth);
    QCOMPARE(support::tabRound(window.get(), true), back);
}

void tst_SettingsDialog::keyboardLeavesWithThePage()
{
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    page->openPage(QStringLiteral("en"));
    page->hide();
    QCOMPARE(window->focusWidget(), behind);
}

void tst_SettingsDialog::escapeGoesBack()
{
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    QCOMPARE(emitted, QStringList{});
    page->openPage(QStringLiteral("en"));
    combo->setCurrentIndex(3);
    for (QWidget *const focused : {static_cast<QWidget *>(combo), static_cast<QWidget *>(save)}) {
        emitted.clear();
        focused->setFocus();
        QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
        QCOMPARE(emitted, QStringList{QStringLiteral("close")});
    }
    page->hide();
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    QCOMPARE(emitted, QStringList{QStringLiteral("close")});
}

void tst_SettingsDialog::escapeClosesTheListFirst()
{
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    page->openPage(QStringLiteral("en"));
    combo->showPopup();
    QTRY_VERIFY(combo->view()->isVisible());
    QTest::keyClick(combo->view(), Qt::Key_Escape);
    QTRY_VERIFY(!combo->view()->isVisible());
    QCOMPARE(emitted, QStringList{});
}

void tst_SettingsDialog::enterSaves()
{
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    page->openPage(QStringLiteral("en"));
    combo->setCurrentIndex(2);
    save->setFocus();
    QTest::keyClick(window->windowHandle(), Qt::Key_Return);
    const QStringList expected{QStringLiteral("language de"), QStringLiteral("close")};
    QCOMPARE(emitted, expected);
}

void tst_SettingsDialog::enterGoesBack_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("among the letters") << Qt::Key_Return;
    QTest::newRow("among the digits") << Qt::Key_Enter;
    QTest::newRow("space bar") << Qt::Key_Space;
}

void tst_SettingsDialog::enterGoesBack()
{
    QFETCH(Qt::Key, key);
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    page->openPage(QStringLiteral("en"));
    QVERIFY(PageParts{page}.back->hasFocus());
    QTest::keyClick(window->windowHandle(), key);
    QCOMPARE(emitted, QStringList{QStringLiteral("close")});
}

void tst_SettingsDialog::listIsDarkAllOver()
{
    window->show();
    page->openPage(QStringLiteral("ja"));
    combo->showPopup();
    QTRY_VERIFY(combo->view()->isVisible());
    const QImage picture = combo->view()->window()->grab().toImage();
    constexpr int darkest = 60;
    constexpr int widestFrame = 6;
    const int middle = picture.width() / 2;
    // The style of Windows draws a thin line around it.
    const int line = QGuiApplication::platformName() == QLatin1String{"windows"} ? 1 : 0;
    for (int i = line; i < widestFrame; ++i) {
        QVERIFY(QColor{picture.pixel(middle, i)}.lightness() < darkest);
        QVERIFY(QColor{picture.pixel(middle, picture.height() - 1 - i)}.lightness() < darkest);
    }
    combo->hidePopup();
}

void tst_SettingsDialog::listShowsEveryLanguage_data()
{
    QTest::addColumn<QString>("style");
    const QStringList styles = QStyleFactory::keys();
    for (const QString &style : styles) {
        QTest::newRow(qPrintable(style)) << style;
    }
}

void tst_SettingsDialog::listShowsEveryLanguage()
{
    QFETCH(QString, style);
    const QString before = QApplication::style()->objectName();
    QApplication::setStyle(style);
    const auto restored = qScopeGuard([&before] { QApplication::setStyle(before); });
    window->show();
    page->openPage(QStringLiteral("en"));
    combo->showPopup();
    const QAbstractItemView *const list = combo->view();
    QTRY_VERIFY(list->isVisible());
    for (const int row : {0, combo->count() - 1}) {
        const QRect place = list->visualRect(combo->model()->index(row, 0));
        QVERIFY(place.top() >= 0);
        QVERIFY(place.bottom() < list->viewport()->height());
    }
    QVERIFY(!list->verticalScrollBar()->isVisible());
    QVERIFY(!list->horizontalScrollBar()->isVisible());
    combo->hidePopup();
}

QTEST_MAIN(tst_SettingsDialog)

#include "tst_settingsdialog.moc"
