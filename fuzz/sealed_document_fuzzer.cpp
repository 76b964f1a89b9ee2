// Opens arbitrary bytes as one of the program's documents (sealed or plain JSON), then decodes the JSON as
// each record a document may hold. An odd first byte seals the rest first, so the decoding behind a box
// that opens is reached too.
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/FuzzEnvironment.h"
#include "library/JsonDecode.h"
#include "library/SealedDocument.h"
#include "library/User.h"
#include "platform/Crypto.h"

namespace {

template <class Decode>
void tryDecode(const kro::Json& json, Decode decode) {
    try {
        decode(json);
    } catch (const kro::JsonDecodeError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    installFuzzEnvironment();
    if (size == 0) return 0;
    std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::string bytes = (data[0] & 1) ? kro::sealBox(rest, kro::sealedDocumentKey()) : std::string(rest);
    kro::Json json;
    try {
        json = kro::readSealedDocument(bytes);
    } catch (const kro::JsonDecodeError&) {
        return 0;
    }
    tryDecode(json, [](const kro::Json& j) { kro::User::fromJson(j); });
    tryDecode(json, [](const kro::Json& j) { kro::Palette::fromJson(j); });
    tryDecode(json, [](const kro::Json& j) { kro::Color::fromJson(j); });
    return 0;
}
