#include "platform/Portal.h"

#include <cctype>

#include "platform/Environment.h"

namespace kro {

BusValue BusValue::ofText(std::string value) {
    BusValue result;
    result.kind = Kind::text;
    result.text = std::move(value);
    return result;
}

BusValue BusValue::ofInteger(int64_t value) {
    BusValue result;
    result.kind = Kind::integer;
    result.integer = value;
    return result;
}

BusValue BusValue::ofNumber(double value) {
    BusValue result;
    result.kind = Kind::number;
    result.number = value;
    return result;
}

BusValue BusValue::ofList(std::vector<BusValue> values) {
    BusValue result;
    result.kind = Kind::list;
    result.items = std::move(values);
    return result;
}

BusValue BusValue::ofDict(std::map<std::string, BusValue> values) {
    BusValue result;
    result.kind = Kind::dict;
    result.entries = std::move(values);
    return result;
}

std::string portalRequestPath(const std::string& uniqueName, const std::string& token) {
    // ":1.42" becomes "1_42".
    std::string sender;
    for (const char c : uniqueName) {
        if (c == ':') continue;
        sender += c == '.' ? '_' : c;
    }
    return std::string(kPortalObject) + "/request/" + sender + "/" + token;
}

PortalOutcome outcomeOfError(const BusError& error) {
    static const char* const absent[] = {
        "org.freedesktop.DBus.Error.ServiceUnknown", "org.freedesktop.DBus.Error.NameHasNoOwner",
        "org.freedesktop.DBus.Error.UnknownMethod",  "org.freedesktop.DBus.Error.UnknownInterface",
        "org.freedesktop.DBus.Error.UnknownObject",  "org.freedesktop.DBus.Error.UnknownProperty",
    };
    PortalOutcome outcome{PortalStatus::failed, {}, error.name + (error.message.empty() ? "" : ": " + error.message)};
    for (const char* name : absent) {
        if (error.name == name) outcome.status = PortalStatus::missing;
    }
    if (error.name == "org.freedesktop.portal.Error.NotAllowed") outcome.status = PortalStatus::denied;
    return outcome;
}

PortalOutcome outcomeOfResponse(const std::vector<BusValue>& arguments) {
    if (arguments.empty() || arguments[0].kind != BusValue::Kind::integer) {
        return {PortalStatus::failed, {}, "a Response without its code"};
    }
    PortalOutcome outcome;
    if (arguments.size() > 1 && arguments[1].kind == BusValue::Kind::dict) outcome.results = arguments[1].entries;
    // 0 granted, 1 cancelled by the person, anything else ended otherwise (refused, failed).
    switch (arguments[0].integer) {
        case 0: outcome.status = PortalStatus::done; break;
        case 1: outcome.status = PortalStatus::cancelled; break;
        default: outcome.status = PortalStatus::denied; break;
    }
    return outcome;
}

std::shared_ptr<PortalRequest> PortalRequest::start(PortalBus& bus, Call call, Done done, double timeoutSeconds) {
    static int counter = 0;
    const std::string token = "kro" + std::to_string(++counter);
    std::shared_ptr<PortalRequest> request(new PortalRequest(bus, std::move(done)));
    // Listen before calling: the Response may come before the call's own answer.
    request->listen(portalRequestPath(bus.uniqueName(), token));
    std::weak_ptr<PortalRequest> weak = request;
    call(token, [weak](const BusError& error, const std::vector<BusValue>& values) {
        auto self = weak.lock();
        if (!self || self->finished_) return;
        if (!error.empty()) return self->finish(outcomeOfError(error));
        // Portals older than handle tokens answer on a path of their own choosing.
        if (!values.empty() && values[0].kind == BusValue::Kind::text && values[0].text != self->path_) self->listen(values[0].text);
    });
    env().mainQueue->post(
        [weak] {
            auto self = weak.lock();
            if (!self || self->finished_) return;
            self->bus_.closeRequest(self->path_);
            self->finish({PortalStatus::timedOut, {}, "no answer"});
        },
        Seconds(timeoutSeconds));
    return request;
}

void PortalRequest::listen(const std::string& path) {
    if (subscription_ >= 0) bus_.unsubscribe(subscription_);
    path_ = path;
    // The request keeps itself alive while it listens; the Response or the time limit lets it go.
    auto self = shared_from_this();
    subscription_ = bus_.subscribe(path, kPortalRequest, "Response", [self](const std::vector<BusValue>& arguments) {
        if (!self->finished_) self->finish(outcomeOfResponse(arguments));
    });
}

void PortalRequest::cancel() {
    if (finished_) return;
    bus_.closeRequest(path_);
    finished_ = true;
    done_ = nullptr;
    if (subscription_ >= 0) bus_.unsubscribe(subscription_);
    subscription_ = -1;
}

void PortalRequest::finish(const PortalOutcome& outcome) {
    finished_ = true;
    auto done = std::move(done_);
    done_ = nullptr;
    // Unsubscribing drops the handler that holds this object: keep it alive until the end of this call.
    auto keep = shared_from_this();
    if (subscription_ >= 0) bus_.unsubscribe(subscription_);
    subscription_ = -1;
    if (done) done(outcome);
}

namespace {

const char* const kInstallPortal =
    "install xdg-desktop-portal with the portal of this desktop (xdg-desktop-portal-gnome, xdg-desktop-portal-kde, "
    "or xdg-desktop-portal-wlr with xdg-desktop-portal-gtk)";

std::string problemOf(const PortalOutcome& outcome, const std::string& what, const std::string& allow) {
    switch (outcome.status) {
        case PortalStatus::done: break;
        case PortalStatus::cancelled: return what + " was cancelled";
        case PortalStatus::denied: return "the desktop portal refused " + what + ": " + allow;
        case PortalStatus::missing: return "the desktop portal offers no " + what + ": " + kInstallPortal;
        case PortalStatus::timedOut:
            return "the desktop portal did not answer within 10 seconds: check that xdg-desktop-portal and the portal of "
                   "this desktop are running";
        case PortalStatus::failed: return "the desktop portal's " + what + " failed (" + outcome.detail + ")";
    }
    return {};
}

}  // namespace

ScreenshotAnswer screenshotAnswer(const PortalOutcome& outcome) {
    auto problem = problemOf(outcome, "screenshot", "allow Kro to take screenshots in the desktop's privacy settings");
    if (!problem.empty()) return {std::nullopt, problem};
    const auto uri = outcome.results.find("uri");
    if (uri == outcome.results.end() || uri->second.kind != BusValue::Kind::text) {
        return {std::nullopt, "the desktop portal's screenshot came without a picture"};
    }
    if (auto path = pathOfFileURI(uri->second.text)) return {path, {}};
    return {std::nullopt, "the desktop portal's screenshot is not a local file (" + uri->second.text + ")"};
}

PickColorAnswer pickColorAnswer(const PortalOutcome& outcome) {
    auto problem = problemOf(outcome, "colour pick", "allow Kro to pick colours in the desktop's privacy settings");
    if (!problem.empty()) return {std::nullopt, problem};
    const auto found = outcome.results.find("color");
    const bool triple = found != outcome.results.end() && found->second.kind == BusValue::Kind::list &&
                        found->second.items.size() == 3;
    if (triple) {
        std::array<double, 3> color{};
        bool numbers = true;
        for (size_t i = 0; i < 3; ++i) {
            const auto& item = found->second.items[i];
            numbers = numbers && item.kind == BusValue::Kind::number && item.number >= 0 && item.number <= 1;
            color[i] = item.number;
        }
        if (numbers) return {color, {}};
    }
    return {std::nullopt, "the desktop portal's colour pick came without a colour"};
}

std::optional<std::string> pathOfFileURI(const std::string& uri) {
    const std::string scheme = "file://";
    if (uri.compare(0, scheme.size(), scheme) != 0) return std::nullopt;
    std::string rest = uri.substr(scheme.size());
    // "file://localhost/path" names this machine too; any other host is not ours.
    if (rest.compare(0, 9, "localhost") == 0) rest.erase(0, 9);
    if (rest.empty() || rest[0] != '/') return std::nullopt;
    std::string path;
    for (size_t i = 0; i < rest.size(); ++i) {
        if (rest[i] == '?' || rest[i] == '#') break;
        if (rest[i] != '%') {
            path += rest[i];
            continue;
        }
        if (i + 2 >= rest.size() || !std::isxdigit(static_cast<unsigned char>(rest[i + 1])) ||
            !std::isxdigit(static_cast<unsigned char>(rest[i + 2]))) {
            return std::nullopt;
        }
        const char byte = static_cast<char>(std::stoi(rest.substr(i + 1, 2), nullptr, 16));
        if (byte == '\0') return std::nullopt;
        path += byte;
        i += 2;
    }
    return path;
}

std::string portalTrigger(const std::string& readableLabel) {
    static const std::map<std::string, std::string> modifiers{
        {"Ctrl", "CTRL"}, {"Super", "LOGO"}, {"Alt", "ALT"}, {"Shift", "SHIFT"}};
    static const std::map<std::string, std::string> keys{
        {"Return", "Return"}, {"Space", "space"}, {"Escape", "Escape"}, {"Tab", "Tab"}, {"Backspace", "BackSpace"},
        {"Left", "Left"},     {"Right", "Right"}, {"Up", "Up"},         {"Down", "Down"}};
    std::string trigger;
    size_t start = 0;
    while (true) {
        const size_t plus = readableLabel.find('+', start);
        // A lone "+" key ends the label ("Ctrl++").
        const bool last = plus == std::string::npos || plus + 1 == readableLabel.size();
        const std::string part = last ? readableLabel.substr(start) : readableLabel.substr(start, plus - start);
        if (last) {
            std::string key;
            if (part.size() == 1 && std::isalnum(static_cast<unsigned char>(part[0]))) {
                key = std::string(1, static_cast<char>(std::tolower(static_cast<unsigned char>(part[0]))));
            } else if (part.size() >= 2 && part.size() <= 3 && part[0] == 'F' && std::isdigit(static_cast<unsigned char>(part[1]))) {
                key = part;
            } else if (const auto found = keys.find(part); found != keys.end()) {
                key = found->second;
            }
            return key.empty() ? std::string() : trigger + key;
        }
        const auto modifier = modifiers.find(part);
        if (modifier == modifiers.end()) return {};
        trigger += modifier->second + "+";
        start = plus + 1;
    }
}

}  // namespace kro
