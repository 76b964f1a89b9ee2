#include "cli/Cli.h"

#include <iostream>

#include "cli/AccountCommands.h"
#include "cli/ColorCommands.h"
#include "cli/DocumentCommands.h"
#include "cli/ExchangeCommands.h"
#include "cli/FormatCommands.h"
#include "cli/LibraryCommands.h"
#include "cli/NameCommand.h"
#include "cli/PickCommand.h"

namespace kro::cli {

const CommandTable& commandTable() {
    static const CommandTable table = [] {
        CommandTable commands;
        registerNameCommands(commands);
        registerFormatCommands(commands);
        registerColorCommands(commands);
        registerExchangeCommands(commands);
        registerAccountCommands(commands);
        registerDocumentCommands(commands);
        registerLibraryCommands(commands);
        registerPickCommand(commands);
        return commands;
    }();
    return table;
}

std::string programUsage() {
    std::string text = "usage: kro                  start the agent\n"
                       "       kro open ARG...      hand kro:// commands and files to the agent\n";
    for (const auto& [name, command] : commandTable()) text += "       " + command.usage + "\n";
    return text;
}

int runCommand(const std::vector<std::string>& args, std::istream& in, std::ostream& out, std::ostream& err) {
    const auto& table = commandTable();
    const auto found = args.empty() ? table.end() : table.find(args[0]);
    if (found == table.end()) {
        err << programUsage();
        return exitUsage;
    }
    CommandContext context{std::vector<std::string>(args.begin() + 1, args.end()), in, out, err};
    return found->second.run(context);
}

}  // namespace kro::cli
