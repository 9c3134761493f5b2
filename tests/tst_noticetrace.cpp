#include "tests/support/NoticeSamples.h"

#include <QFile>
#include <QProcess>
#include <QScopedPointer>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr int hangMs = 300'000;

/// What a program does to files and the net, told by the kernel.
class Trace
{
public:
    explicit Trace(const QStringList &arguments)
    {
        const QString path = folder.filePath(QStringLiteral("trace"));
        QProcess tracer;
        QProcessEnvironment surroundings = QProcessEnvironment::systemEnvironment();
        // A leak checker would want to trace the same process, and a time zone file would be
        // looked for whenever something is copied.
        surroundings.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
        surroundings.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
        tracer.setProcessEnvironment(surroundings);
        tracer.start(QStringLiteral("strace"),
                     QStringList{QStringLiteral("-f"), QStringLiteral("-qq"), QStringLiteral("-e"),
                                 QStringLiteral("trace=file,network"), QStringLiteral("-e"),
                                 QStringLiteral("signal=none"), QStringLiteral("-o"), path,
                                 QStringLiteral(IXOVPN_NOTICEPROBE)} +
                         arguments);
        if (!tracer.waitForFinished(hangMs)) {
            problem = tracer.state() == QProcess::NotRunning
                          ? QByteArray{"strace is not there"}
                          : QByteArray{"The traced program hangs"};
            tracer.kill();
            tracer.waitForFinished(-1);
        } else if (tracer.exitStatus() != QProcess::NormalExit || tracer.exitCode() != 0) {
            problem = "The traced program, or tracing itself, failed: " +
                      tracer.readAllStandardError().right(2000);
        }
        QFile file{path};
        if (file.open(QIODevice::ReadOnly)) {
            lines = file.readAll().split('\n');
        }
    }

    const QByteArray &whatWentWrong() const { return problem; }

    /// The calls between the marks of one sample; false if there are no such marks.
    bool calls(int index, QByteArrayList *found) const
    {
        const QByteArray begin = "/marker-begin-" + QByteArray::number(index) + '"';
        const QByteArray end = "/marker-end-" + QByteArray::number(index) + '"';
        int from = 0;
        while (from < lines.size() && !lines.at(from).contains(begin)) {
            ++from;
        }
        int to = from;
        while (to < lines.size() && !lines.at(to).contains(end)) {
            ++to;
        }
        *found = lines.mid(from + 1, to - from - 1);
        return to < lines.size();
    }

private:
    QTemporaryDir folder;
    QByteArrayList lines;
    QByteArray problem;
};

} // namespace

/// What notices make the program load, seen from the kernel.
class tst_NoticeTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nothingIsLoaded_data();
    void nothingIsLoaded();
    void tracerSeesWhatAnOrdinaryLabelLoads();

private:
    QScopedPointer<Trace> trace;
};

void tst_NoticeTrace::initTestCase()
{
    support::bait::layOut();
}

void tst_NoticeTrace::nothingIsLoaded_data()
{
    QTest::addColumn<int>("index");
    int index = 0;
    for (const support::NoticeSample &sample : support::hostileNotices()) {
        QTest::newRow(sample.name.constData()) << index++;
    }
    trace.reset(new Trace{{}});
}

void tst_NoticeTrace::nothingIsLoaded()
{
    QFETCH(int, index);
    QByteArrayList calls;
    QVERIFY2(trace->calls(index, &calls), trace->whatWentWrong().constData());
    QVERIFY2(calls.isEmpty(), calls.join('\n').constData());
}

void tst_NoticeTrace::tracerSeesWhatAnOrdinaryLabelLoads()
{
    const Trace ordinary{{QStringLiteral("--plain")}};
    QByteArrayList calls;
    QVERIFY2(ordinary.calls(0, &calls), ordinary.whatWentWrong().constData());
    QVERIFY(calls.join('\n').contains("/tmp/bait/picture.png"));
}

QTEST_GUILESS_MAIN(tst_NoticeTrace)

#include "tst_noticetrace.moc"
