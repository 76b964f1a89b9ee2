#pragma once
// Shared by the test folders: palettes that other programs wrote, fetched from the Debian and npm packages
// that ship them into the build folder by the real_palettes fixture (tests/exchange/fetch-real-palettes).
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// The fetched folder (one sub-folder a package); run the tests through CTest, which fetches them first.
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

inline std::string realFile(const std::filesystem::path& relative) { return readFile(realPalettes() / relative); }
