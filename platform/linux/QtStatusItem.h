#pragma once
#include <QMenu>
#include <QSystemTrayIcon>
#include <memory>

#include "platform/Desktop.h"

namespace kro {

// The tray icon: a round swatch of the last colour inside a ring, or an empty ring when there is none.
class QtStatusItem final : public StatusItem {
public:
    QtStatusItem();
    void redraw(const std::optional<ColorValue>& color) override;
    void setMenu(std::vector<StatusMenuItem> items) override;
    bool isInTray() const override { return isTrayAvailable(); }
    // Through the freedesktop Notifications service on the session bus; logged when none answers.
    void notify(const std::string& title, const std::string& body) override;
    // A notification that goes by itself after `seconds` and is not kept in the desktop's history.
    void notifyBriefly(const std::string& title, double seconds);

    // Where the icon sits on the screen, for placing the tooltip; empty when unknown.
    QRect geometry() const { return tray_.geometry(); }
    bool isTrayAvailable() const { return QSystemTrayIcon::isSystemTrayAvailable(); }

private:
    void send(const std::string& title, const std::string& body, int expireMilliseconds, bool transient);

    QSystemTrayIcon tray_;
    std::unique_ptr<QMenu> menu_;
};

}  // namespace kro
