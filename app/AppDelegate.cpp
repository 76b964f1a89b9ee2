#include "app/AppDelegate.h"

#include <mutex>

#include "app/URLCommand.h"
#include "cloud/CloudSync.h"
#include "cloud/ConfiguredCloudSession.h"
#include "cloud/LibraryRequests.h"
#include "cloud/Snapshots.h"
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
#include "library/User.h"
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
    if (desktop_.statusItem) desktop_.statusItem->onActivated = [this] { openPicker(PickerSource::standard); };
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
    // Sync is installed first: a library that loads changed is pushed from inside the load.
    installCloudSync();
    User::shared()->load([](bool success, const std::optional<std::string>& error) {
        env().mainQueue->post([success, error] {
            if (!success) {
                SHERLOG("The library did not load" + (error ? ": " + *error : std::string(", no file yet")) +
                            "; the built-in library stands",
                        SherlogLevel::info);
            }
            User::shared()->importLegacy();
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
    ColorList::shared();

    registerShortcuts();
    addObservers();

    User::shared()->fixUUIDS();
    ColorFormats::shared().fixUUIDS();
    applyTheme();

    if (Preferences::needsOnboardingDisplay()) {
        // The first-run tour arrives with the windows; until then the flag stays for it.
        SHERLOG("Onboarding is due; it is shown once the windows exist", SherlogLevel::debug);
    } else {
        env().mainQueue->post([this] { showStatusTooltip("Kro is ready to use!", kTooltipSeconds); }, Seconds(3));
    }

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
}

void AppDelegate::buildStatusMenu() {
    if (!desktop_.statusItem) return;
    std::vector<StatusMenuItem> items;
    items.push_back({"Pick Color", [this] { openPicker(PickerSource::standard); }});
    // The recent history until the menu window exists: a click copies the colour again.
    const auto& history = User::shared()->history->colors;
    if (!history.empty()) items.push_back({});
    for (size_t i = 0; i < history.size() && i < 10; ++i) {
        const auto color = history[i];
        items.push_back({ColorFormats::shared().menuString(color->colorValue()),
                         [this, color] { copyColor(color, true, ColorDeliveryTarget::clipboard); }, color->colorValue()});
    }
    items.push_back({});
    items.push_back({"Quit Kro", [this] {
                         if (desktop_.application) desktop_.application->quit();
                     }});
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

void AppDelegate::applyDockState() {
    env().mainQueue->post([] {
        // The colour dock arrives with the workspace windows; its state is read here all the same.
        if (!Preferences::shared().dockVisible()) return;
        const auto& dock = DockData::shared();
        SHERLOG("Dock at " + text(dock.position()) + " on screen " + std::to_string(dock.screenIndex().value_or(0)),
                SherlogLevel::debug);
    });
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
    const auto request = Json::parse(line, nullptr, false);
    if (isLibraryRequest(request)) {
        return handleLibraryRequest(request, [reply](const Json& answer) { reply(compactText(answer)); });
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
    SHERLOG("URL command: " + url, SherlogLevel::debug);
    const auto parsed = urlCommandComponents(url);
    if (!parsed || parsed->empty()) return;
    const auto& components = *parsed;
    const auto& command = components[0];
    const auto count = components.size();

    if (command == "license" && count == 2) {
        SHERLOG("Licence command: this build has no licence window", SherlogLevel::debug);
    } else if (command == "picker" && count == 1) {
        openPicker(PickerSource::standard);
    } else if (command == "contrast" && count == 3) {
        const auto pair = split(components[2], ',');
        if (pair.size() != 2) return;
        auto foreground = colorFromURLComponent(components[1], pair[0]);
        auto background = colorFromURLComponent(components[1], pair[1]);
        if (!foreground || !background) return;
        SHERLOG("Contrast command: the contrast window is not built yet", SherlogLevel::info);
    } else if (command == "settings" && (count == 1 || count == 2)) {
        if (count == 2 && !preferencesPane(components[1])) return;
        SHERLOG("Settings command: the preferences window is not built yet", SherlogLevel::info);
    } else if (command == "color" && count == 4) {
        createColor(components);
    } else if (command == "palette" && count == 4) {
        createPalette(components);
    }
}

void AppDelegate::createColor(const std::vector<std::string>& components) {
    auto value = colorFromURLComponent(components[1], components[2]);
    if (!value) return;
    User::shared()->addColorToTarget(Color::make(*value, components[3]));
    showStatusTooltip("Color Created", kTooltipSeconds);
}

void AppDelegate::createPalette(const std::vector<std::string>& components) {
    std::vector<ColorRef> colors;
    for (const auto& item : split(components[2], ',')) {
        auto value = colorFromURLComponent(components[1], item);
        if (!value) return;
        colors.push_back(Color::make(*value));
    }
    const auto& name = components[3];
    auto user = User::shared();
    auto palette = Palette::make(colors, name == "_" ? std::nullopt : std::optional<std::string>(name));
    user->addPalette(palette);
    showStatusTooltip("Palette Created", kTooltipSeconds);
}

}  // namespace kro
