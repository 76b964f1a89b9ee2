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
    // A kro:// URL command. Unknown commands and wrong counts do nothing, silently.
    void handleURL(const std::string& url);
    // One request line of `kro open`; returns the reply line.
    // Answers a request line from another kro: through `reply`, at once or (for a sync) when it is done.
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
    // Picked-colour delivery (AppDelegate+Delivery.cpp).
    void pickerDidPick(const ColorValue& color, PickerSource source) override;
    void pickerDidSend(const ColorValue& color, PickerPlugin destination) override;
    // Pops up the menu that puts the colours of a multiple or contrast session in a new or existing palette.
    void pickerDidPick(const std::vector<ColorValue>& colors) override;
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
    Picker& picker() { return *picker_; }

    AppState appState = AppState::valid;
    std::optional<ColorValue> clipboardColor;
    std::set<std::string> clipboards;
    std::optional<NetworkStatus> lastNetworkStatus;
    std::unique_ptr<Timer> pollTimer;
    std::unique_ptr<Timer> autoImportTimer;
    std::optional<std::string> autoImportLast;

    // How many cloud fetches the network handler asked for (the fetch itself arrives with sync).
    int cloudFetchRequests = 0;

private:
    void addObservers();
    void buildStatusMenu();
    void createColor(const std::vector<std::string>& components);
    void createPalette(const std::vector<std::string>& components);
    void cloudFetch();
    void snapshotCheck();
    void registerShortcuts();
    void formatUpdated();
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
