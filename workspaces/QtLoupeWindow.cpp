#include "workspaces/QtLoupeWindow.h"

#include <QGuiApplication>
#include <QImage>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>
#include <QWheelEvent>

#include "formats/ColorFormats.h"
#include "picker/LoupeRenderer.h"
#include "platform/linux/X11Screens.h"

namespace kro {
namespace {

constexpr int kSide = kLoupeViewSide;

int lensOffset(int size) { return (kSide - size) / 2; }

int roleFlags(Qt::KeyboardModifiers modifiers) {
    int flags = 0;
    if (modifiers & Qt::ShiftModifier) flags |= 0x20000;
    if (modifiers & Qt::MetaModifier) flags |= 0x40000;
    if (modifiers & Qt::AltModifier) flags |= 0x80000;
    if (modifiers & Qt::ControlModifier) flags |= 0x100000;
    return flags;
}

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

uint64_t QtLoupeWindow::windowID() const { return static_cast<uint64_t>(const_cast<QtLoupeWindow*>(this)->winId()); }

void QtLoupeWindow::setFrame(const ScreenRect& frame) {
    // The frame is in device pixels, centred on the pointer's pixel to the pixel.
    x11::placeWindow(*this, QRect(static_cast<int>(frame.x), static_cast<int>(frame.y), static_cast<int>(frame.width),
                                  static_cast<int>(frame.height)));
}

void QtLoupeWindow::setAlpha(double alpha) {
    alpha_ = alpha;
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
    show();
    raise();
    grabMouse();
    lastPosition_ = x11::nativePointer();
    modifiers_ = roleFlags(QGuiApplication::queryKeyboardModifiers());
    modifierTimer_.start();
}

void QtLoupeWindow::orderOut() {
    modifierTimer_.stop();
    releaseMouse();
    hide();
}

void QtLoupeWindow::pollModifiers() {
    const int flags = roleFlags(QGuiApplication::queryKeyboardModifiers());
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

void QtLoupeWindow::mousePressEvent(QMouseEvent* event) {
    PointerEvent pointer;
    pointer.type = event->button() == Qt::LeftButton    ? PointerEventType::leftMouseDown
                   : event->button() == Qt::RightButton ? PointerEventType::rightMouseDown
                                                        : PointerEventType::otherMouseDown;
    emitEvent(pointer);
}

void QtLoupeWindow::mouseReleaseEvent(QMouseEvent* event) {
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

void QtLoupeWindow::paintEvent(QPaintEvent*) {
    if (!picker_) return;
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
