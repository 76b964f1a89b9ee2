#pragma once
#include <optional>
#include <string>
#include <vector>

namespace kro {

// Whole-file access. Paths are absolute, '/'-separated.
class Files {
public:
    virtual ~Files() = default;
    virtual std::optional<std::string> read(const std::string& path) const = 0;
    // Writes a temporary file beside the target, flushes it and renames it over the target:
    // a failure or a crash leaves the previous file whole.
    virtual bool writeAtomically(const std::string& path, const std::string& bytes) = 0;
    virtual bool exists(const std::string& path) const = 0;
    virtual bool isDirectory(const std::string& path) const = 0;
    // Creates the folder and its parents; true when it exists afterwards.
    virtual bool createDirectories(const std::string& path) = 0;
    virtual bool remove(const std::string& path) = 0;
    // Names (not paths) of the entries of a folder, sorted; empty when it cannot be read.
    virtual std::vector<std::string> list(const std::string& folder) const = 0;
};

// The parent folder of a path ("" for a bare name).
std::string parentPath(const std::string& path);
// The file name of a path.
std::string fileName(const std::string& path);
// The extension of a file name without the dot, as written ("" when none).
std::string fileExtension(const std::string& path);
std::string joinPath(const std::string& folder, const std::string& name);

}  // namespace kro
