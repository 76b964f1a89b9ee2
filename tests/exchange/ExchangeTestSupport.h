#pragma once
// Helpers shared by the exchange tests.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

#include "exchange/PalErrors.h"

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

// The folder of palettes fetched from Debian packages by fetch-real-palettes (one sub-folder per package).
inline std::filesystem::path realPaletteFolder() {
    const char* folder = std::getenv("KRO_REAL_PALETTES");
    return folder ? folder : "";
}

// A fetched palette's bytes; a test failure when it is missing.
inline std::string realPaletteBytes(const std::filesystem::path& relative) {
    const auto path = realPaletteFolder() / relative;
    std::ifstream file(path, std::ios::binary);
    if (!file) ADD_FAILURE() << "missing real palette " << path << " (run through CTest, which fetches them)";
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}
