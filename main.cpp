// kro: the command-line face; with no command, the agent in the tray. The agent is a program of its own
// (kro-agent) that this one becomes, so that a command loads none of Qt and the desktop's libraries: their
// loading alone cost a command about 35 ms.
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "cli/AgentStart.h"
#include "cli/Cli.h"
#include "cli/HeadlessSync.h"
#include "cli/OpenCommand.h"
#include "cloud/ConfiguredCloudSession.h"
#include "library/StoreLock.h"
#include "platform/DeferredMainQueue.h"
#include "platform/Environment.h"
#include "platform/JsonFileDefaults.h"
#include "platform/WorkerQueue.h"
#include "platform/linux/PosixFiles.h"

namespace {

// The agent's program: beside this one in a build folder, else where the installation put it.
std::string agentProgramPath(const std::string& self) {
    const auto folder = std::filesystem::path(self).parent_path();
    std::error_code error;
    if (const auto beside = folder / "kro-agent"; std::filesystem::is_regular_file(beside, error)) return beside;
    return (folder / KRO_AGENT_FROM_BINDIR).lexically_normal();
}

// The agent keeps this program's argv[0]: the process still reads as `kro` (ps, and the class name its
// windows give the desktop).
int becomeAgent(char** argv) {
    const auto program = agentProgramPath(kro::cli::selfPath());
    execv(program.c_str(), argv);
    std::cerr << "kro: the agent's program " << program << " could not be started: " << std::strerror(errno) << "\n";
    return kro::cli::exitFailed;
}

// A one-shot command: the same stores and defaults as the agent, with no event loop.
int runHeadless(const std::vector<std::string>& args) {
    const auto paths = kro::Paths::fromEnvironment();
    kro::SystemClock clock;
    kro::DeferredMainQueue mainQueue;
    kro::WorkerQueue backgroundQueue;
    kro::PosixFiles files;
    kro::JsonFileDefaults defaults(files, kro::JsonFileDefaults::pathIn(paths));
    kro::NotificationCenter notifications;
    kro::installEnvironment({&clock, &mainQueue, &backgroundQueue, &files, &defaults, &notifications, paths});
    // A change a command makes is pushed as the agent's are, and the command ends once the push has answered.
    kro::installCloudSync();
    // A command writes the stores only under their lock, which those that change the library take.
    kro::StoreLock::requireForWriting();
    const int status = kro::cli::runCommand(args, std::cin, std::cout, std::cerr);
    if (!kro::cli::finishHeadlessSync(std::cerr)) {
        // A request still under way would answer into a queue that no longer exists: end here. Every store
        // was written when it changed, so nothing is lost by not waiting.
        std::cout.flush();
        std::cerr.flush();
        std::_Exit(status);
    }
    mainQueue.drain();
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty()) return becomeAgent(argv);
    if (const auto answered = kro::cli::answerQuestion(args, std::cout, std::cerr)) return *answered;
    if (args[0] == "open") {
        return kro::cli::runOpen({args.begin() + 1, args.end()}, kro::Paths::fromEnvironment(), kro::cli::selfPath(),
                                 std::cerr);
    }
    return runHeadless(args);
}
