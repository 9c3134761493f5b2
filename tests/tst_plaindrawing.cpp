#include "app/PlainDrawing.h"

#include <QTest>

namespace {

constexpr char variable[] = "QT_XCB_GL_INTEGRATION";

} // namespace

class tst_PlainDrawing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void asksForNoOpenGl();
    void leavesNothingForOtherPrograms();
    void usersChoiceStands_data();
    void usersChoiceStands();
};

void tst_PlainDrawing::init()
{
    qunsetenv(variable);
}

void tst_PlainDrawing::asksForNoOpenGl()
{
    const app::PlainDrawing plain;
    QCOMPARE(qgetenv(variable), QByteArrayLiteral("none"));
}

void tst_PlainDrawing::leavesNothingForOtherPrograms()
{
    {
        const app::PlainDrawing plain;
    }
    QVERIFY(!qEnvironmentVariableIsSet(variable));
}

void tst_PlainDrawing::usersChoiceStands_data()
{
    QTest::addColumn<QByteArray>("choice");
    QTest::newRow("a driver") << QByteArrayLiteral("xcb_egl");
    QTest::newRow("none") << QByteArrayLiteral("none");
}

void tst_PlainDrawing::usersChoiceStands()
{
    QFETCH(const QByteArray, choice);
    qputenv(variable, choice);
    {
        const app::PlainDrawing plain;
        QCOMPARE(qgetenv(variable), choice);
    }
    QCOMPARE(qgetenv(variable), choice);
}

QTEST_GUILESS_MAIN(tst_PlainDrawing)
#include "tst_plaindrawing.moc"
