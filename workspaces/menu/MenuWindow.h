#pragma once
// The compact window under the tray icon: the history and every palette as rows of swatches (a click on
// a swatch copies that colour), a pick button, and buttons to the other windows. It closes when it loses
// focus, as a tray popover does, and keeps its size in `Settings.menuSize`.
#include <QWidget>

#include "platform/WindowControllers.h"
#include "workspaces/common/LibraryActions.h"
#include "workspaces/common/LibraryModels.h"

class QListView;

namespace kro {

class AppDelegate;
class NoticeBar;
class SwatchStripView;

class MenuWindow : public QWidget {
public:
    explicit MenuWindow(AppDelegate* delegate, QWidget* parent = nullptr);

    // Places the window under the tray icon (or the pointer) and shows it.
    void present();
    SwatchStripView* strips() const { return strips_; }
    PaletteListModel& model() { return model_; }

protected:
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    AppDelegate* delegate_;
    NoticeBar* notice_;
    LibraryActions actions_;
    PaletteListModel model_;
    SwatchStripView* strips_;
};

class MenuWindowController final : public WindowController {
public:
    explicit MenuWindowController(AppDelegate* delegate) : delegate_(delegate) {}
    void show() override;
    void hide() override;
    void close() override;
    bool isVisible() const override;
    MenuWindow& window();

private:
    AppDelegate* delegate_;
    std::unique_ptr<MenuWindow> window_;
};

}  // namespace kro
