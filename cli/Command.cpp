#include "cli/Command.h"

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

}  // namespace kro::cli
