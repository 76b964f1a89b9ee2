// Decodes arbitrary bytes as the library store. Whatever decodes must encode and decode again.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "fuzz/FuzzEnvironment.h"
#include "library/JsonDecode.h"
#include "library/User.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    installFuzzEnvironment();
    std::shared_ptr<kro::User> user;
    try {
        user = kro::User::fromJson(kro::parseJson(std::string_view(reinterpret_cast<const char*>(data), size)));
    } catch (const kro::JsonDecodeError&) {
        return 0;
    }
    const auto text = kro::compactText(user->toJson());
    // The store's direct writer and the JSON tree agree to the byte.
    if (user->jsonText() != text) std::abort();
    try {
        auto again = kro::User::fromJson(kro::parseJson(text));
        // The written form is a fixed point: one more round changes nothing.
        if (kro::compactText(again->toJson()) != text) std::abort();
    } catch (const kro::JsonDecodeError&) {
        std::abort();  // the store wrote something it cannot read back
    }
    return 0;
}
