#pragma once
// Simulated key presses, as if typed on the keyboard.
namespace kro {

class KeySimulator {
public:
    virtual ~KeySimulator() = default;
    // False when the desktop does not let this process type (the permission to control the keyboard).
    virtual bool available() const = 0;
    // One key going down or up; `flags` are the stored modifier masks by role, held around a key-down.
    virtual bool postKey(int virtualCode, bool down, int flags) = 0;
};

}  // namespace kro
