#pragma once
// Application windows from the window manager's EWMH lists (the stacking list; the root's children when no
// window manager runs), each with its process, title, class and frame.
#include "platform/Workspace.h"

namespace kro {

class X11Workspace final : public Workspace {
public:
    void refresh() override;
    const std::vector<WorkspaceWindow>& items() const override { return items_; }
    std::optional<std::string> frontmostBundle() const override;

private:
    std::vector<WorkspaceWindow> items_;
};

}  // namespace kro
