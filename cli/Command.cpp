#include "cli/Command.h"

#include <algorithm>
#include <ostream>

namespace kro::cli {

int fail(CommandContext& context, const std::string& message) {
    context.err << "kro: " << message << "\n";
    return exitFailed;
}

int usageError(CommandContext& context, const Command& command) {
    context.err << "usage: " << command.usage << "\n";
    return exitUsage;
}

bool asksForHelp(const std::vector<std::string>& args) {
    const auto end = std::find(args.begin(), args.end(), "--");
    return std::any_of(args.begin(), end, [](const std::string& arg) { return arg == "--help" || arg == "-h"; });
}

}  // namespace kro::cli
