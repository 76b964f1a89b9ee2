#include "workspaces/QtWindowFactory.h"

#include "workspaces/colorpanel/ColorPanelWindow.h"
#include "workspaces/contrast/ContrastWindow.h"
#include "workspaces/dock/DockWindow.h"
#include "workspaces/main/MainWindow.h"
#include "workspaces/menu/MenuWindow.h"
#include "workspaces/onboarding/OnboardingWindow.h"
#include "workspaces/preferences/PreferencesWindow.h"

namespace kro {

std::unique_ptr<WindowController> QtWindowFactory::makeWindow(WindowKind kind) {
    switch (kind) {
        case WindowKind::menu: return std::make_unique<MenuWindowController>(delegate_);
        case WindowKind::main: return std::make_unique<MainWindowController>(delegate_);
        case WindowKind::preferences: return std::make_unique<PreferencesWindowController>(delegate_);
        case WindowKind::contrast: return std::make_unique<ContrastWindowController>(delegate_);
        case WindowKind::colorPanel: return std::make_unique<ColorPanelWindowController>(delegate_);
        case WindowKind::onboarding: return std::make_unique<OnboardingWindowController>(delegate_);
        case WindowKind::dock: return std::make_unique<DockWindowController>(delegate_);
    }
    return nullptr;
}

}  // namespace kro
