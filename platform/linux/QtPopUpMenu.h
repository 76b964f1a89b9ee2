#pragma once
// Menus popped up at a point of the screen, as QMenu.
#include "platform/PopUpMenu.h"

namespace kro {

class QtPopUpMenu final : public PopUpMenu {
public:
    void popUp(std::vector<PopUpMenuItem> items, ScreenPoint at, std::function<void()> dismissed) override;
};

}  // namespace kro
