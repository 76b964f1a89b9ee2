#pragma once
// Helpers shared by the exchange tests.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "exchange/PalErrors.h"
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
