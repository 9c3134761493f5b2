#include "tests/support/Sway.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <unistd.h>

namespace support {

namespace {

void collect(const QJsonObject &node, QList<Sway::Window> &found)
{
    const QString shell = node.value(QLatin1String{"shell"}).toString();
    if (!shell.isEmpty()) {
        const QJsonObject content = node.value(QLatin1String{"window_rect"}).toObject();
        found += Sway::Window{node.value(QLatin1String{"id"}).toInt(),
                              node.value(QLatin1String{"name"}).toString(),
                              shell,
                              node.value(QLatin1String{"focused"}).toBool(),
                              node.value(QLatin1String{"visible"}).toBool(),
                              {content.value(QLatin1String{"width"}).toInt(),
                               content.value(QLatin1String{"height"}).toInt()}};
    }
    for (const auto &kind : {QLatin1String{"nodes"}, QLatin1String{"floating_nodes"}}) {
        const QJsonArray children = node.value(kind).toArray();
        for (const QJsonValue &child : children) {
            collect(child.toObject(), found);
        }
    }
}

} // namespace

bool Sway::isPossible()
{
    return geteuid() != 0 ||
           QProcess::execute(QStringLiteral("unshare"),
                             {QStringLiteral("--user"), QStringLiteral("true")}) == 0;
}

Sway::Sway()
{
    programs.environment.insert(QStringLiteral("WLR_BACKENDS"), QStringLiteral("headless"));
    programs.environment.insert(QStringLiteral("WLR_LIBINPUT_NO_DEVICES"), QStringLiteral("1"));
    programs.environment.insert(QStringLiteral("WLR_RENDERER"), QStringLiteral("pixman"));

    programs.startSessionBus();

    // A command in the configuration writes the display names, which sway chooses, to a file.
    const QString configuration = QDir::tempPath() + QStringLiteral("/sway.conf");
    const QString told = QDir::tempPath() + QStringLiteral("/sway.environment");
    QFile::remove(told);
    QFile file{configuration};
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("%s cannot be written", qPrintable(configuration));
    }
    file.write("output HEADLESS-1 resolution 1280x1024\nxwayland enable\n"
               "focus_on_window_activation focus\nexec \"env >" +
               told.toLocal8Bit() + ".new; mv " + told.toLocal8Bit() + ".new " +
               told.toLocal8Bit() + "\"\n");
    file.close();
    const QStringList asUser{QStringLiteral("unshare"), QStringLiteral("--user"),
                             QStringLiteral("--map-user=daemon"),
                             QStringLiteral("--map-group=daemon")};
    QStringList command = geteuid() == 0 ? asUser : QStringList{};
    command += {QStringLiteral("sway"), QStringLiteral("--config"), configuration};
    programs.start(command.takeFirst(), command);
    if (!waitFor([&told] { return QFile::exists(told); })) {
        qFatal("The compositor does not come up");
    }
    QFile environment{told};
    if (!environment.open(QIODevice::ReadOnly)) {
        qFatal("%s cannot be read", qPrintable(told));
    }
    const QList<QByteArray> lines = environment.readAll().split('\n');
    for (const QByteArray &line : lines) {
        for (const char *const name : {"SWAYSOCK", "WAYLAND_DISPLAY", "DISPLAY"}) {
            if (line.startsWith(QByteArray{name} + '=')) {
                programs.environment.insert(
                    QLatin1String{name}, QString::fromLocal8Bit(line.mid(line.indexOf('=') + 1)));
            }
        }
    }
}

QList<Sway::Window> Sway::windows() const
{
    QList<Window> found;
    collect(
        QJsonDocument::fromJson(ask({QStringLiteral("-t"), QStringLiteral("get_tree")})).object(),
        found);
    return found;
}

QList<Sway::Window> Sway::windows(const QString &title) const
{
    QList<Window> found;
    for (const Window &window : windows()) {
        if (window.title == title) {
            found += window;
        }
    }
    return found;
}

void Sway::close(const Window &window) const
{
    ask({QStringLiteral("[con_id=%1] kill").arg(window.id)});
}

void Sway::focus(const Window &window) const
{
    ask({QStringLiteral("[con_id=%1] focus").arg(window.id)});
}

QByteArray Sway::ask(const QStringList &arguments) const
{
    return programs.run(QStringLiteral("swaymsg"), QStringList{QStringLiteral("--raw")} + arguments)
        .output;
}

} // namespace support
