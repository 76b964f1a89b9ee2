// Files whose extension several formats share (.pal, .txt, .xml, .acb, .svg...) are opened by trying the
// coders in the table's order. Whatever a coder writes must come back to that coder when the file is opened
// by its path, so no lenient coder tried earlier may take it.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"

using namespace PAL;

namespace {

const Palette harbour("Harbour", {Color::rgb255(26, 101, 151, 255, "Sea"), Color::rgb255(240, 200, 90, 255, "Sand")});

// A 768-byte VGA palette of 6-bit values is also a valid 8-bit one: it opens as the 24-bit format, tried first.
const std::map<PaletteFormat, PaletteFormat> readsAsAnEarlierFormat = {{PaletteFormat::vga18bit, PaletteFormat::vga24bit}};

}  // namespace

TEST(SharedExtensionTrialTest, WhatEachCoderWritesOpensWithThatCoderByItsPath) {
    const ScratchFolder folder;
    std::set<std::string> sharedExtensions;
    for (const auto& format : paletteFormats())
        for (const auto extension : format.extensions)
            if (coders(extension).size() > 1) sharedExtensions.insert(std::string(extension));
    ASSERT_TRUE(sharedExtensions.count("pal") && sharedExtensions.count("txt") && sharedExtensions.count("xml") &&
                sharedExtensions.count("acb"));

    std::size_t checked = 0;
    for (const auto& extension : sharedExtensions) {
        for (const PaletteCoder* candidate : coders(extension)) {
            if (!candidate->writes() || !candidate->reads()) continue;
            const auto format = candidate->format();
            SCOPED_TRACE(std::string(info(format).caseName) + " as ." + extension);
            const auto path = folder / (std::string(info(format).caseName) + "." + extension);
            writeFile(path, candidate->encode(harbour));
            const auto expected = readsAsAnEarlierFormat.count(format) ? readsAsAnEarlierFormat.at(format) : format;
            try {
                const auto taken = decode(path.string()).format;
                EXPECT_EQ(taken ? info(*taken).caseName : "none", info(expected).caseName);
            } catch (const CommonError& error) {
                ADD_FAILURE() << "refused by every coder: " << error.what();
            }
            ++checked;
        }
    }
    EXPECT_GE(checked, 12u);
}
