#include "platform/PortalHotKeyCenter.h"

#include <algorithm>

#include "platform/Environment.h"

namespace kro {
namespace {

bool sameShortcuts(const std::vector<PortalShortcut>& a, const std::vector<PortalShortcut>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const PortalShortcut& x, const PortalShortcut& y) {
        return x.id == y.id && x.preferredTrigger == y.preferredTrigger;
    });
}

}  // namespace

PortalHotKeyCenter::PortalHotKeyCenter(PortalBus* bus, GlobalAction globalAction, std::function<void(const std::string&)> report)
    : bus_(bus), globalAction_(std::move(globalAction)), report_(std::move(report)) {}

PortalHotKeyCenter::~PortalHotKeyCenter() {
    *alive_ = false;
    if (request_) request_->cancel();
    if (bus_ && activatedSubscription_ >= 0) bus_->unsubscribe(activatedSubscription_);
}

bool PortalHotKeyCenter::registerHotKey(int flags, int code, int identifier, const std::string& label) {
    registered_[identifier] = {flags, code, label};
    scheduleBinding();
    return true;
}

void PortalHotKeyCenter::unregisterAll() {
    registered_.clear();
    scheduleBinding();
}

bool PortalHotKeyCenter::keyPressed(int flags, int code) {
    for (const auto& [identifier, combination] : registered_) {
        if (combination.flags == flags && combination.code == code) {
            if (delegate) delegate(identifier);
            return true;
        }
    }
    return false;
}

// Keys are registered one by one after clearing all: bind once the whole set is in.
void PortalHotKeyCenter::scheduleBinding() {
    if (!bus_ || scheduled_) return;
    scheduled_ = true;
    std::weak_ptr<bool> alive = alive_;
    env().mainQueue->post([this, alive] {
        if (alive.expired()) return;
        scheduled_ = false;
        bindGlobalKeys();
    });
}

void PortalHotKeyCenter::bindGlobalKeys() {
    std::vector<PortalShortcut> wanted;
    for (const auto& [identifier, combination] : registered_) {
        auto shortcut = globalAction_ ? globalAction_(identifier) : std::nullopt;
        if (!shortcut) continue;
        shortcut->preferredTrigger = portalTrigger(combination.label);
        wanted.push_back(*shortcut);
    }
    // While the picker is open only its own keys are registered; the desktop keeps the bound set, and presses of
    // it are ignored until the set is registered again.
    if (wanted.empty()) return;
    wanted_ = std::move(wanted);
    if (sessionPath_.empty()) return createSession();
    sendBinding();
}

void PortalHotKeyCenter::createSession() {
    if (creating_) return;
    creating_ = true;
    std::weak_ptr<bool> alive = alive_;
    request_ = PortalRequest::start(
        *bus_,
        [this](const std::string& token, PortalBus::Reply reply) {
            bus_->createShortcutSession(token, "kro_shortcuts", std::move(reply));
        },
        [this, alive](const PortalOutcome& outcome) {
            if (alive.expired()) return;
            creating_ = false;
            const auto handle = outcome.results.find("session_handle");
            if (outcome.status != PortalStatus::done || handle == outcome.results.end() || handle->second.kind != BusValue::Kind::text) {
                report_("The desktop-wide shortcuts are not bound: the portal's GlobalShortcuts session could not be made (" +
                        (outcome.detail.empty() ? std::string("no session") : outcome.detail) +
                        "); use the tray, or bind `kro pick` to a shortcut in the desktop's settings");
                return;
            }
            sessionPath_ = handle->second.text;
            activatedSubscription_ = bus_->subscribe(kPortalObject, kPortalGlobalShortcuts, "Activated",
                                                     [this](const std::vector<BusValue>& arguments) { activated(arguments); });
            sendBinding();
        });
}

void PortalHotKeyCenter::sendBinding() {
    if (binding_ || wanted_.empty() || sameShortcuts(wanted_, bound_)) return;
    binding_ = true;
    const auto shortcuts = wanted_;
    std::weak_ptr<bool> alive = alive_;
    request_ = PortalRequest::start(
        *bus_,
        [this, shortcuts](const std::string& token, PortalBus::Reply reply) {
            bus_->bindShortcuts(sessionPath_, shortcuts, token, std::move(reply));
        },
        [this, alive, shortcuts](const PortalOutcome& outcome) {
            if (alive.expired()) return;
            binding_ = false;
            if (outcome.status == PortalStatus::done) {
                bound_ = shortcuts;
            } else {
                report_(std::string("The desktop-wide shortcuts are not bound: the desktop ") +
                        (outcome.status == PortalStatus::cancelled ? "was not given them" : "refused them") +
                        (outcome.detail.empty() ? "" : " (" + outcome.detail + ")") +
                        "; use the tray, or bind `kro pick` to a shortcut in the desktop's settings");
                // Not asked again until the set changes, so a refusal does not come back on every picker session.
                bound_ = shortcuts;
            }
            sendBinding();
        },
        // The desktop may wait for the person to answer its dialog.
        120);
}

void PortalHotKeyCenter::activated(const std::vector<BusValue>& arguments) {
    if (arguments.size() < 2 || arguments[0].text != sessionPath_ || arguments[1].kind != BusValue::Kind::text) return;
    for (const auto& [identifier, combination] : registered_) {
        const auto action = globalAction_ ? globalAction_(identifier) : std::nullopt;
        if (action && action->id == arguments[1].text) {
            if (delegate) delegate(identifier);
            return;
        }
    }
}

}  // namespace kro
