// The library window's actions: its menus, shortcuts and context menus, each running one library operation.
#include <QAction>
#include <QActionGroup>
#include <QDir>
#include <QKeySequence>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>

#include "app/AppDelegate.h"
#include "documents/DocumentHandler.h"
#include "formats/ColorFormats.h"
#include "library/Settings.h"
#include "library/User.h"
#include "library/UserUndo.h"
#include "platform/Files.h"
#include "workspaces/common/FileDialogs.h"
#include "workspaces/main/MainWindow.h"
#include "workspaces/main/PaletteFiles.h"

namespace kro {


namespace {

QAction* add(QMenu* menu, const QString& text, const QKeySequence& keys, const std::function<void()>& run) {
    auto* action = menu->addAction(text);
    if (!keys.isEmpty()) action->setShortcut(keys);
    QObject::connect(action, &QAction::triggered, [run] { run(); });
    return action;
}

QString paletteName(const Palette& palette) { return QString::fromStdString(palette.name.value_or("Palette")); }

// A submenu opened from the keyboard: at the view's current item, as a right click there would.
void popUpAt(QMenu* menu, QAbstractItemView* view) {
    const QRect item = view->visualRect(view->currentIndex());
    const QPoint at = item.isValid() ? item.center() : QPoint(8, 8);
    menu->popup(view->viewport()->mapToGlobal(at));
}

}  // namespace

void MainWindow::buildMenus() {
    a_ = std::make_unique<Actions>();
    auto* file = menuBar()->addMenu("&File");
    a_->newPalette = add(file, "&New Palette", QKeySequence::New, [this] { newPalette(); });
    a_->import = add(file, "&Import…", QKeySequence::Open, [this] { importFiles(); });
    a_->exportPalette = add(file, "&Export Palette…", QKeySequence("Ctrl+E"), [this] { exportPalette(); });
    file->addSeparator();
    add(file, "&Close Window", QKeySequence::Close, [this] { close(); });

    auto* edit = menuBar()->addMenu("&Edit");
    a_->undo = add(edit, "&Undo", QKeySequence::Undo, [this] { undo(); });
    a_->redo = add(edit, "&Redo", QKeySequence("Ctrl+Shift+Z"), [this] { redo(); });
    edit->addSeparator();
    a_->copy = add(edit, "&Copy", QKeySequence::Copy, [this] { copySelection(); });
    a_->rename = add(edit, "Re&name…", QKeySequence(Qt::Key_F2), [this] { renameSelection(); });
    a_->remove = add(edit, "&Delete", QKeySequence::Delete, [this] { deleteSelection(); });
    add(edit, "Select &All", QKeySequence::SelectAll, [this] {
        colors_->setFocus();
        colors_->selectAll();
    });
    a_->find = add(edit, "&Find", QKeySequence::Find, [this] {
        search_->setFocus();
        search_->selectAll();
    });
    // Refreshed when the menu opens: the undo states arrive from the background queue.
    connect(edit, &QMenu::aboutToShow, this, [this] { refreshActions(); });

    auto* palette = menuBar()->addMenu("&Palette");
    a_->duplicate = add(palette, "D&uplicate", QKeySequence("Ctrl+D"), [this] { duplicatePalette(); });
    a_->lock = add(palette, "&Lock", QKeySequence("Ctrl+L"), [this] { toggleLock(); });
    mergeMenu_ = palette->addMenu("&Merge Into");
    moveMenu_ = new QMenu("&Move Colors To", this);
    palette->addMenu(moveMenu_);
    a_->earlier = add(palette, "Move Color &Earlier", QKeySequence("Alt+Up"), [this] { moveSelectedColorsBy(-1); });
    a_->later = add(palette, "Move Color La&ter", QKeySequence("Alt+Down"), [this] { moveSelectedColorsBy(1); });
    a_->deleteDuplicates = add(palette, "Delete Duplicate &Colors", {}, [this] { deleteDuplicates(); });
    a_->cleanHistory = add(palette, "Clear &History", {}, [this] { cleanHistory(); });
    // The other palettes, listed when the menus open.
    auto fillTargets = [this](QMenu* menu, bool moving) {
        menu->clear();
        const auto current = currentPalette();
        for (const auto& other : User::shared()->allPalettes()) {
            if (other == current || (!moving && other->isHistory)) continue;
            auto* action = menu->addAction(paletteName(*other));
            connect(action, &QAction::triggered, this, [this, other, moving] {
                moving ? moveSelectedColors(other) : mergeInto(other);
            });
        }
        if (menu->isEmpty()) menu->addAction("No Other Palette")->setEnabled(false);
    };
    connect(mergeMenu_, &QMenu::aboutToShow, this, [this, fillTargets] { fillTargets(mergeMenu_, false); });
    connect(moveMenu_, &QMenu::aboutToShow, this, [this, fillTargets] { fillTargets(moveMenu_, true); });

    auto* view = menuBar()->addMenu("&View");
    auto* layout = new QActionGroup(this);
    a_->grid = add(view, "As &Grid", QKeySequence("Ctrl+1"), [this] { setListView(false); });
    a_->list = add(view, "As &List", QKeySequence("Ctrl+2"), [this] { setListView(true); });
    for (auto* action : {a_->grid, a_->list}) {
        action->setCheckable(true);
        layout->addAction(action);
    }
    view->addSeparator();
    auto* sortMenu = view->addMenu("&Sort By");
    auto* sorts = new QActionGroup(this);
    const char* sortNames[] = {"&Your Order", "&Oldest First", "&Newest First", "Name &A–Z", "Name &Z–A"};
    for (int i = 0; i < 5; ++i) {
        auto* action = add(sortMenu, sortNames[i], {}, [this, i] { setSort(static_cast<PaletteColorSort>(i)); });
        action->setCheckable(true);
        sorts->addAction(action);
        a_->sorts.push_back(action);
    }

    auto* color = menuBar()->addMenu("&Color");
    a_->pick = add(color, "&Pick into Inspector", QKeySequence("Ctrl+Shift+I"), [this] {
        if (delegate_) delegate_->openPicker(PickerSource::inspector);
    });

    // The submenus have no shortcut of their own: these open them where the keyboard is.
    sortMenu_ = sortMenu;
    const std::pair<QMenu*, const char*> submenuKeys[] = {
        {mergeMenu_, "Ctrl+Shift+M"}, {moveMenu_, "Ctrl+M"}, {sortMenu_, "Ctrl+Shift+S"}};
    for (const auto& [submenu, keys] : submenuKeys) {
        auto* open = new QAction(submenu->title(), this);
        open->setShortcut(QKeySequence(keys));
        addAction(open);
        connect(open, &QAction::triggered, this, [this, submenu = submenu] {
            // Disabled, as in the menu bar, when it has nothing to offer here.
            if (submenu->isEnabled()) popUpAt(submenu, submenu == mergeMenu_ ? sidebar_ : colors_);
        });
    }

    refreshActions();
}

QMenu* MainWindow::paletteContextMenu() {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(a_->undo);
    menu->addAction(a_->redo);
    menu->addSeparator();
    menu->addAction(a_->newPalette);
    menu->addAction(a_->import);
    menu->addSeparator();
    menu->addAction(a_->rename);
    menu->addAction(a_->duplicate);
    menu->addAction(a_->lock);
    menu->addMenu(mergeMenu_);
    menu->addAction(a_->exportPalette);
    menu->addAction(a_->deleteDuplicates);
    menu->addAction(a_->cleanHistory);
    menu->addSeparator();
    auto* remove = menu->addAction("Delete Palette");
    const auto palette = currentPalette();
    remove->setEnabled(palette && !palette->isHistory && !palette->lock);
    connect(remove, &QAction::triggered, this, [this] { deleteCurrentPalette(); });
    return menu;
}

QMenu* MainWindow::colorContextMenu() {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(a_->undo);
    menu->addAction(a_->redo);
    menu->addSeparator();
    menu->addAction(a_->copy);
    menu->addAction(a_->rename);
    menu->addAction(a_->earlier);
    menu->addAction(a_->later);
    menu->addMenu(moveMenu_);
    menu->addMenu(sortMenu_);
    menu->addSeparator();
    menu->addAction(a_->find);
    menu->addAction(a_->pick);
    menu->addSeparator();
    menu->addAction(a_->remove);
    return menu;
}

void MainWindow::refreshActions() {
    if (!a_) return;
    const auto palette = currentPalette();
    const bool colors = !selectedColors().empty();
    const bool editable = palette && !palette->lock;
    a_->undo->setEnabled(UserUndo::shared().canUndo());
    a_->redo->setEnabled(UserUndo::shared().canRedo());
    a_->copy->setEnabled(colors);
    a_->rename->setEnabled(palette != nullptr);
    a_->remove->setEnabled(palette != nullptr);
    a_->duplicate->setEnabled(palette != nullptr);
    a_->lock->setEnabled(palette != nullptr);
    a_->lock->setText(palette && palette->lock ? "Un&lock" : "&Lock");
    a_->deleteDuplicates->setEnabled(editable);
    a_->cleanHistory->setVisible(palette && palette->isHistory);
    a_->cleanHistory->setEnabled(editable && !palette->colors.empty());
    a_->exportPalette->setEnabled(palette != nullptr);
    moveMenu_->setEnabled(colors && editable);
    const bool reorderable = colors && editable && colorModel_.showsPaletteOrder();
    a_->earlier->setEnabled(reorderable);
    a_->later->setEnabled(reorderable);
    mergeMenu_->setEnabled(palette && !palette->isHistory && !palette->lock);
    const bool list = Settings::shared().listView();
    a_->grid->setChecked(!list);
    a_->list->setChecked(list);
    a_->sorts[static_cast<size_t>(Settings::shared().colorSort())]->setChecked(true);
}

void MainWindow::newPalette() {
    auto palette = Palette::make({});
    actions_.run([&] {
        User::shared()->addPalette(palette);
        // Made the target now rather than after the selection settles, so the name editor opened below
        // is not closed by that change.
        User::shared()->selectTarget(palette);
        return true;
    });
    selectPalette(palette->uuid);
    sidebar_->setFocus();
    sidebar_->edit(sidebar_->currentIndex());
}

void MainWindow::renameSelection() {
    // A locked palette's names are not editable: say why rather than do nothing.
    if (const auto palette = currentPalette(); palette && palette->lock) {
        return actions_.notice(LibraryActions::lockedReason(*palette));
    }
    // The colour when the colours have focus and one is chosen; otherwise the palette.
    if (colors_->hasFocus() && colors_->currentIndex().isValid()) return colors_->edit(colors_->currentIndex());
    sidebar_->setFocus();
    sidebar_->edit(sidebar_->currentIndex());
}

void MainWindow::renameColor(const ColorRef& color, const std::string& name) {
    const auto palette = currentPalette();
    if (palette) actions_.edit(*palette, [&] { return User::shared()->renameColor(palette, color, name); });
}

void MainWindow::deleteSelection() {
    // The colours when they have the focus and some are chosen; otherwise the palette.
    if (colors_->hasFocus() && !selectedColors().empty()) return deleteSelectedColors();
    deleteCurrentPalette();
}

void MainWindow::deleteSelectedColors() {
    const auto palette = currentPalette();
    const auto colors = selectedColors();
    if (!palette || colors.empty()) return;
    if (actions_.edit(*palette, [&] { return User::shared()->deleteColors(palette, colors); })) {
        showNotice(colors.size() == 1 ? "Color Deleted" : "Colors Deleted");
    }
}

void MainWindow::deleteCurrentPalette() {
    const auto palette = currentPalette();
    if (!palette) return;
    if (palette->isHistory) return showNotice("The history stays. Use Clear History to empty it.");
    const auto name = palette->name.value_or("Palette");
    if (actions_.edit(*palette, [&] { return User::shared()->deletePalettes({palette}); })) {
        showNotice("Deleted \u201C" + name + "\u201D. Undo brings it back.");
    }
}

void MainWindow::duplicatePalette() {
    const auto palette = currentPalette();
    if (!palette) return;
    PaletteRef copy;
    actions_.run([&] {
        copy = User::shared()->duplicatePalette(palette);
        return copy != nullptr;
    });
    if (copy) selectPalette(copy->uuid);
}

void MainWindow::toggleLock() {
    const auto palette = currentPalette();
    if (!palette) return;
    actions_.run([&] {
        User::shared()->toggleLock(palette);
        return true;
    });
    showNotice(palette->lock ? "Locked" : "Unlocked");
}

void MainWindow::mergeInto(const PaletteRef& target) {
    const auto palette = currentPalette();
    if (!palette || !target) return;
    if (palette->lock) return actions_.notice(LibraryActions::lockedReason(*palette));
    if (actions_.edit(*target, [&] { return User::shared()->merge(target, {palette}); })) {
        selectPalette(target->uuid);
        showNotice("Merged into \u201C" + target->name.value_or("Palette") + "\u201D");
    }
}

void MainWindow::moveSelectedColors(const PaletteRef& target) {
    const auto palette = currentPalette();
    const auto colors = selectedColors();
    if (!palette || !target || colors.empty()) return;
    if (palette->lock) return actions_.notice(LibraryActions::lockedReason(*palette));
    if (!actions_.edit(*target, [&] { return User::shared()->moveColors(palette, colors, target, 0); })) {
        if (!target->lock) showNotice("\u201C" + target->name.value_or("Palette") + "\u201D already holds these colors");
    }
}

void MainWindow::moveSelectedColorsBy(int step) {
    const auto palette = currentPalette();
    const auto colors = selectedColors();
    if (!palette || colors.empty()) return;
    // Under a sort or a search the rows are not the palette's order, so a step among them means no place.
    if (!colorModel_.showsPaletteOrder()) return showNotice("Show the palette in your order to rearrange it");
    const size_t first = colorModel_.paletteIndex(colorModel_.row(colors.front()->uuid));
    const size_t last = colorModel_.paletteIndex(colorModel_.row(colors.back()->uuid));
    // The place before which the colours go, in the palette's list as it stands before the move.
    if (step < 0 && first == 0) return;
    if (step > 0 && last + 1 >= palette->colors.size()) return;
    const size_t before = step < 0 ? first - 1 : last + 2;
    actions_.edit(*palette, [&] { return User::shared()->moveColors(palette, colors, palette, before); });
}

void MainWindow::deleteDuplicates() {
    const auto palette = currentPalette();
    if (palette && !actions_.edit(*palette, [&] { return User::shared()->deleteDuplicatedColors(palette); }) &&
        !palette->lock) {
        showNotice("No duplicate colors");
    }
}

void MainWindow::cleanHistory() {
    const auto history = User::shared()->history;
    actions_.edit(*history, [] { return User::shared()->cleanHistory(); });
}

void MainWindow::copySelection() {
    const auto colors = selectedColors();
    if (colors.empty() || !delegate_) return;
    if (colors.size() == 1) {
        delegate_->copyColor(colors.front(), true, ColorDeliveryTarget::clipboard);
        return showNotice("Color Copied");
    }
    std::string text;
    for (const auto& color : colors) {
        if (!text.empty()) text += "\n";
        text += ColorFormats::shared().clipboardString(color->colorValue());
    }
    delegate_->sendOutputToClipboard(true, text);
    showNotice("Colors Copied");
}

void MainWindow::undo() { stepHistory(false); }
void MainWindow::redo() { stepHistory(true); }

void MainWindow::stepHistory(bool forward) {
    auto& history = UserUndo::shared();
    if (!actions_.run([&] {
            if (!(forward ? history.canRedo() : history.canUndo())) return false;
            forward ? history.redo() : history.undo();
            return true;
        })) {
        showNotice(forward ? "Nothing to redo" : "Nothing to undo");
    }
}

void MainWindow::importFiles() {
    const auto paths = FileDialogs::openFiles(this, "Import Palettes", QString::fromStdString(importFilter()));
    if (paths.isEmpty()) return;
    std::vector<std::string> files;
    for (const auto& path : paths) files.push_back(path.toStdString());
    ImportSummary summary;
    actions_.run([&] {
        summary = DocumentHandler::openFiles(files);
        return summary.importedAnything();
    });
    showNotice(summary.message());
}

void MainWindow::exportPalette() {
    const auto palette = currentPalette();
    if (!palette) return;
    QStringList filters;
    for (const auto& choice : exportChoices()) filters << QString::fromStdString(choice.filter());
    // Adobe's exchange format is the one most design programs read.
    QString selected = filters.first();
    for (const auto& filter : filters) {
        if (filter.startsWith("Adobe Swatch Exchange")) selected = filter;
    }
    const auto suggested = QDir::homePath() + "/" + paletteName(*palette);
    const auto path = FileDialogs::saveFile(this, "Export Palette", suggested, filters, selected).toStdString();
    if (path.empty()) return;
    const ExportChoice* preferred = nullptr;
    for (const auto& choice : exportChoices()) {
        if (QString::fromStdString(choice.filter()) == selected) preferred = &choice;
    }
    const auto* choice = exportChoiceForPath(path, preferred);
    if (!choice) return showNotice("Kro cannot write ." + fileExtension(path) + " files. Choose a format from the list.");
    if (const auto failure = kro::exportPalette(*palette, *choice, path)) return showNotice(*failure);
    showNotice("Exported " + fileName(path));
}

}  // namespace kro
