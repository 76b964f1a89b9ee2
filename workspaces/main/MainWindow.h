#pragma once
// The library window: the palettes in a sidebar (the history first), the selected palette's colours as a
// grid or a list, and the inspector of the selected colour. Every edit is a library operation run through
// LibraryActions, so it goes through the change pipeline and can be undone; the window itself remembers
// only which palette and colour are selected, by uuid.
#include <QMainWindow>
#include <string>
#include <vector>

#include "library/Palette.h"
#include "platform/WindowControllers.h"
#include "workspaces/common/LibraryActions.h"
#include "workspaces/common/LibraryModels.h"

class QAction;
class QComboBox;
class QLineEdit;
class QListView;
class QMenu;

namespace kro {

class AppDelegate;
class ColorCellDelegate;
class Inspector;
class NoticeBar;

class MainWindow : public QMainWindow {
public:
    explicit MainWindow(AppDelegate* delegate, QWidget* parent = nullptr);

    // The palette shown, and the colours selected in it (in display order).
    PaletteRef currentPalette() const;
    std::vector<ColorRef> selectedColors() const;
    void selectPalette(const std::string& uuid);
    void selectColor(const std::string& uuid);

    void inspect(const ColorValue& color);
    void showNotice(const std::string& text);
    QString noticeText() const;

    // The actions, as the menus, the shortcuts and the context menus run them.
    void newPalette();
    void renameSelection();
    void renameColor(const ColorRef& color, const std::string& name);
    void deleteSelection();
    void deleteSelectedColors();
    void deleteCurrentPalette();
    void duplicatePalette();
    void toggleLock();
    void mergeInto(const PaletteRef& target);
    void moveSelectedColors(const PaletteRef& target);
    // One place earlier (-1) or later (1) in the palette's own order.
    void moveSelectedColorsBy(int step);
    void deleteDuplicates();
    void cleanHistory();
    void copySelection();
    void setSort(PaletteColorSort sort);
    void setListView(bool list);
    void importFiles();
    void exportPalette();
    void undo();
    void redo();

    // The context menus of the sidebar and of the colours, as a right click shows them.
    QMenu* paletteContextMenu();
    QMenu* colorContextMenu();

    // The views, for tests and screenshots.
    QListView* sidebar() const { return sidebar_; }
    QListView* colorView() const { return colors_; }
    PaletteListModel& paletteModel() { return paletteModel_; }
    ColorListModel& colorModel() { return colorModel_; }
    Inspector* inspector() const { return inspector_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void buildViews();
    void buildMenus();
    void paletteChanged();
    void colorSelectionChanged();
    void refreshActions();
    // Undo (backwards) or redo through the library's undo history.
    void stepHistory(bool forward);
    void saveFrame();
    void restoreFrame();

    AppDelegate* delegate_;
    NoticeBar* notice_ = nullptr;
    LibraryActions actions_;
    PaletteListModel paletteModel_;
    ColorListModel colorModel_;
    Observers observers_;

    QListView* sidebar_ = nullptr;
    QListView* colors_ = nullptr;
    ColorCellDelegate* cellDelegate_ = nullptr;
    Inspector* inspector_ = nullptr;
    QLineEdit* search_ = nullptr;
    QComboBox* sort_ = nullptr;
    QMenu* mergeMenu_ = nullptr;
    QMenu* moveMenu_ = nullptr;
    QMenu* sortMenu_ = nullptr;
    // The actions whose state follows the selection.
    struct Actions {
        QAction *newPalette, *import, *undo, *redo, *copy, *rename, *remove, *find, *duplicate, *lock, *earlier,
            *later, *deleteDuplicates, *cleanHistory, *exportPalette, *grid, *list, *pick;
        std::vector<QAction*> sorts;
    };
    std::unique_ptr<Actions> a_;

    // Selection by identity, so that it survives the models' refreshes.
    std::string paletteUUID_;
    std::vector<std::string> colorUUIDs_;
    bool restoring_ = false;
};

// The controller the agent holds: the window is built when first shown.
class MainWindowController final : public WindowController {
public:
    explicit MainWindowController(AppDelegate* delegate) : delegate_(delegate) {}
    void show() override;
    void hide() override;
    void close() override;
    bool isVisible() const override;
    void inspect(const ColorValue& color) override;
    void showNotice(const std::string& text) override;

    MainWindow& window();

private:
    AppDelegate* delegate_;
    std::unique_ptr<MainWindow> window_;
};

}  // namespace kro
