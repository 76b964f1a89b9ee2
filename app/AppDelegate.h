#pragma once
// The one application controller: owns the tray icon, the tooltip, the timers and the network monitor,
// starts the singletons in the launch order, routes URL commands and opened files, and re-applies settings
// when their notifications arrive.
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

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

class AppDelegate {
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
    std::string handleAgentRequest(const std::string& line);

    // The poll tick: the cloud fetch, then the snapshot check (each as it exists).
    void pollTick(int interval = 60);
    // Network path changes; called on the monitor's thread.
    void networkPathDidChange(NetworkStatus status);
    void restartAutoImportTimer();
    void redrawStatusButton();
    void applyTheme();
    void applyDockState();
    void showStatusTooltip(const std::string& message, double seconds = 2.0);

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

    Desktop desktop_;
    std::vector<NotificationCenter::Token> observers_;
};

}  // namespace kro
