#include "platform/SecretStore.h"

namespace kro {

std::unique_ptr<SecretStore> makeSecretStore(const Paths& paths) {
    if (auto service = makeSecretServiceStore()) return service;
    return makeFileSecretStore(paths.configHome + "/" + kBundleIdentifier + "/secrets.json");
}

}  // namespace kro
