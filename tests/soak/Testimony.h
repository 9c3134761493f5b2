#pragma once

#include "ui/ToggleSwitch.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace soak {

/// What the program said at one moment about what it shows and holds (see Witness).
struct Testimony
{
    explicit Testimony(const QJsonObject &told);

    ui::ToggleSwitch::State state;
    QString status;
    QString pill;
    /// The text of the notice that is open.
    QString notice;
    /// The class of the open dialog; empty if there is none, or it does not yet believe that it has
    /// the keyboard.
    QString dialog;
    bool anyDialog;
    /// As the display server calls it; 0 if there is none.
    qulonglong dialogWindow;
    /// One of its windows has the keyboard.
    bool active;
    /// As far as it has heard.
    bool buttonDown;
    /// Wholly open, and there at all.
    bool menu;
    bool menuShows;
    bool settings;
    bool support;
    /// Rows of the window that the switch takes.
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
