#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace kro {

// ChaCha20-Poly1305 sealed boxes in their combined form: 12-byte nonce, ciphertext, 16-byte tag.
// `key` is 32 bytes. Opening gives nothing when the box is too short or does not authenticate.
std::optional<std::string> openSealedBox(std::string_view combined, std::string_view key);
// Seals with a fresh random nonce.
std::string sealBox(std::string_view plaintext, std::string_view key);

// MD5 of the bytes as lower-case hexadecimal text.
std::string md5Hex(std::string_view bytes);

std::string base64Encode(std::string_view bytes);
// Strict standard base64 (padding required, no white space); nothing when it does not decode.
std::optional<std::string> base64Decode(std::string_view text);

// Random bytes from the system's generator.
std::string randomBytes(size_t count);

}  // namespace kro
