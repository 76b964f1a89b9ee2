// The windows from the keyboard and to a screen reader: Tab and Shift+Tab reach every control, each with a
// name that assistive technology reads, and every action of the library window is in its menus, has a
// shortcut, and is in a context menu.
#include "WorkspaceTest.h"

#include <QAccessible>
#include <QAction>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <set>

#include "workspaces/menu/MenuWindow.h"

namespace kro::testing {
namespace {

using KeyboardAccessTest = WorkspaceTest;

// The controls focus visits from the first, pressing Tab (or Shift+Tab) until it comes round again.
std::vector<QWidget*> tabCycle(QWidget& window, bool forward) {
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    std::vector<QWidget*> visited;
    for (int step = 0; step < 100; ++step) {
        QWidget* focused = QApplication::focusWidget();
        if (!focused || (!visited.empty() && focused == visited.front())) break;
        visited.push_back(focused);
        QTest::keyClick(focused, Qt::Key_Tab, forward ? Qt::NoModifier : Qt::ShiftModifier);
    }
    return visited;
}

// What a screen reader says for a control.
QString spokenName(QWidget* widget) {
    auto* accessible = QAccessible::queryAccessibleInterface(widget);
    return accessible ? accessible->text(QAccessible::Name).trimmed() : QString();
}

void expectEveryControlNamedBothWays(QWidget& window) {
    const auto forward = tabCycle(window, true);
    const auto backward = tabCycle(window, false);
    EXPECT_GE(forward.size(), 4u);
    for (auto* control : forward) {
        EXPECT_FALSE(spokenName(control).isEmpty()) << control->metaObject()->className() << " "
                                                    << control->objectName().toStdString() << " has no name";
    }
    // Shift+Tab goes round the same controls.
    EXPECT_EQ(std::set<QWidget*>(forward.begin(), forward.end()), std::set<QWidget*>(backward.begin(), backward.end()));
}

TEST_F(KeyboardAccessTest, TabReachesEveryControlOfTheLibraryWindowAndEachHasAName) {
    auto& shown = window();
    shown.selectPalette(user().palettes[0]->uuid);
    shown.selectColor(user().palettes[0]->colors[0]->uuid);
    settle();
    expectEveryControlNamedBothWays(shown);
    const auto visited = tabCycle(shown, true);
    for (QWidget* expected : {static_cast<QWidget*>(shown.sidebar()), static_cast<QWidget*>(shown.colorView())}) {
        EXPECT_NE(std::find(visited.begin(), visited.end(), expected), visited.end()) << spokenName(expected).toStdString();
    }
}

TEST_F(KeyboardAccessTest, TabReachesEveryControlOfTheMenuWindowAndEachHasAName) {
    MenuWindow menu(delegate.get());
    menu.resize(360, 420);
    expectEveryControlNamedBothWays(menu);
}

QString plain(QString text) { return text.remove('&').remove(QString::fromUtf8("…")).trimmed(); }

// Every action and submenu under `menu`, by plain title.
void collect(const QList<QAction*>& actions, std::map<QString, QAction*>& into) {
    for (auto* action : actions) {
        if (action->isSeparator()) continue;
        into[plain(action->text())] = action;
        if (action->menu()) collect(action->menu()->actions(), into);
    }
}

TEST_F(KeyboardAccessTest, EveryActionIsInTheMenusHasAShortcutAndIsInAContextMenu) {
    auto& shown = window();
    shown.selectPalette(user().palettes[0]->uuid);
    shown.selectColor(user().palettes[0]->colors[0]->uuid);
    settle();
    std::map<QString, QAction*> menus, contexts;
    collect(shown.menuBar()->actions(), menus);
    std::unique_ptr<QMenu> paletteMenu(shown.paletteContextMenu()), colorMenu(shown.colorContextMenu());
    for (auto* menu : {paletteMenu.get(), colorMenu.get()}) {
        for (auto* action : menu->actions()) {
            if (!action->isSeparator()) contexts[plain(action->text())] = action;
        }
    }
    // Shortcuts of the window itself, and the ones that open submenus where the keyboard is.
    std::map<QString, QKeySequence> shortcuts;
    for (const auto& [name, action] : menus) shortcuts[name] = action->shortcut();
    for (auto* action : shown.actions()) {
        if (!action->shortcut().isEmpty()) shortcuts[plain(action->text())] = action->shortcut();
    }

    for (const char* name : {"New Palette", "Import", "Export Palette", "Undo", "Redo", "Copy", "Rename", "Delete",
                             "Duplicate", "Lock", "Merge Into", "Move Colors To", "Move Color Earlier",
                             "Move Color Later", "Sort By", "Find", "Pick into Inspector"}) {
        EXPECT_TRUE(menus.count(name)) << name << " is in no menu";
        EXPECT_FALSE(shortcuts[name].isEmpty()) << name << " has no shortcut";
        EXPECT_TRUE(contexts.count(name)) << name << " is in no context menu";
    }
}

TEST_F(KeyboardAccessTest, AltUpAndDownMoveTheSelectedColourInThePaletteAndSaveIt) {
    auto& shown = window();
    const auto palette = user().palettes[0];
    const auto second = palette->colors[1];
    shown.selectPalette(palette->uuid);
    shown.selectColor(second->uuid);
    shown.show();
    shown.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&shown));
    shown.colorView()->setFocus();
    settle();

    QTest::keyClick(shown.colorView(), Qt::Key_Up, Qt::AltModifier);
    settle();
    EXPECT_EQ(user().palettes[0]->colors[0]->uuid, second->uuid);
    // At the start already: nothing moves.
    QTest::keyClick(shown.colorView(), Qt::Key_Up, Qt::AltModifier);
    settle();
    EXPECT_EQ(user().palettes[0]->colors[0]->uuid, second->uuid);
    QTest::keyClick(shown.colorView(), Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(shown.colorView(), Qt::Key_Down, Qt::AltModifier);
    settle();
    EXPECT_EQ(user().palettes[0]->colors[2]->uuid, second->uuid);
    // Saved in the new order.
    const auto saved = savedLibrary();
    EXPECT_LT(saved.find(user().palettes[0]->colors[1]->uuid), saved.find(second->uuid));

    // Under a sort the rows are not the palette's order: the window says so and nothing moves.
    shown.setSort(PaletteColorSort::nameASC);
    settle();
    shown.moveSelectedColorsBy(-1);
    EXPECT_EQ(user().palettes[0]->colors[2]->uuid, second->uuid);
    EXPECT_FALSE(shown.noticeText().isEmpty());
}

}  // namespace
}  // namespace kro::testing
