#include "cloud/CloudAccount.h"

#include <cctype>

#include "library/JsonDecode.h"
#include "library/Sherlog.h"
#include "platform/Environment.h"

namespace kro {

std::string cloudAccountPath() {
    return joinPath(joinPath(env().paths.configHome, kBundleIdentifier), "account.json");
}

std::optional<CloudAccount> loadCloudAccount(std::string* problem) {
    auto bytes = env().files->read(cloudAccountPath());
    if (!bytes) return std::nullopt;
    try {
        using namespace json_decode;
        const Json json = parseJson(*bytes);
        const auto& o = object(json, "account");
        CloudAccount account{text(o, "server").value_or(""), text(o, "user").value_or(""),
                             boolean(o, "allowHttp").value_or(false)};
        if (auto problem = cloudAccountProblem(account)) throw JsonDecodeError(*problem);
        return account;
    } catch (const JsonDecodeError& error) {
        const std::string message = cloudAccountPath() + " does not hold an account that can be used: " + error.what();
        SHERLOG(message, SherlogLevel::error);
        if (problem) *problem = message;
        return std::nullopt;
    }
}

bool saveCloudAccount(const CloudAccount& account) {
    const auto path = cloudAccountPath();
    if (!env().files->createDirectories(parentPath(path))) return false;
    Json json = Json::object();
    json["server"] = account.server;
    json["user"] = account.user;
    if (account.allowHttp) json["allowHttp"] = true;
    return env().files->writeAtomically(path, compactText(json));
}

bool removeCloudAccount() {
    const auto path = cloudAccountPath();
    return !env().files->exists(path) || env().files->remove(path);
}

namespace {

// The host of an authority "host:port" or "[address]:port", in lower case.
std::string hostOf(const std::string& authority) {
    const auto end = authority.front() == '[' ? authority.find(']') + 1 : authority.find(':');
    std::string host = authority.substr(0, end);
    for (auto& c : host) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return host;
}

// "localhost", "[::1]" and the addresses 127.x.x.x (a name such as "127.example.com" is not one).
bool isLoopback(const std::string& host) {
    const bool address = host.find_first_not_of("0123456789.") == std::string::npos;
    return host == "localhost" || host == "[::1]" || (address && host.rfind("127.", 0) == 0);
}

}  // namespace

std::optional<std::string> cloudAccountProblem(const CloudAccount& account) {
    const auto& url = account.server;
    const bool plain = url.rfind("http://", 0) == 0;
    const bool web = plain || url.rfind("https://", 0) == 0;
    const auto hostStart = url.find("://") + 3;
    const auto authority = web ? url.substr(hostStart, url.find_first_of("/?#", hostStart) - hostStart) : "";
    if (authority.empty()) return "the server must be an http:// or https:// URL: " + url;
    if (url.find_first_of(" \t\r\n") != std::string::npos) return "the server URL holds white space: " + url;
    // A password in the URL would end up in the account file: it belongs in the secret store.
    if (authority.find('@') != std::string::npos) return "give the user name apart, not inside the server URL";
    if (plain && !account.allowHttp && !isLoopback(hostOf(authority))) {
        return "http://" + authority + " would carry the password unencrypted: use https://, or accept that with "
               "kro account set --allow-http";
    }
    if (account.user.empty()) return "the user name is empty";
    for (unsigned char c : account.user) {
        if (c < 0x20 || c == 0x7F) return "the user name holds a control character";
    }
    return std::nullopt;
}

}  // namespace kro
