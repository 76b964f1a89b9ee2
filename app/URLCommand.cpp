#include "app/URLCommand.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "exchange/coders/TextSupport.h"

namespace kro {
namespace {

bool isURLCharacter(unsigned char c) {
    if (c <= 0x20 || c >= 0x7F) return false;
    switch (c) {
        case '"': case '<': case '>': case '\\': case '^': case '`': case '{': case '|': case '}': return false;
        default: return true;
    }
}

std::optional<std::string> percentDecoded(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            out.push_back(text[i]);
            continue;
        }
        if (i + 2 >= text.size() || !std::isxdigit(static_cast<unsigned char>(text[i + 1])) ||
            !std::isxdigit(static_cast<unsigned char>(text[i + 2]))) {
            return std::nullopt;
        }
        out.push_back(static_cast<char>(std::strtol(text.substr(i + 1, 2).c_str(), nullptr, 16)));
        i += 2;
    }
    return out;
}

// The longest palette a link carries is some five hundred hex colours; names are short. Anything longer is
// not a link a person made.
constexpr size_t kMaxLinkBytes = 16 * 1024;
constexpr size_t kMaxComponentBytes = 4 * 1024;

// The component counts each command takes. "library" and "colorpanel" open those windows from the desktop
// entry's actions.
const std::map<std::string, std::vector<size_t>>& commandCounts() {
    static const std::map<std::string, std::vector<size_t>> counts = {
        {"license", {2}}, {"picker", {1}},  {"contrast", {3}}, {"settings", {1, 2}},
        {"color", {4}},   {"palette", {4}}, {"library", {1}},  {"colorpanel", {1}}};
    return counts;
}

bool hasControlCharacter(const std::string& text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

std::string refusalOf(const std::optional<std::vector<std::string>>& components) {
    if (!components) return "not a well-formed link";
    for (const auto& component : *components) {
        if (component.size() > kMaxComponentBytes) return "a component is too long";
        if (!PAL::textfile::isValidUTF8(component)) return "a component is not UTF-8 text";
        if (hasControlCharacter(component)) return "a component holds control characters";
    }
    if (components->empty()) return "no command";
    const auto counts = commandCounts().find(components->front());
    if (counts == commandCounts().end()) return "unknown command";
    const auto& allowed = counts->second;
    if (std::find(allowed.begin(), allowed.end(), components->size()) == allowed.end()) {
        return "wrong number of components for \"" + components->front() + "\"";
    }
    return "";
}

}  // namespace

URLCommandCheck checkURLCommand(const std::string& url) {
    if (url.size() > kMaxLinkBytes) return {{}, "the link is too long"};
    auto components = urlCommandComponents(url);
    auto refusal = refusalOf(components);
    if (!refusal.empty()) return {{}, refusal};
    return {std::move(*components), ""};
}

std::string loggableURL(const std::string& url) {
    constexpr size_t kShown = 200;
    std::string shown;
    for (size_t i = 0; i < url.size(); ++i) {
        if (shown.size() >= kShown) return shown + "…";
        const auto c = static_cast<unsigned char>(url[i]);
        if (c < 0x20 || c >= 0x7F) {
            char escape[4];
            std::snprintf(escape, sizeof escape, "%%%02X", c);
            shown += escape;
        } else {
            shown += static_cast<char>(c);
        }
    }
    return shown;
}

std::optional<std::vector<std::string>> urlCommandComponents(const std::string& url) {
    for (unsigned char c : url) {
        if (!isURLCharacter(c)) return std::nullopt;
    }
    const auto colon = url.find(':');
    if (colon == std::string::npos || colon == 0) return std::nullopt;
    for (size_t i = 0; i < colon; ++i) {
        const auto c = static_cast<unsigned char>(url[i]);
        if (!(std::isalnum(c) || c == '+' || c == '-' || c == '.') || (i == 0 && !std::isalpha(c))) return std::nullopt;
    }
    std::string rest = url.substr(colon + 1);
    rest = rest.substr(0, rest.find_first_of("?#"));

    std::vector<std::string> components;
    if (rest.rfind("//", 0) == 0) {
        const auto pathStart = rest.find('/', 2);
        std::string authority = rest.substr(2, pathStart == std::string::npos ? std::string::npos : pathStart - 2);
        rest = pathStart == std::string::npos ? "" : rest.substr(pathStart);
        // The host is the authority less any user information and port.
        if (auto at = authority.rfind('@'); at != std::string::npos) authority = authority.substr(at + 1);
        if (auto port = authority.rfind(':'); port != std::string::npos) authority = authority.substr(0, port);
        auto host = percentDecoded(authority);
        if (!host) return std::nullopt;
        if (!host->empty()) components.push_back(*host);
    }
    size_t start = 0;
    while (start <= rest.size()) {
        const auto slash = rest.find('/', start);
        const auto piece = rest.substr(start, slash == std::string::npos ? std::string::npos : slash - start);
        if (!piece.empty()) {
            auto decoded = percentDecoded(piece);
            if (!decoded) return std::nullopt;
            components.push_back(*decoded);
        }
        if (slash == std::string::npos) break;
        start = slash + 1;
    }
    return components;
}

std::optional<RGBAComponents> parseDashedRGBA(const std::string& text) {
    std::vector<double> numbers;
    size_t start = 0;
    for (;;) {
        const auto dash = text.find('-', start);
        const auto piece = text.substr(start, dash == std::string::npos ? std::string::npos : dash - start);
        if (piece.empty() || std::isspace(static_cast<unsigned char>(piece[0]))) return std::nullopt;
        char* end = nullptr;
        const double value = std::strtod(piece.c_str(), &end);
        if (end != piece.c_str() + piece.size()) return std::nullopt;
        numbers.push_back(value);
        if (dash == std::string::npos) break;
        start = dash + 1;
    }
    if (numbers.size() != 4) return std::nullopt;
    return RGBAComponents{numbers[0] / 255.0, numbers[1] / 255.0, numbers[2] / 255.0, numbers[3]};
}

}  // namespace kro
