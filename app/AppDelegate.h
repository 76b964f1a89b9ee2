#pragma once
// The one application controller: owns the tray icon, the tooltip, the timers and the network monitor,
// starts the singletons in the launch order, routes URL commands and opened files, and re-applies settings
// when their notifications arrive.
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/PickRequest.h"
#include "library/Color.h"
#include "library/Palette.h"
#include "library/StoreProblem.h"
#include "picker/HotKey.h"
#include "picker/Picker.h"
#include "picker/PickerTypes.h"
#include "platform/ColorValue.h"
#include "platform/Desktop.h"
#include "platform/NotificationCenter.h"
#include "platform/Queues.h"

namespace kro {

// The licence fact other code reads. This build has no licence subsystem: the state stays `valid`.
enum class AppState : unsigned char { valid, invalid };

enum class StatusBarAction { picker, menu };

// Preference panes reachable by "settings" URL commands, with their pane numbers.
struct PreferencesPane {
    std::string name;
    int number;
};
std::optional<PreferencesPane> preferencesPane(const std::string& name);

class AppDelegate : public PickerDelegate {
public:
    explicit AppDelegate(Desktop desktop);
    ~AppDelegate();

    void applicationDidFinishLaunching();
    // Cancels the network monitor and nothing else: every change was written when it happened.
    void applicationWillTerminate();
    // Files handed to the agent ("kro open FILE", the desktop's "open with").
    void applicationOpenFiles(const std::vector<std::string>& paths);
    // A kro:// URL command. A link that is malformed, over-long, of an unknown command or a wrong count, or
    // whose colours do not read, does nothing but log one line saying why.
    void handleURL(const std::string& url);
    // Answers a request line from another kro (`kro open`, `kro import`, `kro snapshot`, `kro undo`…) through
    // `reply`, at once or (for a sync) when it is done.
    void handleAgentRequest(const std::string& line, const std::function<void(const std::string& reply)>& reply);

    // The poll tick: the cloud fetch, then the snapshot check (each as it exists).
    void pollTick(int interval = 60);
    // Network path changes; called on the monitor's thread.
    void networkPathDidChange(NetworkStatus status);
    void restartAutoImportTimer();
    void redrawStatusButton();
    void applyTheme();
    void applyDockState();
    void showStatusTooltip(const std::string& message, double seconds = 2.0);

    // The one way into the picker: refused while the licence state is not valid.
    void openPicker(PickerSource source);
    // The window actions (AppDelegate+Windows.cpp): each refused while the licence state is not valid, each
    // logging when this build has no such window.
    void openMainWindow();
    void openMenuWindow();
    void openContrastWindow();
    // The contrast checker with this pair (the "contrast" URL command, the loupe's contrast mode).
    void openContrastWindow(const ColorValue& foreground, const ColorValue& background);
    // The contrast checker's shortcut: two random colours.
    void openContrastWindowWithRandomColors();
    void openColorPanel();
    void openPreferences(const std::optional<PreferencesPane>& pane = std::nullopt);
    // The preferences window's "Reset All" (AppDelegate+Preferences.cpp).
    void resetAllPreferences();
    // The windows on screen, for choosing an application in the preferences; null without a display.
    Workspace* workspace() const { return desktop_.workspace; }
    // A left click on the tray icon: the menu window opens, or closes when it is open; without one, the picker.
    void statusItemDidPress();
    void quit();
    // Picked-colour delivery (AppDelegate+Delivery.cpp).
    void pickerDidPick(const ColorValue& color, PickerSource source) override;
    void pickerDidSend(const ColorValue& color, PickerPlugin destination) override;
    // Pops up the menu that puts the colours of a multiple or contrast session in a new or existing palette.
    void pickerDidPick(const std::vector<ColorValue>& colors) override;
    // The loupe's contrast mode ended with its pair: the contrast checker takes it.
    void pickerDidPickContrast(const ColorValue& foreground, const ColorValue& background) override;
    void pickerNeedsAccessibility() override;
    void pickerDidClose() override;
    // `kro pick`: opens the loupe and answers through `reply` once the colours are picked (AppDelegate+PickRequest.cpp).
    void handlePickRequest(const Json& request, const std::function<void(const std::string& reply)>& reply);
    // A choice of that menu: `palette` null means a new palette.
    void menuItemDidPress(const PaletteRef& palette, const std::vector<ColorValue>& colors);
    // The single way for a view to use a colour: the clipboard text, the status icon, the tooltip.
    void copyColor(const ColorRef& color, bool clipboard, ColorDeliveryTarget target);
    // The single writer of clipboard text; nothing at all when `clipboard` is false.
    void sendOutputToClipboard(bool clipboard, const std::string& output);
    // Every shortcut press (AppDelegate+HotKeys.cpp).
    void hotKeyDidPress(HotKeyIdentifier identifier);
    // Design applications (AppDelegate+Bridges.cpp). Reads the slot's colour of the application in front
    // (or of the one named): the first colour read is delivered by `copyColor` with `delivery`, and the
    // colours join the library; `done` gets them, empty when none.
    void getApplicationColor(PickerPlugin slot, ColorDeliveryTarget delivery,
                             const std::optional<std::string>& application = std::nullopt,
                             std::function<void(const std::vector<ColorValue>&)> done = {});
    // `kro get` and `kro send` through the agent.
    static bool isBridgeRequest(const std::string& line);
    void handleBridgeRequest(const std::string& line, const std::function<void(const std::string& reply)>& reply);
    Picker& picker() { return *picker_; }

    AppState appState = AppState::valid;
    std::optional<ColorValue> clipboardColor;
    std::set<std::string> clipboards;
    std::optional<NetworkStatus> lastNetworkStatus;
    std::unique_ptr<Timer> pollTimer;
    std::unique_ptr<Timer> autoImportTimer;
    std::optional<std::string> autoImportLast;

    // Created at launch, in this order, and never replaced; null where this build has no such window.
    std::unique_ptr<WindowController> menuWindowController;
    std::unique_ptr<WindowController> mainWindowController;
    std::unique_ptr<WindowController> preferencesWindowController;
    std::unique_ptr<WindowController> contrastWindowController;
    std::unique_ptr<WindowController> colorPanelWindowController;
    std::unique_ptr<WindowController> onboardingWindowController;
    // The floating strip of palette swatches, shown and hidden by the dock state.
    std::unique_ptr<WindowController> dockWindow;

    // How many cloud fetches the network handler asked for (the fetch itself arrives with sync).
    int cloudFetchRequests = 0;

private:
    void createWindowControllers();
    // Launch step 19: the first-run tour when its flag says so, else "Kro is ready to use!".
    void showOnboardingWhenDue();
    // Shows `window` behind the licence gate; false (and a log line) when there is none.
    bool showWindow(WindowController* window, const char* what);
    void addObservers();
    void buildStatusMenu();
    // Each runs a checked command and returns why it did nothing, or "".
    std::string runURLCommand(const std::vector<std::string>& components);
    std::string createColor(const std::vector<std::string>& components);
    std::string createPalette(const std::vector<std::string>& components);
    void cloudFetch();
    void snapshotCheck();
    void registerShortcuts();
    void formatUpdated();
    // A store that could not be saved, or whose damaged file was put aside: one notice at the tray.
    void storeProblemNotice(const StoreProblem& problem);
    // Sets the slot of the application in front (or of the one named); `done` says whether it took the colour.
    void sendToApplication(const ColorValue& color, PickerPlugin slot, const std::optional<std::string>& application,
                           std::function<void(bool)> done);
    // The plain delivery of `copyColor`: the default text and the colour tooltip.
    void deliverPlainly(const ColorValue& value, bool clipboard);
    // `copyColor` to a slot of the application in front, falling back to the plain delivery.
    void deliverToApplication(const ColorValue& value, bool clipboard, ColorDeliveryTarget target);
    // Where no tray shows the icon, tells the person once how else to reach Kro.
    void explainMissingTray();
    void openPickerForRequest();
    void finishPickRequest(const Json& answer);

    Desktop desktop_;
    std::unique_ptr<Picker> picker_;
    std::vector<NotificationCenter::Token> observers_;
    // The command-line pick under way, and where its answer goes.
    std::optional<PickRequest> pendingPick_;
    std::function<void(const std::string&)> pendingPickReply_;
};

}  // namespace kro
