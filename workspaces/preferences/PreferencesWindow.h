#pragma once
// The preferences window: a list of panes on the left (general, appearance, formats, shortcuts, dock,
// snapshots, about) and the pane on the right; "Reset All…" puts every preference back.
#include <QWidget>
#include <memory>

#include "platform/WindowControllers.h"

class QListWidget;
class QStackedWidget;

namespace kro {

class AppDelegate;
class FormatsPane;
class ShortcutsPane;
class SnapshotsPane;

class PreferencesWindow : public QWidget {
public:
    explicit PreferencesWindow(AppDelegate* delegate, QWidget* parent = nullptr);

    // The pane of this number, as the "settings" URL command numbers them; an unknown number does nothing.
    void showPane(int number);
    // The number of the pane on show.
    int paneNumber() const;
    QWidget* pane(int number) const;
    FormatsPane* formats() const { return formats_; }
    ShortcutsPane* shortcuts() const { return shortcuts_; }
    SnapshotsPane* snapshots() const { return snapshots_; }
    // Every preference back to its default, after asking when `ask` is set.
    void resetAll(bool ask = true);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    AppDelegate* delegate_;
    QListWidget* sidebar_;
    QStackedWidget* stack_;
    FormatsPane* formats_ = nullptr;
    ShortcutsPane* shortcuts_ = nullptr;
    SnapshotsPane* snapshots_ = nullptr;
};

class PreferencesWindowController final : public WindowController {
public:
    explicit PreferencesWindowController(AppDelegate* delegate) : delegate_(delegate) {}
    void show() override;
    void hide() override;
    void close() override;
    bool isVisible() const override;
    void showPane(int number) override;
    PreferencesWindow& window();

private:
    AppDelegate* delegate_;
    std::unique_ptr<PreferencesWindow> window_;
};

}  // namespace kro
