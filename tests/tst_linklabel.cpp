#include "tests/support/PageParts.h"
#include "ui/LinkLabel.h"

#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

class tst_LinkLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }

    void construction();
    void keyboardReachesEveryLink();
    void tabTakesALinkAtOnce();
    void keyboardLeavesBothWays_data();
    void keyboardLeavesBothWays();
    void aloneInItsWindow();

private:
    void press(Qt::Key key) { QTest::keyClick(window->windowHandle(), key); }

    std::unique_ptr<QWidget> window;
    QPushButton *before = nullptr;
    ui::LinkLabel *label = nullptr;
    QPushButton *after = nullptr;
};

void tst_LinkLabel::init()
{
    window = std::make_unique<QWidget>();
    before = new QPushButton;
    label = new ui::LinkLabel{nullptr};
    after = new QPushButton;
    auto *const column = new QVBoxLayout{window.get()};
    for (const auto &[widget, name] : {std::pair<QWidget *, const char *>{before, "before"},
                                       {label, "label"},
                                       {after, "after"}}) {
        widget->setObjectName(QLatin1String{name});
        column->addWidget(widget);
    }
    label->setText(QStringLiteral("<a href=\"https://a\">first</a> and "
                                  "<a href=\"https://b\">second</a> or "
                                  "<a href=\"https://c\">third</a>"));
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
}

void tst_LinkLabel::construction()
{
    QCOMPARE(label->textFormat(), Qt::RichText);
    QCOMPARE(label->textInteractionFlags(), Qt::TextBrowserInteraction);
    QVERIFY(label->openExternalLinks());
    QCOMPARE(label->palette().color(QPalette::Link), QColor(255, 138, 78));
}

void tst_LinkLabel::keyboardReachesEveryLink()
{
    constexpr int manyPresses = 20;
    QStringList reached;
    const QSignalSpy told{label, &ui::LinkLabel::linkReached};
    const auto pressUntilLeft = [this, &reached](Qt::Key key) {
        reached.clear();
        press(key);
        for (int i = 0; i < manyPresses && label->hasFocus(); ++i) {
            if (label->hasSelectedText()) {
                reached += label->selectedText();
            }
            press(key);
        }
    };
    before->setFocus();
    pressUntilLeft(Qt::Key_Tab);
    QVERIFY(after->hasFocus());
    const QStringList forth{QStringLiteral("first"), QStringLiteral("second"),
                            QStringLiteral("third")};
    QCOMPARE(reached, forth);
    QCOMPARE(told.size(), 3);

    pressUntilLeft(Qt::Key_Backtab);
    QVERIFY(before->hasFocus());
    const QStringList back{QStringLiteral("third"), QStringLiteral("second"),
                           QStringLiteral("first")};
    QCOMPARE(reached, back);
    QCOMPARE(told.size(), 6);
}

void tst_LinkLabel::tabTakesALinkAtOnce()
{
    before->setFocus();
    press(Qt::Key_Tab);
    QCOMPARE(label->selectedText(), QStringLiteral("first"));
    after->setFocus();
    press(Qt::Key_Backtab);
    QCOMPARE(label->selectedText(), QStringLiteral("third"));
}

void tst_LinkLabel::keyboardLeavesBothWays_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("one link") << QStringLiteral("<a href=\"https://a\">a</a>");
    QTest::newRow("one link inside a text") << QStringLiteral("a <a href=\"https://a\">b</a> c");
    QTest::newRow("two links") << QStringLiteral("<a href=\"#\">a</a> <a href=\"#\">b</a>");
    QTest::newRow("no link") << QStringLiteral("a");
    QTest::newRow("nothing") << QString{};
}

void tst_LinkLabel::keyboardLeavesBothWays()
{
    QFETCH(QString, text);
    label->setText(text);
    const QStringList forth{QStringLiteral("label"), QStringLiteral("after"),
                            QStringLiteral("before")};
    const QStringList back{QStringLiteral("after"), QStringLiteral("label"),
                           QStringLiteral("before")};
    before->setFocus();
    QCOMPARE(support::tabRound(window.get()), forth);
    QCOMPARE(support::tabRound(window.get(), true), back);
    QCOMPARE(support::tabRound(window.get(), true), back);
}

void tst_LinkLabel::aloneInItsWindow()
{
    before->hide();
    after->hide();
    label->setFocus();
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Backtab}) {
        press(key);
        QVERIFY(label->hasFocus());
    }
}

QTEST_MAIN(tst_LinkLabel)

#include "tst_linklabel.moc"
