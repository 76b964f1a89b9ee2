// Drags carry our records, the format text and the standard colour type; drops go through the library.
#include "WorkspaceTest.h"

#include <QMimeData>
#include <QUrl>

#include "workspaces/common/DragData.h"
#include "workspaces/common/LibraryActions.h"
#include "workspaces/common/LibraryModels.h"
#include "workspaces/common/Swatch.h"

namespace kro::testing {
namespace {

class DragDropTest : public WorkspaceTest {
protected:
    DragDropTest() {
        second = Palette::make({Color::make(0, 0, 0, 1, "Ink")}, "Second");
        user().addPalette(second);
        colors.setPalette(user().palettes[0]->uuid);
    }
    std::vector<std::string> notices;
    LibraryActions actions{[this](const std::string& text) { notices.push_back(text); }, {}};
    PaletteListModel palettes{actions};
    ColorListModel colors{actions};
    PaletteRef second;

    std::unique_ptr<QMimeData> dragOf(std::initializer_list<int> rows) {
        QModelIndexList indexes;
        for (int row : rows) indexes << colors.index(row);
        return std::unique_ptr<QMimeData>(colors.mimeData(indexes));
    }
};

TEST_F(DragDropTest, AColourDragCarriesTextTheStandardColourTypeAndOurRecords) {
    const auto data = dragOf({2, 0});
    const auto first = user().palettes[0];
    // Shown order, whatever order they were selected in.
    EXPECT_EQ(data->text().toStdString(), ColorFormats::shared().clipboardString(first->colors[0]->colorValue()) + "\n" +
                                              ColorFormats::shared().clipboardString(first->colors[2]->colorValue()));
    ASSERT_TRUE(data->hasColor());
    // The screen's colour (sRGB), as other programs take it.
    EXPECT_EQ(qvariant_cast<QColor>(data->colorData()), displayColor(*first->colors[0]));
    const auto drag = DragData::colorDrag(*data);
    ASSERT_TRUE(drag);
    EXPECT_EQ(drag->palette, first);
    EXPECT_EQ(drag->colors, (std::vector<ColorRef>{first->colors[0], first->colors[2]}));
}

TEST_F(DragDropTest, DroppingOnAnotherPaletteMovesAndWithinOneReorders) {
    const auto first = user().palettes[0];
    auto inchWorm = first->colors[0];
    ASSERT_TRUE(palettes.dropMimeData(dragOf({0, 1}).get(), Qt::MoveAction, -1, -1, palettes.index(2)));
    EXPECT_EQ(second->colors.size(), 3u);
    EXPECT_EQ(second->colors[0], inchWorm);
    EXPECT_EQ(first->colors.size(), 3u);
    EXPECT_NE(savedLibrary().find("\"Ink\""), std::string::npos);
    const auto saved = savedLibrary();
    EXPECT_LT(saved.find(inchWorm->uuid), saved.find("\"Ink\""));

    // Within the grid: the last colour dropped before the first.
    colors.setPalette(first->uuid);
    auto last = first->colors[2];
    ASSERT_TRUE(colors.dropMimeData(dragOf({2}).get(), Qt::MoveAction, 0, 0, {}));
    EXPECT_EQ(first->colors[0], last);

    // A copy leaves the source as it was.
    ASSERT_TRUE(palettes.dropMimeData(dragOf({0}).get(), Qt::CopyAction, -1, -1, palettes.index(0)));
    EXPECT_EQ(user().history->colors.size(), 1u);
    EXPECT_EQ(first->colors.size(), 3u);

    // While the grid is sorted, a place between its rows means nothing: refused, with the reason.
    Settings::shared().setColorSort(PaletteColorSort::nameASC);
    EXPECT_FALSE(colors.dropMimeData(dragOf({1}).get(), Qt::MoveAction, 0, 0, {}));
    EXPECT_FALSE(notices.empty());
}

TEST_F(DragDropTest, ALockedPaletteRefusesDropsAndUnknownDataIsIgnored) {
    second->lock = true;
    const auto before = savedLibrary();
    EXPECT_FALSE(palettes.dropMimeData(dragOf({0}).get(), Qt::MoveAction, -1, -1, palettes.index(2)));
    EXPECT_EQ(notices.back(), LibraryActions::lockedReason(*second));

    QMimeData unknown;
    unknown.setData("application/octet-stream", "\x01\x02");
    EXPECT_FALSE(palettes.canDropMimeData(&unknown, Qt::CopyAction, -1, -1, palettes.index(1)));
    EXPECT_FALSE(colors.dropMimeData(&unknown, Qt::CopyAction, 0, 0, {}));
    QMimeData noColors;
    noColors.setText("nothing to see here");
    EXPECT_FALSE(colors.dropMimeData(&noColors, Qt::CopyAction, 0, 0, {}));
    EXPECT_EQ(savedLibrary(), before);
    EXPECT_EQ(user().palettes[0]->colors.size(), 5u);
}

TEST_F(DragDropTest, TextAndColoursOfOtherProgramsBecomeColoursOfThePalette) {
    QMimeData text;
    text.setText("body { color: #FF0000; background: rgb(0, 0, 255); }");
    ASSERT_TRUE(palettes.dropMimeData(&text, Qt::CopyAction, -1, -1, palettes.index(2)));
    std::vector<std::string> hexes;
    for (const auto& color : second->colors) hexes.push_back(color->hex);
    EXPECT_EQ(hexes.size(), 3u);

    QMimeData gimp;
    gimp.setColorData(QColor(0, 128, 0));
    ASSERT_TRUE(colors.dropMimeData(&gimp, Qt::CopyAction, 1, 0, {}));
    EXPECT_EQ(user().palettes[0]->colors.size(), 6u);
    const auto shown = displayColor(*user().palettes[0]->colors[1]);
    EXPECT_NEAR(shown.green(), 128, 1);
    EXPECT_LE(shown.red() + shown.blue(), 2);

    // Palettes reorder by their own drag, between rows under the history.
    std::unique_ptr<QMimeData> moved(palettes.mimeData({palettes.index(2)}));
    ASSERT_TRUE(palettes.dropMimeData(moved.get(), Qt::MoveAction, 1, 0, {}));
    EXPECT_EQ(user().palettes[0], second);
}

TEST_F(DragDropTest, DroppedFilesAreImportedAndOneThatDoesNotReadIsNamed) {
    environment.files.createDirectories("/home/test/in");
    environment.files.files["/home/test/in/web.gpl"] = "GIMP Palette\nName: Web\n#\n255 0 0 Red\n";
    environment.files.files["/home/test/in/junk.aco"] = "junk";
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile("/home/test/in/junk.aco")});
    const auto before = savedLibrary();
    EXPECT_FALSE(colors.dropMimeData(&files, Qt::CopyAction, 0, 0, {}));
    EXPECT_EQ(notices.back(), "Could not import junk.aco");
    EXPECT_EQ(savedLibrary(), before);

    files.setUrls({QUrl::fromLocalFile("/home/test/in/web.gpl")});
    ASSERT_TRUE(palettes.dropMimeData(&files, Qt::CopyAction, -1, -1, palettes.index(1)));
    EXPECT_EQ(user().palettes.back()->name, "Web");
    EXPECT_EQ(notices.back(), "Imported 1 palette");
}

}  // namespace
}  // namespace kro::testing
