#pragma once
// The kro:// URL commands the agent takes from the desktop and from `kro open`.
#include <optional>
#include <string>
#include <vector>

namespace kro {

// The command's components: the URL's host when not empty, then its path components, percent-decoded,
// without empty ones. Nothing when the text is not a well-formed URL (a raw space, a bad escape).
std::optional<std::vector<std::string>> urlCommandComponents(const std::string& url);

// "255-0-128-1": red, green, blue over 255 and alpha as given. Nothing unless there are four numbers.
struct RGBAComponents {
    double red, green, blue, alpha;
};
std::optional<RGBAComponents> parseDashedRGBA(const std::string& text);

}  // namespace kro
