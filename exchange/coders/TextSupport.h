#pragma once
// What every text palette coder needs: bytes to UTF-8 text, lines under any ending, trimming, and
// locale-free numbers. A coder reads the file's text through these so that a byte-order mark, a
// CR LF file or a Latin-1 name is handled the same way everywhere.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace PAL::textfile {

// The file's text as UTF-8: a UTF-8 byte-order mark is dropped, a UTF-16 one (either order) is
// decoded, and bytes that are not valid UTF-8 are taken as Latin-1.
std::string fromBytes(std::string_view bytes);

bool isValidUTF8(std::string_view text);
std::string latin1ToUTF8(std::string_view text);

// Lines split on LF, CR LF or a lone CR; a final line ending does not add an empty line.
std::vector<std::string_view> splitLines(std::string_view text);

bool isBlank(char c);  // space or tab
std::string_view trimmed(std::string_view text);
// Splits on runs of spaces and tabs.
std::vector<std::string_view> words(std::string_view text);
// Splits on one separator character; fields are not trimmed.
std::vector<std::string_view> fields(std::string_view text, char separator);

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix);
// ASCII letters lowercased, every other byte as it is.
std::string lowercased(std::string_view text);

// A whole token as a decimal integer (optional sign, digits only, never octal); nullopt otherwise.
std::optional<long long> integer(std::string_view token);
// A whole token as a C-locale decimal number (optional sign, '.', exponent); nullopt otherwise,
// and for infinities and NaN.
std::optional<double> number(std::string_view token);
// `value` with at most `decimals` digits after the point, trailing zeros kept, always with '.'.
std::string fixed(double value, int decimals);
// `value` with at most `decimals` digits after the point, trailing zeros and a bare point dropped
// ("0.5", "1", "0.333").
std::string trimmedFixed(double value, int decimals);
// The shortest text that reads back as `value`, always with '.'.
std::string shortest(double value);

// Line breaks and tabs inside a name would break a line-based format: they become spaces.
std::string singleLine(std::string_view text);

}  // namespace PAL::textfile
