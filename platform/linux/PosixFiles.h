#pragma once
#include "platform/Files.h"

namespace kro {

// Files on the local disk through POSIX calls.
class PosixFiles final : public Files {
public:
    std::optional<std::string> read(const std::string& path) const override;
    bool writeAtomically(const std::string& path, const std::string& bytes) override;
    bool exists(const std::string& path) const override;
    bool isDirectory(const std::string& path) const override;
    bool createDirectories(const std::string& path) override;
    bool remove(const std::string& path) override;
    std::vector<std::string> list(const std::string& folder) const override;
};

}  // namespace kro
