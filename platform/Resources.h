#pragma once
// Files compiled into the binary (resources/): the shipped catalogues, the colour list, sounds, ICC profiles.
#include <optional>
#include <string_view>

namespace kro {

namespace detail {
struct ResourceEntry {
    const char* name;
    const char* begin;
    const char* end;
};
extern const ResourceEntry kResourceTable[];
}  // namespace detail

// The bytes of a shipped resource by file name, or nothing when no such resource was compiled in.
std::optional<std::string_view> resource(std::string_view name);

}  // namespace kro
