#pragma once
// Krita 5, through Kro's own Krita plug-in: it listens on a private socket in $XDG_RUNTIME_DIR and answers
// one JSON line per request with the active view's foreground (primary) or background (secondary) colour.
#include <optional>
#include <string>

#include "bridges/Bridge.h"

namespace kro {

namespace KritaProtocol {
// The socket the plug-in listens on.
std::string socketPath(const std::string& runtimeDirectory);
// {"op": "get", "slot": "primary"}
std::string getRequest(PickerPlugin slot);
// {"op": "set", "slot": "secondary", "color": "#ff0080"}
std::string setRequest(PickerPlugin slot, const Rgb8& color);
struct Reply {
    bool ok = false;
    std::optional<ColorValue> color;  // "#rrggbb" in a get's answer
    std::string error;                // what the plug-in or the reading says went wrong
};
// A reply line: {"ok": true, "color": "#ff0080"} or {"ok": false, "error": "…"}.
Reply readReply(const std::string& line);
}  // namespace KritaProtocol

class KritaBridge final : public Bridge {
public:
    KritaBridge(LocalSocketClient& sockets, std::string socketPath) : sockets_(sockets), socketPath_(std::move(socketPath)) {}
    void getColor(PickerPlugin slot, GetDone done) override;
    void setColor(PickerPlugin slot, const ColorValue& color, SetDone done) override;

private:
    // Sends the request; a reply that is a failure, or none, fails the call, and a good one goes to `done`.
    template <class Result>
    void exchange(const std::string& request, const Answer<Result>& finish, std::function<void(const KritaProtocol::Reply&)> done);

    LocalSocketClient& sockets_;
    std::string socketPath_;
};

}  // namespace kro
