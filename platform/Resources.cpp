#include "platform/Resources.h"

namespace kro {

std::optional<std::string_view> resource(std::string_view name) {
    for (const auto* entry = detail::kResourceTable; entry->name; ++entry) {
        if (name == entry->name) return std::string_view(entry->begin, static_cast<size_t>(entry->end - entry->begin));
    }
    return std::nullopt;
}

}  // namespace kro
