#include "library/KroError.h"

#include <map>

#include "library/JsonDecode.h"

namespace kro {

KroError KroError::fromSystemError(const SystemError& error) {
    KroError result;
    result.code = error.code;
    result.reason = error.localizedDescription;
    return result;
}

Json KroError::toJson() const {
    Json json = Json::object();
    json["code"] = code;
    json["title"] = title;
    json["reason"] = reason;
    json["isServerRejection"] = isServerRejection;
    return json;
}

KroError KroError::fromJson(const Json& json) {
    using namespace json_decode;
    const auto& o = object(json, "KroError");
    KroError error;
    if (auto v = integer(o, "code")) error.code = static_cast<long>(*v);
    if (auto v = text(o, "title")) error.title = *v;
    if (auto v = text(o, "reason")) error.reason = *v;
    if (auto v = boolean(o, "isServerRejection")) error.isServerRejection = *v;
    return error;
}

std::string errorText(const std::optional<SystemError>& error) {
    if (!error) return "Something went wrong.";
    static const std::map<long, const char*> texts = {
        {-999, "Request was cancelled, possibly due to user action or navigation."},
        {-1001, "The request timed out. Please check your internet connection and try again."},
        {-1002, "The URL provided is not supported."},
        {-1003, "The server could not be found. Please check the URL or your internet connection."},
        {-1004, "Cannot connect to the server. It might be down or unreachable."},
        {-1005, "The network connection was lost. Please try again."},
        {-1006, "DNS lookup failed. There might be an issue with your internet provider."},
        {-1008, "The requested resource is unavailable. It may have been removed or moved."},
        {-1009, "You're not connected to the internet. Please check your connection."},
        {-1010, "The server tried to redirect to a location that doesn’t exist."},
        {-1011, "The server returned an unexpected response. Please try again later."},
        {-1012, "Authentication was cancelled by the user."},
        {-1013, "Authentication is required to access this resource."},
        {-1015, "The server returned data that couldn’t be processed."},
        {-1016, "The server returned data that couldn’t be processed."},
        {-1017, "The server returned data that couldn’t be processed."},
        {-1020, "Data usage is restricted. Please check your device settings."},
        {-1100, "The requested file doesn’t exist."},
        {-1101, "Expected a file but found a directory instead."},
        {-1102, "Permission denied to read the file."},
        {-1200, "Secure connection failed. Please ensure your connection is secure and try again."},
    };
    if (auto it = texts.find(error->code); it != texts.end()) return it->second;
    return "Something went wrong (code " + std::to_string(error->code) + "). Please try again later.";
}

}  // namespace kro
