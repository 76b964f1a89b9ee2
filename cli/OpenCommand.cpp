#include "cli/OpenCommand.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <ostream>
#include <thread>

#include "cli/AgentStart.h"
#include "cli/Command.h"
#include "platform/AgentChannel.h"
#include "platform/Json.h"

namespace kro::cli {
namespace {

bool hasDisplay() {
    const char* x11 = std::getenv("DISPLAY");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    return (x11 && *x11) || (wayland && *wayland);
}

}  // namespace

std::string openRequest(const std::vector<std::string>& args, const std::string& workingFolder) {
    Json list = Json::array();
    for (const auto& arg : args) {
        if (isURLArgument(arg) || arg.empty() || arg[0] == '/') {
            list.push_back(arg);
        } else {
            list.push_back(workingFolder + "/" + arg);
        }
    }
    return compactText(Json{{"open", list}});
}

int runOpen(const std::vector<std::string>& args, const Paths& paths, const std::string& selfPath, std::ostream& err) {
    if (args.empty()) {
        err << "usage: kro open ARG...\n";
        return exitUsage;
    }
    char cwd[4096];
    const std::string workingFolder = getcwd(cwd, sizeof cwd) ? cwd : ".";
    const auto request = openRequest(args, workingFolder);
    const auto socketPath = agentSocketPath(paths);

    auto reply = sendToAgent(socketPath, request, 10.0);
    if (!reply && !agentLockIsHeld(agentLockPath(paths))) {
        if (!hasDisplay()) {
            err << "kro: no agent is running, and there is no display to start one on (set DISPLAY, or run one "
                   "on a virtual display: xvfb-run -a kro)\n";
            return exitFailed;
        }
        if (!startAgent(selfPath, paths)) {
            err << "kro: the agent could not be started\n";
            return exitFailed;
        }
    }
    // The agent may be starting (ours or another's): give it a few seconds to listen.
    for (int attempt = 0; !reply && attempt < 100; ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        reply = sendToAgent(socketPath, request, 10.0);
    }
    if (!reply) {
        err << "kro: the agent did not answer\n";
        return exitFailed;
    }
    const auto answer = Json::parse(*reply, nullptr, false);
    if (!answer.is_object() || !answer.value("ok", false)) {
        err << "kro: " << (answer.is_object() ? answer.value("error", std::string("the agent refused the request")) : *reply)
            << "\n";
        return exitFailed;
    }
    return exitDone;
}

}  // namespace kro::cli
