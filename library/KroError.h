#pragma once
// The one error record shown to the user or passed between layers, and the user's text for a system error.
#include <optional>
#include <string>

#include "platform/Json.h"

namespace kro {

// An error as the system reports it: a numeric code (the URL loading codes: -1001 timed out, -1009 offline…)
// and its own description.
struct SystemError {
    long code = 0;
    std::string localizedDescription;
};

struct KroError {
    long code = -10000;
    std::string title = "Something Went Wrong";
    std::string reason = "An unexpected error occurred. Please try again later.";
    bool isServerRejection = false;

    static KroError fromSystemError(const SystemError& error);

    Json toJson() const;
    // Forgiving: missing keys keep the defaults; a value of a wrong type throws JsonDecodeError.
    static KroError fromJson(const Json& json);

    bool operator==(const KroError&) const = default;
};

// The text shown to the user for a system error, or for no error at all.
std::string errorText(const std::optional<SystemError>& error);

}  // namespace kro
