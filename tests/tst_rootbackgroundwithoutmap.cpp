#include "support/Pictures.h"
#include "support/RootBackgroundWindow.h"

#include <QFile>
#include <QTest>

class tst_RootBackgroundWithoutMap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gradientAlone_data();
    void gradientAlone();
};

void tst_RootBackgroundWithoutMap::gradientAlone_data()
{
    QTest::addColumn<double>("ratio");

    QTest::newRow("100 %") << 1.0;
    QTest::newRow("150 %") << 1.5;
    QTest::newRow("200 %") << 2.0;
}

void tst_RootBackgroundWithoutMap::gradientAlone()
{
    QVERIFY(!QFile::exists(QStringLiteral(":/assets/world-map.png")));
    QFETCH(double, ratio);

    constexpr QSize extent{360, 560};
    support::RootBackgroundWindow window;
    const QImage shown = window.drawnBackground(extent, ratio);
    QCOMPARE(support::difference(shown, support::rootGradient(extent, ratio), 0), QString{});
    QCOMPARE(shown.pixelColor(0, 0), QColor(27, 29, 61));
    QCOMPARE(shown.pixelColor(shown.width() - 1, shown.height() - 1), QColor(15, 16, 36));
}

QTEST_MAIN(tst_RootBackgroundWithoutMap)

#include "tst_rootbackgroundwithoutmap.moc"
