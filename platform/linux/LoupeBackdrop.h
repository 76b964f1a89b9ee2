#pragma once
// Where the lens cannot be live (a Wayland session: no program may read other windows, nor place its own window
// or the pointer), the loupe covers the whole screen and shows a still picture of it, taken when the picker
// opens, with the lens drawn over it at the pointer. This is what the loupe's window asks of that still.
#include <QImage>
#include <QPointF>

#include <functional>
#include <string>

class QKeyEvent;
class QScreen;

namespace kro {

class LoupeBackdrop {
public:
    virtual ~LoupeBackdrop() = default;
    // The desktop picks the colour itself and the loupe shows no window at all.
    virtual bool withoutLoupe() const = 0;
    // The screen the loupe covers for the session.
    virtual QScreen* screen() const = 0;
    // The session began; the still is taken now, of the screen under the pointer where that can be known, else
    // of `screen`. The loupe shows its window once the still has arrived.
    virtual void sessionShown(QScreen* screen) = 0;
    virtual void sessionHidden() = 0;
    // The still, in device pixels of the screen; null until it has arrived.
    virtual const QImage* picture() const = 0;
    // The pointer is at `local`, logical pixels of the loupe's window. Answers the real pointer in the
    // session's coordinates (device pixels), from which the travel of a move is measured.
    virtual QPointF pointerMoved(QPointF local) = 0;
    // A point in the session's coordinates as logical pixels of the loupe's window.
    virtual QPointF toWindow(QPointF point) const = 0;
    // A key pressed while the loupe has the keyboard; true when it was one of the registered shortcuts.
    virtual bool keyPressed(const QKeyEvent& event) = 0;

    // The still arrived, or the route changed: the loupe draws again (and hides where it has no window).
    std::function<void()> onPictureChanged;
    // The still cannot be had: the session ends, with the one line that says why.
    std::function<void(const std::string& reason)> onFailure;
};

}  // namespace kro
