#include "cli/FormatCommands.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/ColorArgument.h"
#include "formats/ColorFormatParse.h"

namespace kro::cli {
namespace {

int runFormat(CommandContext& context);
int runFormats(CommandContext& context);

const Command& formatCommand() {
    static const Command command{"kro format [--format NAME | --template TEXT] COLOR...", runFormat};
    return command;
}

const Command& formatsCommand() {
    static const Command command{"kro formats", runFormats};
    return command;
}

struct FormatRequest {
    std::optional<std::string> formatName;
    std::optional<std::string> templateText;
    std::vector<std::string> colors;
};

// Nothing when the command line is wrong.
std::optional<FormatRequest> readRequest(const std::vector<std::string>& args) {
    FormatRequest request;
    for (size_t i = 0; i < args.size(); ++i) {
        const auto& arg = args[i];
        const bool isFormat = arg == "--format";
        if (isFormat || arg == "--template") {
            if (i + 1 >= args.size() || request.formatName || request.templateText) return std::nullopt;
            (isFormat ? request.formatName : request.templateText) = args[++i];
        } else if (arg == "--") {
            request.colors.insert(request.colors.end(), args.begin() + static_cast<long>(i) + 1, args.end());
            break;
        } else {
            request.colors.push_back(arg);
        }
    }
    if (request.colors.empty()) return std::nullopt;
    return request;
}

int runFormat(CommandContext& context) {
    const auto request = readRequest(context.args);
    if (!request) return usageError(context, formatCommand());

    // Every colour is read before anything is written, so a bad one leaves no partial answer.
    std::vector<ColorValue> colors;
    for (const auto& arg : request->colors) {
        auto color = parseColorArgument(arg);
        if (!color) return fail(context, cannotReadColour(arg));
        colors.push_back(*color);
    }

    std::vector<std::string> lines;
    if (request->templateText) {
        for (const auto& color : colors) lines.push_back(ColorFormatParse::parse(color, *request->templateText));
    } else {
        const auto catalogue = readCatalogue();
        if (!catalogue) return fail(context, "no format catalogue could be read");
        const auto name = request->formatName.value_or(catalogue->selectedFormatName);
        if (!catalogue->format(name)) return fail(context, "no format named \"" + name + "\"");
        for (const auto& color : colors) lines.push_back(catalogue->clipboardString(color, name));
    }
    for (const auto& line : lines) context.out << line << "\n";
    return exitDone;
}

int runFormats(CommandContext& context) {
    if (!context.args.empty()) return usageError(context, formatsCommand());
    const auto catalogue = readCatalogue();
    if (!catalogue) return fail(context, "no format catalogue could be read");
    for (const auto& item : catalogue->formats) {
        context.out << (item->name == catalogue->selectedFormatName ? "* " : "  ") << item->name << "\n";
    }
    return exitDone;
}

}  // namespace

std::shared_ptr<ColorFormats> readCatalogue() {
    std::shared_ptr<ColorFormats> stored;
    ColorFormats::store().load([](const Json& json) { return ColorFormats::fromJson(json); },
                               [&stored](const std::shared_ptr<ColorFormats>& record, bool) { stored = record; });
    return stored ? stored : ColorFormats::shipped();
}

void registerFormatCommands(CommandTable& table) {
    table.insert_or_assign("format", formatCommand());
    table.insert_or_assign("formats", formatsCommand());
}

}  // namespace kro::cli
