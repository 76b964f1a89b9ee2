#include "formats/color/ImportColor.h"

#include <optional>
#include <string>

#include "formats/color/ImportColorCharacters.h"
#include "formats/color/ImportColorScan.h"
#include "formats/color/ImportColorSteps.h"

namespace kro::ImportColor {
namespace {

// The names step's matches are the runs of word characters, found by a direct scan; its expression, whose
// class of word characters is the largest, is never compiled.
bool scansWords(const Step& step) { return step.kind == ImportColorPattern::html; }

// One per step, compiled once and shared: a compiled expression may be used from any thread.
const std::vector<std::optional<LinearExpression>>& linearExpressions() {
    static const auto expressions = [] {
        std::vector<std::optional<LinearExpression>> compiled(kSteps.size());
        for (size_t i = 0; i < kSteps.size(); ++i) {
            if (!scansWords(kSteps[i])) compiled[i].emplace(kSteps[i].expression);
        }
        return compiled;
    }();
    return expressions;
}

}  // namespace

std::vector<ColorValue> colors(std::string_view text, const std::set<ImportColorPattern>& patterns) {
    std::string repaired;
    const auto wellFormedText = wellFormed(text, repaired);
    const auto& expressions = linearExpressions();
    std::vector<ColorValue> result;
    for (size_t i = 0; i < kSteps.size(); ++i) {
        const auto& step = kSteps[i];
        if (!patterns.contains(step.kind)) continue;
        const auto recognise = [&](std::string_view match) {
            if (auto color = step.color(match, numbers(match, step.numberShape))) result.push_back(std::move(*color));
        };
        if (scansWords(step)) {
            forEachWord(wellFormedText, recognise);
        } else {
            expressions[i]->forEachMatch(wellFormedText, recognise);
        }
    }
    return result;
}

}  // namespace kro::ImportColor
