#include "ui/ScreenCover.h"

#include <QAccessible>
#include <QEvent>
#include <QWidget>

#include <algorithm>

namespace ui {

ScreenCover::ScreenCover(QWidget *screen_)
    : QObject(screen_)
    , screen(screen_)
{}

void ScreenCover::addOverlay(QWidget *overlay)
{
    overlays.append(overlay);
    overlay->installEventFilter(this);
}

ScreenCover *ScreenCover::over(const QWidget *part)
{
    const QWidget *const parent = part->parentWidget();
    if (parent == nullptr) {
        return nullptr;
    }
    auto *const cover = parent->findChild<ScreenCover *>({}, Qt::FindDirectChildrenOnly);
    return cover != nullptr && cover->overlays.contains(part) ? nullptr : cover;
}

bool ScreenCover::isClosed() const
{
    return std::any_of(overlays.begin(), overlays.end(),
                       [](const QWidget *overlay) { return overlay->isVisible(); });
}

bool ScreenCover::eventFilter(QObject *watched, QEvent *event)
{
    const bool comes = event->type() == QEvent::Show;
    // A spontaneous one is the whole window's, which is minimised or restored.
    if (!QAccessible::isActive() || event->spontaneous() ||
        (!comes && event->type() != QEvent::Hide)) {
        return QObject::eventFilter(watched, event);
    }
    const auto others = std::count_if(overlays.begin(), overlays.end(), [&](const QWidget *each) {
        return each != watched && each->isVisible();
    });
    const auto parts = screen->findChildren<QWidget *>(QString{}, Qt::FindDirectChildrenOnly);
    for (QWidget *part : parts) {
        if (others == 0 && part->isVisible() && !overlays.contains(part)) {
            QAccessibleEvent news{part, comes ? QAccessible::ObjectHide : QAccessible::ObjectShow};
            QAccessible::updateAccessibility(&news);
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace ui
