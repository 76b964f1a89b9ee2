#include "cli/Cli.h"

#include <iostream>

#include "cli/AccountCommands.h"
#include "cli/BridgeCommands.h"
#include "cli/ColorCommands.h"
#include "cli/DocumentCommands.h"
#include "cli/ExchangeCommands.h"
#include "cli/FormatCommands.h"
#include "cli/LibraryCommands.h"
#include "cli/NameCommand.h"
#include "cli/OpenCommand.h"
#include "cli/PickCommand.h"

namespace kro::cli {
namespace {

// The usage line of a command, "open" included, or nothing for a name that is no command.
std::optional<std::string> usageOf(const std::string& name) {
    if (name == "open") return kOpenUsage;
    const auto found = commandTable().find(name);
    if (found == commandTable().end()) return std::nullopt;
    return found->second.usage;
}

}  // namespace

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
        registerBridgeCommands(commands);
        registerPickCommand(commands);
        return commands;
    }();
    return table;
}

std::string programUsage() {
    std::string text = "usage: kro                  start the agent\n"
                       "       " + std::string(kOpenUsage) + "    hand kro:// commands and files to the agent\n";
    for (const auto& [name, command] : commandTable()) text += "       " + command.usage + "\n";
    text += "       kro help [COMMAND]   how a command is called (or: kro COMMAND --help)\n"
            "       kro --version\n";
    return text;
}

std::string programVersion() { return std::string("kro ") + KRO_VERSION; }

std::optional<int> answerQuestion(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.empty()) return std::nullopt;
    const auto& first = args[0];
    if (first == "--version" && args.size() == 1) {
        out << programVersion() << "\n";
        return exitDone;
    }
    if (first == "--help" || first == "-h" || (first == "help" && args.size() == 1)) {
        out << programUsage();
        return exitDone;
    }
    const bool helpWord = first == "help" && args.size() == 2;
    const auto usage = usageOf(helpWord ? args[1] : first);
    if (helpWord && !usage) {
        err << programUsage();
        return exitUsage;
    }
    if (usage && (helpWord || asksForHelp({args.begin() + 1, args.end()}))) {
        out << "usage: " << *usage << "\n";
        return exitDone;
    }
    return std::nullopt;
}

int runCommand(const std::vector<std::string>& args, std::istream& in, std::ostream& out, std::ostream& err) {
    if (auto answered = answerQuestion(args, out, err)) return *answered;
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
