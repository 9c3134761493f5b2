#pragma once

#include <QAccessible>
#include <QWidget>

namespace ui {

/// A child that covers the whole of its parent while it is shown: the side menu and the pages.
///
/// Focus stays on a visible overlay: Tab goes round among its own widgets. Assistive technology is
/// told that the covered siblings have gone, and that they are back when no overlay is left. It
/// would read out live labels that come back, so of these it is told only what has changed.
class Overlay : public QWidget
{
    Q_OBJECT

public:
    /// Hidden at first.
    explicit Overlay(QWidget *parent);

    /// True if a visible overlay covers this sibling of the overlay.
    static bool isCovered(const QWidget *sibling);

protected:
    /// Takes the parent's present size, comes to the front and is shown.
    void cover();

    bool focusNextPrevChild(bool next) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void notifySiblings(const QEvent &cause, QAccessible::Event notification);
};

} // namespace ui
