// Passwords in the desktop's secret service (GNOME Keyring, KWallet's service), through libsecret.
#include "platform/SecretStore.h"

#ifdef KRO_HAVE_LIBSECRET
#include <libsecret/secret.h>

#include <cstdlib>

namespace kro {
namespace {

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
    std::optional<std::string> password(const std::string& server, const std::string& user) override {
        GError* error = nullptr;
        gchar* found = secret_password_lookup_sync(accountSchema(), nullptr, &error, "server", server.c_str(), "user",
                                                   user.c_str(), nullptr);
        if (error) g_error_free(error);
        if (!found) return std::nullopt;
        std::string password(found);
        secret_password_free(found);
        return password;
    }

    bool setPassword(const std::string& server, const std::string& user, const std::string& password) override {
        GError* error = nullptr;
        const std::string label = "Kro sync: " + user + " at " + server;
        const gboolean stored =
            secret_password_store_sync(accountSchema(), SECRET_COLLECTION_DEFAULT, label.c_str(), password.c_str(),
                                       nullptr, &error, "server", server.c_str(), "user", user.c_str(), nullptr);
        if (error) g_error_free(error);
        return stored;
    }

    bool removePassword(const std::string& server, const std::string& user) override {
        GError* error = nullptr;
        secret_password_clear_sync(accountSchema(), nullptr, &error, "server", server.c_str(), "user", user.c_str(),
                                   nullptr);
        const bool ok = error == nullptr;
        if (error) g_error_free(error);
        return ok;
    }

    std::string description() const override { return "the desktop's secret service"; }
};

}  // namespace

std::unique_ptr<SecretStore> makeSecretServiceStore() {
    // Without a session bus there is no service to ask, and libsecret would try to start one.
    const char* bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (!bus || !*bus) return nullptr;
    // Opening a session is a call the service must answer (the bus starts it first where it can): a bus with
    // no secret service on it must fall back to the file, not fail every password.
    GError* error = nullptr;
    SecretService* service = secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, nullptr, &error);
    if (error) g_error_free(error);
    if (!service) return nullptr;
    g_object_unref(service);
    return std::make_unique<ServiceSecretStore>();
}

}  // namespace kro

#else

namespace kro {
std::unique_ptr<SecretStore> makeSecretServiceStore() { return nullptr; }
}  // namespace kro

#endif
