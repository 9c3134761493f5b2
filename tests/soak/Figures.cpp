#include "tests/soak/Figures.h"

#include <QDir>
#include <QFile>

namespace soak {

namespace {

qint64 sumIn(const QString &path, const QList<QByteArray> &keys)
{
    QFile file{path};
    qint64 sum = 0;
    if (file.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> lines = file.readAll().split('\n');
        for (const QByteArray &line : lines) {
            const QList<QByteArray> words = line.simplified().split(' ');
            if (keys.contains(words.first())) {
                sum += words.at(1).toLongLong();
            }
        }
    }
    return sum;
}

} // namespace

Figures Figures::of(qint64 process)
{
    const QString folder = QStringLiteral("/proc/%1/").arg(process);
    const QStringList threads =
        QDir{folder + QStringLiteral("task")}.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    const QString memory = folder + QStringLiteral("smaps_rollup");

    Figures figures;
    figures.descriptors = QDir{folder + QStringLiteral("fd")}
                              .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                              .size();
    figures.threads = threads.size();
    figures.proportional = static_cast<int>(sumIn(memory, {"Pss:"}));
    figures.written = static_cast<int>(sumIn(memory, {"Private_Dirty:"}));
    for (const QString &thread : threads) {
        figures.wakeUps += sumIn(folder + QStringLiteral("task/%1/status").arg(thread),
                                 {"voluntary_ctxt_switches:"});
    }
    return figures;
}

} // namespace soak
