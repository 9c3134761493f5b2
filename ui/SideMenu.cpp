#include "ui/SideMenu.h"

#include "ui/MenuItem.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPropertyAnimation>
#include <QVBoxLayout>

#include <algorithm>

namespace ui {

namespace {

constexpr int slideMs = 180;
constexpr qint32 initialPanelWidth = 200;
constexpr int narrowestPanel = 170;
constexpr int uncoveredStrip = 40;
constexpr int panelPadding = 14;
constexpr int overlayAlpha = 110;
constexpr QRgb panelRgb = qRgb(35, 37, 72);

} // namespace

SideMenu::SideMenu(QWidget *parent)
    : Overlay(parent)
    , panelWidth(initialPanelWidth)
{
    setFocusPolicy(Qt::StrongFocus);

    panel = new QWidget{this};
    QPalette colours = panel->palette();
    colours.setColor(QPalette::Window, QColor{panelRgb});
    panel->setPalette(colours);
    panel->setAutoFillBackground(true);

    settingsItem = new MenuItem{MenuItem::Gear, tr("Settings"), panel};
    referralItem = new MenuItem{MenuItem::Key, tr("Referral Code"), panel};
    supportItem = new MenuItem{MenuItem::Envelope, tr("Support"), panel};
    exitItem = new MenuItem{MenuItem::Door, tr("Exit"), panel};

    auto *const rows = new QVBoxLayout{panel};
    rows->setContentsMargins(0, panelPadding, 0, panelPadding);
    rows->setSpacing(0);
    rows->addWidget(settingsItem);
    rows->addWidget(referralItem);
    rows->addWidget(supportItem);
    rows->addStretch(1);
    rows->addWidget(exitItem);

    const auto report = [this](MenuItem *row, void (SideMenu::*request)()) {
        connect(row, &MenuItem::clicked, this, [this, request] {
            closeMenu();
            Q_EMIT(this->*request)();
        });
    };
    report(settingsItem, &SideMenu::settingsRequested);
    report(referralItem, &SideMenu::referralRequested);
    report(supportItem, &SideMenu::supportRequested);
    report(exitItem, &SideMenu::exitRequested);

    anim = new QPropertyAnimation{panel, "geometry", this};
    anim->setDuration(slideMs);
    anim->setEasingCurve(QEasingCurve::OutCubic);

    nameForReaders();
    fitPanel();
}

void SideMenu::openMenu()
{
    if (parentWidget() == nullptr) {
        return;
    }
    cover();
    fitPanel();
    open = true;

    anim->stop();
    anim->setStartValue(panelRect(false));
    anim->setEndValue(panelRect(true));
    anim->start();
    setFocus();
}

void SideMenu::closeMenu()
{
    if (!open) {
        return;
    }
    open = false;

    anim->stop();
    anim->setStartValue(panel->geometry());
    anim->setEndValue(panelRect(false));
    disconnect(anim, &QPropertyAnimation::finished, this, nullptr);
    connect(anim, &QPropertyAnimation::finished, this, [this] {
        if (!open) {
            hide();
        }
    });
    anim->start();
}

void SideMenu::retranslate()
{
    settingsItem->setLabel(tr("Settings"));
    referralItem->setLabel(tr("Referral Code"));
    supportItem->setLabel(tr("Support"));
    exitItem->setLabel(tr("Exit"));
    nameForReaders();
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
    QPainter{this}.fillRect(rect(), QColor{0, 0, 0, overlayAlpha});
}

void SideMenu::resizeEvent(QResizeEvent * /*event*/)
{
    placePanel();
}

QRect SideMenu::panelRect(bool shown) const
{
    return {shown ? 0 : -panelWidth, 0, panelWidth, height()};
}

void SideMenu::nameForReaders()
{
    const QStringList names{settingsItem->text(), referralItem->text(), supportItem->text(),
                            exitItem->text()};
    setAccessibleName(names.join(QLatin1String{", "}));
}

void SideMenu::fitPanel()
{
    int width = 0;
    for (const MenuItem *row : {settingsItem, referralItem, supportItem, exitItem}) {
        width = std::max(width, row->sizeHint().width());
    }
    width = std::max(width, narrowestPanel);
    if (parentWidget() != nullptr) {
        width = std::min(width, parentWidget()->width() - uncoveredStrip);
    }
    panelWidth = width;
    placePanel();
}

void SideMenu::placePanel()
{
    panel->setGeometry(panelRect(open));
    // Where a slide that is under way has to end now.
    anim->setEndValue(panelRect(open));
}

} // namespace ui
