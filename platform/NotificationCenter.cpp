#include "platform/NotificationCenter.h"

#include <algorithm>

namespace kro {

NotificationCenter::Token NotificationCenter::addObserver(const std::string& name, Handler handler) {
    observers_.push_back({nextToken_, name, std::move(handler)});
    return nextToken_++;
}

void NotificationCenter::removeObserver(Token token) {
    std::erase_if(observers_, [token](const Observer& o) { return o.token == token; });
}

void NotificationCenter::post(const std::string& name, const std::any& object) {
    if (recording_) posted_.push_back(name);
    // A handler may add or remove observers: walk a copy of the matching ones.
    std::vector<Handler> handlers;
    for (const auto& observer : observers_) {
        if (observer.name == name) handlers.push_back(observer.handler);
    }
    for (const auto& handler : handlers) handler(object);
}

}  // namespace kro
