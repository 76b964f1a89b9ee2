#include "workspaces/dock/DockWindow.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QToolTip>
#include <algorithm>

#include "app/AppDelegate.h"
#include "library/DockData.h"
#include "library/Notifications.h"
#include "library/Preferences.h"
#include "library/User.h"
#include "workspaces/common/Swatch.h"
#include "workspaces/common/WorkspaceSticky.h"
#include "workspaces/dock/Compositing.h"

namespace kro {
namespace {

constexpr int kSwatch = 22;
constexpr int kGap = 4;
constexpr int kPaletteGap = 10;
constexpr int kPad = 6;
constexpr int kHandle = 12;
// Colours of one palette past this many are left out of the strip; the library window shows them all.
constexpr int kMaxColors = 16;
constexpr int kEdgeMargin = 8;

}  // namespace

DockWindow::DockWindow(AppDelegate* delegate, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus),
      delegate_(delegate) {
    setWindowTitle("Kro Color Dock");
    setAccessibleName("Color dock");
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    observers_.on({Notifications::userUpdated, Notifications::userCloudMerged, Notifications::userLoaded,
                   Notifications::colorUpdated},
                  [this] {
                      if (isVisible()) present();
                  });
}

bool DockWindow::vertical() const {
    const auto position = DockData::shared().position();
    return position == DockWindowPosition::left || position == DockWindowPosition::right;
}

std::vector<std::string> DockWindow::shownPalettes() const {
    std::vector<std::string> shown;
    for (const auto& row : rows_) shown.push_back(row.uuid);
    return shown;
}

ColorRef DockWindow::colorAt(const QPoint& point) const {
    for (const auto& cell : cells_) {
        if (cell.rect.contains(point)) return cell.color;
    }
    return nullptr;
}

QRect DockWindow::swatchRect(const std::string& colorUUID) const {
    for (const auto& cell : cells_) {
        if (cell.color->uuid == colorUUID) return cell.rect;
    }
    return {};
}

void DockWindow::relayout() {
    rows_.clear();
    cells_.clear();
    const auto& hidden = DockData::shared().dockHiddenPalettes();
    const bool down = vertical();
    // Each palette is one line along the dock's edge; lines stand side by side across it.
    int across = kPad;
    const int alongStart = kPad + kHandle + kGap;
    int longest = 0;
    for (const auto& palette : User::shared()->palettes) {
        if (std::find(hidden.begin(), hidden.end(), palette->uuid) != hidden.end() || palette->colors.empty()) continue;
        const int count = std::min<int>(int(palette->colors.size()), kMaxColors);
        for (int i = 0; i < count; ++i) {
            const int along = alongStart + i * (kSwatch + kGap);
            const QRect rect = down ? QRect(across, along, kSwatch, kSwatch) : QRect(along, across, kSwatch, kSwatch);
            cells_.push_back({rect, palette->colors[size_t(i)]});
        }
        const int length = count * (kSwatch + kGap) - kGap;
        longest = std::max(longest, length);
        const QRect line = down ? QRect(across, alongStart, kSwatch, length) : QRect(alongStart, across, length, kSwatch);
        rows_.push_back({line, palette->uuid, QString::fromStdString(palette->name.value_or("Palette"))});
        across += kSwatch + kPaletteGap;
    }
    const int thickness = std::max(across - kPaletteGap + kPad, kSwatch + 2 * kPad);
    const int length = alongStart + std::max(longest, kSwatch) + kPad;
    handle_ = down ? QRect(kPad, kPad, thickness - 2 * kPad, kHandle) : QRect(kPad, kPad, kHandle, thickness - 2 * kPad);
    setFixedSize(down ? QSize(thickness, length) : QSize(length, thickness));
    setAccessibleDescription(rows_.empty() ? "No palettes to show" : QString("%1 palettes").arg(rows_.size()));
    update();
}

QSize DockWindow::sizeHint() const { return size(); }

void DockWindow::place() {
    const auto& dock = DockData::shared();
    const auto screens = QGuiApplication::screens();
    if (screens.isEmpty()) return;
    const int index = std::clamp(dock.screenIndex().value_or(0), 0, int(screens.size()) - 1);
    const QRect area = screens[index]->availableGeometry();
    QPoint at;
    if (dock.posX() && dock.posY()) {
        // Where it was dragged to, kept on the desktop should the screens have changed since.
        QRect desktop;
        for (const auto* screen : screens) desktop |= screen->availableGeometry();
        at = QPoint(std::clamp(int(*dock.posX()), desktop.left(), std::max(desktop.left(), desktop.right() - width())),
                    std::clamp(int(*dock.posY()), desktop.top(), std::max(desktop.top(), desktop.bottom() - height())));
    } else {
        switch (dock.position()) {
            case DockWindowPosition::left: at = {area.left() + kEdgeMargin, area.center().y() - height() / 2}; break;
            case DockWindowPosition::right: at = {area.right() - width() - kEdgeMargin, area.center().y() - height() / 2}; break;
            case DockWindowPosition::top: at = {area.center().x() - width() / 2, area.top() + kEdgeMargin}; break;
            case DockWindowPosition::bottom: at = {area.center().x() - width() / 2, area.bottom() - height() - kEdgeMargin}; break;
        }
    }
    move(at);
}

void DockWindow::matchCompositing() {
    // Rounded corners need transparent pixels around them, which only a compositing desktop shows; without
    // one they would come out black, so the strip is square and opaque. A translucent window needs a visual
    // with alpha, chosen when its native window is made: a change makes that window again.
    const bool composited = desktopComposites();
    if (composited == testAttribute(Qt::WA_TranslucentBackground)) return;
    if (testAttribute(Qt::WA_WState_Created)) destroy();
    setAttribute(Qt::WA_TranslucentBackground, composited);
}

void DockWindow::present() {
    if (!isVisible()) matchCompositing();
    relayout();
    place();
    if (!isVisible()) {
        setOnAllWorkspaces(*this, Preferences::shared().dockAllSpaces());
        show();
    }
    setOnAllWorkspaces(*this, Preferences::shared().dockAllSpaces());
    raise();
}

void DockWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath frame;
    const qreal radius = testAttribute(Qt::WA_TranslucentBackground) ? 8 : 0;
    frame.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.fillPath(frame, palette().color(QPalette::Window));
    QColor edge = palette().color(QPalette::WindowText);
    edge.setAlphaF(0.3f);
    painter.setPen(QPen(edge, 1));
    painter.drawPath(frame);

    // The grip: three short bars across the handle.
    QColor grip = palette().color(QPalette::WindowText);
    grip.setAlphaF(0.45f);
    painter.setPen(QPen(grip, 1.5, Qt::SolidLine, Qt::RoundCap));
    const QPointF middle = QRectF(handle_).center();
    for (int i = -1; i <= 1; ++i) {
        if (vertical()) {
            painter.drawLine(QPointF(middle.x() - 6, middle.y() + i * 3), QPointF(middle.x() + 6, middle.y() + i * 3));
        } else {
            painter.drawLine(QPointF(middle.x() + i * 3, middle.y() - 6), QPointF(middle.x() + i * 3, middle.y() + 6));
        }
    }
    for (const auto& cell : cells_) paintSwatch(painter, cell.rect, displayColor(*cell.color), palette(), 4);
}

void DockWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    dragging_ = handle_.adjusted(-kPad, -kPad, kPad, kPad).contains(event->position().toPoint()) || !colorAt(event->position().toPoint());
    moved_ = false;
    dragOffset_ = event->globalPosition().toPoint() - pos();
}

void DockWindow::mouseMoveEvent(QMouseEvent* event) {
    if (dragging_ && (event->buttons() & Qt::LeftButton)) {
        moved_ = true;
        move(event->globalPosition().toPoint() - dragOffset_);
        return;
    }
    const auto color = colorAt(event->position().toPoint());
    setToolTip(color ? QString::fromStdString(color->name.value_or("") + "  #" + color->hex) : QString());
}

void DockWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    if (dragging_) {
        dragging_ = false;
        if (!moved_) return;
        // The dragged place is kept, on the screen the dock now stands on.
        auto& dock = DockData::shared();
        const auto screens = QGuiApplication::screens();
        const int index = int(screens.indexOf(QGuiApplication::screenAt(geometry().center())));
        if (index >= 0 && dock.screenIndex() != index) dock.setScreenIndex(index);
        dock.setPosX(double(x()));
        dock.setPosY(double(y()));
        return;
    }
    if (auto color = colorAt(event->position().toPoint()); color && delegate_) {
        delegate_->copyColor(color, true, ColorDeliveryTarget::clipboard);
    }
}

void DockWindow::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    auto& dock = DockData::shared();
    for (const auto& row : rows_) {
        if (!row.rect.adjusted(-kGap, -kGap, kGap, kGap).contains(event->pos())) continue;
        menu.addAction("Hide “" + row.name + "” in the Dock", [uuid = row.uuid] {
            auto hidden = DockData::shared().dockHiddenPalettes();
            hidden.push_back(uuid);
            DockData::shared().setDockHiddenPalettes(hidden);
        });
    }
    auto* edges = menu.addMenu("Position");
    const std::pair<const char*, DockWindowPosition> positions[] = {{"Left", DockWindowPosition::left},
                                                                    {"Top", DockWindowPosition::top},
                                                                    {"Right", DockWindowPosition::right},
                                                                    {"Bottom", DockWindowPosition::bottom}};
    for (const auto& [title, position] : positions) {
        auto* action = edges->addAction(title, [position = position] {
            auto& data = DockData::shared();
            // A chosen edge replaces the dragged place.
            data.setPosX(std::nullopt);
            data.setPosY(std::nullopt);
            data.setPosition(position);
        });
        action->setCheckable(true);
        action->setChecked(!dock.posX() && dock.position() == position);
    }
    if (!dock.dockHiddenPalettes().empty()) {
        menu.addAction("Show All Palettes", [] { DockData::shared().setDockHiddenPalettes({}); });
    }
    menu.addSeparator();
    menu.addAction("Hide Dock", [] { Preferences::shared().setDockVisible(false); });
    menu.exec(event->globalPos());
}

DockWindow& DockWindowController::window() {
    if (!window_) window_ = std::make_unique<DockWindow>(delegate_);
    return *window_;
}

void DockWindowController::show() { window().present(); }

void DockWindowController::hide() {
    if (window_) window_->hide();
}

void DockWindowController::close() {
    if (window_) window_->close();
}

bool DockWindowController::isVisible() const { return window_ && window_->isVisible(); }

}  // namespace kro
