#pragma once
// Shared by the test folders: passwords in a map the test owns, and a count of the times one was read.
#include <map>
#include <string>

#include "platform/SecretStore.h"

namespace kro::testing {

class MemorySecretStore final : public SecretStore {
public:
    MemorySecretStore(std::map<std::string, std::string>& entries, int* reads = nullptr) : entries_(entries), reads_(reads) {}
    std::optional<std::string> password(const std::string& server, const std::string& user) override {
        if (reads_) ++*reads_;
        const auto found = entries_.find(server + " " + user);
        return found == entries_.end() ? std::nullopt : std::optional(found->second);
    }
    bool setPassword(const std::string& server, const std::string& user, const std::string& password) override {
        entries_[server + " " + user] = password;
        return true;
    }
    bool removePassword(const std::string& server, const std::string& user) override {
        return entries_.erase(server + " " + user) == 1;
    }
    std::string description() const override { return "the test's memory store"; }

private:
    std::map<std::string, std::string>& entries_;
    int* reads_;
};

}  // namespace kro::testing
