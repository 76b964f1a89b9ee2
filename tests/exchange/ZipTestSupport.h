#pragma once
// Helpers for the tests of the zip container and its coders: a scratch folder, running the real zip
// tools (Info-ZIP's zip and unzip, python3's zipfile) on files there, and patching fields of an archive.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "ExchangeTestSupport.h"

namespace ziptest {

using ::ScratchFolder;
using ::writeFile;

struct CommandResult {
    int status = -1;
    std::string output;  // standard output; standard error goes to the test's log
};

// Runs a shell command in `folder`.
inline CommandResult run(const std::filesystem::path& folder, const std::string& command) {
    CommandResult result;
    FILE* pipe = popen(("cd '" + folder.string() + "' && " + command).c_str(), "r");
    if (!pipe) return result;
    char buffer[4096];
    for (std::size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) result.output.append(buffer, n);
    result.status = pclose(pipe);
    return result;
}

// A python3 script given as text, run in `folder` with the given (shell-quoted) arguments.
inline CommandResult python(const std::filesystem::path& folder, const std::string& script, const std::string& arguments = "") {
    writeFile(folder / "script.py", script);
    return run(folder, "python3 script.py " + arguments);
}

inline std::uint32_t get32(std::string_view bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i) value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
    return value;
}

inline void put16(std::string& bytes, std::size_t at, std::uint16_t value) {
    bytes.at(at) = static_cast<char>(value & 0xFF);
    bytes.at(at + 1) = static_cast<char>(value >> 8);
}

inline void put32(std::string& bytes, std::size_t at, std::uint32_t value) {
    put16(bytes, at, static_cast<std::uint16_t>(value & 0xFFFF));
    put16(bytes, at + 2, static_cast<std::uint16_t>(value >> 16));
}

// Where the first central directory header starts, in an archive without a comment.
inline std::size_t centralDirectory(std::string_view archive) { return get32(archive, archive.size() - 22 + 16); }

}  // namespace ziptest
