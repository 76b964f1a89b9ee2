#pragma once
// Shortcuts in a Wayland session, where no program may grab keys for itself. The desktop-wide ones are bound
// through the portal's GlobalShortcuts (our combinations as the preferred triggers; the desktop may ask the
// person and let them choose others). The picker's own keys arrive as ordinary key presses in the loupe, which
// has the keyboard while it is open, and are matched here against the registered combinations.
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/HotKeyCenter.h"
#include "platform/Portal.h"

namespace kro {

class PortalHotKeyCenter final : public HotKeyCenter {
public:
    // The portal's id and description of a desktop-wide action; nothing for the picker's own keys.
    using GlobalAction = std::function<std::optional<PortalShortcut>(int identifier)>;
    // `bus` is null where the portal has no GlobalShortcuts: then only the loupe's keys work. `report` receives
    // one line for each failure of the portal.
    PortalHotKeyCenter(PortalBus* bus, GlobalAction globalAction, std::function<void(const std::string&)> report);
    ~PortalHotKeyCenter() override;

    bool registerHotKey(int flags, int code, int identifier, const std::string& label) override;
    void unregisterAll() override;

    // A key pressed in one of our windows, with modifier flags by role and its positional code. True when it was
    // a registered combination, whose identifier has then gone to the delegate.
    bool keyPressed(int flags, int code);

private:
    struct Combination {
        int flags;
        int code;
        std::string label;
    };
    void scheduleBinding();
    void bindGlobalKeys();
    void createSession();
    void sendBinding();
    void activated(const std::vector<BusValue>& arguments);

    PortalBus* bus_;
    GlobalAction globalAction_;
    std::function<void(const std::string&)> report_;
    std::map<int, Combination> registered_;  // by identifier

    // The portal's side: one session for the agent's life, bound again when the desktop-wide set changes.
    std::vector<PortalShortcut> wanted_;
    std::vector<PortalShortcut> bound_;
    std::string sessionPath_;
    bool creating_ = false;
    bool binding_ = false;
    bool scheduled_ = false;
    int activatedSubscription_ = -1;
    std::shared_ptr<PortalRequest> request_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace kro
