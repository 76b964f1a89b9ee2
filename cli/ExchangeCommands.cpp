// Palette and gradient files from the command line: conversion between formats, a look inside a
// palette file, and the list of formats this build reads and writes.
#include "cli/ExchangeCommands.h"

#include <iomanip>
#include <optional>
#include <ostream>

#include "exchange/PalErrors.h"
#include "exchange/PaletteCoder.h"
#include "exchange/gradients/GradientsCoder.h"
#include "platform/Files.h"
#include "platform/linux/PosixFiles.h"

namespace kro::cli {

namespace {

using PAL::CommonError;

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

// "reads"/"writes" column text, from the coder's own answer.
std::string sideText(bool coderDoesIt) { return coderDoesIt ? "yes" : "no"; }

std::string extensionsText(const std::vector<std::string_view>& extensions) {
    std::string text;
    for (const auto& extension : extensions) text += (text.empty() ? "" : ", ") + std::string(extension);
    return text;
}

// The formats that take an extension and can read (or write) it, as a hint after a refusal.
std::string capableFormatsHint(const std::string& extension, bool writing) {
    std::string names;
    for (const auto* candidate : PAL::coders(extension)) {
        if (writing ? candidate->writes() : candidate->reads())
            names += (names.empty() ? "" : ", ") + std::string(PAL::info(candidate->format()).caseName);
    }
    return names.empty() ? "" : " (formats that can: " + names + "; choose one with " + (writing ? "--to" : "--from") + ")";
}

struct ConvertArguments {
    std::string input, output;
    std::optional<std::string> from, to;
};

std::optional<ConvertArguments> parseConvertArguments(const std::vector<std::string>& args) {
    ConvertArguments parsed;
    std::vector<std::string> positional;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--from" || args[i] == "--to") {
            if (i + 1 >= args.size()) return std::nullopt;
            auto& option = args[i] == "--from" ? parsed.from : parsed.to;
            option = args[++i];
        } else if (args[i].starts_with("--")) {
            return std::nullopt;
        } else {
            positional.push_back(args[i]);
        }
    }
    if (positional.size() != 2) return std::nullopt;
    parsed.input = positional[0];
    parsed.output = positional[1];
    return parsed;
}

std::string readFailure(const CommonError& error, const std::string& path, const PAL::PaletteCoder* given) {
    const std::string extension = fileExtension(path);
    switch (error.errorCase()) {
    case CommonError::Case::unableToLoadFile: return "cannot read " + path + ": the file cannot be opened";
    case CommonError::Case::unsupportedCoderType:
        return "cannot read " + path + ": no palette format reads files ending in " + quoted("." + extension) + " (name one with --from)";
    case CommonError::Case::unsupportedPaletteType: {
        if (given) return "cannot read " + path + ": not a palette in the " + std::string(PAL::info(given->format()).caseName) + " format";
        return "cannot read " + path + ": not a palette that any format for " + quoted("." + extension) + " can read";
    }
    default: return "cannot read " + path + ": " + error.what();
    }
}

enum class Kind { palettes, gradients };

std::optional<Kind> soleKind(bool palettes, bool gradients) {
    if (palettes == gradients) return std::nullopt;
    return palettes ? Kind::palettes : Kind::gradients;
}

// The kinds that have a format of this case name.
std::optional<Kind> kindOfName(const std::optional<std::string>& name) {
    if (!name) return std::nullopt;
    return soleKind(PAL::paletteFormatFromCaseName(*name).has_value(), PAL::gradientsFormatFromCaseName(*name).has_value());
}

// The kinds that have a format reading (or writing) files of this path's extension.
std::optional<Kind> kindOfPath(const std::string& path, bool reading) {
    const std::string extension = fileExtension(path);
    bool palettes = false, gradients = false;
    for (const auto* candidate : PAL::coders(extension)) {
        const auto& format = PAL::info(candidate->format());
        palettes = palettes || (reading ? format.reads : format.writes);
    }
    for (const auto* candidate : PAL::gradientsCoders(extension))
        gradients = gradients || (reading ? candidate->reads() : candidate->writes());
    return soleKind(palettes, gradients);
}

// A conversion is of gradients when the first clue that belongs to one kind alone says so, the clues
// taken in the order --from, IN's extension, --to, OUT's extension; otherwise it is of palettes. So
// .ggr, .grd or .cpt input, or --to gnuplot, make it a gradient conversion, while case names and
// extensions that both kinds have (json, gimp, svg, .svg output, .swift) follow the other clues.
Kind conversionKind(const ConvertArguments& args) {
    for (const auto clue : {kindOfName(args.from), kindOfPath(args.input, true), kindOfName(args.to), kindOfPath(args.output, false)})
        if (clue) return *clue;
    return Kind::palettes;
}

std::string gradientReadFailure(const CommonError& error, const std::string& path, const PAL::GradientsCoder* given) {
    switch (error.errorCase()) {
    case CommonError::Case::unableToLoadFile: return "cannot read " + path + ": the file cannot be opened";
    case CommonError::Case::unsupportedCoderType:
        return "cannot read " + path + ": no gradient format reads files ending in " + quoted("." + fileExtension(path)) + " (name one with --from)";
    case CommonError::Case::unsupportedPaletteType:
        if (given) return "cannot read " + path + ": not a gradient file in the " + std::string(PAL::info(given->format()).caseName) + " format";
        return "cannot read " + path + ": not a gradient file that any format for " + quoted("." + fileExtension(path)) + " can read";
    default: return "cannot read " + path + ": " + error.what();
    }
}

int convertGradients(CommandContext& context, const Command& command, const ConvertArguments& args) {
    const auto named = [](const std::optional<std::string>& name) { return name ? PAL::gradientsFormatFromCaseName(*name) : std::nullopt; };
    for (const auto* name : {&args.from, &args.to}) {
        if (*name && !named(*name)) {
            context.err << "kro: unknown gradient format " << quoted(**name) << " (kro palette-formats lists them)\n";
            return usageError(context, command);
        }
    }

    std::unique_ptr<PAL::GradientsCoder> reader;
    if (args.from) {
        reader = PAL::coder(*named(args.from));
        if (!reader->reads()) return fail(context, "reading the " + *args.from + " gradient format is not possible");
    }
    std::unique_ptr<PAL::GradientsCoder> writer;
    if (args.to) {
        writer = PAL::coder(*named(args.to));
    } else {
        const auto candidates = PAL::gradientsCoders(fileExtension(args.output));
        if (candidates.empty())
            return fail(context, args.output + ": no gradient format writes files ending in " + quoted("." + fileExtension(args.output)) +
                                     " (name one with --to)");
        writer = PAL::coder(candidates.front()->format());
    }
    const std::string writerName(PAL::info(writer->format()).caseName);
    if (!writer->writes()) return fail(context, "writing the " + writerName + " gradient format is not possible");

    PAL::Gradients gradients;
    try {
        gradients = PAL::decodeGradients(args.input, reader.get());
    } catch (const CommonError& error) {
        return fail(context, gradientReadFailure(error, args.input, reader.get()));
    }
    std::string bytes;
    try {
        bytes = writer->encode(gradients);
    } catch (const CommonError& error) {
        return fail(context, "cannot write the gradients as " + writerName + ": " + error.text().value_or(error.what()));
    } catch (const std::exception& error) {
        return fail(context, "cannot write the gradients as " + writerName + ": " + error.what());
    }
    // Written beside the target and renamed over it: a failure leaves no partial file.
    PosixFiles files;
    if (!files.writeAtomically(args.output, bytes)) return fail(context, args.output + ": cannot write the file");
    return exitDone;
}

int runConvert(CommandContext& context, const Command& command) {
    const auto args = parseConvertArguments(context.args);
    if (!args) return usageError(context, command);
    if (conversionKind(*args) == Kind::gradients) return convertGradients(context, command, *args);

    const auto formatNamed = [&](const std::optional<std::string>& name) -> std::optional<std::optional<PAL::PaletteFormat>> {
        if (!name) return std::optional<PAL::PaletteFormat>();
        const auto format = PAL::paletteFormatFromCaseName(*name);
        if (!format) return std::nullopt;
        return format;
    };
    const auto from = formatNamed(args->from), to = formatNamed(args->to);
    if (!from || !to) {
        context.err << "kro: unknown palette format " << quoted(!from ? *args->from : *args->to)
                    << " (kro palette-formats lists them)\n";
        return usageError(context, command);
    }

    std::unique_ptr<PAL::PaletteCoder> reader;
    if (*from) {
        reader = PAL::coder(**from);
        if (!reader->reads())
            return fail(context, "reading the " + std::string(PAL::info(**from).caseName) + " format is not possible");
    }

    // The writing coder: the named one, else the first in trial order that takes the output's extension
    // (for .rgb255, the 0...255 form of RGB text).
    std::unique_ptr<PAL::PaletteCoder> namedWriter;
    const PAL::PaletteCoder* writer = nullptr;
    if (*to) {
        namedWriter = PAL::coder(**to);
        writer = namedWriter.get();
    } else {
        const auto candidates = PAL::codersForPath(args->output);
        if (candidates.empty())
            return fail(context, args->output + ": no palette format writes files ending in " +
                                     quoted("." + fileExtension(args->output)) + " (name one with --to)");
        writer = candidates.front();
    }
    const auto& writerInfo = PAL::info(writer->format());
    if (!writer->writes()) {
        return fail(context, "writing the " + std::string(writerInfo.caseName) + " format is not possible" +
                                 (*to ? "" : capableFormatsHint(fileExtension(args->output), true)));
    }

    PAL::Palette palette;
    try {
        palette = PAL::decode(args->input, reader.get());
    } catch (const CommonError& error) {
        return fail(context, readFailure(error, args->input, reader.get()));
    }

    std::string bytes;
    try {
        bytes = writer->encode(palette);
    } catch (const std::exception& error) {
        return fail(context, "cannot write the palette as " + std::string(writerInfo.caseName) + ": " + error.what());
    }
    // Written beside the target and renamed over it: a failure leaves no partial file.
    PosixFiles files;
    if (!files.writeAtomically(args->output, bytes)) return fail(context, args->output + ": cannot write the file");
    return exitDone;
}

void printColor(std::ostream& out, const PAL::Color& color, const std::string& indent) {
    out << indent;
    try {
        out << color.hexString(PAL::ColorByteFormat::rgb, false, true);
    } catch (const std::exception&) {
        out << "------";  // a colour that does not convert to RGB is still listed
    }
    out << "  " << PAL::text(color.colorSpace);
    for (double component : color.colorComponents) out << " " << component;
    if (color.alpha != 1.0) out << "  alpha " << color.alpha;
    if (color.colorType != PAL::ColorType::global) out << "  " << PAL::text(color.colorType);
    if (!color.name.empty()) out << "  " << quoted(color.name);
    out << "\n";
}

int runInspect(CommandContext& context, const Command& command) {
    if (context.args.size() != 1 || context.args[0].starts_with("--")) return usageError(context, command);
    const std::string& path = context.args[0];
    PAL::Palette palette;
    try {
        palette = PAL::decode(path);
    } catch (const CommonError& error) {
        return fail(context, readFailure(error, path, nullptr));
    }
    auto& out = context.out;
    out << "Name: " << palette.name << "\n";
    if (palette.format) {
        const auto& format = PAL::info(*palette.format);
        out << "Format: " << format.caseName << " (" << format.displayName << ")\n";
    }
    out << "Colors: " << palette.totalColorCount() << " in " << palette.groups.size() << " groups\n";
    out << std::setprecision(6);
    for (const auto& color : palette.colors) printColor(out, color, "");
    for (const auto& group : palette.groups) {
        out << "Group " << quoted(group.name) << ": " << group.colors.size() << " colors\n";
        for (const auto& color : group.colors) printColor(out, color, "  ");
    }
    return exitDone;
}

int runPaletteFormats(CommandContext& context, const Command& command) {
    if (!context.args.empty()) return usageError(context, command);
    auto& out = context.out;
    const auto row = [&](std::string_view name, std::string_view display, const std::string& extensions,
                         const std::string& reads, const std::string& writes) {
        out << std::left << std::setw(20) << name << std::setw(32) << display << std::setw(24) << extensions
            << std::setw(7) << reads << writes << "\n";
    };
    out << "Palette formats:\n";
    row("FORMAT", "NAME", "EXTENSIONS", "READ", "WRITE");
    for (const auto& coder : PAL::allCoders()) {
        const auto& format = PAL::info(coder->format());
        row(format.caseName, format.displayName, extensionsText(format.extensions), sideText(coder->reads()),
            sideText(coder->writes()));
    }
    out << "\nGradient formats:\n";
    row("FORMAT", "NAME", "EXTENSIONS", "READ", "WRITE");
    for (const auto& coder : PAL::allGradientsCoders()) {
        const auto& format = PAL::info(coder->format());
        row(format.caseName, format.displayName, extensionsText(format.extensions), sideText(coder->reads()),
            sideText(coder->writes()));
    }
    return exitDone;
}

}  // namespace

void registerExchangeCommands(CommandTable& table) {
    // Each command's run is handed its own usage line, so the table may be copied freely.
    const auto add = [&table](const std::string& name, const std::string& usage, int (*run)(CommandContext&, const Command&)) {
        table[name] = Command{usage, [usage, run](CommandContext& context) { return run(context, Command{usage, nullptr}); }};
    };
    add("convert",
        "kro convert IN OUT [--from FORMAT] [--to FORMAT]\n"
        "           converts gradients when the first of --from, IN's extension, --to and OUT's extension\n"
        "           that only one kind of format has is a gradient one (kro palette-formats lists both kinds)",
        runConvert);
    add("inspect", "kro inspect FILE", runInspect);
    add("palette-formats", "kro palette-formats", runPaletteFormats);
}

}  // namespace kro::cli
