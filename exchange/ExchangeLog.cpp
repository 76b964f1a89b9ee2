#include "exchange/ExchangeLog.h"

#include <mutex>

namespace PAL {

namespace {
std::mutex sinkMutex;
LogSink& currentSink() {
    static LogSink sink;
    return sink;
}

void log(LogLevel level, std::string message, const char* file, const char* function, unsigned line) {
    LogSink sink;
    {
        std::lock_guard lock(sinkMutex);
        sink = currentSink();
    }
    if (sink) sink(LogRecord{level, "TintCoder", std::move(message), file, function, line});
}
}  // namespace

void setLogSink(LogSink sink) {
    std::lock_guard lock(sinkMutex);
    currentSink() = std::move(sink);
}

std::string formatLogMessage(std::string_view literal, std::initializer_list<std::string> arguments) {
    std::string out;
    auto argument = arguments.begin();
    for (size_t i = 0; i < literal.size(); ++i) {
        const bool placeholder = literal[i] == '%' && i + 1 < literal.size() && (literal[i + 1] == 'd' || literal[i + 1] == '@');
        if (placeholder && argument != arguments.end()) {
            out += *argument++;
            ++i;
        } else {
            out += literal[i];
        }
    }
    return out;
}

void logInfo(std::string message, const char* file, const char* function, unsigned line) {
    log(LogLevel::info, std::move(message), file, function, line);
}
void logError(std::string message, const char* file, const char* function, unsigned line) {
    log(LogLevel::error, std::move(message), file, function, line);
}

}  // namespace PAL
