#include "cli/NameCommand.h"

#include <ostream>
#include <vector>

#include "cli/ColorArgument.h"
#include "formats/color/ColorName.h"

namespace kro::cli {
namespace {

int runName(CommandContext& context);

const Command& nameCommand() {
    static const Command command{"kro name COLOR...", runName};
    return command;
}

int runName(CommandContext& context) {
    if (context.args.empty()) return usageError(context, nameCommand());
    // Every colour is read before anything is written, so a bad one leaves no partial answer.
    std::vector<ColorValue> colors;
    for (const auto& arg : context.args) {
        auto color = parseColorArgument(arg);
        if (!color) return fail(context, cannotReadColour(arg));
        colors.push_back(*color);
    }
    std::vector<std::string> names;
    for (const auto& color : colors) {
        auto name = ColorName::name(color.red(), color.green(), color.blue());
        if (!name) return fail(context, "no color names to choose from");
        names.push_back(*name);
    }
    for (const auto& name : names) context.out << name << "\n";
    return exitDone;
}

}  // namespace

void registerNameCommands(CommandTable& table) { table.insert_or_assign("name", nameCommand()); }

}  // namespace kro::cli
