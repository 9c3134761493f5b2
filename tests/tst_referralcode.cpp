#include "ui/ReferralCode.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTest>

class tst_ReferralCode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void validity_data();
    void validity();
    void everyAsciiCharacter();
    void nothingStored();
    void storedAsGiven_data();
    void storedAsGiven();
};

void tst_ReferralCode::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("IXOVPN"));
    QCoreApplication::setApplicationName(QStringLiteral("IxoClient"));
}

void tst_ReferralCode::init()
{
    QSettings{}.clear();
}

void tst_ReferralCode::validity_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("valid");

    QTest::newRow("capitals and digits") << QStringLiteral("ABC123") << true;
    QTest::newRow("small letters") << QStringLiteral("abcxyz") << true;
    QTest::newRow("mixed") << QStringLiteral("ab12CD") << true;
    QTest::newRow("digits only") << QStringLiteral("000000") << true;
    QTest::newRow("ends of the ranges") << QStringLiteral("AZaz09") << true;

    QTest::newRow("null") << QString{} << false;
    QTest::newRow("empty") << QStringLiteral("") << false;
    QTest::newRow("one") << QStringLiteral("A") << false;
    QTest::newRow("five") << QStringLiteral("ABC12") << false;
    QTest::newRow("seven") << QStringLiteral("ABC1234") << false;
    QTest::newRow("twelve") << QStringLiteral("ABC123ABC123") << false;
    QTest::newRow("very long") << QString{100000, QLatin1Char{'A'}} << false;

    QTest::newRow("blank before") << QStringLiteral(" ABC123") << false;
    QTest::newRow("blank after") << QStringLiteral("ABC123 ") << false;
    QTest::newRow("blank as the sixth") << QStringLiteral("ABC12 ") << false;
    QTest::newRow("blank inside") << QStringLiteral("ABC 12") << false;
    QTest::newRow("blanks only") << QStringLiteral("      ") << false;
    QTest::newRow("no-break space") << QStringLiteral("ABC12\u00a0") << false;
    QTest::newRow("tab") << QStringLiteral("ABC\t12") << false;
    QTest::newRow("null character after") << QStringLiteral("ABC123\0") << false;
    QTest::newRow("null character inside") << QStringLiteral("ABC\0"
                                                             "12")
                                           << false;

    QTest::newRow("line feed after") << QStringLiteral("ABC123\n") << false;
    QTest::newRow("line feed as the sixth") << QStringLiteral("ABC12\n") << false;
    QTest::newRow("line feed before") << QStringLiteral("\nABC123") << false;
    QTest::newRow("carriage return after") << QStringLiteral("ABC123\r") << false;
    QTest::newRow("both line ends after") << QStringLiteral("ABC123\r\n") << false;
    QTest::newRow("line separator after") << QStringLiteral("ABC123\u2028") << false;
    QTest::newRow("code on the first of two lines") << QStringLiteral("ABC123\nABC123") << false;

    QTest::newRow("hyphen") << QStringLiteral("ABC-12") << false;
    QTest::newRow("underscore") << QStringLiteral("ABC_12") << false;
    QTest::newRow("quotes") << QStringLiteral("AB\"\"12") << false;

    QTest::newRow("umlaut") << QStringLiteral("ÄBC123") << false;
    QTest::newRow("sharp s") << QStringLiteral("abcß12") << false;
    QTest::newRow("Cyrillic A") << QStringLiteral("\u0410BC123") << false;
    QTest::newRow("Greek Beta") << QStringLiteral("A\u0392C123") << false;
    QTest::newRow("full-width letter") << QStringLiteral("\uff21BC123") << false;
    QTest::newRow("Kelvin sign") << QStringLiteral("ABC12\u212a") << false;
    QTest::newRow("long s") << QStringLiteral("ABC12\u017f") << false;
    QTest::newRow("dotless i") << QStringLiteral("ABC12\u0131") << false;
    QTest::newRow("combining accent") << QStringLiteral("ABC12\u0301") << false;
    QTest::newRow("accent after six") << QStringLiteral("ABC123\u0301") << false;

    QTest::newRow("full-width digits") << QStringLiteral("ABC\uff11\uff12\uff13") << false;
    QTest::newRow("Arabic digits") << QStringLiteral("ABC\u0661\u0662\u0663") << false;
    QTest::newRow("Devanagari digits") << QStringLiteral("ABC\u0967\u0968\u0969") << false;
    QTest::newRow("superscript digit") << QStringLiteral("ABC12\u00b3") << false;
    QTest::newRow("mathematical digits") << QStringLiteral("ABCD\U0001d7d8") << false;

    QTest::newRow("right-to-left mark after") << QStringLiteral("ABC123\u200f") << false;
    QTest::newRow("right-to-left mark as the sixth") << QStringLiteral("ABC12\u200f") << false;
    QTest::newRow("left-to-right mark before") << QStringLiteral("\u200eABC123") << false;
    QTest::newRow("right-to-left override") << QStringLiteral("\u202eABC12") << false;
    QTest::newRow("zero-width space") << QStringLiteral("ABC\u200b12") << false;
    QTest::newRow("byte order mark") << QStringLiteral("\ufeffABC123") << false;
    QTest::newRow("half of a surrogate pair") << QStringLiteral("ABC12") + QChar{0xd835} << false;
}

void tst_ReferralCode::validity()
{
    QFETCH(QString, code);
    QTEST(isValidReferralCode(code), "valid");
}

void tst_ReferralCode::everyAsciiCharacter()
{
    QString accepted;
    for (char16_t c = 0; c < 0x80; ++c) {
        if (isValidReferralCode(QStringLiteral("ABC12") + QChar{c})) {
            accepted += QChar{c};
        }
    }
    QCOMPARE(accepted, QStringLiteral("0123456789"
                                      "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                      "abcdefghijklmnopqrstuvwxyz"));
}

void tst_ReferralCode::nothingStored()
{
    QVERIFY(storedReferralCode().isEmpty());
}

void tst_ReferralCode::storedAsGiven_data()
{
    QTest::addColumn<QString>("code");

    QTest::newRow("valid") << QStringLiteral("ab12CD");
    QTest::newRow("too short") << QStringLiteral("abc");
    QTest::newRow("line feed after") << QStringLiteral("ABC123\n");
    QTest::newRow("beyond ASCII") << QStringLiteral("Ключ");
}

void tst_ReferralCode::storedAsGiven()
{
    QFETCH(QString, code);
    storeReferralCode(code);
    QCOMPARE(storedReferralCode(), code);
    QCOMPARE(QSettings{}.value(QStringLiteral("referral_code")).toString(), code);
}

QTEST_GUILESS_MAIN(tst_ReferralCode)

#include "tst_referralcode.moc"
