#pragma once
// Desktop-wide keyboard shortcuts. A combination is a modifier mask by role and a positional key code
// (see picker/HotKey.h and platform/KeyCodeTable.h); `identifier` comes back in `delegate` on each press.
#include <functional>
#include <string>

namespace kro {

class HotKeyCenter {
public:
    virtual ~HotKeyCenter() = default;
    // Replaces any earlier combination of `identifier`. False, reported in the log, when the combination
    // cannot be grabbed (another program holds it, or the key has no place on this keyboard).
    virtual bool registerHotKey(int flags, int code, int identifier, const std::string& label) = 0;
    virtual void unregisterAll() = 0;
    // Called on the main thread with the identifier of the pressed combination.
    std::function<void(int identifier)> delegate;
};

}  // namespace kro
