#pragma once
// The account the library syncs with: a WebDAV collection and a user name, kept in "account.json" in the
// program's configuration folder (its own file, so the agent and the command line never overwrite each
// other's defaults). The password is never here: it lives in the secret store.
#include <optional>
#include <string>

namespace kro {

struct CloudAccount {
    std::string server;  // the collection's URL, http or https
    std::string user;    // the sign-in identifier: it names the record
    // Plain http:// to another machine sends the password readable by anyone on the way: only when asked for.
    // This machine's own loopback addresses need no leave.
    bool allowHttp = false;

    bool operator==(const CloudAccount&) const = default;
};

std::string cloudAccountPath();
// Nothing when no account is set, or when the file does not hold one that can be used (logged, and told in
// `problem` when given).
std::optional<CloudAccount> loadCloudAccount(std::string* problem = nullptr);
bool saveCloudAccount(const CloudAccount& account);
// Signs out. True when no account file is left.
bool removeCloudAccount();

// Why a server URL or user name cannot be used; nothing when they can.
std::optional<std::string> cloudAccountProblem(const CloudAccount& account);

}  // namespace kro
