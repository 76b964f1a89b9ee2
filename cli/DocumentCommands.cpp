// Documents from the command line: importing files into the library and exporting one palette.
#include "cli/DocumentCommands.h"

#include <unistd.h>

#include <algorithm>
#include <ostream>

#include "cli/ChangeCommand.h"
#include "cli/HeadlessSync.h"
#include "cloud/Snapshots.h"
#include "documents/DocumentHandler.h"
#include "documents/KroDocument.h"
#include "documents/PaletteMapping.h"
#include "documents/ShareOption.h"
#include "exchange/PaletteCoder.h"
#include "formats/ColorFormats.h"
#include "library/User.h"
#include "platform/Environment.h"
#include "platform/Json.h"

namespace kro::cli {
namespace {

std::string workingFolder() {
    char cwd[4096];
    return getcwd(cwd, sizeof cwd) ? cwd : ".";
}

bool anyOfKind(const std::vector<std::string>& paths, DocumentKind kind) {
    return std::any_of(paths.begin(), paths.end(),
                       [&](const std::string& path) { return documentKind(fileExtension(path)) == kind; });
}

int runImport(CommandContext& context, const Command& command) {
    if (context.args.empty()) return usageError(context, command);
    std::vector<std::string> paths;
    for (const auto& arg : context.args) paths.push_back(arg.starts_with("/") ? arg : workingFolder() + "/" + arg);
    return runChange(context, {Json{{"import", paths}}, [paths, &context] {
                                   User::shared()->load();
                                   catchUpBeforeChange(context.err);
                                   if (anyOfKind(paths, DocumentKind::format)) ColorFormats::shared().load();
                                   if (anyOfKind(paths, DocumentKind::snapshot)) Snapshots::shared().load();
                               }});
}

PaletteRef paletteNamed(const std::string& name) {
    for (const auto& palette : User::shared()->allPalettes()) {
        if (palette->name.value_or("") == name) return palette;
    }
    return nullptr;
}

// The bytes of the palette for the output's extension: one of the share forms, else the first palette
// format that takes the extension and writes.
std::optional<std::string> exportBytes(const Palette& palette, const std::string& extension, std::string& error) {
    if (const auto option = shareOptionForExtension(extension)) {
        if (!isAvailable(*option)) {
            error = "writing " + label(*option) + " files is not built";
            return std::nullopt;
        }
        auto bytes = paletteFileBytes(palette, *option);
        if (!bytes) error = "the " + label(*option) + " file could not be made";
        return bytes;
    }
    for (const auto* coder : PAL::coders(extension)) {
        if (!coder->writes()) continue;
        try {
            return coder->encode(exchangePalette(palette));
        } catch (const std::exception& failure) {
            error = std::string("the palette could not be written: ") + failure.what();
            return std::nullopt;
        }
    }
    error = "no palette format writes files ending in \"." + extension + "\"";
    return std::nullopt;
}

int runExport(CommandContext& context, const Command& command) {
    if (context.args.size() != 2) return usageError(context, command);
    const auto& name = context.args[0];
    auto output = context.args[1];
    if (!output.starts_with("/")) output = workingFolder() + "/" + output;

    User::shared()->load();
    const auto palette = paletteNamed(name);
    if (!palette) return fail(context, "no palette is named \"" + name + "\"");
    // The page shows the catalogue's CSS HSLA text.
    if (shareOptionForExtension(fileExtension(output)) == ShareOptionPalette::pdf) ColorFormats::shared().load();

    std::string error;
    const auto bytes = exportBytes(*palette, fileExtension(output), error);
    if (!bytes) return fail(context, output + ": " + error);
    if (!env().files->writeAtomically(output, *bytes)) return fail(context, output + ": cannot write the file");
    return exitDone;
}

}  // namespace

void registerDocumentCommands(CommandTable& table) {
    static const Command importCommand{"kro import FILE...",
                                       [](CommandContext& context) { return runImport(context, importCommand); }};
    static const Command exportCommand{"kro export PALETTE-NAME OUT",
                                       [](CommandContext& context) { return runExport(context, exportCommand); }};
    table.insert_or_assign("import", importCommand);
    table.insert_or_assign("export", exportCommand);
}

}  // namespace kro::cli
