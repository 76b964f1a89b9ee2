// Import by the dialog and export to every writable format, through the window.
#include "WorkspaceTest.h"

#include <cstdlib>

#include "exchange/PaletteCoder.h"
#include "workspaces/main/PaletteFiles.h"

namespace kro::testing {
namespace {

class PaletteFileTest : public WorkspaceTest {
protected:
    PaletteFileTest() { setenv("KRO_TEST_DIALOG_ANSWERS", answers.c_str(), 1); }
    ~PaletteFileTest() override {
        unsetenv("KRO_TEST_DIALOG_ANSWERS");
        std::remove(answers.c_str());
    }
    // The dialogs read their answers from a real file; what they name is read through the fake files.
    void answer(const std::string& line) {
        FILE* file = std::fopen(answers.c_str(), "w");
        std::fputs(line.c_str(), file);
        std::fclose(file);
    }
    std::string answers = "/tmp/kro-dialog-answers-" + std::to_string(::getpid());
};

TEST_F(PaletteFileTest, EveryWritableFormatIsOfferedAndTheExtensionChoosesTheCoder) {
    std::vector<std::string> names;
    for (const auto& choice : exportChoices()) names.push_back(choice.name);
    EXPECT_EQ(names[0], "Kro Palette");
    EXPECT_EQ(names[1], "PDF");
    for (const auto& info : PAL::paletteFormats()) {
        const bool offered = std::find(names.begin(), names.end(), info.displayName) != names.end();
        EXPECT_EQ(offered, info.writes && PAL::coder(info.format)->writes()) << info.displayName;
    }
    EXPECT_EQ(exportChoiceForPath("/x/a.GPL")->format, PAL::PaletteFormat::gimp);
    // A shared extension goes to the format chosen in the dialog when that format takes it.
    const ExportChoice* riff = nullptr;
    for (const auto& choice : exportChoices()) {
        if (choice.format == PAL::PaletteFormat::riff) riff = &choice;
    }
    EXPECT_EQ(exportChoiceForPath("/x/a.pal", riff), riff);
    EXPECT_EQ(exportChoiceForPath("/x/a.unknown"), nullptr);
}

TEST_F(PaletteFileTest, ExportWritesTheFileTheDialogNamesAndItReadsBack) {
    auto& shown = window();
    shown.selectPalette(user().palettes[0]->uuid);
    for (const char* path : {"/home/test/out/brand.gpl", "/home/test/out/brand.ase"}) {
        environment.files.createDirectories("/home/test/out");
        answer(path);
        shown.exportPalette();
        const auto bytes = environment.files.read(path);
        ASSERT_TRUE(bytes) << path;
        const auto read = PAL::decode(*bytes, fileExtension(path));
        EXPECT_EQ(read.allColors().size(), 5u) << path;
        EXPECT_EQ(shown.noticeText().toStdString(), "Exported " + fileName(path));
    }
    // A write that fails is said, and the file already there stays whole.
    const auto before = environment.files.read("/home/test/out/brand.ase");
    environment.files.failWrites = true;
    answer("/home/test/out/brand.ase");
    shown.exportPalette();
    EXPECT_EQ(environment.files.read("/home/test/out/brand.ase"), before);
    EXPECT_EQ(shown.noticeText().toStdString(), "Could not write brand.ase");
}

TEST_F(PaletteFileTest, ImportAddsWhatReadsAndNamesTheFileThatDoesNot) {
    auto& shown = window();
    environment.files.createDirectories("/home/test/in");
    environment.files.files["/home/test/in/web.gpl"] = "GIMP Palette\nName: Web\n#\n255 0 0 Red\n0 0 255 Blue\n";
    environment.files.files["/home/test/in/broken.ase"] = "not a swatch file";
    answer("/home/test/in/broken.ase");
    const auto before = savedLibrary();
    shown.importFiles();
    EXPECT_EQ(shown.noticeText().toStdString(), "Could not import broken.ase");
    EXPECT_EQ(savedLibrary(), before);

    answer("/home/test/in/web.gpl");
    shown.importFiles();
    ASSERT_EQ(user().palettes.size(), 2u);
    EXPECT_EQ(user().palettes[1]->name, "Web");
    EXPECT_NE(savedLibrary().find("\"Web\""), std::string::npos);

    // A cancelled dialog does nothing.
    answer("");
    shown.importFiles();
    EXPECT_EQ(user().palettes.size(), 2u);
}

}  // namespace
}  // namespace kro::testing
