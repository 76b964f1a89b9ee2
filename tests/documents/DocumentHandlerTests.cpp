#include "documents/DocumentHandler.h"

#include "DocumentTestSupport.h"
#include "exchange/PaletteCoder.h"
#include "formats/color/ColorName.h"
#include "library/Notifications.h"
#include "library/SealedDocument.h"
#include "tests/support/LogCapture.h"

namespace kro {
namespace {

using testing::DocumentTest;

PaletteRef twoColorPalette() {
    auto palette = std::make_shared<Palette>();
    palette->uuid = "11111111-2222-3333-4444-555555555555";
    palette->name = "Brand";
    palette->colors = {Color::make(1, 0, 0, 1, "Signal"), Color::make(0, 0, 1, 0.5, "Sea")};
    return palette;
}

class DocumentHandlerTest : public DocumentTest {};

TEST_F(DocumentHandlerTest, PaletteDocumentIsAddedOnceAndPipelineRunsOnce) {
    const auto sealed = put("brand.palette", sealDocument(twoColorPalette()->toJson()));
    const auto upperCasePlain = put("BRAND COPY.PALETTE", compactText(twoColorPalette()->toJson()));
    const auto before = user().palettes.size();

    const auto summary = DocumentHandler::openFiles({sealed, upperCasePlain, sealed});

    EXPECT_EQ(summary.palettes, 1);
    EXPECT_EQ(summary.duplicates, 2);
    EXPECT_TRUE(summary.failed.empty());
    ASSERT_EQ(user().palettes.size(), before + 1);
    const auto& added = user().palettes.back();
    EXPECT_EQ(added->name, "Brand");
    ASSERT_EQ(added->colors.size(), 2u);
    EXPECT_EQ(added->colors[1]->alpha, 0.5f);
    EXPECT_EQ(postedCount(Notifications::userUpdated), 1u);
    EXPECT_TRUE(environment.files.exists("/home/test/data/kroapp.Kro/v5/user.json"));
    EXPECT_EQ(summary.message(), "Imported 1 palette");
}

TEST_F(DocumentHandlerTest, BadFilesAreSkippedAndTheOthersGoOn) {
    auto colorJson = Color::make(0, 1, 0, 1, "Leaf")->toJson();
    const auto paths = {
        put("garbage.palette", "\x01\x02 not json, not a sealed box"),
        put("color-in-disguise.palette", compactText(colorJson)),  // a colour is not a palette
        put("missing.palette", ""),
        put("nothing.unknownext", "1 2 3"),
        put("list.clr", "not a color list"),  // read by the exchange layer, which refuses it
        put("good.color", compactText(colorJson)),
    };
    environment.files.files.erase("/home/test/in/missing.palette");

    const auto summary = DocumentHandler::openFiles(paths);

    EXPECT_EQ(summary.colors, 1);
    EXPECT_EQ(summary.failed.size(), 5u);
    EXPECT_EQ(user().history->colors.front()->name, "Leaf");
    EXPECT_EQ(summary.message(), "Imported 1 color (5 files skipped)");
    EXPECT_EQ(DocumentHandler::openFiles({paths.begin()[0]}).message(), "Could not import garbage.palette");
}

TEST_F(DocumentHandlerTest, ColorDocumentGoesToTheHeadOfTheHistoryUnlessLocked) {
    environment.clock.set(parseDateText("2026-03-04T05:06:07Z").value());
    auto color = Color::make(0.2, 0.4, 0.6, 1, "Dusk");
    color->group = " Brand /  / Blues ";
    color->createdAt = "2001-01-01T00:00:00Z";
    const auto path = put("dusk.Color", sealDocument(color->toJson()));
    user().history->colors.push_back(Color::make(1, 1, 1, 1, "White"));

    ASSERT_EQ(DocumentHandler::openFiles({path}).colors, 1);
    const auto& head = user().history->colors.front();
    EXPECT_EQ(head->name, "Dusk");
    EXPECT_EQ(head->group, "Brand / Blues");
    EXPECT_EQ(head->createdAt, "2026-03-04T05:06:07Z");
    EXPECT_EQ(head->updatedAt, "2026-03-04T05:06:07Z");

    // The same colour again is already there; a locked history refuses even a new one.
    EXPECT_EQ(DocumentHandler::openFiles({path}).duplicates, 1);
    user().history->lock = true;
    const auto other = put("other.color", compactText(Color::make(0.9, 0.1, 0.1, 1, "Alarm")->toJson()));
    const auto refused = DocumentHandler::openFiles({other});
    EXPECT_EQ(refused.colors, 0);
    ASSERT_EQ(refused.failed.size(), 1u);
    EXPECT_EQ(refused.failed[0].reason, "the history is locked");
    EXPECT_EQ(user().history->colors.size(), 2u);
}

TEST_F(DocumentHandlerTest, FormatDocumentKeepsItsTemplatesUnderAUniqueName) {
    auto existing = std::make_shared<ColorFormatItem>();
    existing->name = "Tailwind";
    ColorFormats::shared().formats.push_back(existing);

    ColorFormatItem format;
    format.name = "Tailwind";
    format.clipboardFormat = "{{HEX}}-copied";
    format.custom = false;
    const auto path = put("tw.format", sealDocument(format.toJson()));

    const auto summary = DocumentHandler::openFiles({path, path});
    EXPECT_EQ(summary.formats, 1);
    EXPECT_EQ(summary.duplicates, 1);
    ASSERT_EQ(ColorFormats::shared().formats.size(), 2u);
    const auto& added = ColorFormats::shared().formats.back();
    EXPECT_EQ(added->name, "Tailwind (1)");
    EXPECT_EQ(added->clipboardFormat, "{{HEX}}-copied");
    EXPECT_TRUE(added->custom);
    EXPECT_EQ(postedCount(Notifications::colorFormatUpdated), 1u);
    EXPECT_EQ(postedCount(Notifications::userUpdated), 0u);
}

TEST_F(DocumentHandlerTest, SnapshotDocumentIsAddedToTheSnapshots) {
    auto snapshot = Snapshot::make(user());
    const auto path = put("monday.snapshot", sealDocument(snapshot->toJson()));

    const auto summary = DocumentHandler::openFiles({path, path});
    EXPECT_EQ(summary.snapshots, 1);
    ASSERT_EQ(Snapshots::shared().snapshots.size(), 1u);
    EXPECT_EQ(Snapshots::shared().snapshots[0]->uuid, snapshot->uuid);
    EXPECT_EQ(summary.message(), "Imported 1 snapshot");
}

TEST_F(DocumentHandlerTest, ExchangePaletteKeepsGroupsAndNamesUnnamedColors) {
    PAL::Palette exchanged("", {PAL::Color::rgb(1, 0, 0, 1, "Loose")},
                           {PAL::Group("Brand/Primary", {PAL::Color::rgb(0, 0, 1), PAL::Color::rgb(0, 0.5, 0, 0.25, "Moss")})});
    const auto path = put("Spring.jsoncolorpalette", PAL::coder(PAL::PaletteFormat::json)->encode(exchanged));
    user().palettes.push_back(Palette::make({}, "Spring"));

    ASSERT_EQ(DocumentHandler::openFiles({path}).palettes, 1);
    const auto& palette = user().palettes.back();
    EXPECT_EQ(palette->name, "Spring (1)");  // the file's name, by the naming rule
    ASSERT_EQ(palette->colors.size(), 3u);
    EXPECT_EQ(palette->colors[0]->name, "Loose");
    EXPECT_EQ(palette->colors[0]->group, "");
    EXPECT_EQ(palette->colors[1]->group, "Brand / Primary");
    EXPECT_EQ(palette->colors[1]->name, ColorName::name(0, 0, 1));
    EXPECT_EQ(palette->colors[1]->hex, "0000FF");
    EXPECT_EQ(palette->colors[2]->alpha, 0.25f);
}

TEST_F(DocumentHandlerTest, ColourListIsNamedAfterItsFileAndADamagedOneIsSkipped) {
    const auto list = PAL::coder(PAL::PaletteFormat::clr)
                          ->encode(PAL::Palette("Brand", {PAL::Color::rgb(1, 0, 0, 1, "Signal"), PAL::Color::rgb(0, 0.5, 1, 0.5, "Sky")}));
    const auto damaged = put("damaged.clr", list.substr(0, list.size() / 2));
    const auto renamed = put("Autumn Set.CLR", list);

    testing::LogCapture log;
    const auto summary = DocumentHandler::openFiles({damaged, renamed});
    EXPECT_NE(log.text().find("Import skipped " + damaged + ": no palette format reads it"), std::string::npos);

    EXPECT_EQ(summary.palettes, 1);
    ASSERT_EQ(summary.failed.size(), 1u);
    EXPECT_EQ(summary.failed[0].path, damaged);
    EXPECT_EQ(user().palettes.back()->name, "Autumn Set");  // the file's name, not the exported palette's
    EXPECT_EQ(user().palettes.back()->colors.size(), 2u);
}

TEST(ImportSummary, MessageListsEachKind) {
    ImportSummary summary;
    EXPECT_EQ(summary.message(), "Nothing to import");
    summary.duplicates = 1;
    EXPECT_EQ(summary.message(), "Already in your library");
    summary.palettes = 2;
    summary.colors = 1;
    summary.formats = 3;
    EXPECT_EQ(summary.message(), "Imported 2 palettes, 1 color and 3 formats");
}

}  // namespace
}  // namespace kro
