#include "platform/linux/WaylandStill.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QTimer>

#include <cmath>

#include "platform/KeyCodeTable.h"
#include "platform/linux/QtModifierRoles.h"
#include "platform/linux/WaylandScreenCopy.h"

namespace kro {
namespace {

QRect desktopGeometry() {
    QRect desktop;
    for (auto* screen : QGuiApplication::screens()) desktop |= screen->geometry();
    return desktop;
}

}  // namespace

QRect screenPart(const QImage& picture, const QRect& desktop, const QRect& screen) {
    if (desktop.width() <= 0 || desktop.height() <= 0) return {};
    const double ratio = static_cast<double>(picture.width()) / desktop.width();
    const auto at = [ratio](int logical) { return static_cast<int>(std::lround(logical * ratio)); };
    return QRect(QPoint(at(screen.x() - desktop.x()), at(screen.y() - desktop.y())),
                 QPoint(at(screen.right() + 1 - desktop.x()) - 1, at(screen.bottom() + 1 - desktop.y()) - 1))
        .intersected(picture.rect());
}

WaylandStill::WaylandStill(Services services) : services_(std::move(services)), route_(services_.route) {}

WaylandStill::~WaylandStill() {
    if (request_) request_->cancel();
}

void WaylandStill::sessionShown(QScreen* screen) {
    const int generation = ++generation_;
    if (request_) request_->cancel();
    request_.reset();
    route_ = services_.route;
    screen_ = screen ? screen : QGuiApplication::primaryScreen();
    picture_ = QImage();
    ratio_ = 1;
    offset_ = {};
    pointerKnown_ = false;
    taking_ = false;
    sinceShown_.start();
    if (!withoutLoupe() && services_.screenCopy) {
        // The cover hides the cursor from the still and tells which screen the pointer is on, and where.
        if (const auto place = services_.screenCopy->cover()) {
            for (auto* candidate : QGuiApplication::screens()) {
                if (candidate->name().toStdString() == place->outputName) screen_ = candidate;
            }
            local_ = QPointF(place->x, place->y);
            pointerKnown_ = true;
        }
    }
    // Asked on the next turn of the loop: the still may answer at once, and the session is still opening.
    QTimer::singleShot(0, [this, generation] {
        if (generation == generation_) take();
    });
}

void WaylandStill::sessionHidden() {
    ++generation_;
    if (services_.screenCopy) services_.screenCopy->uncover();
    if (request_) request_->cancel();
    request_.reset();
    picture_ = QImage();
    screen_ = nullptr;
    offset_ = {};
    taking_ = false;
}

QPointF WaylandStill::pointerMoved(QPointF local) {
    local_ = local;
    pointerKnown_ = true;
    return origin() + local_ * ratio_;
}

QPointF WaylandStill::origin() const { return screen_ ? QPointF(screen_->geometry().topLeft()) * ratio_ : QPointF(); }

QPointF WaylandStill::toWindow(QPointF point) const { return (point - origin()) / ratio_; }

void WaylandStill::take() {
    if (taking_ || !screen_) return;
    taking_ = true;
    switch (route_) {
        case CaptureRoute::screenCopy: return takeScreenCopy();
        case CaptureRoute::portalScreenshot: return takeScreenshot();
        case CaptureRoute::portalPickColor: return takePickedColor();
        case CaptureRoute::x11Composite:
        case CaptureRoute::none: break;
    }
    failed("this desktop offers no way to see the screen: install xdg-desktop-portal with the portal of this desktop", false);
}

void WaylandStill::takeScreenCopy() {
    std::string error;
    const auto name = screen_->name().toStdString();
    auto copy = services_.screenCopy ? services_.screenCopy->copy(name, error) : std::nullopt;
    if (!copy) return failed("the screen copy failed: " + (error.empty() ? std::string("no screen copy") : error));
    // The picture takes the copy's pixels over rather than copying them once more.
    auto* pixels = new std::vector<uint32_t>(std::move(copy->pixels));
    QImage picture(reinterpret_cast<uchar*>(pixels->data()), copy->width, copy->height, copy->width * 4, QImage::Format_ARGB32,
                   [](void* owned) { delete static_cast<std::vector<uint32_t>*>(owned); }, pixels);
    arrived(std::move(picture), "the screen copy of " + name);
}

void WaylandStill::takeScreenshot() {
    if (!services_.portal) return failed("no session bus answers, so the desktop portal cannot be asked");
    const int generation = generation_;
    request_ = PortalRequest::start(
        *services_.portal, [this](const std::string& token, PortalBus::Reply reply) { services_.portal->screenshot(token, std::move(reply)); },
        [this, generation](const PortalOutcome& outcome) {
            if (generation != generation_) return;
            const auto answer = screenshotAnswer(outcome);
            if (!answer.path) return failed(answer.problem, outcome.status != PortalStatus::cancelled);
            const QImage desktop(QString::fromStdString(*answer.path));
            if (desktop.isNull()) return failed("the desktop portal's screenshot " + *answer.path + " cannot be read");
            const auto part = screenPart(desktop, desktopGeometry(), screen_->geometry());
            if (part.isEmpty()) return failed("the desktop portal's screenshot does not show the screen " + screen_->name().toStdString());
            arrived(desktop.copy(part), "the desktop portal's screenshot");
        });
}

void WaylandStill::takePickedColor() {
    if (!services_.portal) return failed("no session bus answers, so the desktop portal cannot be asked", false);
    const int generation = generation_;
    request_ = PortalRequest::start(
        *services_.portal, [this](const std::string& token, PortalBus::Reply reply) { services_.portal->pickColor(token, std::move(reply)); },
        [this, generation](const PortalOutcome& outcome) {
            if (generation != generation_) return;
            const auto answer = pickColorAnswer(outcome);
            if (!answer.color) return failed(answer.problem, false);
            // A one-pixel still of the colour, with the pointer on it: the pick goes the way of any other.
            QImage picture(1, 1, QImage::Format_ARGB32);
            const auto byte = [](double component) { return static_cast<int>(std::lround(component * 255)); };
            picture.setPixel(0, 0, qRgb(byte((*answer.color)[0]), byte((*answer.color)[1]), byte((*answer.color)[2])));
            local_ = {};
            pointerKnown_ = true;
            arrived(std::move(picture), "the desktop portal's colour pick");
        },
        // The person takes their time to choose.
        120);
}

void WaylandStill::arrived(QImage picture, const std::string& how) {
    if (services_.screenCopy) services_.screenCopy->uncover();
    picture_ = picture.convertToFormat(QImage::Format_ARGB32);
    ratio_ = withoutLoupe() || screen_->geometry().width() <= 0 ? 1.0 : static_cast<double>(picture_.width()) / screen_->geometry().width();
    if (services_.log) {
        services_.log("Picker still: " + how + ", " + std::to_string(picture_.width()) + " by " + std::to_string(picture_.height()) +
                      " pixels, " + std::to_string(sinceShown_.elapsed()) + " ms after the loupe opened");
    }
    if (onPictureChanged) onPictureChanged();
}

void WaylandStill::failed(const std::string& problem, bool fallBack) {
    const auto next = fallBack ? fallbackAfter(route_, services_.offers) : std::nullopt;
    if (next) {
        if (services_.log) services_.log("Picker still: " + problem + "; trying " + describe(*next));
        route_ = *next;
        taking_ = false;
        if (onPictureChanged) onPictureChanged();
        return take();
    }
    if (services_.screenCopy) services_.screenCopy->uncover();
    // Ended on the next turn of the loop, never from inside the call that opened the session.
    const int generation = generation_;
    QTimer::singleShot(0, [this, generation, problem] {
        if (generation == generation_ && onFailure) onFailure("The picker closed: " + problem);
    });
}

std::vector<ScreenInfo> WaylandStill::screens() const {
    if (picture_.isNull()) return {};
    const auto at = origin();
    return {ScreenInfo{1, {at.x(), at.y(), static_cast<double>(picture_.width()), static_cast<double>(picture_.height())}, 1, nullptr}};
}

std::optional<CaptureFilter> WaylandStill::makeFilter(uint32_t displayID, uint64_t excludedWindow, std::string& error) {
    if (picture_.isNull()) {
        error = "the screen's still has not arrived";
        return std::nullopt;
    }
    // The still was taken before the lens was drawn: there is nothing of ours in it to leave out.
    return CaptureFilter{displayID, excludedWindow};
}

std::optional<Bitmap> WaylandStill::captureImage(const CaptureFilter&, const ScreenRect& sourceRect, int width, int height,
                                                 std::string& error) {
    if (picture_.isNull()) {
        error = "the screen's still has gone";
        return std::nullopt;
    }
    Bitmap image{width, height, std::vector<uint32_t>(static_cast<size_t>(width) * height, 0)};
    const int left = static_cast<int>(sourceRect.x), top = static_cast<int>(sourceRect.y);
    for (int y = 0; y < height; ++y) {
        const int row = top + y;
        if (row < 0 || row >= picture_.height()) continue;
        const auto* source = reinterpret_cast<const uint32_t*>(picture_.constScanLine(row));
        for (int x = 0; x < width; ++x) {
            const int column = left + x;
            if (column >= 0 && column < picture_.width()) image.pixels[static_cast<size_t>(y) * width + x] = source[column];
        }
    }
    return image;
}

ScreenPoint WaylandStill::location() const {
    if (!screen_) return {};
    if (!pointerKnown_) {
        const auto centre = origin() + QPointF(screen_->geometry().size().width(), screen_->geometry().size().height()) * ratio_ / 2;
        return {centre.x() + offset_.x(), centre.y() + offset_.y()};
    }
    const auto real = origin() + local_ * ratio_;
    return {real.x() + offset_.x(), real.y() + offset_.y()};
}

void WaylandStill::moveTo(ScreenPoint point) {
    const auto now = location();
    offset_ += QPointF(point.x - now.x, point.y - now.y);
}

bool WaylandStill::keyPressed(const QKeyEvent& event) {
    // Qt gives the XKB key code, which is the X key code: our positional table applies as it stands.
    const auto code = virtualKeyCode(static_cast<int>(event.nativeScanCode()));
    return code && services_.hotKeys && services_.hotKeys->keyPressed(modifierRoleFlags(event.modifiers()), *code);
}

}  // namespace kro
