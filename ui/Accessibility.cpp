#include "ui/Accessibility.h"

#include "ui/LinkLabel.h"
#include "ui/LiveLabel.h"
#include "ui/Overlay.h"
#include "ui/ToggleSwitch.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QLabel>
#include <QMainWindow>
#include <QToolButton>
#include <QUrl>

namespace ui::accessibility {

namespace {

bool isOnMainScreen(const QWidget *widget)
{
    const auto *const window = qobject_cast<QMainWindow *>(widget->window());
    return window != nullptr && window->centralWidget() == widget->parentWidget();
}

/// A part of the main screen, which an overlay can cover.
class MainScreenPart : public QAccessibleWidget
{
public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.invisible =
            state.invisible || (isOnMainScreen(widget()) && Overlay::isCovered(widget()));
        return state;
    }
};

class Text : public MainScreenPart
{
public:
    explicit Text(QLabel *label)
        : MainScreenPart(label)
    {}

    QAccessible::State state() const override
    {
        QAccessible::State state = MainScreenPart::state();
        state.readOnly = true;
        return state;
    }

    QAccessible::Role role() const override
    {
        return qobject_cast<LiveLabel *>(object()) != nullptr ? QAccessible::Notification
                                                              : QAccessible::StaticText;
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? static_cast<QLabel *>(widget())->text()
                                         : MainScreenPart::text(kind);
    }
};

class MenuButton : public MainScreenPart
{
public:
    explicit MenuButton(QToolButton *button)
        : MainScreenPart(button, QAccessible::ButtonMenu)
    {}

    QAccessible::State state() const override
    {
        QAccessible::State state = MainScreenPart::state();
        state.hasPopup = true;
        return state;
    }

    QStringList actionNames() const override
    {
        return QStringList{pressAction()} + MainScreenPart::actionNames();
    }

    void doAction(const QString &name) override
    {
        if (name != pressAction()) {
            MainScreenPart::doAction(name);
        } else if (!state().invisible) {
            static_cast<QToolButton *>(widget())->animateClick();
        }
    }
};

class Switch : public MainScreenPart
{
public:
    explicit Switch(ToggleSwitch *toggle)
        : MainScreenPart(toggle, QAccessible::CheckBox)
    {}

    QAccessible::State state() const override
    {
        const auto *const toggle = static_cast<ToggleSwitch *>(widget());
        QAccessible::State state = MainScreenPart::state();
        state.checkable = true;
        state.checked = toggle->isOn();
        state.busy = toggle->isChanging();
        state.disabled = state.disabled || toggle->isChanging();
        return state;
    }

    QStringList actionNames() const override { return {toggleAction()}; }

    void doAction(const QString &name) override
    {
        const QWidget *const dialog = QApplication::activeModalWidget();
        if (name == toggleAction() && !state().invisible && !state().disabled &&
            (dialog == nullptr || dialog == widget()->window())) {
            Q_EMIT static_cast<ToggleSwitch *>(widget())->toggled();
        }
    }
};

class ModalDialog : public QAccessibleWidget
{
public:
    explicit ModalDialog(QDialog *dialog)
        : QAccessibleWidget(dialog, QAccessible::Dialog)
    {}

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = widget()->isModal();
        return state;
    }
};

class Link : public QAccessibleWidget
{
public:
    explicit Link(LinkLabel *label)
        : QAccessibleWidget(label, QAccessible::Link)
    {}

    QStringList actionNames() const override
    {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &name) override
    {
        if (name != pressAction()) {
            QAccessibleWidget::doAction(name);
        } else if (widget()->isVisible()) {
            QDesktopServices::openUrl(QUrl{static_cast<LinkLabel *>(widget())->address()});
        }
    }
};

QAccessibleInterface *make(const QString & /*className*/, QObject *object)
{
    if (auto *const toggle = qobject_cast<ToggleSwitch *>(object)) {
        return new Switch{toggle};
    }
    if (auto *const label = qobject_cast<LiveLabel *>(object)) {
        return new Text{label};
    }
    if (auto *const link = qobject_cast<LinkLabel *>(object)) {
        return link->address().isEmpty() ? nullptr : new Link{link};
    }
    if (auto *const dialog = qobject_cast<QDialog *>(object)) {
        return new ModalDialog{dialog};
    }
    if (auto *const overlay = qobject_cast<Overlay *>(object)) {
        return new QAccessibleWidget{overlay, QAccessible::Grouping};
    }
    auto *const widget = qobject_cast<QWidget *>(object);
    if (widget == nullptr || !isOnMainScreen(widget)) {
        return nullptr;
    }
    if (auto *const label = qobject_cast<QLabel *>(object)) {
        return new Text{label};
    }
    if (auto *const button = qobject_cast<QToolButton *>(object)) {
        return new MenuButton{button};
    }
    return new MainScreenPart{widget};
}

} // namespace

void install()
{
    QAccessible::installFactory(&make);
}

} // namespace ui::accessibility
