#include <atspi/atspi.h>

#include "tests/support/ScreenReader.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

#include <array>
#include <utility>
#include <vector>

namespace support {

namespace {

using Thing = ScreenReader::Thing;

// A program that takes longer hangs.
constexpr int patienceMs = 120'000;

/// Ignores errors, since a thing may go away while it is read.
class Ignored
{
public:
    ~Ignored() { g_clear_error(&error); }
    operator GError **() { return &error; }

private:
    GError *error = nullptr;
};

Thing owned(AtspiAccessible *accessible)
{
    return accessible == nullptr ? Thing{} : Thing{accessible, &g_object_unref};
}

QString owned(char *text)
{
    QString result = QString::fromUtf8(text);
    g_free(text);
    return result;
}

// libatspi's own names of roles change between its releases.
QString roleOf(const Thing &thing)
{
    switch (atspi_accessible_get_role(thing.get(), Ignored{})) {
    case ATSPI_ROLE_APPLICATION:
        return QStringLiteral("application");
    case ATSPI_ROLE_CHECK_BOX:
        return QStringLiteral("check box");
    case ATSPI_ROLE_COMBO_BOX:
        return QStringLiteral("combo box");
    case ATSPI_ROLE_DIALOG:
        return QStringLiteral("dialog");
    case ATSPI_ROLE_FILLER:
        return QStringLiteral("filler");
    case ATSPI_ROLE_FRAME:
        return QStringLiteral("frame");
    case ATSPI_ROLE_LABEL:
        return QStringLiteral("label");
    case ATSPI_ROLE_LINK:
        return QStringLiteral("link");
    case ATSPI_ROLE_LIST:
        return QStringLiteral("list");
    case ATSPI_ROLE_LIST_ITEM:
        return QStringLiteral("list item");
    case ATSPI_ROLE_NOTIFICATION:
        return QStringLiteral("notification");
    case ATSPI_ROLE_PANEL:
        return QStringLiteral("panel");
    case ATSPI_ROLE_PUSH_BUTTON:
        return QStringLiteral("push button");
    case ATSPI_ROLE_TEXT:
        return QStringLiteral("text");
    default:
        return QStringLiteral("something else");
    }
}

bool has(const Thing &thing, AtspiStateType state)
{
    AtspiStateSet *set = thing == nullptr ? nullptr : atspi_accessible_get_state_set(thing.get());
    const bool contains = set != nullptr && atspi_state_set_contains(set, state) != FALSE;
    g_clear_object(&set);
    return contains;
}

std::vector<Thing> childrenOf(const Thing &thing)
{
    std::vector<Thing> children;
    const int count = atspi_accessible_get_child_count(thing.get(), Ignored{});
    for (int i = 0; i < count; ++i) {
        if (Thing child = owned(atspi_accessible_get_child_at_index(thing.get(), i, Ignored{}))) {
            children.push_back(std::move(child));
        }
    }
    return children;
}

std::shared_ptr<AtspiAction> actionsOf(const Thing &thing)
{
    return {thing == nullptr ? nullptr : atspi_accessible_get_action_iface(thing.get()),
            [](AtspiAction *actions) {
                if (actions != nullptr) {
                    g_object_unref(actions);
                }
            }};
}

QStringList actionNames(const Thing &thing)
{
    QStringList names;
    if (const auto actions = actionsOf(thing)) {
        const int count = atspi_action_get_n_actions(actions.get(), Ignored{});
        for (int i = 0; i < count; ++i) {
            names += owned(atspi_action_get_action_name(actions.get(), i, Ignored{}));
        }
    }
    return names;
}

} // namespace

ScreenReader::ScreenReader(Desktop &desktop_)
    : desktop(desktop_)
{
    desktop.start(QStringLiteral("/usr/libexec/at-spi-bus-launcher"),
                  {QStringLiteral("--launch-immediately")});
    const QString session = QStringLiteral("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", desktop.environment().value(session).toLocal8Bit());
    announce();
    if (atspi_init() != 0) {
        qFatal("There is no accessibility bus");
    }
    atspi_set_timeout(patienceMs, patienceMs);
    listener = atspi_event_listener_new(&onEvent, this, nullptr);
    for (const char *kind : {"object:state-changed", "object:property-change"}) {
        atspi_event_listener_register(listener, kind, Ignored{});
    }
}

ScreenReader::~ScreenReader()
{
    g_object_unref(listener);
    atspi_exit();
}

void ScreenReader::announce()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"));
    call << QStringLiteral("org.a11y.Status") << QStringLiteral("IsEnabled")
         << QVariant::fromValue(QDBusVariant{true});
    const QString name = QStringLiteral("screen reader");
    auto bus = QDBusConnection::connectToBus(
        desktop.environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")), name);
    if (!waitFor([&] { return bus.call(call).type() == QDBusMessage::ReplyMessage; })) {
        qFatal("The accessibility bus does not come up: %s", qPrintable(bus.lastError().message()));
    }
    QDBusConnection::disconnectFromBus(name);
}

Thing ScreenReader::program(const QString &name_) const
{
    const Thing all = owned(atspi_get_desktop(0));
    for (const Thing &each : childrenOf(all)) {
        if (name(each) == name_) {
            // The events of a program would not keep all of libatspi's cache up to date.
            atspi_accessible_set_cache_mask(each.get(), ATSPI_CACHE_NONE);
            return each;
        }
    }
    return {};
}

QStringList ScreenReader::read(const Thing &top) const
{
    QStringList lines;
    collect(top, lines);
    return lines;
}

void ScreenReader::collect(const Thing &top, QStringList &lines) const
{
    const QString role = roleOf(top);
    const QString named = name(top);
    const QString described = description(top);
    const QStringList actions = actionNames(top);
    if (role != QLatin1String{"application"} && (!named.isEmpty() || !actions.isEmpty())) {
        QString line = QStringLiteral("%1 \"%2\"").arg(role, named);
        if (!described.isEmpty()) {
            line += QStringLiteral(" (%1)").arg(described);
        }
        for (const QString &state : states(top)) {
            line += QLatin1Char{' '} + state;
        }
        if (!actions.isEmpty()) {
            line += QLatin1String{": "} + actions.join(QLatin1String{", "});
        }
        lines += line;
    }
    for (const Thing &child : childrenOf(top)) {
        if (isShowing(child)) {
            collect(child, lines);
        }
    }
}

Thing ScreenReader::find(const Thing &top, const QString &role, const QString &named) const
{
    for (const Thing &child : top == nullptr ? std::vector<Thing>{} : childrenOf(top)) {
        if (!isShowing(child)) {
            continue;
        }
        if (roleOf(child) == role && (named.isNull() || name(child) == named)) {
            return child;
        }
        if (Thing found = find(child, role, named)) {
            return found;
        }
    }
    return {};
}

QString ScreenReader::name(const Thing &thing) const
{
    return owned(atspi_accessible_get_name(thing.get(), Ignored{}));
}

QString ScreenReader::description(const Thing &thing) const
{
    return owned(atspi_accessible_get_description(thing.get(), Ignored{}));
}

QStringList ScreenReader::states(const Thing &thing) const
{
    struct Spoken
    {
        AtspiStateType state;
        bool when;
        const char *word;
    };
    constexpr std::array spoken{
        Spoken{ATSPI_STATE_CHECKED, true, "checked"},
        Spoken{ATSPI_STATE_BUSY, true, "busy"},
        Spoken{ATSPI_STATE_ENABLED, false, "disabled"},
        Spoken{ATSPI_STATE_SENSITIVE, false, "insensitive"},
        Spoken{ATSPI_STATE_FOCUSED, true, "focused"},
        Spoken{ATSPI_STATE_MODAL, true, "modal"},
    };
    QStringList words;
    for (const Spoken &each : spoken) {
        if (has(thing, each.state) == each.when) {
            words += QString{QLatin1String{each.word}};
        }
    }
    return words;
}

bool ScreenReader::isShowing(const Thing &thing) const
{
    return has(thing, ATSPI_STATE_SHOWING) && has(thing, ATSPI_STATE_VISIBLE);
}

QString ScreenReader::content(const Thing &thing) const
{
    const std::unique_ptr<AtspiText, decltype(&g_object_unref)> text{
        atspi_accessible_get_text_iface(thing.get()), &g_object_unref};
    return text == nullptr ? QString{} : owned(atspi_text_get_text(text.get(), 0, -1, Ignored{}));
}

QStringList ScreenReader::labels(const Thing &thing) const
{
    QStringList names;
    GArray *const relations = atspi_accessible_get_relation_set(thing.get(), Ignored{});
    for (guint i = 0; relations != nullptr && i < relations->len; ++i) {
        AtspiRelation *const relation = g_array_index(relations, AtspiRelation *, i);
        if (atspi_relation_get_relation_type(relation) == ATSPI_RELATION_LABELLED_BY) {
            for (int j = 0; j < atspi_relation_get_n_targets(relation); ++j) {
                names += name(owned(atspi_relation_get_target(relation, j)));
            }
        }
        g_object_unref(relation);
    }
    if (relations != nullptr) {
        g_array_free(relations, TRUE);
    }
    return names;
}

bool ScreenReader::act(const Thing &thing, const QString &action) const
{
    const int index = actionNames(thing).indexOf(action);
    return index >= 0 && atspi_action_do_action(actionsOf(thing).get(), index, Ignored{}) != FALSE;
}

void ScreenReader::onEvent(AtspiEvent *event, void *reader)
{
    const QString type = QString::fromUtf8(event->type);
    const QString kind = type.section(QLatin1Char{':'}, -1);
    QString word;
    if (type.startsWith(QLatin1String{"object:state-changed:"})) {
        word = event->detail1 != 0 ? kind : QLatin1String{"not "} + kind;
    } else {
        word = kind.section(QLatin1Char{'-'}, -1);
    }
    const Thing source{ATSPI_ACCESSIBLE(g_object_ref(event->source)), &g_object_unref};
    auto *const self = static_cast<ScreenReader *>(reader);
    self->announcements +=
        QStringLiteral("%1: %2 \"%3\"").arg(word, roleOf(source), self->name(source));
    g_boxed_free(ATSPI_TYPE_EVENT, event);
}

} // namespace support
