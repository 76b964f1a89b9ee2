#pragma once
// The first-run tour: the shortcut that opens the loupe, the loupe's own keys, where the windows are, and a
// check that the desktop has a tray to show the icon in, with what to do when it has none.
#include <QWidget>
#include <memory>

#include "platform/WindowControllers.h"

class QLabel;

namespace kro {

class AppDelegate;

// Whether a tray host (a system tray or a StatusNotifier host) takes icons on this desktop.
bool trayHostAvailable();

class OnboardingWindow : public QWidget {
public:
    explicit OnboardingWindow(AppDelegate* delegate, QWidget* parent = nullptr);
    // Reads the shortcuts and looks for a tray host again.
    void refresh();
    QString trayText() const;

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    AppDelegate* delegate_;
    QLabel* shortcuts_;
    QLabel* loupe_;
    QLabel* tray_;
};

class OnboardingWindowController final : public WindowController {
public:
    explicit OnboardingWindowController(AppDelegate* delegate) : delegate_(delegate) {}
    void show() override;
    void hide() override;
    void close() override;
    bool isVisible() const override;
    OnboardingWindow& window();

private:
    AppDelegate* delegate_;
    std::unique_ptr<OnboardingWindow> window_;
};

}  // namespace kro
