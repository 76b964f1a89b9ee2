#include "cli/BridgeCommands.h"

#include <ostream>

#include "bridges/KritaPluginFiles.h"
#include "cli/AgentRequest.h"
#include "cli/ColorArgument.h"
#include "formats/color/ColorConversions.h"
#include "platform/Json.h"

namespace kro::cli {
namespace {

// The bridge's own limit, and room for the agent's copy and paste pauses.
constexpr double kAgentLimit = 10.0;

struct BridgeArguments {
    std::string slot;
    std::optional<std::string> application;
    std::vector<std::string> rest;
};

// --primary or --secondary (exactly one), an optional --app NAME, and the other arguments in order.
std::optional<BridgeArguments> parseArguments(const std::vector<std::string>& args) {
    BridgeArguments parsed;
    for (size_t i = 0; i < args.size(); ++i) {
        const auto& arg = args[i];
        if (arg == "--primary" || arg == "--secondary") {
            if (!parsed.slot.empty()) return std::nullopt;
            parsed.slot = arg.substr(2);
        } else if (arg == "--app") {
            if (i + 1 == args.size() || parsed.application) return std::nullopt;
            parsed.application = args[++i];
        } else {
            parsed.rest.push_back(arg);
        }
    }
    if (parsed.slot.empty()) return std::nullopt;
    return parsed;
}

int ask(CommandContext& context, Json request, const std::optional<std::string>& application) {
    if (application) request["app"] = *application;
    const auto answer = askAgent(compactText(request), kAgentLimit);
    if (answer.status == AgentReply::Status::noAgent)
        return fail(context, "the agent is not running; start it with `kro`, in the desktop session");
    if (answer.status == AgentReply::Status::silent) return fail(context, "the agent did not answer in time");
    const auto reply = Json::parse(answer.line, nullptr, false);
    if (!reply.is_object()) return fail(context, "the agent gave an answer that is not understood");
    if (!reply.value("ok", false)) return fail(context, reply.value("error", std::string("the request failed")));
    if (!reply.contains("lines") || !reply["lines"].is_array()) return exitDone;
    for (const auto& line : reply["lines"]) {
        if (line.is_string()) context.out << line.get<std::string>() << "\n";
    }
    return exitDone;
}

}  // namespace

void registerBridgeCommands(CommandTable& table) {
    static const Command getCommand{"kro get --primary|--secondary [--app NAME]", [](CommandContext& context) {
        const auto parsed = parseArguments(context.args);
        if (!parsed || !parsed->rest.empty()) return usageError(context, getCommand);
        return ask(context, Json{{"bridge", "get"}, {"slot", parsed->slot}}, parsed->application);
    }};
    static const Command sendCommand{"kro send --primary|--secondary COLOR [--app NAME]", [](CommandContext& context) {
        const auto parsed = parseArguments(context.args);
        if (!parsed || parsed->rest.size() != 1) return usageError(context, sendCommand);
        const auto color = parseColorArgument(parsed->rest.front());
        if (!color) return fail(context, cannotReadColour(parsed->rest.front()));
        return ask(context, Json{{"bridge", "set"}, {"slot", parsed->slot}, {"color", hexText(*color)}}, parsed->application);
    }};
    static const Command kritaCommand{"kro krita-plugin install|remove", [](CommandContext& context) -> int {
        if (context.args.size() != 1 || (context.args[0] != "install" && context.args[0] != "remove")) {
            return usageError(context, kritaCommand);
        }
        std::string error;
        if (context.args[0] == "remove") {
            if (!KritaPluginFiles::remove(error)) return fail(context, error);
            context.out << "Kro's Krita plug-in is removed from " << KritaPluginFiles::pykritaFolder() << "\n";
            return exitDone;
        }
        if (!KritaPluginFiles::install(error)) return fail(context, error);
        context.out << "Kro's Krita plug-in is in " << KritaPluginFiles::pykritaFolder() << ".\n"
                    << "In Krita, tick \"Kro Bridge\" under Settings > Configure Krita > Python Plugin Manager, then "
                       "restart Krita.\n";
        return exitDone;
    }};
    table.insert_or_assign("get", getCommand);
    table.insert_or_assign("send", sendCommand);
    table.insert_or_assign("krita-plugin", kritaCommand);
}

}  // namespace kro::cli
