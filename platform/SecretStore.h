#pragma once
// Where account passwords are kept: the desktop's secret service (libsecret) when one runs, else a file in
// the configuration folder that only the user can read. A password never goes to a store or a log line.
#include <memory>
#include <optional>
#include <string>

#include "platform/Paths.h"

namespace kro {

class SecretStore {
public:
    virtual ~SecretStore() = default;
    // Nothing when none is stored (or the store cannot be read).
    virtual std::optional<std::string> password(const std::string& server, const std::string& user) = 0;
    virtual bool setPassword(const std::string& server, const std::string& user, const std::string& password) = 0;
    // True when none is left.
    virtual bool removePassword(const std::string& server, const std::string& user) = 0;
    // Where the passwords go, for people: "the desktop's secret service" or the file's path.
    virtual std::string description() const = 0;
};

// The secret service when one answers on the session bus, else the private file.
std::unique_ptr<SecretStore> makeSecretStore(const Paths& paths);
// The secret service; nothing when this build has no libsecret or no service answers.
std::unique_ptr<SecretStore> makeSecretServiceStore();
// The file (mode 0600) at `path`.
std::unique_ptr<SecretStore> makeFileSecretStore(const std::string& path);

}  // namespace kro
