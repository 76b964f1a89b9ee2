// The item models follow the library, whoever changes it, and keep no copy of it.
#include "WorkspaceTest.h"

#include "library/Notifications.h"
#include "workspaces/common/LibraryActions.h"
#include "workspaces/common/LibraryModels.h"

namespace kro::testing {
namespace {

class LibraryModelTest : public WorkspaceTest {
protected:
    LibraryActions actions{[this](const std::string& text) { notices.push_back(text); }, {}};
    std::vector<std::string> notices;

    static std::vector<std::string> column(const QAbstractItemModel& model, int role) {
        std::vector<std::string> values;
        for (int row = 0; row < model.rowCount(); ++row) values.push_back(model.index(row, 0).data(role).toString().toStdString());
        return values;
    }
};

TEST_F(LibraryModelTest, PaletteListReadsTheLibraryLiveAndRefreshesOnEveryKindOfChange) {
    PaletteListModel model(actions);
    EXPECT_EQ(column(model, Qt::DisplayRole), (std::vector<std::string>{"Color History", "Your First Palette!"}));
    EXPECT_EQ(model.index(1).data(CountRole).toInt(), 5);
    EXPECT_TRUE(model.index(0).data(TargetRole).toBool());

    int resets = 0;
    QObject::connect(&model, &QAbstractItemModel::modelReset, [&] { ++resets; });
    // Another window or the command line: the pipeline's "UserUpdated".
    user().addPalette(Palette::make({}, "Brand"));
    // Sync replaced the library and announced the merge.
    user().palettes[0]->lock = true;
    env().notifications->post(Notifications::userCloudMerged);
    EXPECT_EQ(resets, 2);
    EXPECT_EQ(column(model, Qt::DisplayRole).back(), "Brand");
    EXPECT_TRUE(model.index(1).data(LockedRole).toBool());
    EXPECT_EQ(model.index(1).data(Qt::AccessibleTextRole).toString().toStdString(), "Your First Palette!, 5 colors, locked");

    // Renaming through the view is the library's rename; a locked palette refuses with its reason.
    EXPECT_TRUE(model.setData(model.index(2), "Brand Colors", Qt::EditRole));
    EXPECT_NE(savedLibrary().find("\"Brand Colors\""), std::string::npos);
    EXPECT_FALSE(model.setData(model.index(1), "Renamed", Qt::EditRole));
    EXPECT_EQ(notices, (std::vector<std::string>{"\u201CYour First Palette!\u201D is locked. Unlock it to change it."}));
}

TEST_F(LibraryModelTest, ColorListSortsSearchesAndRendersTheMenuFormatOfThePalette) {
    ColorListModel model(actions);
    model.setPalette(user().palettes[0]->uuid);
    EXPECT_EQ(column(model, NameRole), (std::vector<std::string>{"Inch Worm", "Eucalyptus", "Maya Blue", "Majorelle Blue",
                                                                  "Pale Magenta"}));
    EXPECT_EQ(model.index(0).data(Qt::DisplayRole).toString().toStdString(),
              ColorFormats::shared().menuString(user().palettes[0]->colors[0]->colorValue()));

    Settings::shared().setColorSort(PaletteColorSort::nameDESC);
    EXPECT_EQ(column(model, NameRole).front(), "Pale Magenta");
    EXPECT_FALSE(model.showsPaletteOrder());
    Settings::shared().setColorSort(PaletteColorSort::none);

    // By name, case-blind, or by hex with or without "#".
    model.setSearch("BLUE");
    EXPECT_EQ(column(model, NameRole), (std::vector<std::string>{"Maya Blue", "Majorelle Blue"}));
    model.setSearch("#" + user().palettes[0]->colors[1]->hex);
    EXPECT_EQ(column(model, NameRole), (std::vector<std::string>{"Eucalyptus"}));
    model.setSearch("");

    // Selecting another format changes every row's text.
    const auto before = model.index(0).data().toString();
    for (const auto& format : ColorFormats::shared().formats) {
        if (format->name == "CSS RGB") ColorFormats::shared().select(*format);
    }
    EXPECT_NE(model.index(0).data().toString(), before);
    EXPECT_TRUE(model.index(0).data().toString().startsWith("rgb"));

    // A palette that goes away leaves the list empty, not dangling.
    user().deletePalettes({user().palettes[0]});
    EXPECT_EQ(model.rowCount(), 0);
}

}  // namespace
}  // namespace kro::testing
