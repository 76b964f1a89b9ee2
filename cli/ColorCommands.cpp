#include "cli/ColorCommands.h"

#include <charconv>
#include <iterator>
#include <optional>
#include <ostream>
#include <sstream>
#include <vector>

#include "cli/ColorArgument.h"
#include "formats/color/ColorBlindness.h"
#include "formats/color/ColorConversions.h"
#include "formats/color/ImportColor.h"
#include "formats/color/WCAG.h"
#include "platform/linux/PosixFiles.h"

namespace kro::cli {
namespace {

// Reads every colour argument before anything is written, so a bad one leaves no partial answer.
std::optional<std::vector<ColorValue>> colorArguments(CommandContext& context, const std::vector<std::string>& texts) {
    std::vector<ColorValue> colors;
    for (const auto& text : texts) {
        auto color = parseColorArgument(text);
        if (!color) {
            fail(context, cannotReadColour(text));
            return std::nullopt;
        }
        colors.push_back(*color);
    }
    return colors;
}

// "0.5", "1": alphas come from 32-bit floats, so their shortest float text is the one that was written.
std::string alphaText(double alpha) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, static_cast<float>(alpha)).ptr;
    return std::string(text, end);
}

std::string lowerCase(std::string text) {
    for (auto& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

// --- contrast

int runContrast(CommandContext& context, const Command& command) {
    std::vector<std::string> positional;
    std::optional<std::string> fix;
    for (size_t i = 0; i < context.args.size(); ++i) {
        const auto& arg = context.args[i];
        if (arg == "--fix" && i + 1 < context.args.size()) {
            fix = context.args[++i];
            if (fix != "foreground" && fix != "background") return usageError(context, command);
        } else if (arg.starts_with("--")) {
            return usageError(context, command);
        } else {
            positional.push_back(arg);
        }
    }
    if (positional.size() != 2) return usageError(context, command);
    const auto colors = colorArguments(context, positional);
    if (!colors) return exitFailed;
    const auto& foreground = (*colors)[0];
    const auto& background = (*colors)[1];

    const double ratio = WCAG::ratio(foreground, background);
    context.out << WCAG::ratioText(ratio) << " " << label(WCAG::level(ratio)) << "\n";
    if (fix) {
        const bool fixForeground = fix == "foreground";
        const auto& color = fixForeground ? foreground : background;
        // A pair that already has enough contrast keeps its colour.
        const auto fixed = WCAG::fixed(color, fixForeground ? background : foreground).value_or(color);
        context.out << hexText(fixed) << "\n";
    }
    return exitDone;
}

// --- simulate

std::optional<ColorBlindness> colorBlindnessArgument(const std::string& text) {
    for (auto blindness : kAllColorBlindness) {
        if (lowerCase(kro::text(blindness)) == lowerCase(text)) return blindness;
    }
    return std::nullopt;
}

int runSimulate(CommandContext& context, const Command& command) {
    if (context.args.size() < 2) return usageError(context, command);
    const auto blindness = colorBlindnessArgument(context.args[0]);
    if (!blindness) {
        context.err << "kro: unknown color blindness \"" << context.args[0] << "\"\n";
        return usageError(context, command);
    }
    const auto colors = colorArguments(context, {context.args.begin() + 1, context.args.end()});
    if (!colors) return exitFailed;
    for (const auto& color : *colors) context.out << hexText(simulated(color, *blindness)) << "\n";
    return exitDone;
}

// --- scan

std::optional<std::set<ImportColorPattern>> patternList(const std::string& list) {
    std::set<ImportColorPattern> patterns;
    std::istringstream names(list);
    std::string name;
    while (std::getline(names, name, ',')) {
        bool known = false;
        for (auto pattern : kAllImportColorPatterns) {
            if (caseName(pattern) == name) {
                patterns.insert(pattern);
                known = true;
            }
        }
        if (!known) return std::nullopt;
    }
    if (patterns.empty()) return std::nullopt;
    return patterns;
}

int runScan(CommandContext& context, const Command& command) {
    auto patterns = allImportColorPatterns();
    std::optional<std::string> path;
    for (size_t i = 0; i < context.args.size(); ++i) {
        const auto& arg = context.args[i];
        if (arg == "--patterns" && i + 1 < context.args.size()) {
            const auto list = patternList(context.args[++i]);
            if (!list) {
                context.err << "kro: unknown pattern in \"" << context.args[i]
                            << "\" (html, cssHEX, cssRGB, cssHSL, appleHSB, appleRGB)\n";
                return usageError(context, command);
            }
            patterns = *list;
        } else if ((arg.starts_with("-") && arg != "-") || path) {
            return usageError(context, command);
        } else {
            path = arg;
        }
    }

    std::string text;
    if (!path || *path == "-") {
        text.assign(std::istreambuf_iterator<char>(context.in), std::istreambuf_iterator<char>());
    } else {
        auto bytes = PosixFiles().read(*path);
        if (!bytes) return fail(context, "cannot read " + *path + ": the file cannot be opened");
        text = std::move(*bytes);
    }
    for (const auto& color : ImportColor::colors(text, patterns)) {
        context.out << hexText(color) << " " << alphaText(color.alpha()) << "\n";
    }
    return exitDone;
}

}  // namespace

void registerColorCommands(CommandTable& table) {
    static const Command contrast{"kro contrast FG BG [--fix foreground|background]",
                                  [](CommandContext& context) { return runContrast(context, contrast); }};
    static const Command simulate{"kro simulate normal|deuteranopia|protanopia|tritanopia|achromatopsia COLOR...",
                                  [](CommandContext& context) { return runSimulate(context, simulate); }};
    static const Command scan{"kro scan [--patterns html,cssHEX,cssRGB,cssHSL,appleHSB,appleRGB] [FILE|-]",
                              [](CommandContext& context) { return runScan(context, scan); }};
    table.insert_or_assign("contrast", contrast);
    table.insert_or_assign("simulate", simulate);
    table.insert_or_assign("scan", scan);
}

}  // namespace kro::cli
