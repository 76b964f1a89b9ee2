#pragma once
// A menu popped up at a point of the screen.
#include <functional>
#include <string>
#include <vector>

#include "platform/ScreenCapture.h"

namespace kro {

struct PopUpMenuItem {
    std::string title;  // empty: a separator
    std::function<void()> action;
    bool checked = false;
    std::string icon{};  // PNG bytes, or empty
};

class PopUpMenu {
public:
    virtual ~PopUpMenu() = default;
    // Shows the menu with its top edge near `at` and horizontally centred on it (global points).
    // `dismissed` runs when the menu closes without a choice.
    virtual void popUp(std::vector<PopUpMenuItem> items, ScreenPoint at, std::function<void()> dismissed) = 0;
};

}  // namespace kro
