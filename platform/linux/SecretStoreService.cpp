// Passwords in the desktop's secret service (GNOME Keyring, KWallet's service), through libsecret.
#include "platform/SecretStore.h"

#ifdef KRO_HAVE_LIBSECRET
#include <libsecret/secret.h>

#include <cstdlib>
#include <optional>

#include "platform/LoadedLibrary.h"

namespace kro {
namespace {

// libsecret's functions, from the library opened at the first use of the service.
struct Libsecret {
    decltype(secret_service_get_sync)* serviceGet;
    decltype(secret_password_lookup_sync)* lookup;
    decltype(secret_password_store_sync)* store;
    decltype(secret_password_clear_sync)* clear;
    decltype(secret_password_free)* freePassword;
    decltype(g_error_free)* freeError;
    decltype(g_object_unref)* unref;
};

// Null where libsecret is not installed: passwords then go to the private file.
const Libsecret* libsecret() {
    static const auto api = []() -> std::optional<Libsecret> {
        static const LoadedLibrary library("libsecret-1.so.0");
        Libsecret made{library.function<decltype(secret_service_get_sync)>("secret_service_get_sync"),
                       library.function<decltype(secret_password_lookup_sync)>("secret_password_lookup_sync"),
                       library.function<decltype(secret_password_store_sync)>("secret_password_store_sync"),
                       library.function<decltype(secret_password_clear_sync)>("secret_password_clear_sync"),
                       library.function<decltype(secret_password_free)>("secret_password_free"),
                       library.function<decltype(g_error_free)>("g_error_free"),
                       library.function<decltype(g_object_unref)>("g_object_unref")};
        if (!made.serviceGet || !made.lookup || !made.store || !made.clear || !made.freePassword || !made.freeError ||
            !made.unref) {
            return std::nullopt;
        }
        return made;
    }();
    return api ? &*api : nullptr;
}

const SecretSchema* accountSchema() {
    static const SecretSchema schema = [] {
        SecretSchema made{};
        made.name = "kroapp.Kro.Account";
        made.flags = SECRET_SCHEMA_NONE;
        made.attributes[0] = {"server", SECRET_SCHEMA_ATTRIBUTE_STRING};
        made.attributes[1] = {"user", SECRET_SCHEMA_ATTRIBUTE_STRING};
        return made;
    }();
    return &schema;
}

class ServiceSecretStore final : public SecretStore {
public:
    explicit ServiceSecretStore(const Libsecret& api) : api(api) {}

    std::optional<std::string> password(const std::string& server, const std::string& user) override {
        GError* error = nullptr;
        gchar* found = api.lookup(accountSchema(), nullptr, &error, "server", server.c_str(), "user",
                                user.c_str(), nullptr);
        if (error) api.freeError(error);
        if (!found) return std::nullopt;
        std::string password(found);
        api.freePassword(found);
        return password;
    }

    bool setPassword(const std::string& server, const std::string& user, const std::string& password) override {
        GError* error = nullptr;
        const std::string label = "Kro sync: " + user + " at " + server;
        const gboolean stored =
            api.store(accountSchema(), SECRET_COLLECTION_DEFAULT, label.c_str(), password.c_str(), nullptr, &error,
                      "server", server.c_str(), "user", user.c_str(), nullptr);
        if (error) api.freeError(error);
        return stored;
    }

    bool removePassword(const std::string& server, const std::string& user) override {
        GError* error = nullptr;
        api.clear(accountSchema(), nullptr, &error, "server", server.c_str(), "user", user.c_str(), nullptr);
        const bool ok = error == nullptr;
        if (error) api.freeError(error);
        return ok;
    }

    std::string description() const override { return "the desktop's secret service"; }

private:
    const Libsecret& api;
};

}  // namespace

std::unique_ptr<SecretStore> makeSecretServiceStore() {
    // Without a session bus there is no service to ask, and libsecret would try to start one.
    const char* bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (!bus || !*bus) return nullptr;
    // Opening a session is a call the service must answer (the bus starts it first where it can): a bus with
    // no secret service on it must fall back to the file, not fail every password.
    const auto* api = libsecret();
    if (!api) return nullptr;
    GError* error = nullptr;
    SecretService* service = api->serviceGet(SECRET_SERVICE_OPEN_SESSION, nullptr, &error);
    if (error) api->freeError(error);
    if (!service) return nullptr;
    api->unref(service);
    return std::make_unique<ServiceSecretStore>(*api);
}

}  // namespace kro

#else

namespace kro {
std::unique_ptr<SecretStore> makeSecretServiceStore() { return nullptr; }
}  // namespace kro

#endif
