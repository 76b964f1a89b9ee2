#include "library/Sherlog.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace kro {
namespace {

// KRO_LOG=1 is a developer asking to see the log: every level, on standard output.
bool developerLog() {
    const char* log = std::getenv("KRO_LOG");
    return log && std::strcmp(log, "1") == 0;
}

unsigned startingEnvironment() {
    const unsigned shipped = 1;
    return developerLog() ? shipped | SherlogEnvironment::standardOutput.rawValue : shipped;
}

// Set once at start; atomics only so that a test changing them never races a background logger.
std::atomic<unsigned> gMuted{developerLog() ? 0u : 6u};
std::atomic<unsigned> gPrint{16};
std::atomic<unsigned> gEnvironment{startingEnvironment()};

const char* prefix(SherlogLevel level) {
    switch (level.rawValue) {
        case 1: return "🟢 ";
        case 2: return "🟡 ";
        case 4: return "🔴 ";
        default: return "❓ ";
    }
}

std::string timeText() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    localtime_r(&now, &local);
    char buffer[32];
    // The log has always shown the year of the week (YYYY), which differs from the calendar year only
    // around New Year.
    std::strftime(buffer, sizeof buffer, "%G-%m-%d %H:%M:%S", &local);
    return buffer;
}

}  // namespace

std::string Sherlog::format(const std::string& message, SherlogLevel level, const std::string& file,
                            const std::string& function, int line) {
    if (level.rawValue & gMuted.load()) return "";
    const unsigned options = gPrint.load();
    std::string text = prefix(level);
    if (options & SherlogPrint::time.rawValue) text += timeText() + " ▶︎";
    if (options & SherlogPrint::file.rawValue) text += " [file: " + file + "]";
    if (options & SherlogPrint::function.rawValue) text += " [function: " + function + "]";
    if (options & SherlogPrint::line.rawValue) text += " [line: " + std::to_string(line) + "]";
    if (options & SherlogPrint::message.rawValue) text += " " + message;
    return text;
}

void Sherlog::print(const std::string& message, SherlogLevel level, const std::string& file,
                    const std::string& function, int line) {
    if (!(gEnvironment.load() & SherlogEnvironment::standardOutput.rawValue)) return;
    const auto text = format(message, level, file, function, line);
    if (text.empty()) return;
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    // The agent's output often goes to a file: each line is there as soon as it is logged.
    std::fflush(stdout);
}

void Sherlog::configure(SherlogLevel muted, SherlogPrint print, SherlogEnvironment environment) {
    gMuted = muted.rawValue;
    gPrint = print.rawValue;
    gEnvironment = environment.rawValue;
}

SherlogLevel Sherlog::muted() { return {gMuted.load()}; }
SherlogPrint Sherlog::printOptions() { return {gPrint.load()}; }
SherlogEnvironment Sherlog::environment() { return {gEnvironment.load()}; }

}  // namespace kro
