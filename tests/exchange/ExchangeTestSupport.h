#pragma once
// Helpers shared by the exchange tests.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "exchange/PalErrors.h"
#include "exchange/PalPalette.h"
#include "tests/support/RealPalettes.h"

// Runs `body` and checks that it throws PAL::CommonError with the expected case; returns the error.
inline PAL::CommonError expectCommonError(PAL::CommonError::Case expected, const std::function<void()>& body) {
    try {
        body();
    } catch (const PAL::CommonError& error) {
        EXPECT_EQ(PAL::caseName(error.errorCase()), PAL::caseName(expected));
        return error;
    }
    ADD_FAILURE() << "expected PAL.CommonError." << PAL::caseName(expected);
    return PAL::CommonError(expected);
}

// A fresh folder under the system's temporary folder, removed with everything in it.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kro-exchange-XXXXXX").string();
        if (!mkdtemp(pattern.data())) ADD_FAILURE() << "cannot make a scratch folder";
        path_ = pattern;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

inline void writeFile(const std::filesystem::path& path, std::string_view bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// The same colours to the last bit: Color's == allows 1e-6, which would hide a lossy write.
inline void expectExactColors(const std::vector<PAL::Color>& actual, const std::vector<PAL::Color>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(actual[i], expected[i]) << actual[i].debugDescription();
        EXPECT_EQ(actual[i].colorComponents, expected[i].colorComponents) << "color " << i;
        EXPECT_EQ(actual[i].alpha, expected[i].alpha) << "color " << i;
    }
}

// Name, colours and groups, each colour to the last bit.
inline void expectExactPalette(const PAL::Palette& actual, const PAL::Palette& expected) {
    EXPECT_EQ(actual.name, expected.name);
    expectExactColors(actual.colors, expected.colors);
    ASSERT_EQ(actual.groups.size(), expected.groups.size());
    for (std::size_t g = 0; g < expected.groups.size(); ++g) {
        EXPECT_EQ(actual.groups[g].name, expected.groups[g].name);
        expectExactColors(actual.groups[g].colors, expected.groups[g].colors);
    }
}
