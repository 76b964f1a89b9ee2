#include "library/SealedDocument.h"

#include "library/JsonDecode.h"
#include "platform/Crypto.h"

namespace kro {

const std::string& sealedDocumentKey() {
    // Generated once for this program; documents sealed by one installation open in every other.
    static const std::string key = *base64Decode("fnXDFv0sc67UBBRLZ65tQ1PmAzu82xcPtkFhFrvsYvI=");
    return key;
}

std::string openSealedDocument(std::string_view bytes) {
    if (auto opened = openSealedBox(bytes, sealedDocumentKey())) return *opened;
    return std::string(bytes);
}

Json readSealedDocument(std::string_view bytes) { return parseJson(openSealedDocument(bytes)); }

std::string sealDocument(const Json& json) { return sealBox(compactText(json), sealedDocumentKey()); }

}  // namespace kro
