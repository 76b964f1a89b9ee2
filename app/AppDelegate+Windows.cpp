// The window controllers: created once at launch, opened by the window actions, the shortcuts, the tray and
// the URL commands; the colour dock, shown and hidden by the dock state.
#include <random>

#include "app/AppDelegate.h"
#include "library/DockData.h"
#include "library/Preferences.h"
#include "library/Sherlog.h"
#include "platform/Environment.h"

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
    dockWindow = factory.makeWindow(WindowKind::dock);
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

void AppDelegate::openContrastWindow(const ColorValue& foreground, const ColorValue& background) {
    if (showWindow(contrastWindowController.get(), "contrast checker")) {
        contrastWindowController->showColors(foreground, background);
    }
}

void AppDelegate::openContrastWindowWithRandomColors() {
    static std::mt19937 generator{std::random_device{}()};
    std::uniform_int_distribution<int> byte(0, 255);
    auto random = [&] { return ColorValue::rgb(byte(generator) / 255.0, byte(generator) / 255.0, byte(generator) / 255.0, 1); };
    const auto foreground = random();
    openContrastWindow(foreground, random());
}

void AppDelegate::openColorPanel() {
    if (appState != AppState::valid || !colorPanelWindowController) {
        showWindow(colorPanelWindowController.get(), "color panel");
        return;
    }
    // Beside the library window when that is open.
    const bool mainOpen = mainWindowController && mainWindowController->isVisible();
    colorPanelWindowController->showNear(mainOpen ? mainWindowController.get() : nullptr);
}

void AppDelegate::openPreferences(const std::optional<PreferencesPane>& pane) {
    if (showWindow(preferencesWindowController.get(), "preferences window") && pane) {
        preferencesWindowController->showPane(pane->number);
    }
}

void AppDelegate::showOnboardingWhenDue() {
    if (!Preferences::needsOnboardingDisplay()) {
        env().mainQueue->post([this] { showStatusTooltip("Kro is ready to use!", 2.0); }, Seconds(3));
        return;
    }
    if (!onboardingWindowController) {
        SHERLOG("Onboarding is due, and this build has no onboarding window", SherlogLevel::debug);
        return;
    }
    // The tour is shown once: the flag is cleared as it opens.
    env().mainQueue->post(
        [this] {
            Preferences::setNeedsOnboardingDisplay(false);
            showWindow(onboardingWindowController.get(), "onboarding window");
        },
        Seconds(2));
}

void AppDelegate::applyDockState() {
    env().mainQueue->post([this] {
        if (!dockWindow) return;
        if (!Preferences::shared().dockVisible()) return dockWindow->hide();
        // The window reads its place (position, screen, dragged point) from the dock data as it shows.
        const auto& dock = DockData::shared();
        SHERLOG("Dock at " + text(dock.position()) + " on screen " + std::to_string(dock.screenIndex().value_or(0)),
                SherlogLevel::debug);
        dockWindow->show();
    });
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
