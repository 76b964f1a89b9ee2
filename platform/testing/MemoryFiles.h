#pragma once
#include <map>
#include <set>

#include "platform/Files.h"

namespace kro::testing {

// An in-memory file system. `failWrites` makes every write fail, leaving the old contents.
class MemoryFiles final : public Files {
public:
    std::optional<std::string> read(const std::string& path) const override;
    bool writeAtomically(const std::string& path, const std::string& bytes) override;
    bool exists(const std::string& path) const override;
    bool isDirectory(const std::string& path) const override;
    bool createDirectories(const std::string& path) override;
    bool remove(const std::string& path) override;
    std::vector<std::string> list(const std::string& folder) const override;

    bool failWrites = false;
    bool failCreateDirectories = false;
    int writeCount = 0;
    std::map<std::string, std::string> files;
    std::set<std::string> folders;
};

}  // namespace kro::testing
