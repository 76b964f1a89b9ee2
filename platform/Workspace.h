#pragma once
// The application windows on screen, for per-application choices under the pointer.
#include <optional>
#include <string>
#include <vector>

#include "platform/ScreenCapture.h"

namespace kro {

struct WorkspaceWindow {
    int pid = 0;
    // Higher lies on top.
    int level = 0;
    std::string name;
    // The application's identifier: its desktop-file id where one is known, else its window class.
    std::string bundle;
    std::optional<ScreenRect> frame;
};

class Workspace {
public:
    virtual ~Workspace() = default;
    // Reads the list of windows again.
    virtual void refresh() = 0;
    // The list as last read.
    virtual const std::vector<WorkspaceWindow>& items() const = 0;
    // The application of the active window, if any.
    virtual std::optional<std::string> frontmostBundle() const = 0;
};

}  // namespace kro
