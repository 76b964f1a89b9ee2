// kro-agent: the agent in the tray. `kro` with no command starts it; it is a program of its own so that
// the command line does not load Qt and the desktop's libraries for every command.
#include <QApplication>
#include <QSocketNotifier>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include "app/AppDelegate.h"
#include "cli/Cli.h"
#include "cli/DisplayCheck.h"
#include "library/Sherlog.h"
#include "library/StoreLock.h"
#include "platform/AgentChannel.h"
#include "platform/Environment.h"
#include "platform/JsonFileDefaults.h"
#include "platform/WorkerQueue.h"
#include "platform/linux/CanberraSound.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/QtAgentServer.h"
#include "platform/linux/QtDesktopServices.h"
#include "platform/linux/QtQueues.h"
#include "platform/linux/QtStatusItem.h"
#include "platform/linux/QtPopUpMenu.h"
#include "platform/linux/QtTooltipWindow.h"
#include "platform/linux/X11ActiveApplication.h"
#include "platform/linux/QtDropFolder.h"
#include "platform/linux/QtLocalSocketClient.h"
#include "platform/linux/QtSessionBus.h"
#include "platform/linux/SessionDesktop.h"
#include "picker/HotKeys.h"
#include "workspaces/QtLoupeWindow.h"
#include "workspaces/QtWindowFactory.h"

namespace {

// Longer than a command that runs alone takes (a sync waits up to 90 s for its server).
constexpr std::chrono::seconds kAgentStoreLockWait{100};

// The portal's name and description of a desktop-wide shortcut; nothing for the picker's own keys.
std::optional<kro::PortalShortcut> globalAction(int identifier) {
    for (const auto& key : kro::HotKeys::shared().hotKeys) {
        if (static_cast<int>(key.id) == identifier && key.global) return kro::PortalShortcut{kro::text(key.id), key.name, {}};
    }
    return std::nullopt;
}

// SIGTERM and SIGINT end the event loop through a socket pair, the one safe way out of a signal handler.
int gSignalPipe[2] = {-1, -1};
void onSignal(int) {
    const char byte = 1;
    [[maybe_unused]] auto written = ::write(gSignalPipe[1], &byte, 1);
}

int runAgent(int argc, char** argv) {
    const auto variables = kro::sessionVariablesFromEnvironment();
    const auto session = kro::detectSession(variables);
    if (const auto problem = kro::cli::missingDisplayMessage(); problem || session == kro::SessionKind::none) {
        std::cerr << problem.value_or("kro: no desktop session was found\n");
        return kro::cli::exitFailed;
    }
    // Qt speaks the session's own protocol: a Wayland session's screen is seen through the compositor.
    setenv("QT_QPA_PLATFORM", session == kro::SessionKind::wayland ? "wayland" : "xcb", 0);

    const auto paths = kro::Paths::fromEnvironment();
    kro::PosixFiles files;
    files.createDirectories(paths.runtimeDir);
    chmod(paths.runtimeDir.c_str(), 0700);
    if (!kro::takeAgentLock(kro::agentLockPath(paths))) {
        std::cerr << "kro: the agent is already running in this session\n";
        return kro::cli::exitDone;
    }

    QApplication application(argc, argv);
    QApplication::setApplicationName("Kro");
    QApplication::setDesktopFileName(kro::kBundleIdentifier);
    QApplication::setQuitOnLastWindowClosed(false);

    kro::SystemClock clock;
    kro::QtMainQueue mainQueue;
    kro::WorkerQueue backgroundQueue;
    kro::JsonFileDefaults defaults(files, kro::JsonFileDefaults::pathIn(paths));
    kro::NotificationCenter notifications;
    kro::installEnvironment({&clock, &mainQueue, &backgroundQueue, &files, &defaults, &notifications, paths});

    // The agent changes the stores for as long as it runs; a command that finds no agent (one of another
    // session, or run just before this one started) holds them only for its run.
    kro::StoreLock::requireForWriting();
    auto storeLock = kro::StoreLock::take(std::chrono::milliseconds(0));
    if (!storeLock) {
        std::cerr << "kro: waiting for another kro to finish with the library\n";
        storeLock = kro::StoreLock::take(kAgentStoreLockWait);
    }
    if (!storeLock) {
        std::cerr << "kro: another kro holds the library (" << kro::StoreLock::path().value_or("its lock")
                  << "): an agent of another session, or a command still at work\n";
        return kro::cli::exitFailed;
    }

    kro::QtStatusItem statusItem;
    kro::QtTooltipWindow tooltip([&statusItem] { return statusItem.geometry(); },
                                 [&statusItem](const std::string& message, double seconds) { statusItem.notifyBriefly(message, seconds); });
    kro::QtClipboard clipboard;
    kro::QtNetworkMonitor networkMonitor;
    kro::QtAppearance appearance;
    kro::QtApplication app;

    // The picker's desktop, by session (keys, pointer, capture, windows); Qt for the loupe and menus.
    kro::SessionDesktop pickerDesktop(session, variables, globalAction, [](const std::string& line, bool error) {
        SHERLOG(line, error ? kro::SherlogLevel::error : kro::SherlogLevel::info);
    });
    kro::QtLoupeWindow loupe;
    if (pickerDesktop.backdrop()) loupe.setBackdrop(pickerDesktop.backdrop());
    kro::QtPopUpMenu popUpMenu;
    kro::CanberraSound sound(paths.cacheHome + "/" + kro::kBundleIdentifier + "/sounds");

    kro::Desktop desktop{&statusItem, &tooltip, &clipboard, &networkMonitor, &appearance, &app};
    desktop.hotKeyCenter = pickerDesktop.hotKeyCenter();
    desktop.pointer = pickerDesktop.pointer();
    desktop.screenCapture = pickerDesktop.screenCapture();
    desktop.loupeWindow = &loupe;
    desktop.popUpMenu = &popUpMenu;
    desktop.keySimulator = pickerDesktop.keySimulator();
    desktop.sound = &sound;
    desktop.workspace = pickerDesktop.workspace();
    kro::QtWindowFactory windows;
    desktop.windows = &windows;
    // The design-application bridges: the application in front and the channels to GIMP, Inkscape, Krita.
    kro::X11ActiveApplication activeApplication;
    kro::QtSessionBus sessionBus;
    kro::QtDropFolder dropFolder(paths.runtimeDir + "/" + kro::kBundleIdentifier + "/answers");
    kro::QtLocalSocketClient localSockets;
    desktop.activeApplication = &activeApplication;
    desktop.sessionBus = &sessionBus;
    desktop.dropFolder = &dropFolder;
    desktop.localSockets = &localSockets;
    kro::AppDelegate delegate(desktop);
    windows.setDelegate(&delegate);
    loupe.setPicker(&delegate.picker());

    kro::QtAgentServer server([&delegate](const std::string& request, const kro::QtAgentServer::Reply& reply) {
        delegate.handleAgentRequest(request, reply);
    });
    std::string error;
    if (!server.listen(kro::agentSocketPath(paths), error)) {
        std::cerr << "kro: cannot listen for other kro commands: " << error << "\n";
        return kro::cli::exitFailed;
    }

    socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, gSignalPipe);
    QSocketNotifier signalNotifier(gSignalPipe[0], QSocketNotifier::Read);
    QObject::connect(&signalNotifier, &QSocketNotifier::activated, [] { QCoreApplication::quit(); });
    std::signal(SIGTERM, onSignal);
    std::signal(SIGINT, onSignal);

    delegate.applicationDidFinishLaunching();
    SHERLOG(std::string("tray: ") + (statusItem.isTrayAvailable() ? "available" : "not available"), kro::SherlogLevel::info);
    if (!statusItem.isTrayAvailable()) {
        std::cerr << "kro: no system tray was found; the agent runs without its icon"
                  << (session == kro::SessionKind::wayland ? " (a Wayland desktop shows it through a StatusNotifierItem host, "
                                                             "such as KDE Plasma's tray or waybar's)"
                                                           : "")
                  << "\n";
    }
    SHERLOG("Kro is running", kro::SherlogLevel::info);
    const int status = QApplication::exec();
    delegate.applicationWillTerminate();
    return status;
}

}  // namespace

int main(int argc, char** argv) { return runAgent(argc, argv); }
