#pragma once
// What the command-line tests share: a table run in-process with its output kept, and a stand-in for the
// running agent.
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "cli/AgentRequest.h"
#include "cli/Command.h"

namespace kro::cli {

struct CommandResult {
    int status;
    std::string out, err;
};

// `kro NAME ARGS...` run once from a fresh table that `registerCommands` fills, with `input` as its stdin.
inline CommandResult runOnce(void (*registerCommands)(CommandTable&), const std::string& name,
                             std::vector<std::string> args, const std::string& input = "") {
    CommandTable table;
    registerCommands(table);
    std::istringstream in(input);
    std::ostringstream out, err;
    CommandContext context{std::move(args), in, out, err};
    const int status = table.at(name).run(context);
    return {status, out.str(), err.str()};
}

// Runs `kro NAME ARGS...` from the table; `out` and `err` hold what the last command printed.
struct CommandRunner {
    int run(std::vector<std::string> args, const std::string& input = "") {
        out.str({});
        err.str({});
        const std::string name = args.front();
        args.erase(args.begin());
        std::istringstream in(input);
        CommandContext context{args, in, out, err};
        return table.at(name).run(context);
    }

    CommandTable table;
    std::ostringstream out, err;
};

// Records each request a command sends to the agent and answers with `reply`, or what `answer` makes of the
// request; nothing means no agent runs, unless `silent` stands for an agent that takes the request and never
// answers.
struct FakeAgent {
    FakeAgent() {
        setAgentSenderForTesting([this](const std::string& request) {
            requests.push_back(request);
            if (answer) return AgentReply{AgentReply::Status::answered, answer(request)};
            if (reply) return AgentReply{AgentReply::Status::answered, *reply};
            return AgentReply{silent ? AgentReply::Status::silent : AgentReply::Status::noAgent, {}};
        });
    }
    ~FakeAgent() { setAgentSenderForTesting(nullptr); }
    FakeAgent(const FakeAgent&) = delete;
    FakeAgent& operator=(const FakeAgent&) = delete;

    std::vector<std::string> requests;
    std::optional<std::string> reply;
    std::function<std::string(const std::string& request)> answer;
    bool silent = false;
};

}  // namespace kro::cli
