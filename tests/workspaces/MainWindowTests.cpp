// The library window's actions: each is the library operation, saved, and undoable; refusals say why.
#include "WorkspaceTest.h"

#include <QListView>
#include <QListWidget>

#include "platform/Files.h"
#include "workspaces/common/LibraryActions.h"
#include "workspaces/main/Inspector.h"

namespace kro::testing {
namespace {

using MainWindowTest = WorkspaceTest;

TEST_F(MainWindowTest, OpensOnTheTargetPaletteAndChoosingAPaletteMakesItTheTarget) {
    auto brand = Palette::make({Color::make(1, 0, 0, 1)}, "Brand");
    user().addPalette(brand);
    user().selectTarget(brand);
    auto& shown = window();
    EXPECT_EQ(shown.currentPalette(), brand);

    shown.selectPalette(user().palettes[0]->uuid);
    shown.sidebar()->setCurrentIndex(shown.paletteModel().index(1));
    settle();
    EXPECT_EQ(user().target(), user().palettes[0]);
    EXPECT_NE(savedLibrary().find("\"paletteUUID\":\"" + user().palettes[0]->uuid + "\""), std::string::npos);
}

TEST_F(MainWindowTest, RenameUndoSortAndLockChangeTheLibraryAndItsFileAsTheirOperationsSay) {
    auto& shown = window();
    shown.selectPalette(user().palettes[0]->uuid);
    settle();
    auto palette = user().palettes[0];
    auto maya = palette->colors[2];

    shown.renameColor(maya, "Sky");
    settle();
    EXPECT_EQ(maya->name, "Sky");
    EXPECT_NE(savedLibrary().find("\"name\":\"Sky\",\"originalName\":\"Maya Blue\""), std::string::npos);

    // Undo puts the state before the rename back, saved; redo the renamed one.
    shown.undo();
    settle();
    EXPECT_EQ(user().palettes[0]->colors[2]->name, "Maya Blue");
    EXPECT_EQ(savedLibrary().find("\"Sky\""), std::string::npos);
    shown.redo();
    settle();
    EXPECT_EQ(user().palettes[0]->colors[2]->name, "Sky");
    EXPECT_NE(savedLibrary().find("\"Sky\""), std::string::npos);
    palette = user().palettes[0];

    // A sort is a view setting: the settings change, the library and its file do not.
    const int writes = environment.files.writeCount;
    shown.setSort(PaletteColorSort::nameASC);
    EXPECT_EQ(Settings::shared().colorSort(), PaletteColorSort::nameASC);
    EXPECT_EQ(shown.colorModel().color(0)->name, "Eucalyptus");
    EXPECT_EQ(environment.files.writeCount, writes);
    shown.setSort(PaletteColorSort::none);

    // Locked: saved, and every edit refused with the reason on show.
    shown.toggleLock();
    settle();
    EXPECT_TRUE(palette->lock);
    EXPECT_NE(savedLibrary().find("\"lock\":true"), std::string::npos);
    shown.colorView()->selectionModel()->select(shown.colorModel().index(0), QItemSelectionModel::ClearAndSelect);
    shown.deleteSelectedColors();
    shown.renameColor(palette->colors[0], "Refused");
    EXPECT_EQ(palette->colors.size(), 5u);
    EXPECT_NE(palette->colors[0]->name, "Refused");
    EXPECT_EQ(shown.noticeText().toStdString(), LibraryActions::lockedReason(*palette));
    // The rename action (F2) opens no editor on a locked palette, and says why.
    shown.showNotice("Another notice");
    shown.renameSelection();
    EXPECT_EQ(shown.noticeText().toStdString(), LibraryActions::lockedReason(*palette));
}

TEST_F(MainWindowTest, TheViewsFollowChangesMadeElsewhereAndKeepTheSelection) {
    auto& shown = window();
    shown.selectPalette(user().palettes[0]->uuid);
    shown.selectColor(user().palettes[0]->colors[3]->uuid);
    settle();
    EXPECT_EQ(shown.inspector()->color(), user().palettes[0]->colors[3]);

    // The menu window, the command line or sync changes the library: the grid and inspector follow.
    const auto majorelle = user().palettes[0]->colors[3];
    user().renameColor(user().palettes[0], majorelle, "Violet");
    user().addColorToTarget(Color::make(0, 0, 0, 1));
    settle();
    EXPECT_EQ(shown.colorModel().rowCount(), 6);
    EXPECT_EQ(shown.colorModel().index(shown.colorModel().row(majorelle->uuid)).data(NameRole).toString(), "Violet");
    ASSERT_EQ(shown.selectedColors().size(), 1u);
    EXPECT_EQ(shown.selectedColors()[0]->name, "Violet");
    EXPECT_EQ(shown.inspector()->color()->name, "Violet");
}

TEST_F(MainWindowTest, PalettesAreCreatedDuplicatedMergedAndDeletedThroughTheLibrary) {
    auto& shown = window();
    shown.newPalette();
    settle();
    ASSERT_EQ(user().palettes.size(), 2u);
    EXPECT_EQ(user().palettes[1]->name, "Palette");
    EXPECT_EQ(shown.currentPalette(), user().palettes[1]);

    shown.selectPalette(user().palettes[0]->uuid);
    shown.duplicatePalette();
    settle();
    ASSERT_EQ(user().palettes.size(), 3u);
    EXPECT_EQ(user().palettes[1]->name, "Your First Palette! (1)");
    EXPECT_EQ(shown.currentPalette(), user().palettes[1]);

    // The copy merges into the new palette, which takes its colours; the copy is gone.
    auto empty = user().palettes[2];
    shown.mergeInto(empty);
    settle();
    EXPECT_EQ(user().palettes.size(), 2u);
    EXPECT_EQ(empty->colors.size(), 5u);
    EXPECT_EQ(shown.currentPalette(), empty);

    shown.deleteCurrentPalette();
    settle();
    EXPECT_EQ(user().palettes.size(), 1u);
    EXPECT_EQ(savedLibrary().find("\"name\":\"Palette\""), std::string::npos);
}

TEST_F(MainWindowTest, AFailedSaveKeepsTheOldFileAndIsShownOnceUntilASaveWorks) {
    auto& shown = window();
    shown.selectPalette(user().palettes[0]->uuid);
    settle();
    const auto before = savedLibrary();
    environment.files.failWrites = true;
    shown.renameColor(user().palettes[0]->colors[0], "First try");
    settle();
    EXPECT_EQ(savedLibrary(), before);
    const auto failure = shown.noticeText();
    EXPECT_TRUE(failure.startsWith("Your library could not be saved"));
    // A second failing edit leaves the one message as it is; a passing notice does not hide it.
    shown.renameColor(user().palettes[0]->colors[0], "Second try");
    shown.showNotice("Color Created");
    EXPECT_EQ(shown.noticeText(), failure);

    environment.files.failWrites = false;
    shown.renameColor(user().palettes[0]->colors[0], "Saved");
    settle();
    EXPECT_NE(savedLibrary().find("\"Saved\""), std::string::npos);
    EXPECT_TRUE(shown.noticeText().isEmpty());
}

TEST_F(MainWindowTest, TheInspectorShowsEveryFormatAndCopiesTheOneClicked) {
    auto& shown = window();
    shown.selectPalette(user().palettes[0]->uuid);
    shown.selectColor(user().palettes[0]->colors[0]->uuid);
    settle();
    auto* formats = shown.inspector()->findChild<QListWidget*>();
    ASSERT_TRUE(formats);
    EXPECT_EQ(static_cast<size_t>(formats->count()), ColorFormats::shared().formats.size());
    formats->setCurrentRow(2);
    emit formats->itemActivated(formats->item(2));
    EXPECT_EQ(fake.clipboard.contents, formats->item(2)->data(Qt::UserRole).toString().toStdString());

    // A picked colour is shown without joining the library until it is added.
    shown.inspect(ColorValue::rgb(0.2, 0.4, 0.6));
    EXPECT_FALSE(shown.inspector()->color());
    ASSERT_TRUE(shown.inspector()->picked());
    EXPECT_EQ(user().palettes[0]->colors.size(), 5u);
}

}  // namespace
}  // namespace kro::testing
