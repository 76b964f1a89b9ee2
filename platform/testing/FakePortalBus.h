#pragma once
// A desktop portal on a fake bus: calls are recorded and answered by the test, signals are sent by the test.
#include <map>
#include <string>
#include <vector>

#include "platform/Portal.h"

namespace kro::testing {

struct FakePortalBus final : PortalBus {
    struct Call {
        std::string method;
        std::string token;
        std::vector<PortalShortcut> shortcuts;
        std::string sessionPath;
        Reply reply;
    };
    struct Subscription {
        std::string path, interface, member;
        Handler handler;
    };

    std::vector<Call> calls;
    std::vector<std::string> closed;
    std::map<int, Subscription> subscriptions;
    int nextId = 1;

    std::string uniqueName() const override { return ":1.42"; }
    void screenshot(const std::string& token, Reply reply) override { calls.push_back({"Screenshot", token, {}, {}, std::move(reply)}); }
    void pickColor(const std::string& token, Reply reply) override { calls.push_back({"PickColor", token, {}, {}, std::move(reply)}); }
    void createShortcutSession(const std::string& token, const std::string&, Reply reply) override {
        calls.push_back({"CreateSession", token, {}, {}, std::move(reply)});
    }
    void bindShortcuts(const std::string& sessionPath, const std::vector<PortalShortcut>& shortcuts, const std::string& token,
                       Reply reply) override {
        calls.push_back({"BindShortcuts", token, shortcuts, sessionPath, std::move(reply)});
    }
    void interfaceVersion(const std::string&, Reply reply) override { calls.push_back({"Get", {}, {}, {}, std::move(reply)}); }
    void closeRequest(const std::string& path) override { closed.push_back(path); }
    int subscribe(const std::string& path, const std::string& interface, const std::string& member, Handler handler) override {
        subscriptions[nextId] = {path, interface, member, std::move(handler)};
        return nextId++;
    }
    void unsubscribe(int id) override { subscriptions.erase(id); }

    // Sends a signal to whoever listens on that path, interface and member.
    void emit(const std::string& path, const std::string& interface, const std::string& member, const std::vector<BusValue>& arguments) {
        std::vector<Handler> handlers;
        for (const auto& [id, subscription] : subscriptions) {
            if (subscription.path == path && subscription.interface == interface && subscription.member == member) {
                handlers.push_back(subscription.handler);
            }
        }
        for (const auto& handler : handlers) handler(arguments);
    }
    // The Response of the request made by call `index`, on the path its token names.
    void respond(size_t index, int64_t code, BusDict results = {}) {
        emit(portalRequestPath(uniqueName(), calls.at(index).token), kPortalRequest, "Response",
             {BusValue::ofInteger(code), BusValue::ofDict(std::move(results))});
    }
    size_t listeners() const { return subscriptions.size(); }
};

}  // namespace kro::testing
