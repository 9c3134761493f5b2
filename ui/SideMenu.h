#pragma once

#include "ui/Overlay.h"

class QPropertyAnimation;

namespace ui {

class MenuItem;

/// The menu that slides in from the left over the whole of its parent: a dark background and a
/// panel with its rows.
///
/// It reports the user's choice and opens nothing itself. A row first closes the menu and then
/// reports, so that the owner's page opens over a closing menu. No key closes the menu.
class SideMenu : public Overlay
{
    Q_OBJECT

public:
    explicit SideMenu(QWidget *parent = nullptr);

    /// Covers the parent and slides in from the edge. Without a parent it does nothing.
    void openMenu();
    /// Slides out from the present position and hides the menu.
    void closeMenu();
    /// Sets the texts in the current language and fits the panel's width.
    void retranslate();

Q_SIGNALS:
    void settingsRequested();
    void referralRequested();
    void supportRequested();
    void exitRequested();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QRect panelRect(bool shown) const;
    void fitPanel();
    void placePanel();
    void slide(bool opening, const QRect &from);

    QWidget *panel;
    QList<MenuItem *> items;
    QPropertyAnimation *anim;
    int panelWidth = 0;
    bool open = false;
};

} // namespace ui
