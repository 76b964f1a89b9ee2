#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "CommandTestSupport.h"
#include "cli/ExchangeCommands.h"

namespace {

using namespace kro::cli;
namespace fs = std::filesystem;

class ExchangeCommandsTest : public ::testing::Test, protected CommandRunner {
protected:
    void SetUp() override {
        registerExchangeCommands(table);
        folder = fs::temp_directory_path() / ("kro-exchange-cli-" + std::to_string(::getpid()));
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    void TearDown() override { fs::remove_all(folder); }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    std::string write(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return path(name);
    }
    std::string read(const std::string& name) const {
        std::ifstream file(folder / name, std::ios::binary);
        std::stringstream bytes;
        bytes << file.rdbuf();
        return bytes.str();
    }

    fs::path folder;
};

const std::string gimpPalette = "GIMP Palette\nName: Two\nColumns: 2\n#\n255   0   0\tRed\n  0   0 255\tBlue\n";

TEST_F(ExchangeCommandsTest, ConvertsByExtensionAndBack) {
    const auto input = write("two.gpl", gimpPalette);
    ASSERT_EQ(run({"convert", input, path("two.jsoncolorpalette")}), exitDone) << err.str();
    EXPECT_EQ(err.str(), "");
    EXPECT_NE(read("two.jsoncolorpalette").find("\"name\": \"Two\""), std::string::npos);

    ASSERT_EQ(run({"convert", path("two.jsoncolorpalette"), path("again.gpl")}), exitDone) << err.str();
    EXPECT_EQ(read("again.gpl"), gimpPalette);
}

TEST_F(ExchangeCommandsTest, NamedFormatsOverrideTheExtensions) {
    const auto input = write("two.txt", gimpPalette);
    ASSERT_EQ(run({"convert", "--from", "gimp", input, path("out.data"), "--to", "json"}), exitDone) << err.str();
    EXPECT_EQ(read("out.data").front(), '{');
    // A wrong named reader refuses the file.
    EXPECT_EQ(run({"convert", input, path("x.gpl"), "--from", "json"}), exitFailed);
    EXPECT_EQ(err.str(), "kro: cannot read " + input + ": not a palette in the json format\n");
}

TEST_F(ExchangeCommandsTest, AFailedConvertLeavesNoOutputAndKeepsAnOldOne) {
    const auto corrupt = write("corrupt.gpl", "GIMP Palette\n1 2\n");
    EXPECT_EQ(run({"convert", corrupt, path("out.jsoncolorpalette")}), exitFailed);
    EXPECT_FALSE(fs::exists(folder / "out.jsoncolorpalette"));
    EXPECT_EQ(err.str().rfind("kro: ", 0), 0u);

    write("kept.gpl", "old contents");
    EXPECT_EQ(run({"convert", corrupt, path("kept.gpl")}), exitFailed);
    EXPECT_EQ(read("kept.gpl"), "old contents");

    // No stray temporary files either.
    std::size_t entries = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(folder)) ++entries;
    EXPECT_EQ(entries, 2u);
}

TEST_F(ExchangeCommandsTest, ConvertFailuresSayWhat) {
    const auto input = write("two.gpl", gimpPalette);
    EXPECT_EQ(run({"convert", path("missing.gpl"), path("x.jsoncolorpalette")}), exitFailed);
    EXPECT_EQ(err.str(), "kro: cannot read " + path("missing.gpl") + ": the file cannot be opened\n");

    EXPECT_EQ(run({"convert", write("notes.doc", "x"), path("x.gpl")}), exitFailed);
    EXPECT_NE(err.str().find("no palette format reads files ending in \".doc\""), std::string::npos);

    EXPECT_EQ(run({"convert", input, path("x.doc")}), exitFailed);
    EXPECT_NE(err.str().find("no palette format writes files ending in \".doc\""), std::string::npos);

    // A format without a write (or read) side says it cannot, and which formats for the extension can.
    EXPECT_EQ(run({"convert", input, path("x.out"), "--to", "afpalette"}), exitFailed);
    EXPECT_NE(err.str().find("writing the afpalette format is not possible"), std::string::npos);
    EXPECT_EQ(run({"convert", input, path("x.acb")}), exitFailed);
    EXPECT_NE(err.str().find("writing the acb format is not possible (formats that can: autodeskColorBook; choose one with --to)"),
              std::string::npos) << err.str();
    EXPECT_EQ(run({"convert", input, path("x.gpl"), "--from", "swift"}), exitFailed);
    EXPECT_NE(err.str().find("reading the swift format is not possible"), std::string::npos);

    EXPECT_EQ(run({"convert", write("list.xml", "<resources/>"), path("x.gpl")}), exitFailed);
    EXPECT_NE(err.str().find("not a palette that any format for \".xml\" can read"), std::string::npos);

    EXPECT_EQ(run({"convert", input, path("no-such-folder/x.gpl")}), exitFailed);
    EXPECT_NE(err.str().find("cannot write the file"), std::string::npos);
}

TEST_F(ExchangeCommandsTest, WrongCommandLinesAreUsageErrors) {
    EXPECT_EQ(run({"convert", "only-one.gpl"}), exitUsage);
    EXPECT_EQ(err.str().rfind("usage: kro convert IN OUT [--from FORMAT] [--to FORMAT]\n", 0), 0u);
    EXPECT_EQ(run({"convert", "a.gpl", "b.gpl", "c.gpl"}), exitUsage);
    EXPECT_EQ(run({"convert", "a.gpl", "b.gpl", "--to"}), exitUsage);
    EXPECT_EQ(run({"convert", "a.gpl", "b.gpl", "--verbose"}), exitUsage);
    EXPECT_EQ(run({"convert", "a.gpl", "b.gpl", "--to", "GIMP"}), exitUsage);
    EXPECT_NE(err.str().find("unknown palette format \"GIMP\""), std::string::npos);
    EXPECT_EQ(run({"inspect"}), exitUsage);
    EXPECT_EQ(run({"palette-formats", "extra"}), exitUsage);
}

TEST_F(ExchangeCommandsTest, InspectShowsNameGroupsAndColours) {
    const auto broken = write("broken.jsoncolorpalette", "{");
    EXPECT_EQ(run({"inspect", broken}), exitFailed);
    EXPECT_EQ(err.str().rfind("kro: cannot read " + broken + ": ", 0), 0u);

    const auto input = write("brand.jsoncolorpalette",
                             R"({"name":"Brand","colors":[{"name":"Red","colorSpace":"RGB","colorComponents":[1,0,0]}],"groups":[)"
                             R"({"name":"Print","colors":[{"colorSpace":"Gray","colorComponents":[0],"alpha":0.5,"colorType":"spot"}]}]})");
    ASSERT_EQ(run({"inspect", input}), exitDone) << err.str();
    EXPECT_EQ(out.str(),
              "Name: Brand\n"
              "Format: json (TintCodable JSON Palette)\n"
              "Colors: 2 in 1 groups\n"
              "FF0000  RGB 1 0 0  \"Red\"\n"
              "Group \"Print\": 1 colors\n"
              "  000000  Gray 0  alpha 0.5  spot\n");
}

TEST_F(ExchangeCommandsTest, PaletteFormatsListsEveryFormatAndWhatItCanDo) {
    ASSERT_EQ(run({"palette-formats"}), exitDone);
    const std::string text = out.str();
    std::size_t lines = 0;
    for (char c : text) lines += c == '\n';
    EXPECT_EQ(lines, 1 + 1 + 42 + 1 + 1 + 1 + 11u);
    EXPECT_NE(text.find("gimp                GIMP Palette                    gpl                     yes    yes\n"),
              std::string::npos);
    EXPECT_NE(text.find("svg                 SVG                             svg                     no     yes\n"),
              std::string::npos);
    EXPECT_NE(text.find("xara                Xara Palette                    jcw                     yes    yes\n"), std::string::npos);
    // Every gradient coder is built: the sides the formats have.
    EXPECT_NE(text.find("gimp                GIMP Gradient                   ggr                     yes    yes\n"),
              std::string::npos);
    EXPECT_NE(text.find("css                 CSS Gradients                   css                     no     yes\n"),
              std::string::npos);
    EXPECT_NE(text.find("adobeGRD            Adobe Photoshop Gradients       grd                     yes    no\n"),
              std::string::npos);
}

const std::string emberGradient =
    "GIMP Gradient\n"
    "Name: Ember\n"
    "2\n"
    "0 0.25 0.5 0.2 0 0 1 1 0.4 0 0.75 0 0 0 0\n"
    "0.5 0.75 1 1 0.4 0 0.75 1 0.9333333333333333 0.5333333333333333 0.5 0 0 0 0\n";

TEST_F(ExchangeCommandsTest, ConvertsGradientFilesByTheirExtensions) {
    const auto input = write("ember.ggr", emberGradient);
    ASSERT_EQ(run({"convert", input, path("ember.jsongradients")}), exitDone) << err.str();
    ASSERT_EQ(run({"convert", path("ember.jsongradients"), path("again.ggr")}), exitDone) << err.str();
    EXPECT_EQ(read("again.ggr"), emberGradient);
    // .svg is written by both kinds: a gradient input decides it, and the SVG reads back.
    ASSERT_EQ(run({"convert", input, path("ember.svg")}), exitDone) << err.str();
    EXPECT_NE(read("ember.svg").find("<linearGradient id=\"Ember\""), std::string::npos);
    ASSERT_EQ(run({"convert", path("ember.svg"), path("ember.cpt")}), exitDone) << err.str();
    EXPECT_EQ(read("ember.cpt").rfind("# Ember\n# COLOR_MODEL = RGB\n", 0), 0u);
}

TEST_F(ExchangeCommandsTest, ANamedFormatOfOneKindDecidesAndPalettesStayAsTheyWere) {
    const auto input = write("ember.data", emberGradient);
    // --from gimp names both kinds and .data neither; --to gnuplot is a gradient format only.
    ASSERT_EQ(run({"convert", input, path("out.data"), "--from", "gimp", "--to", "gnuplot"}), exitDone) << err.str();
    EXPECT_EQ(read("out.data").rfind("# Ember\n0.000000 0.200000 0.000000 0.000000\n", 0), 0u);
    EXPECT_EQ(run({"convert", input, path("out.data"), "--to", "gnuplot"}), exitFailed);
    EXPECT_EQ(err.str(), "kro: cannot read " + input + ": no gradient format reads files ending in \".data\" (name one with --from)\n");
    // A palette written as .svg is still the palette SVG writer's work: swatches, no gradient.
    ASSERT_EQ(run({"convert", write("two.gpl", gimpPalette), path("two.svg")}), exitDone) << err.str();
    EXPECT_NE(read("two.svg").find("<rect"), std::string::npos);
    EXPECT_EQ(read("two.svg").find("Gradient"), std::string::npos);
}

TEST_F(ExchangeCommandsTest, GradientConversionsSayWhyTheyFailAndLeaveNothingBehind) {
    const auto input = write("ember.ggr", emberGradient);
    EXPECT_EQ(run({"convert", input, path("x.grd")}), exitFailed);
    EXPECT_EQ(err.str(), "kro: writing the adobeGRD gradient format is not possible\n");
    EXPECT_EQ(run({"convert", input, path("x.ggr"), "--from", "css"}), exitFailed);
    EXPECT_EQ(err.str(), "kro: reading the css gradient format is not possible\n");
    EXPECT_EQ(run({"convert", input, path("x.svg"), "--to", "nope"}), exitUsage);
    EXPECT_NE(err.str().find("unknown gradient format \"nope\""), std::string::npos);
    EXPECT_EQ(run({"convert", write("broken.ggr", "GIMP Gradient\n3\n"), path("x.svg")}), exitFailed);
    EXPECT_EQ(err.str(), "kro: cannot read " + path("broken.ggr") + ": not a gradient file that any format for \".ggr\" can read\n");
    EXPECT_EQ(run({"convert", input, path("x.svg"), "--from", "svg"}), exitFailed);
    EXPECT_EQ(err.str(), "kro: cannot read " + input + ": not a gradient file in the svg format\n");

    const auto two = write("two.jsongradients",
                           R"({"gradients":[{"stops":[{"position":0,"color":{"colorSpace":"Gray","colorComponents":[0]}}]},)"
                           R"({"stops":[{"position":0,"color":{"colorSpace":"Gray","colorComponents":[1]}}]}]})");
    write("kept.ggr", "old contents");
    EXPECT_EQ(run({"convert", two, path("kept.ggr")}), exitFailed);
    EXPECT_EQ(err.str(), "kro: cannot write the gradients as gimp: the format holds one gradient per file, and there are 2\n");
    EXPECT_EQ(read("kept.ggr"), "old contents");
}

}  // namespace

TEST_F(ExchangeCommandsTest, RGB255FilesAreWrittenAndReadInWholeNumbers) {
    ASSERT_EQ(run({"convert", write("two.gpl", gimpPalette), path("two.rgb255")}), exitDone) << err.str();
    EXPECT_NE(read("two.rgb255").find("255   0   0\tRed\n"), std::string::npos) << read("two.rgb255");
    // Read back on the 0...255 scale, so 0 0 255 stays blue rather than becoming nearly black.
    ASSERT_EQ(run({"convert", path("two.rgb255"), path("again.gpl")}), exitDone) << err.str();
    EXPECT_NE(read("again.gpl").find("  0   0 255\tBlue"), std::string::npos) << read("again.gpl");
}
