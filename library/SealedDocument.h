#pragma once
// The program's own documents (palette, colour, format, snapshot) and the oldest library file: JSON,
// either sealed (ChaCha20-Poly1305 combined form under the program's fixed key) or plain.
#include <string>
#include <string_view>

#include "platform/Json.h"

namespace kro {

// The fixed 32-byte key.
const std::string& sealedDocumentKey();

// The document's bytes opened: the sealed box's plaintext when it opens, else the bytes as they are.
std::string openSealedDocument(std::string_view bytes);
// The document's JSON; throws JsonDecodeError when neither the opened box nor the plain bytes are JSON.
Json readSealedDocument(std::string_view bytes);
// A document sealed under the fixed key.
std::string sealDocument(const Json& json);

}  // namespace kro
