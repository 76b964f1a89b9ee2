// Arbitrary bytes opened as each of the program's four document kinds (palette, colour, format, snapshot),
// sealed or plain: a document that is not what it claims is refused with an error, never a crash.
// An odd first byte seals the rest first, so the decoding behind a box that opens is reached too.
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "documents/KroDocument.h"
#include "fuzz/FuzzEnvironment.h"
#include "library/SealedDocument.h"
#include "platform/Crypto.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    installFuzzEnvironment();
    if (size == 0) return 0;
    std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::string bytes = (data[0] & 1) ? kro::sealBox(rest, kro::sealedDocumentKey()) : std::string(rest);
    for (auto kind : {kro::DocumentKind::palette, kro::DocumentKind::color, kro::DocumentKind::format,
                      kro::DocumentKind::snapshot}) {
        try {
            (void)kro::readDocument(kind, bytes);
        } catch (const std::runtime_error&) {
        }
    }
    return 0;
}
