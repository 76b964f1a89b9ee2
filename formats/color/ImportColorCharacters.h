#pragma once
// The characters of the recognisers' expressions, taken from ICU, whose regular expressions define them:
// the linear-time scan must read every text exactly as those expressions always have, down to which
// characters are spaces, digits and word characters in scripts other than Latin.
#include <unicode/uniset.h>

#include <string>
#include <string_view>

namespace kro::ImportColor {

// "\s": the characters with the White_Space property.
const icu::UnicodeSet& spaceCharacters();
// "\d": the decimal digits of every script.
const icu::UnicodeSet& digitCharacters();
// "\w": letters, marks, decimal digits, connector punctuation and the two joiners.
const icu::UnicodeSet& wordCharacters();
// The characters "." does not match: the line ends, from line feed to paragraph separator.
const icu::UnicodeSet& lineEndCharacters();

// `text` as ICU reads UTF-8: every ill-formed sequence becomes one U+FFFD. Well-formed text is returned
// as it is; otherwise `storage` holds the repaired copy that is returned.
std::string_view wellFormed(std::string_view text, std::string& storage);

// The code point that starts at `offset` of well-formed text; `offset` moves past it.
char32_t nextCodePoint(std::string_view text, size_t& offset);

}  // namespace kro::ImportColor
