#include "documents/KroDocument.h"

#include <algorithm>
#include <stdexcept>

#include "library/SealedDocument.h"

namespace kro {
namespace {

// The one key every record of a kind writes. The record decoders are forgiving and take almost any
// object, so without it a colour saved as ".palette" would open as an empty palette.
const char* requiredKey(DocumentKind kind) {
    switch (kind) {
    case DocumentKind::palette: return "colors";
    case DocumentKind::color: return "hex";
    case DocumentKind::format: return "clipboardFormat";
    case DocumentKind::snapshot: return "palettes";
    }
    return "";
}

}  // namespace

std::optional<DocumentKind> documentKind(std::string extension) {
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c); });
    if (extension == "palette") return DocumentKind::palette;
    if (extension == "color") return DocumentKind::color;
    if (extension == "format") return DocumentKind::format;
    if (extension == "snapshot") return DocumentKind::snapshot;
    return std::nullopt;
}

DocumentRecord readDocument(DocumentKind kind, std::string_view bytes) {
    const auto json = readSealedDocument(bytes);
    const char* key = requiredKey(kind);
    if (!json.is_object() || !json.contains(key)) {
        throw std::runtime_error(std::string("not a document of its kind (no \"") + key + "\")");
    }
    switch (kind) {
    case DocumentKind::palette: return Palette::fromJson(json);
    case DocumentKind::color: return Color::fromJson(json);
    case DocumentKind::format: return ColorFormatItem::fromJson(json);
    case DocumentKind::snapshot: return Snapshot::fromJson(json);
    }
    throw std::runtime_error("unknown document kind");
}

}  // namespace kro
