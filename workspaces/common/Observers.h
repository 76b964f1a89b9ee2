#pragma once
// Notification observers that a window or model holds for as long as it lives.
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "platform/Environment.h"
#include "platform/NotificationCenter.h"

namespace kro {

class Observers {
public:
    Observers() = default;
    Observers(const Observers&) = delete;
    Observers& operator=(const Observers&) = delete;
    ~Observers() {
        for (auto token : tokens_) env().notifications->removeObserver(token);
    }

    // `handler` runs on each of the named notifications.
    void on(std::initializer_list<const char*> names, const std::function<void()>& handler) {
        for (const char* name : names) {
            tokens_.push_back(env().notifications->addObserver(name, [handler](const std::any&) { handler(); }));
        }
    }

private:
    std::vector<NotificationCenter::Token> tokens_;
};

}  // namespace kro
