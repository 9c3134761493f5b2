#include "tests/support/ClientSession.h"

#include <QTest>

using support::ClientSession;

namespace {

constexpr QSize usualExtent{360, 560};

// As the settings of a desktop do.
void setDots(const ClientSession &session, const QString &dots)
{
    QCOMPARE(session
                 .run(QStringLiteral("sh"),
                      {QStringLiteral("-c"),
                       QStringLiteral("echo \"Xft.dpi: $0\" | xrdb -nocpp -merge"), dots})
                 .exitCode,
             0);
}

} // namespace

/// What a user sees who has told the desktop to show everything larger, on an X11 server that
/// itself speaks of 100 dots per inch.
class tst_ScreenScale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowGrowsWithTheDesktop_data();
    void windowGrowsWithTheDesktop();
    void usualExtentUntilToldOtherwise();
    void usersChoiceStands_data();
    void usersChoiceStands();
};

void tst_ScreenScale::windowGrowsWithTheDesktop_data()
{
    QTest::addColumn<double>("factor");
    for (const double factor : {1.0, 1.25, 1.5, 2.0}) {
        QTest::addRow("%g", factor) << factor;
    }
}

void tst_ScreenScale::windowGrowsWithTheDesktop()
{
    QFETCH(const double, factor);
    ClientSession session;
    session.setVariable(QStringLiteral("QT_SCALE_FACTOR"), QString::number(factor));
    QVERIFY(session.startClient());
    const QImage expected = session.still(session.window);
    session.stop(session.client);

    session.setVariable(QStringLiteral("QT_SCALE_FACTOR"), {});
    setDots(session, QString::number(96 * factor));
    QVERIFY(session.startClient());
    QCOMPARE(session.geometry(session.window).size(), usualExtent * factor);
    // What it shows is as large as the window.
    QCOMPARE(session.still(session.window), expected);
}

void tst_ScreenScale::usualExtentUntilToldOtherwise()
{
    ClientSession session;
    QVERIFY(session.startClient());
    QCOMPARE(session.geometry(session.window).size(), usualExtent);
}

void tst_ScreenScale::usersChoiceStands_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::addColumn<double>("factor");
    const auto row = [](const char *variable, const char *value, double factor) {
        QTest::newRow(variable) << QString::fromLatin1(variable) << QString::fromLatin1(value)
                                << factor;
    };
    row("QT_SCALE_FACTOR", "1.5", 1.5);
    row("QT_ENABLE_HIGHDPI_SCALING", "0", 1);
    // Plasma sets both.
    row("QT_SCREEN_SCALE_FACTORS", "screen=1.5;", 1.5);
    row("QT_AUTO_SCREEN_SCALE_FACTOR", "0", 1);
}

void tst_ScreenScale::usersChoiceStands()
{
    QFETCH(const QString, variable);
    QFETCH(const QString, value);
    QFETCH(const double, factor);
    ClientSession session;
    session.setVariable(variable, value);
    setDots(session, QStringLiteral("192"));
    QVERIFY(session.startClient());
    QCOMPARE(session.geometry(session.window).size(), usualExtent * factor);
}

QTEST_GUILESS_MAIN(tst_ScreenScale)

#include "tst_screenscale.moc"
