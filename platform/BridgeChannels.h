#pragma once
// The channels the design-application bridges speak through: the session bus, a private folder other
// programs of this user drop answers into, and private local sockets. Each call answers exactly once, on the
// main thread, and never blocks it.
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kro {

using Milliseconds = std::chrono::milliseconds;

// "av" holding strings: the parameters of a GIO application action.
struct DBusStringVariants {
    std::vector<std::string> values;
    bool operator==(const DBusStringVariants&) const = default;
};
// "a{sv}", empty: the platform data of an action.
struct DBusEmptyDictionary {
    bool operator==(const DBusEmptyDictionary&) const = default;
};
using DBusArgument = std::variant<std::string, DBusStringVariants, DBusEmptyDictionary>;

struct DBusCall {
    std::string service;
    std::string path;
    std::string interface;
    std::string method;
    std::vector<DBusArgument> arguments;
    bool operator==(const DBusCall&) const = default;
};

class SessionBus {
public:
    // Nothing on success, else the bus's error ("org.freedesktop.DBus.Error.ServiceUnknown: …").
    using Done = std::function<void(const std::optional<std::string>& error)>;
    virtual ~SessionBus() = default;
    virtual void call(const DBusCall& call, Milliseconds timeout, Done done) = 0;
};

// A folder only this user can enter, where another program writes a file that this one waits for.
class DropFolder {
public:
    using Arrived = std::function<void(const std::string& contents)>;
    virtual ~DropFolder() = default;
    // The folder's path, made private (0700) on first use; empty when it cannot be made.
    virtual std::string path() = 0;
    // Calls `arrived` with the file's contents once its writer has closed it, and removes the file.
    virtual void await(const std::string& name, Arrived arrived) = 0;
    // Stops waiting; a file that arrives later under that name is removed unread.
    virtual void forget(const std::string& name) = 0;
};

// One request line out and one reply line back over a local socket that another program listens on.
class LocalSocketClient {
public:
    struct Reply {
        std::optional<std::string> line;  // without its line feed; nothing on failure
        std::string error;
    };
    using Done = std::function<void(const Reply& reply)>;
    virtual ~LocalSocketClient() = default;
    // Refuses a listener that runs as another user (checked on the connected socket, not on the file).
    virtual void exchange(const std::string& socketPath, const std::string& line, Milliseconds timeout, Done done) = 0;
};

}  // namespace kro
