#pragma once
// Finding the steps' matches in time linear in the text, with the matches a backtracking matcher would
// choose: the leftmost match first, the greedy choice at every repetition, and the next search from the
// end of the last match. The text must be well-formed UTF-8 (ImportColorCharacters.h).
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "formats/color/ImportColorSteps.h"

namespace re2 {
class RE2;
}

namespace kro::ImportColor {

using Found = std::function<void(std::string_view match)>;

// One expression, written as ICU reads it, turned into RE2's syntax with ICU's character classes spelt
// out, and matched by RE2, whose automaton reads each character once however the text is made.
class LinearExpression {
public:
    explicit LinearExpression(std::string_view icuExpression);
    LinearExpression(LinearExpression&&) noexcept;
    ~LinearExpression();

    // False when the expression cannot be built; it then finds nothing.
    bool ok() const;
    void forEachMatch(std::string_view text, const Found& found) const;

private:
    std::unique_ptr<re2::RE2> expression_;
};

// Each run of word characters, the matches of "\w{1,}", found by a direct scan that is many times quicker
// than any engine for an expression with a match in every word.
void forEachWord(std::string_view text, const Found& found);

// The first numbers of a match, taken as the shape says, each as its text.
Numbers numbers(std::string_view match, NumberShape shape);

}  // namespace kro::ImportColor
