#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;
using Case = CommonError::Case;

namespace {

std::vector<PaletteFormat> formatsOf(const std::vector<const PaletteCoder*>& coders) {
    std::vector<PaletteFormat> formats;
    for (const auto* coder : coders) formats.push_back(coder->format());
    return formats;
}

}  // namespace

// The coders' own order and each one's format are checked against the table in EveryFormatHasACoderThatKeepsToItsTable.
TEST(PaletteFormatTest, FortyTwoFormatsAndTheTextCodersInTheirFixedOrder) {
    ASSERT_EQ(paletteFormats().size(), 42u);
    EXPECT_EQ(paletteFormatFromCaseName("corelDrawV3"), PaletteFormat::corelDrawV3);
    EXPECT_EQ(paletteFormatFromCaseName("GIMP"), std::nullopt);
    EXPECT_EQ(textCoders().size(), 17u);
    EXPECT_EQ(textCoders().front()->format(), PaletteFormat::rgb);
    EXPECT_EQ(textCoders().back()->format(), PaletteFormat::simplePalette);
}

// Which coders share an extension, and in what order, is the table's; the trial tests check what that order decides.
TEST(PaletteFormatTest, CodersForAPathGoByItsExtensionInAnyCase) {
    EXPECT_EQ(coders("pal").size(), 5u);
    EXPECT_EQ(formatsOf(coders("PAL")), formatsOf(coders("pal")));
    EXPECT_EQ(formatsOf(codersForPath("/tmp/x.GPL")), (std::vector<PaletteFormat>{PaletteFormat::gimp}));
    EXPECT_TRUE(codersForPath("/tmp/palette").empty());
    EXPECT_TRUE(coders("").empty());
}

TEST(PaletteFormatTest, CoderForATypeGoesByItsPreferredExtension) {
    ASSERT_NE(coderForUTType("com.adobe.ase"), nullptr);
    EXPECT_EQ(coderForUTType("com.adobe.ase")->format(), PaletteFormat::ase);
    EXPECT_EQ(coderForUTType("public.tintlab.colorpalette.palette.gimp.gpl")->format(), PaletteFormat::gimp);
    // The Autodesk book's preferred extension is "acb", whose first coder is Adobe's.
    EXPECT_EQ(coderForUTType("public.tintlab.colorpalette.palette.autodesk.colorbook")->format(), PaletteFormat::acb);
    EXPECT_EQ(coderForUTType("public.tintlab.colorpalette.palette.scribus.xml")->format(), PaletteFormat::androidXML);
    EXPECT_EQ(coderForUTType("org.example.nothing"), nullptr);
}

TEST(PaletteFormatTest, DecodingFilesAndBytes) {
    const ScratchFolder folder;
    const auto write = [&](const std::string& name, const std::string& bytes) {
        writeFile(folder / name, bytes);
        return (folder / name).string();
    };
    const std::string gimp = "GIMP Palette\nName: Two\n#\n255 0 0\tRed\n  0 0 255\tBlue\n";

    // The extension is lowercased before matching.
    const Palette palette = decode(write("two.GPL", gimp));
    EXPECT_EQ(palette.format, PaletteFormat::gimp);
    EXPECT_EQ(palette.colors.size(), 2u);

    expectCommonError(Case::unsupportedCoderType, [&] { decode(write("two", gimp)); });
    expectCommonError(Case::unsupportedPaletteType, [&] { decode(write("junk.txt", "not a palette\n")); });
    expectCommonError(Case::unableToLoadFile, [&] { decode((folder / "missing.gpl").string()); });
    std::filesystem::create_directories(folder / "folder.gpl");
    expectCommonError(Case::unableToLoadFile, [&] { decode((folder / "folder.gpl").string()); });

    // A given coder is the only one tried; its refusal reaches the caller as unsupportedPaletteType.
    const auto json = coder(PaletteFormat::json);
    expectCommonError(Case::unsupportedPaletteType, [&] { decode(write("two.gpl.txt", gimp), json.get()); });
    EXPECT_EQ(decode(write("two.anything", gimp), coder(PaletteFormat::gimp).get()).colors.size(), 2u);
    expectCommonError(Case::unableToLoadFile, [&] { coder(PaletteFormat::gimp)->decodeFile((folder / "missing").string()); });

    EXPECT_EQ(decode(gimp, "gpl").colors.size(), 2u);
    expectCommonError(Case::unsupportedCoderType, [&] { decode(gimp, "doc"); });
}

// A file on disk is read a window at a time as it is decoded, by readers that walk it and by those that
// seek about in it; what they read is what the same bytes in memory give.
TEST(PaletteFormatTest, FilesReadAsTheirBytesDo) {
    ScratchFolder folder;
    std::vector<Color> colors;
    for (int i = 0; i < 3000; ++i) colors.push_back(Color::rgb(i % 256 / 255.0, 0.5, 1 - i % 7 / 7.0, 1, "Colour " + std::to_string(i)));
    const Palette palette("Big", {}, {Group("A", colors), Group("B", colors)});
    for (const auto format : {PaletteFormat::ase, PaletteFormat::dcp, PaletteFormat::clf, PaletteFormat::xara,
                              PaletteFormat::clipStudioPaint, PaletteFormat::gimp, PaletteFormat::json}) {
        const auto each = coder(format);
        const std::string bytes = each->encode(palette);
        const auto path = folder / ("big." + std::string(info(format).extensions.front()));
        writeFile(path, bytes);
        const Palette fromFile = decode(path.string(), each.get());
        expectExactPalette(fromFile, each->decode(std::string_view(bytes)));
        EXPECT_EQ(fromFile.totalColorCount(), 6000u) << info(format).caseName;
    }
}

// Every format has its coder, which does what the format table says and marks what it reads with its
// format; a side the format lacks answers notImplemented, which the trial passes over, after logging the
// coder's message where it has one.
TEST(PaletteFormatTest, EveryFormatHasACoderThatKeepsToItsTable) {
    const Palette sample("Harbour", {Color::rgb255(26, 101, 151, 255, "Sea"), Color::rgb255(240, 200, 90, 255, "Sand")});
    const std::map<PaletteFormat, std::string> messages = {{PaletteFormat::acb, "PAL.Coder.ACB: encode() not implemented"},
                                                           {PaletteFormat::afpalette, "AFPaletteCoder: encode() not implemented"},
                                                           {PaletteFormat::corelPalette, "CPLCoder: encode() not implemented"},
                                                           {PaletteFormat::svg, "SVG Coder: decode() not implemented"},
                                                           {PaletteFormat::swift, "Swift Coder: decode() not implemented"}};
    ASSERT_EQ(allCoders().size(), paletteFormats().size());
    for (std::size_t i = 0; i < allCoders().size(); ++i) {
        EXPECT_EQ(static_cast<std::size_t>(paletteFormats()[i].format), i);
        const PaletteCoder& each = *allCoders()[i];
        const auto& format = paletteFormats()[i];
        SCOPED_TRACE(std::string(format.caseName));
        EXPECT_EQ(each.format(), format.format);
        EXPECT_EQ(each.reads(), format.reads);
        EXPECT_EQ(each.writes(), format.writes);
        if (format.reads && format.writes) {
            EXPECT_EQ(each.decode(each.encode(sample)).format, format.format);
        }
        binarytest::LogCapture log;
        if (!format.reads) expectCommonError(Case::notImplemented, [&] { each.decode(std::string_view("#ffffff")); });
        if (!format.writes) expectCommonError(Case::notImplemented, [&] { each.encode(Palette()); });
        if (messages.count(format.format)) {
            EXPECT_TRUE(log.contains(messages.at(format.format), LogLevel::error));
        }
    }
}

TEST(PaletteTest, AllColorsAndAppending) {
    Palette palette("P", {}, {Group("G", {Color::rgb(1, 0, 0), Color::rgb(0, 1, 0)})});
    EXPECT_EQ(palette.allColors().size(), 2u);  // one group and no global colours
    const auto index = palette.appendColor(Color::gray(0.5));
    EXPECT_EQ(index, (Palette::ColorIndex{ColorGrouping::global(), 0}));
    const auto all = palette.allColors();
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[0], Color::gray(0.5));  // global colours first
    EXPECT_EQ(all[2], Color::rgb(0, 1, 0));
    EXPECT_EQ(palette.totalColorCount(), 3u);
}

// The writers walk the colours in place; the walk must be allColors(), across empty lists anywhere.
TEST(PaletteTest, EachColorWalksAllColorsInPlace) {
    for (const Palette& palette :
         {Palette(), Palette("", {}, {Group(), Group()}), Palette("", {Color::gray(0)}),
          Palette("", {}, {Group(), Group("", {Color::gray(0.1), Color::gray(0.2)}), Group(), Group("", {Color::gray(0.3)}), Group()}),
          Palette("", {Color::gray(0.4)}, {Group(), Group("", {Color::gray(0.5)})})}) {
        const auto all = palette.allColors();
        const auto each = palette.eachColor();
        EXPECT_EQ(each.size(), all.size());
        EXPECT_EQ(each.empty(), all.empty());
        std::vector<const Color*> walked;
        for (const Color& color : each) walked.push_back(&color);
        ASSERT_EQ(walked.size(), all.size());
        for (std::size_t i = 0; i < all.size(); ++i) {
            EXPECT_EQ(walked[i]->colorComponents, all[i].colorComponents) << i;
            EXPECT_EQ(&each[i], walked[i]) << "read in place";
        }
        expectCommonError(Case::indexOutOfRange, [&] { (void)each[all.size()]; });
    }
}
