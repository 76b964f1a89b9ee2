#pragma once
// Whether a window shows on every workspace: the EWMH sticky state, asked of the window manager. Does
// nothing off X11 or where no window manager answers.
class QWidget;

namespace kro {

void setOnAllWorkspaces(QWidget& window, bool sticky);

}  // namespace kro
