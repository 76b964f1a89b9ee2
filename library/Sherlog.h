#pragma once
// The one logger. Three bit sets decide whether and how a line prints: the muted levels, the parts of
// a line, and the environment. A shipped program's log is silent (the environment lacks bit 2), yet every
// call is still made with the caller's file, function and line. KRO_LOG=1 turns output on, for every level.
#include <atomic>
#include <string>

namespace kro {

struct SherlogLevel {
    unsigned rawValue = 0;
    static const SherlogLevel debug;  // 1, "🟢 "
    static const SherlogLevel info;   // 2, "🟡 "
    static const SherlogLevel error;  // 4, "🔴 "
    constexpr SherlogLevel operator|(SherlogLevel other) const { return {rawValue | other.rawValue}; }
    constexpr bool operator==(const SherlogLevel&) const = default;
};
inline constexpr SherlogLevel SherlogLevel::debug{1};
inline constexpr SherlogLevel SherlogLevel::info{2};
inline constexpr SherlogLevel SherlogLevel::error{4};

struct SherlogPrint {
    unsigned rawValue = 0;
    static const SherlogPrint time;      // 1: "YYYY-MM-dd HH:mm:ss ▶︎" after the prefix
    static const SherlogPrint file;      // 2: " [file: …]"
    static const SherlogPrint function;  // 4: " [function: …]"
    static const SherlogPrint line;      // 8: " [line: …]"
    static const SherlogPrint message;   // 16: " " and the message
    constexpr SherlogPrint operator|(SherlogPrint other) const { return {rawValue | other.rawValue}; }
};
inline constexpr SherlogPrint SherlogPrint::time{1};
inline constexpr SherlogPrint SherlogPrint::file{2};
inline constexpr SherlogPrint SherlogPrint::function{4};
inline constexpr SherlogPrint SherlogPrint::line{8};
inline constexpr SherlogPrint SherlogPrint::message{16};

struct SherlogEnvironment {
    unsigned rawValue = 0;
    static const SherlogEnvironment standardOutput;  // 2: a line may reach standard output
    constexpr SherlogEnvironment operator|(SherlogEnvironment other) const { return {rawValue | other.rawValue}; }
};
inline constexpr SherlogEnvironment SherlogEnvironment::standardOutput{2};

class Sherlog {
public:
    static void print(const std::string& message, SherlogLevel level, const std::string& file,
                      const std::string& function, int line);

    // The line `print` would form, or "" when the level is muted.
    static std::string format(const std::string& message, SherlogLevel level, const std::string& file,
                              const std::string& function, int line);

    // The three values are set once, at start (muted 6, print 16, environment 1; under KRO_LOG=1 muted 0 and
    // environment 1|2).
    // Tests set them to look at the lines.
    static void configure(SherlogLevel muted, SherlogPrint print, SherlogEnvironment environment);
    static SherlogLevel muted();
    static SherlogPrint printOptions();
    static SherlogEnvironment environment();
};

}  // namespace kro

// Logs with the caller's file, function and line.
#define SHERLOG(message, level) ::kro::Sherlog::print((message), (level), __FILE__, __func__, __LINE__)
