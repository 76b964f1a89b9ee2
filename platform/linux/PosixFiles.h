#pragma once
#include "platform/Files.h"

namespace kro {

// Files on the local disk through POSIX calls. Locks are `flock` locks, which end with the process that holds
// them however it ends.
class PosixFiles final : public Files {
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
};

}  // namespace kro
