#include "ui/Overlay.h"

#include "ui/LiveLabel.h"

#include <QHideEvent>
#include <QShowEvent>

#include <algorithm>

namespace ui {

namespace {

QList<QWidget *> childrenOf(const QWidget *parent)
{
    return parent->findChildren<QWidget *>(QString{}, Qt::FindDirectChildrenOnly);
}

bool isVisibleOverlay(const QWidget *widget)
{
    return qobject_cast<const Overlay *>(widget) != nullptr && widget->isVisible();
}

} // namespace

Overlay::Overlay(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_StyledBackground, false);
    hide();
}

bool Overlay::isCovered(const QWidget *sibling)
{
    const QList<QWidget *> siblings = childrenOf(sibling->parentWidget());
    return std::any_of(siblings.begin(), siblings.end(), isVisibleOverlay);
}

void Overlay::cover()
{
    if (parentWidget() != nullptr) {
        setGeometry(parentWidget()->rect());
        raise();
    }
    show();
}

bool Overlay::focusNextPrevChild(bool next)
{
    // Qt moves the focus away from a widget that has been hidden by this call, too.
    if (!isVisible()) {
        return QWidget::focusNextPrevChild(next);
    }
    const auto neighbour = [next](const QWidget *widget) {
        return next ? widget->nextInFocusChain() : widget->previousInFocusChain();
    };
    const QWidget *const start = focusWidget();
    for (QWidget *widget = neighbour(start); widget != start; widget = neighbour(widget)) {
        if (isAncestorOf(widget) && widget->isVisible() && widget->isEnabled() &&
            (widget->focusPolicy() & Qt::TabFocus) != 0) {
            widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            break;
        }
    }
    // Otherwise Qt would ask the parent.
    return true;
}

void Overlay::showEvent(QShowEvent *event)
{
    notifySiblings(*event, QAccessible::ObjectHide);
}

void Overlay::hideEvent(QHideEvent *event)
{
    notifySiblings(*event, QAccessible::ObjectShow);
}

void Overlay::notifySiblings(const QEvent &cause, QAccessible::Event notification)
{
    // A spontaneous event belongs to the whole window, which is minimised or restored.
    if (cause.spontaneous() || parentWidget() == nullptr) {
        return;
    }
    QList<QWidget *> siblings = childrenOf(parentWidget());
    siblings.removeOne(this);
    if (std::any_of(siblings.begin(), siblings.end(), isVisibleOverlay)) {
        return;
    }
    for (QWidget *sibling : qAsConst(siblings)) {
        // A screen reader would read out a live label that appears, whether its text is new or not.
        if (auto *const label = qobject_cast<LiveLabel *>(sibling)) {
            label->setCovered(notification == QAccessible::ObjectHide);
        } else if (QAccessible::isActive() && sibling->isVisible()) {
            QAccessibleEvent event{sibling, notification};
            QAccessible::updateAccessibility(&event);
        }
    }
}

} // namespace ui
