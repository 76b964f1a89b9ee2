#include "workspaces/QtLoupeWindow.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QTimer>
#include <QImage>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>
#include <QWheelEvent>

#include <algorithm>
#include <cstdio>

#include "formats/ColorFormats.h"
#include "library/Sherlog.h"
#include "picker/LoupeRenderer.h"
#include "platform/linux/X11Screens.h"
#include "platform/linux/QtModifierRoles.h"

namespace kro {
namespace {

constexpr int kSide = kLoupeViewSide;

int lensOffset(int size) { return (kSide - size) / 2; }

GesturePhase phaseOf(Qt::ScrollPhase phase) {
    switch (phase) {
        case Qt::NoScrollPhase: return GesturePhase::none;
        case Qt::ScrollBegin: return GesturePhase::began;
        case Qt::ScrollUpdate:
        case Qt::ScrollMomentum: return GesturePhase::changed;
        case Qt::ScrollEnd: return GesturePhase::ended;
    }
    return GesturePhase::none;
}

QColor qColor(const ColorValue& color) { return QColor::fromRgbF(color.red(), color.green(), color.blue(), color.alpha()); }

}  // namespace

QtLoupeWindow::QtLoupeWindow() {
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::X11BypassWindowManagerHint |
                   Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setWindowTitle("Kro Loupe");
    setAccessibleName("Loupe");
    setAccessibleDescription("Magnifies the screen under the pointer; click, Return or Space picks the color");
    setMouseTracking(true);
    resize(kSide, kSide);
    modifierTimer_.setInterval(40);
    connect(&modifierTimer_, &QTimer::timeout, this, [this] { pollModifiers(); });
}

void QtLoupeWindow::setBackdrop(LoupeBackdrop* backdrop) {
    backdrop_ = backdrop;
    // A plain frameless window the compositor can make full-screen and give the keyboard to.
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_ShowWithoutActivating, false);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName("Colour picker");
    backdrop_->onPictureChanged = [this] {
        if (backdrop_->withoutLoupe()) {
            hide();
        } else if (sessionOpen_ && backdrop_->picture() && !isVisible()) {
            showOverBackdrop();
        }
        // The pointer's place may have come with the still.
        if (picker_) picker_->update();
        setNeedsDisplay();
        update();
    };
    backdrop_->onFailure = [this](const std::string& reason) {
        if (onSessionLost) onSessionLost(reason);
    };
}

void QtLoupeWindow::setNeedsDisplay() {
    if (!backdrop_) return update();
    if (backdrop_->withoutLoupe()) {
        QTimer::singleShot(0, this, [this] { pickWithoutLoupe(); });
        return;
    }
    // Over a still only the lens and its text change: the rest of the screen is not drawn again.
    const QRect lens = lensRect();
    update(lens.united(paintedLens_));
}

// The desktop chose the colour itself: the picker samples it as it would the pixel under the lens, and the pick
// is confirmed as soon as the sample is in.
void QtLoupeWindow::pickWithoutLoupe() {
    if (!picker_ || !picker_->isOpen) return;
    picker_->pickerImage.drawPass();
    if (picker_->color && backdrop_->picture()) {
        PointerEvent up;
        up.type = PointerEventType::leftMouseUp;
        emitEvent(up);
    }
}

QRect QtLoupeWindow::lensRect() const {
    const QPointF centre = backdrop_->toWindow(lensCentre_);
    return QRect(static_cast<int>(centre.x()) - kSide / 2 - 1, static_cast<int>(centre.y()) - kSide / 2 - 1, kSide + 2, kSide + 2);
}

uint64_t QtLoupeWindow::windowID() const { return static_cast<uint64_t>(const_cast<QtLoupeWindow*>(this)->winId()); }

void QtLoupeWindow::setFrame(const ScreenRect& frame) {
    if (backdrop_) {
        lensCentre_ = QPointF(frame.x + frame.width / 2, frame.y + frame.height / 2);
        return setNeedsDisplay();
    }
    // The frame is in device pixels, centred on the pointer's pixel to the pixel.
    x11::placeWindow(*this, QRect(static_cast<int>(frame.x), static_cast<int>(frame.y), static_cast<int>(frame.width),
                                  static_cast<int>(frame.height)));
}

void QtLoupeWindow::setAlpha(double alpha) {
    alpha_ = alpha;
    if (backdrop_) return update();
    updateMask();
}

// Only the lens and the overlay are part of the window, so it needs no compositing manager to look round.
// While the window waits for its first frame, a one-pixel mask keeps it out of sight.
void QtLoupeWindow::updateMask() {
    const int size = picker_ ? picker_->pickerSize : 180;
    const MaskKey key{alpha_ > 0, size, overlayBox()};
    if (key == maskKey_) return;
    maskKey_ = key;
    if (!key.shown) {
        setMask(QRegion(0, 0, 1, 1));
        return;
    }
    QRegion region(lensOffset(size), lensOffset(size), size, size, QRegion::Ellipse);
    region += key.overlay;
    setMask(region);
}

QRect QtLoupeWindow::overlayBox() const {
    if (!picker_) return {};
    const auto box = picker_->overlayBox();
    return QRect(box.x, box.y, box.width, box.height);
}

void QtLoupeWindow::orderFront() {
    sinceOpen_.start();
    lensFrames_ = 0;
    drawingNs_ = 0;
    if (backdrop_) {
        sessionOpen_ = true;
        backdrop_->sessionShown(screen() ? screen() : QGuiApplication::primaryScreen());
        return;
    }
    show();
    raise();
    grabMouse();
    lastPosition_ = x11::nativePointer();
    modifiers_ = modifierRoleFlags(QGuiApplication::queryKeyboardModifiers());
    modifierTimer_.start();
}

// The still is in: the loupe covers its screen with it, and takes the keyboard.
void QtLoupeWindow::showOverBackdrop() {
    auto* target = backdrop_->screen();
    paintedLens_ = {};
    setScreen(target);
    setGeometry(target->geometry());
    setCursor(Qt::BlankCursor);
    showFullScreen();
    raise();
    activateWindow();
    modifiers_ = modifierRoleFlags(QGuiApplication::queryKeyboardModifiers());
    modifierTimer_.start();
}

void QtLoupeWindow::orderOut() {
    logSessionFrames();
    modifierTimer_.stop();
    if (backdrop_) {
        sessionOpen_ = false;
        backdrop_->sessionHidden();
        unsetCursor();
        hide();
        return;
    }
    releaseMouse();
    hide();
}

void QtLoupeWindow::pollModifiers() {
    const int flags = modifierRoleFlags(QGuiApplication::queryKeyboardModifiers());
    if (flags == modifiers_) return;
    modifiers_ = flags;
    PointerEvent event;
    event.type = PointerEventType::flagsChanged;
    emitEvent(event);
}

void QtLoupeWindow::emitEvent(PointerEvent event) {
    event.modifierFlags = modifiers_;
    if (onEvent) onEvent(event);
}

// In front of a still the pointer is known only by where it crosses this window; the travel of a move is
// measured in the backdrop's device pixels.
QPointF QtLoupeWindow::travel(const QPointF& local) {
    const QPointF real = backdrop_->pointerMoved(local);
    const QPointF moved = real - lastPosition_;
    lastPosition_ = real;
    return moved;
}

void QtLoupeWindow::enterEvent(QEnterEvent* event) {
    if (backdrop_) lastPosition_ = backdrop_->pointerMoved(event->position());
    QWidget::enterEvent(event);
}

void QtLoupeWindow::keyPressEvent(QKeyEvent* event) {
    if (backdrop_ && backdrop_->keyPressed(*event)) return event->accept();
    QWidget::keyPressEvent(event);
}

void QtLoupeWindow::mousePressEvent(QMouseEvent* event) {
    if (backdrop_) travel(event->position());
    PointerEvent pointer;
    pointer.type = event->button() == Qt::LeftButton    ? PointerEventType::leftMouseDown
                   : event->button() == Qt::RightButton ? PointerEventType::rightMouseDown
                                                        : PointerEventType::otherMouseDown;
    emitEvent(pointer);
}

void QtLoupeWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (backdrop_) travel(event->position());
    PointerEvent pointer;
    pointer.type = event->button() == Qt::LeftButton    ? PointerEventType::leftMouseUp
                   : event->button() == Qt::RightButton ? PointerEventType::rightMouseUp
                                                        : PointerEventType::otherMouseUp;
    emitEvent(pointer);
}

void QtLoupeWindow::mouseMoveEvent(QMouseEvent* event) {
    PointerEvent pointer;
    const auto buttons = event->buttons();
    pointer.type = buttons & Qt::LeftButton    ? PointerEventType::leftMouseDragged
                   : buttons & Qt::RightButton ? PointerEventType::rightMouseDragged
                                               : PointerEventType::mouseMoved;
    if (backdrop_) {
        const QPointF moved = travel(event->position());
        pointer.deltaX = moved.x();
        pointer.deltaY = moved.y();
        return emitEvent(pointer);
    }
    // The travel in device pixels since the cursor was last placed: in precision mode the picker puts it back
    // a tenth of the way.
    const auto position = x11::toNative(event->globalPosition());
    pointer.deltaX = position.x() - lastPosition_.x();
    pointer.deltaY = position.y() - lastPosition_.y();
    emitEvent(pointer);
    lastPosition_ = x11::nativePointer();
}

void QtLoupeWindow::wheelEvent(QWheelEvent* event) {
    PointerEvent pointer;
    pointer.type = PointerEventType::scrollWheel;
    pointer.phase = phaseOf(event->phase());
    // One notch is one line, positive away from the user.
    pointer.deltaY = event->angleDelta().y() / 120.0;
    emitEvent(pointer);
}

bool QtLoupeWindow::event(QEvent* event) {
    if (event->type() != QEvent::NativeGesture) return QWidget::event(event);
    auto* gesture = static_cast<QNativeGestureEvent*>(event);
    PointerEvent pointer;
    switch (gesture->gestureType()) {
        case Qt::BeginNativeGesture: pointer.type = PointerEventType::magnify, pointer.phase = GesturePhase::began; break;
        case Qt::EndNativeGesture: pointer.type = PointerEventType::magnify, pointer.phase = GesturePhase::ended; break;
        case Qt::ZoomNativeGesture:
            pointer.type = PointerEventType::magnify;
            pointer.phase = GesturePhase::changed;
            pointer.magnification = gesture->value();
            break;
        case Qt::SmartZoomNativeGesture: pointer.type = PointerEventType::smartMagnify; break;
        default: return true;
    }
    emitEvent(pointer);
    return true;
}

void QtLoupeWindow::lensFrameDrawn(const QElapsedTimer& drawing) {
    if (!picker_->pickerImage.pickerImage) return;
    drawingNs_ += drawing.nsecsElapsed();
    if (lensFrames_++ == 0) {
        SHERLOG("Loupe: first lens frame " + std::to_string(sinceOpen_.elapsed()) + " ms after the picker opened",
                SherlogLevel::debug);
    }
}

void QtLoupeWindow::logSessionFrames() {
    if (lensFrames_ == 0 || !sinceOpen_.isValid()) return;
    const double seconds = sinceOpen_.elapsed() / 1000.0;
    char line[160];
    std::snprintf(line, sizeof line, "Loupe: %d lens frames in %.1f s, %.2f ms of drawing each", lensFrames_, seconds,
                  drawingNs_ / 1e6 / lensFrames_);
    SHERLOG(line, SherlogLevel::debug);
    lensFrames_ = 0;
}

void QtLoupeWindow::paintEvent(QPaintEvent* event) {
    if (!picker_) return;
    QElapsedTimer drawing;
    drawing.start();
    if (backdrop_) {
        QPainter painter(this);
        paintOverBackdrop(painter, event->rect());
        if (alpha_ > 0 && backdrop_->picture()) lensFrameDrawn(drawing);
        return;
    }
    updateMask();
    auto& image = picker_->pickerImage;
    image.drawPass();
    // Drawn at the window's own device scale, so a cell and a grid line are whole device pixels.
    const double scale = devicePixelRatioF();
    renderLoupe({image.pickerImage ? &*image.pickerImage : nullptr, picker_->pickerSize, picker_->pickerZoom,
                 picker_->borderResetMode, picker_->precisionMode, false, scale},
                canvas_);
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
    QImage frame(reinterpret_cast<const uchar*>(canvas_.pixels.data()), canvas_.width, canvas_.height, canvas_.width * 4,
                 QImage::Format_ARGB32);
    frame.setDevicePixelRatio(static_cast<double>(canvas_.width) / kSide);
    painter.drawImage(0, 0, frame);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    paintOverlay(painter);
    if (alpha_ > 0) lensFrameDrawn(drawing);
}

void QtLoupeWindow::paintOverBackdrop(QPainter& painter, const QRect& exposed) {
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    const QImage* still = backdrop_->picture();
    if (!still) return painter.fillRect(exposed, Qt::black);
    const double ratio = static_cast<double>(still->width()) / std::max(1, width());
    painter.drawImage(QRectF(exposed), *still,
                      QRectF(exposed.x() * ratio, exposed.y() * ratio, exposed.width() * ratio, exposed.height() * ratio));

    auto& image = picker_->pickerImage;
    image.drawPass();
    // The lens appears with its first frame.
    if (alpha_ <= 0) return;
    // The renderer touches only the lens's square, which shrinks with the size: the rest must show the still.
    std::fill(canvas_.pixels.begin(), canvas_.pixels.end(), 0u);
    renderLoupe({image.pickerImage ? &*image.pickerImage : nullptr, picker_->pickerSize, picker_->pickerZoom,
                 picker_->borderResetMode, picker_->precisionMode, false},
                canvas_);
    const QImage frame(reinterpret_cast<const uchar*>(canvas_.pixels.data()), kSide, kSide, kSide * 4, QImage::Format_ARGB32);
    paintedLens_ = lensRect();
    painter.save();
    painter.translate(paintedLens_.topLeft() + QPoint(1, 1));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(0, 0, frame);
    paintOverlay(painter);
    painter.restore();
}

void QtLoupeWindow::paintOverlay(QPainter& painter) {
    const QRect box = overlayBox();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(30, 30, 30, 235));
    painter.drawRoundedRect(box, 8, 8);

    painter.setPen(Qt::white);
    auto font = painter.font();
    font.setPixelSize(13);
    painter.setFont(font);
    QString lines = QString::fromStdString(picker_->overlayText());
    if (picker_->pickerTutorial.hint) {
        lines += "\n" + QString::fromStdString(hintText(*picker_->pickerTutorial.hint, picker_->colors.size()));
    } else if (!picker_->profileBadge.empty()) {
        lines += "\n" + QString::fromStdString(picker_->profileBadge);
    }
    QRect textBox = box.adjusted(10, 6, -10, -6);
    if (picker_->color) {
        painter.setBrush(qColor(*picker_->color));
        painter.drawRoundedRect(QRect(textBox.left(), textBox.top() + 2, 16, 16), 3, 3);
        textBox.setLeft(textBox.left() + 24);
    }
    painter.drawText(textBox, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, lines);

    // The colours collected so far in a multiple or contrast session.
    int x = box.left() + 10;
    for (const auto& color : picker_->colors) {
        painter.setBrush(qColor(color));
        painter.drawRect(QRect(x, box.bottom() - 14, 10, 10));
        x += 11;
    }
}

}  // namespace kro
