#pragma once
// The program's own document files: one record as JSON, sealed under the program's fixed key or plain.
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "cloud/Snapshot.h"
#include "formats/ColorFormatItem.h"
#include "library/Palette.h"

namespace kro {

enum class DocumentKind { palette, color, format, snapshot };

// The kind an extension names ("palette", "color", "format", "snapshot", any case); nothing for other files.
std::optional<DocumentKind> documentKind(std::string extension);

using DocumentRecord = std::variant<PaletteRef, ColorRef, ColorFormatItemRef, SnapshotRef>;

// The record a document holds. The sealed box is tried first and the plain bytes after. Throws
// std::runtime_error when neither is JSON, or when the JSON is not a record of that kind.
DocumentRecord readDocument(DocumentKind kind, std::string_view bytes);

}  // namespace kro
