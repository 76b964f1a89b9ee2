#include "app/AppDelegate.h"

#include <mutex>

#include "app/URLCommand.h"
#include "bridges/Plugin.h"
#include "cloud/CloudSync.h"
#include "cloud/ConfiguredCloudSession.h"
#include "cloud/Snapshots.h"
#include "documents/ChangeRequests.h"
#include "documents/DocumentHandler.h"
#include "formats/ColorFormatUndo.h"
#include "formats/ColorFormats.h"
#include "formats/SmartFormats.h"
#include "formats/SmartProfiles.h"
#include "formats/color/AutoImport.h"
#include "formats/color/ColorConversions.h"
#include "formats/color/ColorList.h"
#include "library/DockData.h"
#include "library/Notifications.h"
#include "library/Preferences.h"
#include "library/Settings.h"
#include "library/Sherlog.h"
#include "library/StoreProblem.h"
#include "library/User.h"
#include "library/UserUndo.h"
#include "picker/CMD.h"
#include "picker/HotKeyLabel.h"
#include "picker/HotKeys.h"
#include "picker/Sound.h"
#include "platform/AgentChannel.h"
#include "platform/Environment.h"
#include "platform/Json.h"

namespace kro {
namespace {

// The network handler runs on another thread; the last status is all it shares with the main thread.
std::mutex gNetworkMutex;

constexpr double kTooltipSeconds = 2.0;
// Long enough to read a path and a reason.
constexpr double kProblemSeconds = 10.0;

std::optional<ColorValue> colorFromURLComponent(const std::string& kind, const std::string& value) {
    if (kind == "hex") return colorFromHex(value);
    if (kind == "rgba") {
        auto rgba = parseDashedRGBA(value);
        if (!rgba) return std::nullopt;
        return ColorValue::rgb(rgba->red, rgba->green, rgba->blue, rgba->alpha);
    }
    return std::nullopt;
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    size_t start = 0;
    for (;;) {
        const auto at = text.find(separator, start);
        parts.push_back(text.substr(start, at == std::string::npos ? std::string::npos : at - start));
        if (at == std::string::npos) return parts;
        start = at + 1;
    }
}

}  // namespace

std::optional<PreferencesPane> preferencesPane(const std::string& name) {
    static const std::vector<PreferencesPane> panes = {{"general", 0}, {"appearance", 1}, {"formats", 2},
                                                        {"shortcuts", 6}, {"dock", 5},     {"snapshots", 8},
                                                        {"about", 9}};
    for (const auto& pane : panes) {
        if (pane.name == name) return pane;
    }
    return std::nullopt;
}

AppDelegate::AppDelegate(Desktop desktop) : desktop_(desktop) {
    // The dock window reads these two at construction, so they exist (unloaded) before launch proper.
    DockData::shared();
    Preferences::shared();
    picker_ = std::make_unique<Picker>(PickerServices{desktop_.loupeWindow, desktop_.pointer, desktop_.screenCapture,
                                                      desktop_.workspace, desktop_.popUpMenu, desktop_.keySimulator});
    Sound::setPlayer(desktop_.sound);
    CMD::setKeySimulator(desktop_.keySimulator);
    Plugin::shared().setServices({desktop_.activeApplication, desktop_.sessionBus, desktop_.dropFolder, desktop_.localSockets,
                                  desktop_.clipboard});
    // "Send to software" is offered while the application in front has an entry with an icon.
    picker_->pluginIcon = [] {
        const auto& current = Plugin::shared().current;
        return current ? current->iconImage() : std::nullopt;
    };
    if (desktop_.statusItem) desktop_.statusItem->onActivated = [this] { statusItemDidPress(); };
}

AppDelegate::~AppDelegate() {
    for (auto token : observers_) env().notifications->removeObserver(token);
}

void AppDelegate::applicationDidFinishLaunching() {
    // Preferences, settings and dock data first: everything after reads them.
    Preferences::shared().load();
    Settings::shared().load();
    DockData::shared().load();
    HotKeys::shared().load();

    // The library is read now, so that the repair below sees it; its completion (the once-only legacy
    // import) runs on a later turn of the loop.
    // Sync is installed first; the comparison in the completion settles a library that loaded older or newer
    // than the account's record.
    installCloudSync();
    User::shared()->load([](bool success, const std::optional<std::string>& error) {
        env().mainQueue->post([success, error] {
            if (!success) {
                SHERLOG("The library did not load" + (error ? ": " + *error : std::string(", no file yet")) +
                            "; the built-in library stands",
                        SherlogLevel::info);
            }
            User::shared()->importLegacy();
            // The library as it stands at launch is the first state undo can return to, so that the first change
            // (a snapshot restored, say) can be undone.
            UserUndo::shared().save(*User::shared(), 0);
            CloudSync::shared().fetchCloudKit("Kro/AppDelegate", "applicationDidFinishLaunching()", __LINE__);
        });
    });

    // The catalogue's first undo state is recorded half a second after it loads.
    ColorFormats::shared().load([](bool success, const std::optional<std::string>&) {
        if (success) ColorFormatUndo::shared().save(ColorFormats::shared(), 0.5);
    });
    SmartFormats::shared().load();
    SmartProfiles::shared().load();
    Snapshots::shared().load();
    Plugin::shared().load();
    ColorList::shared();

    registerShortcuts();
    createWindowControllers();
    Plugin::shared().startTracking();
    addObservers();

    User::shared()->fixUUIDS();
    ColorFormats::shared().fixUUIDS();
    applyTheme();

    showOnboardingWhenDue();

    if (desktop_.networkMonitor) {
        desktop_.networkMonitor->start([this](NetworkStatus status) { networkPathDidChange(status); });
    }

    if (pollTimer) pollTimer->invalidate();
    pollTimer = env().mainQueue->scheduleRepeating(Seconds(60), [this] { pollTick(); });

    buildStatusMenu();
    applyDockState();
    redrawStatusButton();
    restartAutoImportTimer();
    explainMissingTray();
}

void AppDelegate::explainMissingTray() {
    if (!desktop_.statusItem || desktop_.statusItem->isInTray()) return;
    std::string hotKey;
    if (const auto* key = HotKeys::shared().hotKey(HotKeyIdentifier::openPicker); key && key->enabled() && !key->deleted) {
        hotKey = readableShortcutLabel(key->flags, key->code) + ", ";
    }
    desktop_.statusItem->notify("Kro is running without a tray icon",
                                "This desktop shows no tray, so Kro has no icon. Pick a color with " + hotKey +
                                    "with the Pick Color action of Kro in the applications menu, or with "
                                    "\"kro open kro://picker\". The icon appears once a tray does.");
}

void AppDelegate::applicationWillTerminate() {
    if (desktop_.networkMonitor) desktop_.networkMonitor->cancel();
}

void AppDelegate::addObservers() {
    auto& center = *env().notifications;
    observers_.push_back(center.addObserver(Notifications::statusUpdated, [this](const std::any&) { redrawStatusButton(); }));
    observers_.push_back(center.addObserver(Notifications::colorFormatUpdated, [this](const std::any&) {
        formatUpdated();
    }));
    observers_.push_back(center.addObserver(Notifications::colorBlindnessUpdated, [this](const std::any&) { redrawStatusButton(); }));
    observers_.push_back(center.addObserver(Notifications::appThemeUpdated, [this](const std::any&) { applyTheme(); }));
    observers_.push_back(center.addObserver(Notifications::dockUpdated, [this](const std::any&) { applyDockState(); }));
    // The same text as the colour-blindness change: each post reaches both observers.
    observers_.push_back(center.addObserver(Notifications::autoImportUpdated, [this](const std::any&) { restartAutoImportTimer(); }));
    observers_.push_back(center.addObserver(Notifications::userUpdated, [this](const std::any&) { buildStatusMenu(); }));
    observers_.push_back(center.addObserver(Notifications::storeProblem, [this](const std::any& object) {
        if (const auto* problem = std::any_cast<StoreProblem>(&object)) storeProblemNotice(*problem);
    }));
}

void AppDelegate::storeProblemNotice(const StoreProblem& problem) {
    // A disk that stays full fails every save: the person hears of it once, until a save succeeds again.
    if (problem.repeated) return;
    const bool failed = problem.kind == StoreProblem::Kind::saveFailed;
    const auto notice = failed ? "Not saved: " + problem.message() : problem.message();
    // After the action that saved has shown its own tooltip ("Color Created"), so that this one stays.
    env().mainQueue->post([this, notice] { showStatusTooltip(notice, kProblemSeconds); });
}

void AppDelegate::buildStatusMenu() {
    if (!desktop_.statusItem) return;
    std::vector<StatusMenuItem> items;
    items.push_back({"Pick Color", [this] { openPicker(PickerSource::standard); }});
    if (menuWindowController) items.push_back({"Show Menu Window", [this] { openMenuWindow(); }});
    if (mainWindowController) items.push_back({"Open Library", [this] { openMainWindow(); }});
    if (contrastWindowController) items.push_back({"Contrast Checker", [this] { openContrastWindow(); }});
    if (colorPanelWindowController) items.push_back({"Color Panel", [this] { openColorPanel(); }});
    if (preferencesWindowController) items.push_back({"Preferences", [this] { openPreferences(); }});
    // The recent history until the menu window exists: a click copies the colour again.
    const auto& history = User::shared()->history->colors;
    if (!history.empty()) items.push_back({});
    for (size_t i = 0; i < history.size() && i < 10; ++i) {
        const auto color = history[i];
        items.push_back({ColorFormats::shared().menuString(color->colorValue()),
                         [this, color] { copyColor(color, true, ColorDeliveryTarget::clipboard); }, color->colorValue()});
    }
    items.push_back({});
    items.push_back({"Quit Kro", [this] { quit(); }});
    desktop_.statusItem->setMenu(std::move(items));
}

void AppDelegate::redrawStatusButton() {
    if (!desktop_.statusItem) return;
    // Until a colour is delivered in this run, the icon shows the newest of the history, so that it keeps
    // the last colour across a restart.
    auto shown = clipboardColor;
    if (const auto& history = User::shared()->history->colors; !shown && !history.empty()) shown = history.front()->colorValue();
    const bool showColor = Preferences::shared().displayLastColor() && shown;
    desktop_.statusItem->redraw(showColor ? shown : std::nullopt);
}

void AppDelegate::applyTheme() {
    if (!desktop_.appearance) return;
    switch (Preferences::shared().appTheme()) {
        case AppTheme::light: desktop_.appearance->apply(false); break;
        case AppTheme::dark: desktop_.appearance->apply(true); break;
        case AppTheme::automatic: desktop_.appearance->apply(std::nullopt); break;
    }
}

void AppDelegate::restartAutoImportTimer() {
    if (autoImportTimer) autoImportTimer->invalidate();
    autoImportTimer.reset();
    if (!Preferences::shared().autoImport()) return;
    auto importer = std::make_shared<AutoImport>(
        [this]() -> std::optional<std::string> {
            return desktop_.clipboard ? desktop_.clipboard->text() : std::nullopt;
        },
        Preferences::shared().autoImportPattern(),
        [](const std::vector<ColorValue>& colors) {
            auto user = User::shared();
            if (user->history->lock) return;
            for (const auto& value : colors) {
                auto color = Color::make(value);
                if (!user->history->containsHex(color->hex)) user->history->colors.insert(user->history->colors.begin(), color);
            }
            user->history->trigger(true, true, true, true);
        });
    autoImportTimer = env().mainQueue->scheduleRepeating(Seconds(1), [this, importer] {
        if (auto message = importer->tick()) showStatusTooltip(*message, kTooltipSeconds);
        autoImportLast = importer->autoImportLast();
    });
}

void AppDelegate::pollTick(int interval) {
    const auto now = std::chrono::duration_cast<std::chrono::seconds>(env().clock->now().time_since_epoch()).count();
    if (interval <= 60 || now % 3600 <= interval) {
        // The snapshot is taken once the fetch has settled the library (at once when signed out).
        CloudSync::shared().fetchCloudKit("Kro/AppDelegate", "pollTick(interval:)", __LINE__, [this] { snapshotCheck(); });
        return;
    }
    snapshotCheck();
}

void AppDelegate::cloudFetch() {
    CloudSync::shared().fetchCloudKit("Kro/AppDelegate", "cloudFetch()", __LINE__);
}

void AppDelegate::snapshotCheck() {
    Snapshots::shared().check([](bool added) {
        if (added) SHERLOG("Snapshot added", SherlogLevel::debug);
    });
}

void AppDelegate::networkPathDidChange(NetworkStatus status) {
    {
        std::lock_guard lock(gNetworkMutex);
        if (lastNetworkStatus == status) return;
        lastNetworkStatus = status;
    }
    if (status == NetworkStatus::satisfied) {
        ++cloudFetchRequests;
        env().mainQueue->post([this] { cloudFetch(); });
    }
}

void AppDelegate::showStatusTooltip(const std::string& message, double seconds) {
    SHERLOG("tooltip: " + message, SherlogLevel::info);
    if (desktop_.tooltipStatusWindow) desktop_.tooltipStatusWindow->show(message, seconds);
}

void AppDelegate::applicationOpenFiles(const std::vector<std::string>& paths) {
    const auto summary = DocumentHandler::openFiles(paths);
    showStatusTooltip(summary.message(), kTooltipSeconds);
}

void AppDelegate::handleAgentRequest(const std::string& line, const std::function<void(const std::string& reply)>& reply) {
    if (isBridgeRequest(line)) return handleBridgeRequest(line, reply);
    const auto request = Json::parse(line, nullptr, false);
    if (isChangeRequest(request)) {
        return handleChangeRequest(request, [reply](const Json& answer) { reply(compactText(answer)); });
    }
    if (isPickRequest(request)) return handlePickRequest(request, reply);
    if (!request.is_object() || !request.contains("open") || !request["open"].is_array()) {
        return reply(compactText(Json{{"ok", false}, {"error", "the agent did not understand the request"}}));
    }
    std::vector<std::string> files;
    for (const auto& item : request["open"]) {
        if (!item.is_string()) continue;
        const auto arg = item.get<std::string>();
        if (isURLArgument(arg)) {
            handleURL(arg);
        } else {
            files.push_back(arg);
        }
    }
    if (!files.empty()) applicationOpenFiles(files);
    reply(compactText(Json{{"ok", true}}));
}

void AppDelegate::handleURL(const std::string& url) {
    const auto check = checkURLCommand(url);
    const auto refusal = check.refusal.empty() ? runURLCommand(check.components) : check.refusal;
    // A link does nothing visible when it is wrong; the one log line is how a person finds out why.
    if (!refusal.empty()) SHERLOG("URL command ignored, " + refusal + ": " + loggableURL(url), SherlogLevel::info);
}

std::string AppDelegate::runURLCommand(const std::vector<std::string>& components) {
    const auto& command = components[0];
    if (command == "license") {
        SHERLOG("Licence command: this build has no licence window", SherlogLevel::debug);
    } else if (command == "picker") {
        openPicker(PickerSource::standard);
    } else if (command == "contrast") {
        const auto pair = split(components[2], ',');
        if (pair.size() != 2) return "a contrast takes two colors";
        auto foreground = colorFromURLComponent(components[1], pair[0]);
        auto background = colorFromURLComponent(components[1], pair[1]);
        if (!foreground || !background) return "a color does not read";
        openContrastWindow(*foreground, *background);
    } else if (command == "settings") {
        const auto pane = components.size() == 2 ? preferencesPane(components[1]) : std::nullopt;
        if (components.size() == 2 && !pane) return "unknown settings pane";
        openPreferences(pane);
    } else if (command == "library") {
        openMainWindow();
    } else if (command == "colorpanel") {
        openColorPanel();
    } else if (command == "color") {
        return createColor(components);
    } else if (command == "palette") {
        return createPalette(components);
    }
    return "";
}

std::string AppDelegate::createColor(const std::vector<std::string>& components) {
    auto value = colorFromURLComponent(components[1], components[2]);
    if (!value) return "the color does not read";
    User::shared()->addColorToTarget(Color::make(*value, components[3]));
    showStatusTooltip("Color Created", kTooltipSeconds);
    return "";
}

std::string AppDelegate::createPalette(const std::vector<std::string>& components) {
    std::vector<ColorRef> colors;
    for (const auto& item : split(components[2], ',')) {
        auto value = colorFromURLComponent(components[1], item);
        if (!value) return "a color does not read";
        colors.push_back(Color::make(*value));
    }
    const auto& name = components[3];
    auto user = User::shared();
    auto palette = Palette::make(colors, name == "_" ? std::nullopt : std::optional<std::string>(name));
    user->addPalette(palette);
    showStatusTooltip("Palette Created", kTooltipSeconds);
    return "";
}

}  // namespace kro
