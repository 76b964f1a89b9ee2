#include "platform/Json.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <random>
#include <stdexcept>

#include <sys/random.h>
#include <cerrno>


namespace kro {

Json floatJson(float value) {
    char buffer[64];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    if (error != std::errc()) return Json(static_cast<double>(value));
    // The double nearest the float's shortest text prints as that text again.
    return Json(std::strtod(std::string(buffer, end).c_str(), nullptr));
}

std::string compactText(const Json& json) {
    // Invalid UTF-8 in a text is replaced rather than thrown on: a store is always writable.
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string dateText(TimePoint time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    char buffer[32];
    std::strftime(buffer, sizeof buffer, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return buffer;
}

std::optional<TimePoint> parseDateText(const std::string& text) {
    int year, month, day, hour, minute, second;
    char tail = 0;
    if (text.size() != 20 ||
        std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d%c", &year, &month, &day, &hour, &minute, &second, &tail) != 7 ||
        tail != 'Z') {
        return std::nullopt;
    }
    if (month < 1 || month > 12 || day < 1 || day > 31 || hour > 23 || minute > 59 || second > 60) return std::nullopt;
    std::tm utc{};
    utc.tm_year = year - 1900;
    utc.tm_mon = month - 1;
    utc.tm_mday = day;
    utc.tm_hour = hour;
    utc.tm_min = minute;
    utc.tm_sec = second;
    return std::chrono::system_clock::from_time_t(timegm(&utc));
}

// Identifiers must be unique, not secret: a generator per thread, seeded once with 256 bits from the
// system's random source, makes them without a trip to that source each time (decoding a file of 100,000
// colours makes 100,000 of them). The seed comes from the kernel itself: OpenSSL's generator would first set
// itself up, which cost a command that only converts a file 2 MB of memory and several milliseconds.
UUIDBytes newUUIDBytes() {
    thread_local std::mt19937_64 generator = [] {
        std::array<std::uint32_t, 8> words{};
        auto* bytes = reinterpret_cast<char*>(words.data());
        size_t filled = 0;
        while (filled < sizeof words) {
            const ssize_t got = getrandom(bytes + filled, sizeof words - filled, 0);
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) throw std::runtime_error("newUUID: the system's random source failed");
            filled += static_cast<size_t>(got);
        }
        std::seed_seq sequence(words.begin(), words.end());
        return std::mt19937_64(sequence);
    }();
    UUIDBytes bytes{};
    const std::uint64_t high = generator(), low = generator();
    std::memcpy(bytes.data(), &high, 8);
    std::memcpy(bytes.data() + 8, &low, 8);
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    return bytes;
}

std::string uuidText(const UUIDBytes& bytes) {
    static const char* digits = "0123456789ABCDEF";
    std::string out;
    out.reserve(36);
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) out.push_back('-');
        out.push_back(digits[bytes[i] >> 4]);
        out.push_back(digits[bytes[i] & 15]);
    }
    return out;
}

std::string newUUID() { return uuidText(newUUIDBytes()); }

}  // namespace kro
