#include "documents/ShareOption.h"

#include "DocumentTestSupport.h"
#include "documents/DocumentHandler.h"
#include "documents/PalettePDF.h"
#include "library/SealedDocument.h"

namespace kro {
namespace {

using testing::DocumentTest;

class ShareOptionTest : public DocumentTest {
protected:
    ShareOptionTest() : share([this](const std::string& folder) {
        opened.push_back(folder);
        return true;
    }) {}

    PaletteRef palette(const std::string& name) {
        auto made = Palette::make({Color::make(1, 0, 0, 1, "Signal"), Color::make(0, 0.5, 1, 0.5, "Sky")}, name);
        made->colors[1]->group = "Cool";
        return made;
    }

    ShareOption share;
    std::vector<std::string> opened;
    const std::string folder = "/home/test/cache/kroapp.Kro/export/palettes";
};

TEST_F(ShareOptionTest, ThePaletteMenuOffersEveryFormInOrder) {
    std::vector<std::string> labels;
    for (const auto option : allShareOptionPalettes()) {
        EXPECT_TRUE(isAvailable(option)) << label(option);
        labels.push_back(label(option));
    }
    EXPECT_EQ(labels, (std::vector<std::string>{"Kro Palette", "Adobe Swatch Exchange (ASE)", "Apple Color List (CLR)",
                                                "JavaScript Object Notation (JSON)", "Portable Document Format (PDF)"}));
    EXPECT_EQ(shareOptionForExtension("PDF"), ShareOptionPalette::pdf);
    EXPECT_EQ(shareOptionForExtension("clr"), ShareOptionPalette::clr);
    EXPECT_FALSE(shareOptionForExtension("gpl"));
}

TEST_F(ShareOptionTest, KroPaletteIsSealedAndOpensAgainAsTheSamePalette) {
    const auto original = palette("Brand / 2026");
    const auto written = share.exportPalettes({original, palette("Brand / 2026")}, ShareOptionPalette::kro);
    ASSERT_TRUE(written);
    EXPECT_EQ(*written, (std::vector<std::string>{folder + "/Brand - 2026.palette", folder + "/Brand - 2026 (1).palette"}));

    const auto bytes = environment.files.read(written->front()).value();
    EXPECT_EQ(bytes.find("Signal"), std::string::npos);  // sealed, not plain
    EXPECT_EQ(Palette::fromJson(readSealedDocument(bytes))->toJson(), original->toJson());

    EXPECT_EQ(DocumentHandler::openFiles({written->front()}).palettes, 1);
    EXPECT_EQ(user().palettes.back()->uuid, original->uuid);
}

TEST_F(ShareOptionTest, ColourListIsTheKeyedArchiveAndKeepsColoursAndNamesThroughImport) {
    const auto written = share.exportPalettes({palette("Brand")}, ShareOptionPalette::clr);
    ASSERT_TRUE(written);
    EXPECT_EQ(*written, std::vector<std::string>{folder + "/Brand.clr"});
    EXPECT_EQ(environment.files.read(written->front())->rfind("bplist00", 0), 0u);  // the form current macOS loads
    ASSERT_EQ(DocumentHandler::openFiles(*written).palettes, 1);
    const auto& back = user().palettes.back();
    EXPECT_EQ(back->name, "Brand");
    ASSERT_EQ(back->colors.size(), 2u);
    EXPECT_EQ(back->colors[0]->name, "Signal");
    EXPECT_EQ(back->colors[1]->name, "Sky");
    EXPECT_EQ(back->colors[1]->hex, "007FFF");
    EXPECT_EQ(back->colors[1]->alpha, 0.5f);
    EXPECT_EQ(back->colors[1]->group, "");  // a colour list has no groups
}

TEST_F(ShareOptionTest, FormatsAndSnapshotsBecomeSealedDocuments) {
    auto format = std::make_shared<ColorFormatItem>();
    format->name = "Mine";
    const auto formats = share.exportFormats({format});
    ASSERT_TRUE(formats);
    EXPECT_EQ(*formats, std::vector<std::string>{folder + "/Mine.format"});
    EXPECT_EQ(ColorFormatItem::fromJson(readSealedDocument(environment.files.read(formats->front()).value()))->uuid,
              format->uuid);

    const auto snapshot = share.exportSnapshot(*Snapshot::make(user()));
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(*snapshot, folder + "/Snapshot 01 Jan 2026.snapshot");
}

TEST_F(ShareOptionTest, FailedSaveToDesktopLeavesTheExportInPlace) {
    const auto written = share.exportPalettes({palette("Brand")}, ShareOptionPalette::pdf);
    ASSERT_TRUE(written);
    ASSERT_TRUE(share.saveToDesktop(*written));
    EXPECT_TRUE(environment.files.exists("/home/test/Desktop/Brand.pdf"));

    environment.files.failWrites = true;
    EXPECT_FALSE(share.saveToDesktop({folder + "/Brand.pdf", folder + "/absent.pdf"}));
    EXPECT_TRUE(environment.files.exists(folder + "/Brand.pdf"));

    EXPECT_TRUE(share.openExportFolder());
    EXPECT_EQ(opened, std::vector<std::string>{folder});
}

TEST_F(ShareOptionTest, ExportFailsWhenTheFolderCannotBeMade) {
    environment.files.failCreateDirectories = true;
    EXPECT_FALSE(share.exportPalettes({palette("Brand")}, ShareOptionPalette::kro));
    EXPECT_FALSE(share.openExportFolder());
    EXPECT_TRUE(opened.empty());
}

TEST(PalettePDF, RowTextsAndPageSizeFollowThePalette) {
    kro::testing::TestEnvironment environment;
    EXPECT_EQ(rgbaLine(*Color::make(1, 0.5, 0, 0.25)), "RGBA(255, 128, 0, 0.25)");
    EXPECT_EQ(hslaLine(*Color::make(1, 0, 0, 0.5)), "hsla(0, 100%, 50%, 0.50)");
    EXPECT_EQ(readableDate(std::string("2026-11-21T12:29:08Z")), "21 Nov 2026, 12:29 UTC");
    EXPECT_EQ(readableDate(std::string("yesterday")), "yesterday");
    EXPECT_EQ(readableDate(std::nullopt), "–");
}

}  // namespace
}  // namespace kro
