#include "cloud/CloudAccount.h"

#include "library/JsonDecode.h"
#include "library/Sherlog.h"
#include "platform/Environment.h"

namespace kro {

std::string cloudAccountPath() {
    return joinPath(joinPath(env().paths.configHome, kBundleIdentifier), "account.json");
}

std::optional<CloudAccount> loadCloudAccount() {
    auto bytes = env().files->read(cloudAccountPath());
    if (!bytes) return std::nullopt;
    try {
        using namespace json_decode;
        const Json json = parseJson(*bytes);
        const auto& o = object(json, "account");
        CloudAccount account{text(o, "server").value_or(""), text(o, "user").value_or("")};
        if (auto problem = cloudAccountProblem(account)) throw JsonDecodeError(*problem);
        return account;
    } catch (const JsonDecodeError& error) {
        SHERLOG(cloudAccountPath() + " does not hold an account: " + error.what(), SherlogLevel::error);
        return std::nullopt;
    }
}

bool saveCloudAccount(const CloudAccount& account) {
    const auto path = cloudAccountPath();
    if (!env().files->createDirectories(parentPath(path))) return false;
    Json json = Json::object();
    json["server"] = account.server;
    json["user"] = account.user;
    return env().files->writeAtomically(path, compactText(json));
}

bool removeCloudAccount() {
    const auto path = cloudAccountPath();
    return !env().files->exists(path) || env().files->remove(path);
}

std::optional<std::string> cloudAccountProblem(const CloudAccount& account) {
    const auto& url = account.server;
    const bool web = url.rfind("http://", 0) == 0 || url.rfind("https://", 0) == 0;
    const auto hostStart = url.find("://") + 3;
    if (!web || url.size() <= hostStart || url[hostStart] == '/') {
        return "the server must be an http:// or https:// URL: " + url;
    }
    if (url.find_first_of(" \t\r\n") != std::string::npos) return "the server URL holds white space: " + url;
    const auto authority = url.substr(hostStart, url.find('/', hostStart) - hostStart);
    // A password in the URL would end up in the account file: it belongs in the secret store.
    if (authority.find('@') != std::string::npos) return "give the user name apart, not inside the server URL";
    if (account.user.empty()) return "the user name is empty";
    for (unsigned char c : account.user) {
        if (c < 0x20 || c == 0x7F) return "the user name holds a control character";
    }
    return std::nullopt;
}

}  // namespace kro
