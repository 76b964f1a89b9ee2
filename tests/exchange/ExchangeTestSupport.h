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

// The folder of palettes fetched from the Debian and npm packages that ship them (one sub-folder each).
inline std::filesystem::path realPalettes() {
    const char* folder = std::getenv("KRO_REAL_PALETTES");
    return folder ? folder : "";
}

// The bytes of a file; one that cannot be read fails the test.
inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) ADD_FAILURE() << "cannot read " << path;
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

// A fetched palette: run the tests through CTest, which fetches them first.
inline std::string realFile(const std::filesystem::path& relative) { return readFile(realPalettes() / relative); }
