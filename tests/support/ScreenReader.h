#pragma once

#include "tests/support/Desktop.h"

#include <QString>
#include <QStringList>

#include <memory>

// The library's own names; its headers stay out of the tests.
// NOLINTBEGIN(bugprone-reserved-identifier)
struct _AtspiAccessible;
struct _AtspiEvent;
struct _AtspiEventListener;
// NOLINTEND(bugprone-reserved-identifier)

namespace support {

/// Reads and drives programs on a desktop as a screen reader does, over AT-SPI, with the library
/// that screen readers use (Debian: libatspi2.0-dev, at-spi2-core). A process can have only one.
///
/// It neither finds nor reads objects that are not showing.
class ScreenReader
{
public:
    /// An accessible object on the screen, for as long as it exists.
    using Thing = std::shared_ptr<_AtspiAccessible>;

    /// The desktop must have a session bus, and outlive this object.
    explicit ScreenReader(Desktop &desktop);
    ~ScreenReader();
    ScreenReader(const ScreenReader &) = delete;
    ScreenReader &operator=(const ScreenReader &) = delete;

    /// The program of this name; null as long as it is not on the bus.
    Thing program(const QString &name) const;

    /// Everything that has a name or can do something, in reading order, each as
    /// `role "name" (description) states: action`; an empty description is left out, and so are
    /// the states that everything has.
    QStringList read(const Thing &top) const;
    /// The first thing below `top` of this role, with this name unless that is null; null if there
    /// is none, or nothing above it.
    Thing find(const Thing &top, const QString &role, const QString &name = {}) const;

    QString name(const Thing &thing) const;
    QString description(const Thing &thing) const;
    /// Only states that a screen reader speaks, without those that everything has.
    QStringList states(const Thing &thing) const;
    /// Also for things that are no longer on the screen.
    bool isShowing(const Thing &thing) const;
    /// The text in a text field.
    QString content(const Thing &thing) const;
    /// The names of the things that label it.
    QStringList labels(const Thing &thing) const;
    /// Does the action; false if the thing has no such action.
    bool act(const Thing &thing, const QString &action) const;

    /// What has been announced since construction or the last forget(): `checked: check box "X"`,
    /// `not checked: ...`, `showing: notification "X"`, `name: push button "X"`.
    const QStringList &heard() const { return announcements; }
    void forget() { announcements.clear(); }

private:
    void announce();
    static void onEvent(_AtspiEvent *event, void *reader);
    void collect(const Thing &top, QStringList &lines) const;

    Desktop &desktop;
    _AtspiEventListener *listener = nullptr;
    QStringList announcements;
};

} // namespace support
