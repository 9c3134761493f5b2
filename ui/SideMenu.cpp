#include "ui/SideMenu.h"

#include "ui/MenuItem.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPropertyAnimation>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace ui {

namespace {

struct Row
{
    MenuItem::Kind icon;
    const char *text;
    void (SideMenu::*request)();
};

// The last row is at the bottom of the panel.
constexpr std::array rows{
    Row{MenuItem::Gear, QT_TRANSLATE_NOOP("ui::SideMenu", "Settings"),
        &SideMenu::settingsRequested},
    Row{MenuItem::Key, QT_TRANSLATE_NOOP("ui::SideMenu", "Referral Code"),
        &SideMenu::referralRequested},
    Row{MenuItem::Envelope, QT_TRANSLATE_NOOP("ui::SideMenu", "Support"),
        &SideMenu::supportRequested},
    Row{MenuItem::Door, QT_TRANSLATE_NOOP("ui::SideMenu", "Exit"), &SideMenu::exitRequested},
};

} // namespace

SideMenu::SideMenu(QWidget *parent)
    : Overlay(parent)
{
    setFocusPolicy(Qt::StrongFocus);

    panel = new QWidget{this};
    QPalette colours = panel->palette();
    colours.setColor(QPalette::Window, QColor{35, 37, 72});
    panel->setPalette(colours);
    panel->setAutoFillBackground(true);

    auto *const column = new QVBoxLayout{panel};
    column->setContentsMargins(0, 14, 0, 14);
    column->setSpacing(0);
    for (const Row &row : rows) {
        auto *const item = new MenuItem{row.icon, {}, panel};
        items.append(item);
        column->addWidget(item);
        connect(item, &MenuItem::clicked, this, [this, &row] {
            closeMenu();
            Q_EMIT(this->*row.request)();
        });
    }
    column->insertStretch(column->count() - 1, 1);

    anim = new QPropertyAnimation{panel, "geometry", this};
    anim->setDuration(180);
    anim->setEasingCurve(QEasingCurve::OutCubic);
    connect(anim, &QPropertyAnimation::finished, this, [this] { setVisible(open); });

    retranslate();
}

void SideMenu::openMenu()
{
    if (parentWidget() == nullptr) {
        return;
    }
    cover();
    fitPanel();
    slide(true, panelRect(false));
    setFocus();
}

void SideMenu::closeMenu()
{
    if (open) {
        slide(false, panel->geometry());
    }
}

void SideMenu::retranslate()
{
    QStringList names;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        names.append(tr(rows.at(i).text));
        items.at(static_cast<int>(i))->setLabel(names.constLast());
    }
    // The menu has no title: a screen reader reads out what it offers.
    setAccessibleName(names.join(QLatin1String{", "}));
    fitPanel();
}

void SideMenu::mousePressEvent(QMouseEvent *event)
{
    if (!panel->geometry().contains(event->pos())) {
        closeMenu();
    }
}

void SideMenu::paintEvent(QPaintEvent * /*event*/)
{
    QPainter{this}.fillRect(rect(), QColor{0, 0, 0, 110});
}

void SideMenu::resizeEvent(QResizeEvent * /*event*/)
{
    placePanel();
}

QRect SideMenu::panelRect(bool shown) const
{
    return {shown ? 0 : -panelWidth, 0, panelWidth, height()};
}

void SideMenu::fitPanel()
{
    panelWidth = 170;
    for (const MenuItem *item : qAsConst(items)) {
        panelWidth = std::max(panelWidth, item->sizeHint().width());
    }
    if (parentWidget() != nullptr) {
        panelWidth = std::min(panelWidth, parentWidget()->width() - 40);
    }
    placePanel();
}

void SideMenu::placePanel()
{
    panel->setGeometry(panelRect(open));
    // A running slide ends at the new place.
    anim->setEndValue(panelRect(open));
}

void SideMenu::slide(bool opening, const QRect &from)
{
    open = opening;
    anim->stop();
    anim->setStartValue(from);
    anim->setEndValue(panelRect(open));
    anim->start();
}

} // namespace ui
