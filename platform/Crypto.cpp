#include "platform/Crypto.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <memory>
#include <stdexcept>

namespace kro {
namespace {

constexpr size_t kNonceSize = 12;
constexpr size_t kTagSize = 16;
constexpr size_t kKeySize = 32;

using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

const unsigned char* bytes(std::string_view s) { return reinterpret_cast<const unsigned char*>(s.data()); }

}  // namespace

std::optional<std::string> openSealedBox(std::string_view combined, std::string_view key) {
    if (key.size() != kKeySize || combined.size() < kNonceSize + kTagSize) return std::nullopt;
    const auto nonce = combined.substr(0, kNonceSize);
    const auto cipherText = combined.substr(kNonceSize, combined.size() - kNonceSize - kTagSize);
    std::string tag(combined.substr(combined.size() - kTagSize));

    CipherContext ctx(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    if (!ctx) return std::nullopt;
    if (EVP_DecryptInit_ex(ctx.get(), EVP_chacha20_poly1305(), nullptr, nullptr, nullptr) != 1) return std::nullopt;
    if (EVP_CIPHER_CTX_ctrl(ctx.get(), EVP_CTRL_AEAD_SET_IVLEN, kNonceSize, nullptr) != 1) return std::nullopt;
    if (EVP_DecryptInit_ex(ctx.get(), nullptr, nullptr, bytes(key), bytes(nonce)) != 1) return std::nullopt;

    std::string plain(cipherText.size(), '\0');
    int written = 0;
    if (!cipherText.empty() &&
        EVP_DecryptUpdate(ctx.get(), reinterpret_cast<unsigned char*>(plain.data()), &written, bytes(cipherText),
                          static_cast<int>(cipherText.size())) != 1) {
        return std::nullopt;
    }
    if (EVP_CIPHER_CTX_ctrl(ctx.get(), EVP_CTRL_AEAD_SET_TAG, kTagSize, tag.data()) != 1) return std::nullopt;
    int finalLength = 0;
    if (EVP_DecryptFinal_ex(ctx.get(), reinterpret_cast<unsigned char*>(plain.data()) + written, &finalLength) != 1) {
        return std::nullopt;
    }
    plain.resize(static_cast<size_t>(written + finalLength));
    return plain;
}

std::string sealBox(std::string_view plaintext, std::string_view key) {
    if (key.size() != kKeySize) throw std::invalid_argument("sealBox: the key must be 32 bytes");
    const auto nonce = randomBytes(kNonceSize);
    CipherContext ctx(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    std::string out = nonce;
    out.resize(kNonceSize + plaintext.size() + kTagSize);
    int written = 0;
    int finalLength = 0;
    auto* cipherOut = reinterpret_cast<unsigned char*>(out.data()) + kNonceSize;
    if (!ctx || EVP_EncryptInit_ex(ctx.get(), EVP_chacha20_poly1305(), nullptr, nullptr, nullptr) != 1 ||
        EVP_CIPHER_CTX_ctrl(ctx.get(), EVP_CTRL_AEAD_SET_IVLEN, kNonceSize, nullptr) != 1 ||
        EVP_EncryptInit_ex(ctx.get(), nullptr, nullptr, bytes(key), bytes(nonce)) != 1 ||
        (!plaintext.empty() &&
         EVP_EncryptUpdate(ctx.get(), cipherOut, &written, bytes(plaintext), static_cast<int>(plaintext.size())) != 1) ||
        EVP_EncryptFinal_ex(ctx.get(), cipherOut + written, &finalLength) != 1 ||
        EVP_CIPHER_CTX_ctrl(ctx.get(), EVP_CTRL_AEAD_GET_TAG, kTagSize,
                            out.data() + kNonceSize + written + finalLength) != 1) {
        throw std::runtime_error("sealBox: the cipher failed");
    }
    return out;
}

std::string md5Hex(std::string_view data) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_Digest(data.data(), data.size(), digest, &length, EVP_md5(), nullptr);
    static const char* hexDigits = "0123456789abcdef";
    std::string out;
    for (unsigned int i = 0; i < length; ++i) {
        out.push_back(hexDigits[digest[i] >> 4]);
        out.push_back(hexDigits[digest[i] & 15]);
    }
    return out;
}

std::string base64Encode(std::string_view data) {
    std::string out(4 * ((data.size() + 2) / 3), '\0');
    const int n = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(out.data()), bytes(data), static_cast<int>(data.size()));
    out.resize(static_cast<size_t>(n));
    return out;
}

std::optional<std::string> base64Decode(std::string_view text) {
    if (text.size() % 4 != 0) return std::nullopt;
    for (char c : text) {
        if (!(isalnum(static_cast<unsigned char>(c)) || c == '+' || c == '/' || c == '=')) return std::nullopt;
    }
    std::string out(text.size() / 4 * 3, '\0');
    const int n = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(out.data()), bytes(text), static_cast<int>(text.size()));
    if (n < 0) return std::nullopt;
    // EVP_DecodeBlock counts padding as zero bytes; take them back off.
    size_t padding = 0;
    if (!text.empty() && text.back() == '=') padding = (text.size() >= 2 && text[text.size() - 2] == '=') ? 2 : 1;
    out.resize(static_cast<size_t>(n) - padding);
    return out;
}

std::string randomBytes(size_t count) {
    std::string out(count, '\0');
    if (RAND_bytes(reinterpret_cast<unsigned char*>(out.data()), static_cast<int>(count)) != 1) {
        throw std::runtime_error("randomBytes: the system generator failed");
    }
    return out;
}

}  // namespace kro
