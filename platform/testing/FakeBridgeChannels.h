#pragma once
// Fakes of the bridges' channels: a session bus, a drop folder and local sockets that record what is sent
// and answer when the test says, and an application in front that the test changes.
#include <map>
#include <string>
#include <vector>

#include "platform/ActiveApplication.h"
#include "platform/BridgeChannels.h"

namespace kro::testing {

struct FakeSessionBus final : SessionBus {
    struct Pending {
        DBusCall call;
        Done done;
    };
    void call(const DBusCall& call, Milliseconds, Done done) override { calls.push_back({call, std::move(done)}); }
    // Answers the oldest unanswered call: success, or the error given.
    void answer(const std::optional<std::string>& error = std::nullopt) {
        for (auto& pending : calls) {
            if (!pending.done) continue;
            auto done = std::move(pending.done);
            pending.done = nullptr;
            return done(error);
        }
    }
    std::vector<Pending> calls;
};

struct FakeDropFolder final : DropFolder {
    std::string path() override { return folder; }
    void await(const std::string& name, Arrived arrived) override { waiting[name] = std::move(arrived); }
    void forget(const std::string& name) override {
        waiting.erase(name);
        forgotten.push_back(name);
    }
    // A writer closes the file: the one waiting for it reads it, as the real folder does.
    void write(const std::string& name, const std::string& contents) {
        const auto found = waiting.find(name);
        if (found == waiting.end()) return;
        auto arrived = std::move(found->second);
        waiting.erase(found);
        arrived(contents);
    }
    // The name of the one file waited for.
    std::string awaited() const { return waiting.size() == 1 ? waiting.begin()->first : ""; }
    std::string folder = "/run/user/1000/kroapp.Kro/answers";
    std::map<std::string, Arrived> waiting;
    std::vector<std::string> forgotten;
};

struct FakeLocalSocketClient final : LocalSocketClient {
    struct Pending {
        std::string path;
        std::string line;
        Done done;
    };
    void exchange(const std::string& socketPath, const std::string& line, Milliseconds, Done done) override {
        exchanges.push_back({socketPath, line, std::move(done)});
    }
    void reply(const std::optional<std::string>& line, const std::string& error = "") {
        for (auto& pending : exchanges) {
            if (!pending.done) continue;
            auto done = std::move(pending.done);
            pending.done = nullptr;
            return done({line, error});
        }
    }
    std::vector<Pending> exchanges;
};

struct FakeActiveApplicationMonitor final : ActiveApplicationMonitor {
    void start(Changed newChanged) override {
        changed = std::move(newChanged);
        changed(front);
    }
    std::vector<RunningApplication> running() const override { return windows; }
    void activate(const RunningApplication& application) override { activated.push_back(application); }
    void bringToFront(const std::optional<RunningApplication>& application) {
        front = application;
        if (changed) changed(front);
    }
    Changed changed;
    std::optional<RunningApplication> front;
    std::vector<RunningApplication> windows;
    std::vector<RunningApplication> activated;
};

inline RunningApplication gimpWindow() { return {11, 4242, "", "gimp", "Gimp", "[Untitled]-1.0 – GIMP"}; }
inline RunningApplication inkscapeWindow() { return {12, 4343, "org.inkscape.Inkscape", "org.inkscape.Inkscape", "Inkscape", "doc.svg"}; }
inline RunningApplication kritaWindow() { return {13, 4444, "", "krita", "krita", "Krita"}; }
inline RunningApplication blenderWindow() { return {14, 4545, "", "blender", "Blender", "Blender"}; }
inline RunningApplication terminalWindow() { return {15, 4646, "", "xterm", "XTerm", "xterm"}; }

}  // namespace kro::testing
