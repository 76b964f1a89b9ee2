#pragma once
#include <map>
#include <memory>
#include <set>

#include "platform/Files.h"

namespace kro::testing {

// An in-memory file system. `failWrites` makes every write fail with `failureReason`, leaving the old
// contents; `failMoves` does the same to renames. A path in `lockedElsewhere` stands for a lock another
// process holds.
class MemoryFiles final : public Files {
public:
    std::optional<std::string> read(const std::string& path, std::string* reason = nullptr) const override;
    bool writePiecesAtomically(const std::string& path, const std::vector<std::string_view>& pieces,
                               std::string* reason = nullptr) override;
    bool move(const std::string& from, const std::string& to, std::string* reason = nullptr) override;
    void removeStaleTemporaries(const std::string& path) override;
    std::unique_ptr<Lock> lock(const std::string& path, std::chrono::milliseconds wait,
                               std::string* reason = nullptr) override;
    bool exists(const std::string& path) const override;
    bool isDirectory(const std::string& path) const override;
    bool createDirectories(const std::string& path, std::string* reason = nullptr) override;
    bool remove(const std::string& path) override;
    std::vector<std::string> list(const std::string& folder) const override;

    bool failWrites = false;
    bool failMoves = false;
    bool failCreateDirectories = false;
    std::string failureReason = "No space left on device";
    int writeCount = 0;
    std::map<std::string, std::string> files;
    std::set<std::string> folders;
    std::set<std::string> lockedElsewhere;
    // The locks this process holds now; shared with their handles, which may outlive a test's files.
    std::shared_ptr<std::set<std::string>> lockedHere = std::make_shared<std::set<std::string>>();
};

}  // namespace kro::testing
