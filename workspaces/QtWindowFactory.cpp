#include "workspaces/QtWindowFactory.h"

#include "workspaces/main/MainWindow.h"
#include "workspaces/menu/MenuWindow.h"

namespace kro {

std::unique_ptr<WindowController> QtWindowFactory::makeWindow(WindowKind kind) {
    switch (kind) {
        case WindowKind::menu: return std::make_unique<MenuWindowController>(delegate_);
        case WindowKind::main: return std::make_unique<MainWindowController>(delegate_);
        // The preferences, the contrast checker, the colour panel and onboarding are not built yet.
        default: return nullptr;
    }
}

}  // namespace kro
