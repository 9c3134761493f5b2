#pragma once

#include "ui/ToggleSwitch.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace soak {

/// What the program said at one moment about what it shows and holds (see Witness).
struct Testimony
{
    explicit Testimony(const QJsonObject &told);

    ui::ToggleSwitch::State state;
    QString status;
    QString pill;
    /// The tags of the settings page, in its order.
    QStringList languages;
    /// The text of the notice that is open.
    QString notice;
    /// The class of the open dialog; empty if there is none, or Qt does not regard it as active
    /// yet.
    QString dialog;
    bool anyDialog;
    /// The dialog's X11 window; 0 if there is none.
    qulonglong dialogWindow;
    /// One of its windows has the focus.
    bool active;
    /// As far as the program has received the events.
    bool buttonDown;
    /// Slid in completely, and visible at all.
    bool menu;
    bool menuShows;
    bool settings;
    bool support;
    /// The rows of pixels that the switch covers.
    int switchTop;
    int switchBottom;

    int objects;
    int timers;
    int widgets;
    int windows;
    /// How many objects of each class.
    QJsonObject kinds;
};

} // namespace soak
