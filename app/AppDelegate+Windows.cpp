// The window controllers: created once at launch, opened by the window actions, the shortcuts and the tray.
#include "app/AppDelegate.h"
#include "library/Sherlog.h"

namespace kro {

void AppDelegate::createWindowControllers() {
    if (!desktop_.windows) return;
    auto& factory = *desktop_.windows;
    menuWindowController = factory.makeWindow(WindowKind::menu);
    mainWindowController = factory.makeWindow(WindowKind::main);
    preferencesWindowController = factory.makeWindow(WindowKind::preferences);
    contrastWindowController = factory.makeWindow(WindowKind::contrast);
    colorPanelWindowController = factory.makeWindow(WindowKind::colorPanel);
    onboardingWindowController = factory.makeWindow(WindowKind::onboarding);
}

bool AppDelegate::showWindow(WindowController* window, const char* what) {
    if (appState != AppState::valid) {
        SHERLOG(std::string("The ") + what + " waits for a valid licence", SherlogLevel::info);
        return false;
    }
    if (!window) {
        SHERLOG(std::string("This build has no ") + what, SherlogLevel::info);
        return false;
    }
    window->show();
    return true;
}

void AppDelegate::openMainWindow() { showWindow(mainWindowController.get(), "library window"); }
void AppDelegate::openMenuWindow() { showWindow(menuWindowController.get(), "menu window"); }
void AppDelegate::openContrastWindow() { showWindow(contrastWindowController.get(), "contrast checker"); }
void AppDelegate::openColorPanel() { showWindow(colorPanelWindowController.get(), "colour panel"); }

void AppDelegate::openPreferences(const std::optional<PreferencesPane>& pane) {
    if (showWindow(preferencesWindowController.get(), "preferences window") && pane) {
        SHERLOG("Preferences at pane " + std::to_string(pane->number), SherlogLevel::debug);
    }
}

void AppDelegate::statusItemDidPress() {
    if (!menuWindowController) return openPicker(PickerSource::standard);
    if (menuWindowController->isVisible()) return menuWindowController->hide();
    openMenuWindow();
}

void AppDelegate::quit() {
    if (desktop_.application) desktop_.application->quit();
}

}  // namespace kro
