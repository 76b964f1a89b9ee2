#pragma once
// The kro:// URL commands the agent takes from the desktop and from `kro open`.
#include <optional>
#include <string>
#include <vector>

namespace kro {

// The command's components: the URL's host when not empty, then its path components, percent-decoded,
// without empty ones. Nothing when the text is not a well-formed URL (a raw space, a bad escape).
std::optional<std::vector<std::string>> urlCommandComponents(const std::string& url);

// A link checked before its command runs: the components, or why the link does nothing. A link comes from
// any program on the desktop, so it is held to a known command, its count, sane lengths and clean text.
struct URLCommandCheck {
    std::vector<std::string> components;
    std::string refusal;  // empty when the command may run
};
URLCommandCheck checkURLCommand(const std::string& url);

// The link as one log line may show it: at most 200 bytes, anything unprintable as a percent escape.
std::string loggableURL(const std::string& url);

// "255-0-128-1": red, green, blue over 255 and alpha as given. Nothing unless there are four numbers.
struct RGBAComponents {
    double red, green, blue, alpha;
};
std::optional<RGBAComponents> parseDashedRGBA(const std::string& text);

}  // namespace kro
