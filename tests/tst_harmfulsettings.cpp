#include "app/HarmfulSettings.h"
#include "app/Identity.h"

#include <QDateTime>
#include <QPolygon>
#include <QRect>
#include <QSettings>
#include <QTest>

using app::setHarmfulSettingsAside;

namespace {

const QString languageKey = QStringLiteral("language");
const QString german = QStringLiteral("de");

// Written as the toolkit's own type, with a number of points.
QVariant polygon()
{
    return QPolygon{QRect{1, 2, 3, 4}};
}

} // namespace

class tst_HarmfulSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void valueOfToolkitType_data();
    void valueOfToolkitType();
    void valueForAllPrograms();
    void secondTime();
    void plainValuesStay_data();
    void plainValuesStay();
};

void tst_HarmfulSettings::initTestCase()
{
    app::setIdentity();
}

void tst_HarmfulSettings::init()
{
    QSettings{}.clear();
    QSettings{QSettings::UserScope, QCoreApplication::organizationName()}.clear();
}

void tst_HarmfulSettings::valueOfToolkitType_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("points") << polygon();
    QTest::newRow("time") << QVariant{QDateTime::fromSecsSinceEpoch(0)};
}

void tst_HarmfulSettings::valueOfToolkitType()
{
    QFETCH(QVariant, value);
    QSettings{}.setValue(languageKey, value);
    QSettings{}.setValue(QStringLiteral("longer"), QString{1000, u'x'});
    QVERIFY(QSettings{}.contains(languageKey));

    setHarmfulSettingsAside();

    QVERIFY(!QSettings{}.contains(languageKey));
    const QSettings aside{QStringLiteral("IXOVPN"), QStringLiteral("IxoClient.unreadable")};
    QCOMPARE(aside.value(languageKey), value);
    QSettings{}.setValue(languageKey, german);
    setHarmfulSettingsAside();
    QCOMPARE(QSettings{}.value(languageKey).toString(), german);
}

// What is not found among the client's is looked for there.
void tst_HarmfulSettings::valueForAllPrograms()
{
    QSettings{QSettings::UserScope, QCoreApplication::organizationName()}.setValue(languageKey,
                                                                                   polygon());
    QVERIFY(QSettings{}.contains(languageKey));

    setHarmfulSettingsAside();

    QVERIFY(!QSettings{}.contains(languageKey));
}

void tst_HarmfulSettings::secondTime()
{
    for (int i = 0; i < 2; ++i) {
        QSettings{}.setValue(languageKey, polygon());
        QVERIFY(QSettings{}.contains(languageKey));

        setHarmfulSettingsAside();

        QVERIFY(!QSettings{}.contains(languageKey));
    }
}

void tst_HarmfulSettings::plainValuesStay_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("text") << QVariant{german};
    QTest::newRow("text in other letters") << QVariant{QStringLiteral("ја, 日本 \\x40 \"@\"")};
    QTest::newRow("text with a zero") << QVariant{QString{QChar{0}} + german};
    QTest::newRow("half the word") << QVariant{QStringLiteral("Variant(@")};
    QTest::newRow("bytes") << QVariant{QByteArray{"de"}};
    QTest::newRow("list") << QVariant{QStringList{german, german}};
    QTest::newRow("rectangle") << QVariant{QRect{1, 2, 3, 4}};
}

void tst_HarmfulSettings::plainValuesStay()
{
    QFETCH(QVariant, value);
    QSettings{}.setValue(languageKey, value);

    setHarmfulSettingsAside();

    QCOMPARE(QSettings{}.value(languageKey), value);
}

QTEST_GUILESS_MAIN(tst_HarmfulSettings)

#include "tst_harmfulsettings.moc"
