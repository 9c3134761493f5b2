#include "tests/soak/Witness.h"

#include "ui/ToggleSwitch.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QComboBox>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTextDocumentFragment>
#include <QThread>
#include <QWidget>
#include <QWindow>

#include <mutex>
#include <unordered_set>

#include <malloc.h>

// Qt's hooks for tools that track QObjects; the header that declares them is private.
extern Q_CORE_EXPORT quintptr qtHookData[]; // NOLINT(modernize-avoid-c-arrays)

namespace soak {

namespace {

constexpr int objectAdded = 3;
constexpr int objectRemoved = 4;

struct Living
{
    std::mutex guard;
    std::unordered_set<QObject *> objects;
};

Living &living()
{
    // Never destroyed: objects are removed until the very end of the program.
    static auto *const all = new Living;
    return *all;
}

void onAdded(QObject *object)
{
    const std::lock_guard<std::mutex> lock{living().guard};
    living().objects.insert(object);
}

void onRemoved(QObject *object)
{
    const std::lock_guard<std::mutex> lock{living().guard};
    living().objects.erase(object);
}

QWidget *widgetOf(const char *className)
{
    const QWidgetList all = QApplication::allWidgets();
    for (QWidget *const widget : all) {
        if (qstrcmp(widget->metaObject()->className(), className) == 0) {
            return widget;
        }
    }
    return nullptr;
}

QString textOf(const char *className)
{
    const auto *const label = static_cast<QLabel *>(widgetOf(className));
    return label != nullptr ? label->text() : QString{};
}

QString languages()
{
    QStringList tags;
    if (const QWidget *const page = widgetOf("ui::SettingsDialog")) {
        const auto *const combo = page->findChild<QComboBox *>();
        for (int row = 0; row < combo->count(); ++row) {
            tags += combo->itemData(row).toString();
        }
    }
    return tags.join(QLatin1Char{' '});
}

bool isVisible(const char *className)
{
    const QWidget *const widget = widgetOf(className);
    return widget != nullptr && widget->isVisible();
}

// The panel of the menu slides in.
bool isMenuOpen()
{
    const QWidget *const menu = widgetOf("ui::SideMenu");
    if (menu == nullptr || !menu->isVisible()) {
        return false;
    }
    const auto *const panel = menu->findChild<QWidget *>({}, Qt::FindDirectChildrenOnly);
    return panel != nullptr && panel->x() == 0;
}

} // namespace

Witness::Witness(const QString &path)
{
    auto *const server = new QLocalServer{this};
    server->listen(path);
    connect(server, &QLocalServer::newConnection, this, [server] {
        QLocalSocket *const socket = server->nextPendingConnection();
        connect(socket, &QLocalSocket::readyRead, socket, [socket] {
            while (socket->canReadLine()) {
                if (socket->readLine() == "trim\n") {
                    malloc_trim(0);
                }
                socket->write(QJsonDocument{testimony()}.toJson(QJsonDocument::Compact) + '\n');
                socket->flush();
            }
        });
    });
}

QJsonObject Witness::testimony()
{
    QJsonObject told;
    if (const QWidget *const found = widgetOf("ui::ToggleSwitch")) {
        const auto state = static_cast<const ui::ToggleSwitch *>(found)->state();
        told[QStringLiteral("state")] = static_cast<int>(state);
        const QRect place{found->mapTo(found->window(), QPoint{}), found->size()};
        told[QStringLiteral("switchTop")] = place.top();
        told[QStringLiteral("switchBottom")] = place.bottom();
    }
    told[QStringLiteral("pill")] = textOf("ui::PillLabel");
    told[QStringLiteral("status")] = textOf("ui::LiveLabel");
    told[QStringLiteral("menu")] = isMenuOpen();
    told[QStringLiteral("menuShows")] = isVisible("ui::SideMenu");
    told[QStringLiteral("settings")] = isVisible("ui::SettingsDialog");
    told[QStringLiteral("languages")] = languages();
    told[QStringLiteral("support")] = isVisible("ui::SupportDialog");

    told[QStringLiteral("buttonDown")] = QGuiApplication::mouseButtons() != Qt::NoButton;
    told[QStringLiteral("active")] = QApplication::activeWindow() != nullptr;
    const QWidget *const dialog = QApplication::activeModalWidget();
    if (dialog != nullptr) {
        const bool ready = dialog->isVisible() && dialog->isActiveWindow();
        told[QStringLiteral("dialog")] = QString::fromLatin1(dialog->metaObject()->className());
        told[QStringLiteral("dialogReady")] = ready;
        told[QStringLiteral("dialogWindow")] = static_cast<qint64>(dialog->internalWinId());
        const auto labels = dialog->findChildren<QWidget *>();
        for (const QWidget *const label : labels) {
            if (qstrcmp(label->metaObject()->className(), "ui::LinkLabel") == 0) {
                told[QStringLiteral("notice")] =
                    QTextDocumentFragment::fromHtml(static_cast<const QLabel *>(label)->text())
                        .toPlainText();
            }
        }
    }

    // Leaves out the timers of the pending answer, and those with which the caches of pixmaps and
    // fonts drop unused entries. The font cache has no class name of its own.
    const auto isCache = [](const QObject *object) {
        const char *const kind = object->metaObject()->className();
        return qstrcmp(kind, "QPMCache") == 0 || qstrcmp(kind, "QObject") == 0;
    };
    QJsonObject kinds;
    int timers = 0;
    {
        const std::lock_guard<std::mutex> lock{living().guard};
        const auto *const dispatcher = QAbstractEventDispatcher::instance();
        told[QStringLiteral("objects")] = static_cast<int>(living().objects.size());
        for (QObject *const object : living().objects) {
            if (object->thread() == QThread::currentThread()) {
                timers += isCache(object) ? 0 : dispatcher->registeredTimers(object).size();
                const QString kind = QString::fromLatin1(object->metaObject()->className());
                kinds[kind] = kinds[kind].toInt() + 1;
            }
        }
    }
    told[QStringLiteral("timers")] = timers;
    told[QStringLiteral("kinds")] = kinds;
    told[QStringLiteral("widgets")] = QApplication::allWidgets().size();
    told[QStringLiteral("windows")] = QGuiApplication::allWindows().size();
    return told;
}

QObject *WitnessPlugin::create(const QString & /*name*/, const QString &path)
{
    qtHookData[objectAdded] = reinterpret_cast<quintptr>(&onAdded);
    qtHookData[objectRemoved] = reinterpret_cast<quintptr>(&onRemoved);
    return new Witness{path};
}

} // namespace soak
