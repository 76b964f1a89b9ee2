#pragma once
// The exchange layer's one logger. The layer knows nothing of the application's logger: the
// application installs a sink at start-up, and until then (and in a shipped build without one)
// every line goes nowhere.
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

namespace PAL {

enum class LogLevel { info, error };

struct LogRecord {
    LogLevel level;
    std::string_view category;  // always "TintCoder"
    std::string message;
    const char* file;
    const char* function;
    unsigned line;
};

using LogSink = std::function<void(const LogRecord&)>;

// Replaces the sink; an empty function silences the layer again. Safe from any thread.
void setLogSink(LogSink sink);

// Fills a literal message's "%d" and "%@" placeholders, in order, with the given texts.
std::string formatLogMessage(std::string_view literal, std::initializer_list<std::string> arguments = {});

// The caller's file, function and line are filled in where the call stands. (The builtins rather
// than std::source_location, which this clang cannot build against libstdc++ 12.)
void logInfo(std::string message, const char* file = __builtin_FILE(), const char* function = __builtin_FUNCTION(),
             unsigned line = __builtin_LINE());
void logError(std::string message, const char* file = __builtin_FILE(), const char* function = __builtin_FUNCTION(),
              unsigned line = __builtin_LINE());

}  // namespace PAL
