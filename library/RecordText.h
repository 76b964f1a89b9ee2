#pragma once
// The records' compact JSON text written straight into a string, without building a JSON tree first.
// Every change writes the whole library, so this is the store's and the undo's hot path. The text is byte for
// byte what compactText(toJson()) gives; the tests and the store fuzzer hold the two to that.
#include <string>
#include <vector>

namespace kro::record_text {

void appendString(std::string& out, const std::string& value);
// A JSON array of strings.
void appendStrings(std::string& out, const std::vector<std::string>& values);
// A 32-bit float as floatJson writes it.
void appendFloat(std::string& out, float value);
// `,"key":` (the comma left out for the first key of an object).
void appendKey(std::string& out, const char* key, bool& first);

}  // namespace kro::record_text
