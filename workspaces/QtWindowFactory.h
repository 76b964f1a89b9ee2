#pragma once
// Makes the agent's windows. The application controller is handed over once it exists, before launch.
#include "platform/WindowControllers.h"

namespace kro {

class AppDelegate;

class QtWindowFactory final : public WindowFactory {
public:
    void setDelegate(AppDelegate* delegate) { delegate_ = delegate; }
    std::unique_ptr<WindowController> makeWindow(WindowKind kind) override;

private:
    AppDelegate* delegate_ = nullptr;
};

}  // namespace kro
