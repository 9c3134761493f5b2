#include "tests/soak/Figures.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace soak {

namespace {

qint64 valueOf(const QByteArray &key, const QString &path)
{
    QFile file{path};
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error{"Cannot read " + path.toStdString() + ": " +
                                 file.errorString().toStdString()};
    }
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> words = line.simplified().split(' ');
        bool known = false;
        const qint64 value = words.value(1).toLongLong(&known);
        if (words.first() == key && known) {
            return value;
        }
    }
    throw std::runtime_error{"No " + key.toStdString() + " in " + path.toStdString()};
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
    figures.proportional = static_cast<int>(valueOf("Pss:", memory));
    figures.written = static_cast<int>(valueOf("Private_Dirty:", memory));
    for (const QString &thread : threads) {
        const QString own = folder + QStringLiteral("task/%1/").arg(thread);
        try {
            figures.wakeUps += valueOf("voluntary_ctxt_switches:", own + QStringLiteral("status"));
            ++figures.threads;
        } catch (const std::runtime_error &) {
            // A thread may end between the listing and the reading; one that still runs is an
            // error.
            if (QFile::exists(own)) {
                throw;
            }
        }
    }
    if (figures.descriptors == 0 || figures.threads == 0 || figures.proportional <= 0 ||
        figures.written <= 0) {
        throw std::runtime_error{"No program holds nothing: " + folder.toStdString()};
    }
    return figures;
}

} // namespace soak
