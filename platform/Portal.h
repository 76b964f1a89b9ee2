#pragma once
// The desktop portal (org.freedesktop.portal.Desktop on the session bus) as the picker uses it: a request is a
// method call answered at once with the path of a Request object, then later by that object's Response signal.
// The bus itself is behind `PortalBus`, so the handling of replies runs the same on a fake.
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kro {

// A value read off the bus. Structures come as lists.
struct BusValue {
    enum class Kind { none, boolean, integer, number, text, list, dict };
    Kind kind = Kind::none;
    bool boolean = false;
    int64_t integer = 0;
    double number = 0;
    std::string text;  // also object paths
    std::vector<BusValue> items;
    std::map<std::string, BusValue> entries;

    static BusValue ofText(std::string value);
    static BusValue ofInteger(int64_t value);
    static BusValue ofNumber(double value);
    static BusValue ofList(std::vector<BusValue> values);
    static BusValue ofDict(std::map<std::string, BusValue> values);
};

using BusDict = std::map<std::string, BusValue>;

// A D-Bus error reply; an empty name is no error.
struct BusError {
    std::string name;
    std::string message;
    bool empty() const { return name.empty(); }
};

// One global shortcut as the portal is asked to bind it.
struct PortalShortcut {
    std::string id;
    std::string description;
    std::string preferredTrigger;  // in the portal's syntax ("CTRL+ALT+p"); empty lets the person choose
};

class PortalBus {
public:
    virtual ~PortalBus() = default;
    // This connection's unique name (":1.42"), which the Request object paths are made from.
    virtual std::string uniqueName() const = 0;

    // The immediate answer to a call: the error, or the out arguments.
    using Reply = std::function<void(const BusError& error, const std::vector<BusValue>& values)>;
    virtual void screenshot(const std::string& handleToken, Reply reply) = 0;
    virtual void pickColor(const std::string& handleToken, Reply reply) = 0;
    virtual void createShortcutSession(const std::string& handleToken, const std::string& sessionToken, Reply reply) = 0;
    virtual void bindShortcuts(const std::string& sessionPath, const std::vector<PortalShortcut>& shortcuts,
                               const std::string& handleToken, Reply reply) = 0;
    // The "version" property of one of the portal's interfaces.
    virtual void interfaceVersion(const std::string& interface, Reply reply) = 0;
    // Asks a pending request to end; it answers nothing more.
    virtual void closeRequest(const std::string& requestPath) = 0;

    using Handler = std::function<void(const std::vector<BusValue>& arguments)>;
    // Signals `member` of `interface` sent from the object at `path`; the id stops them.
    virtual int subscribe(const std::string& path, const std::string& interface, const std::string& member, Handler handler) = 0;
    virtual void unsubscribe(int id) = 0;
};

inline constexpr const char* kPortalScreenshot = "org.freedesktop.portal.Screenshot";
inline constexpr const char* kPortalGlobalShortcuts = "org.freedesktop.portal.GlobalShortcuts";
inline constexpr const char* kPortalRequest = "org.freedesktop.portal.Request";
inline constexpr const char* kPortalObject = "/org/freedesktop/portal/desktop";

// How a request ended.
enum class PortalStatus { done, cancelled, denied, missing, failed, timedOut };

struct PortalOutcome {
    PortalStatus status = PortalStatus::failed;
    BusDict results;
    std::string detail;  // the bus's own words, for the log
};

// The object path of the Request a call with this token will be answered on.
std::string portalRequestPath(const std::string& uniqueName, const std::string& token);

// The outcome of a call's immediate answer when it is an error; missing when the portal or the method is absent.
PortalOutcome outcomeOfError(const BusError& error);
// The outcome of a Response signal's arguments (u response, a{sv} results).
PortalOutcome outcomeOfResponse(const std::vector<BusValue>& arguments);

// Runs one request to its end: the call, the Response on the request's object, or the time limit. `done` runs
// exactly once, on the main queue's thread.
class PortalRequest : public std::enable_shared_from_this<PortalRequest> {
public:
    using Call = std::function<void(const std::string& handleToken, PortalBus::Reply reply)>;
    using Done = std::function<void(const PortalOutcome& outcome)>;

    static std::shared_ptr<PortalRequest> start(PortalBus& bus, Call call, Done done, double timeoutSeconds = 10);
    // Ends the request without an answer: `done` will not run.
    void cancel();

private:
    PortalRequest(PortalBus& bus, Done done) : bus_(bus), done_(std::move(done)) {}
    void listen(const std::string& path);
    void finish(const PortalOutcome& outcome);

    PortalBus& bus_;
    Done done_;
    std::string path_;
    int subscription_ = -1;
    bool finished_ = false;
};

// What a finished Screenshot request gives: the local path of the picture, or the one line that says why not.
struct ScreenshotAnswer {
    std::optional<std::string> path;
    std::string problem;
};
ScreenshotAnswer screenshotAnswer(const PortalOutcome& outcome);

// What a finished PickColor request gives: the colour's sRGB components 0...1, or the line that says why not.
struct PickColorAnswer {
    std::optional<std::array<double, 3>> color;
    std::string problem;
};
PickColorAnswer pickColorAnswer(const PortalOutcome& outcome);

// A local path from a "file://" URI, percent escapes decoded; nothing for any other URI.
std::optional<std::string> pathOfFileURI(const std::string& uri);

// The portal's trigger syntax for one of our readable labels ("Ctrl+Alt+P" gives "CTRL+ALT+p"); empty when the
// key has no name the portal knows.
std::string portalTrigger(const std::string& readableLabel);

}  // namespace kro
