#include "bridges/GimpBridge.h"

#include <unistd.h>

#include <cctype>
#include <cstdlib>

namespace kro {
namespace {

constexpr const char* kAnswerEnd = "kro-end";

const char* slotProcedure(PickerPlugin slot, const char* action) {
    const bool primary = slot == PickerPlugin::primary;
    if (std::string(action) == "set") return primary ? "gimp-context-set-foreground" : "gimp-context-set-background";
    return primary ? "gimp-context-get-foreground" : "gimp-context-get-background";
}

// A Scheme string literal.
std::string schemeString(const std::string& text) {
    std::string literal = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') literal += '\\';
        literal += c;
    }
    return literal + "\"";
}

// Opens the answer file first, so that a failing command still closes it (when Script-Fu ends) without
// the closing mark, and the bridge hears of the failure at once.
std::string reporting(const std::string& answerPath, const std::string& body, PickerPlugin slot) {
    return "(let ((port (open-output-file " + schemeString(answerPath) + "))) " + body + "(write (" +
           slotProcedure(slot, "get") + ") port) (display \" " + kAnswerEnd + "\" port) (close-output-port port))";
}

std::string slotName(PickerPlugin slot) { return slot == PickerPlugin::primary ? "foreground" : "background"; }

}  // namespace

std::string GimpScript::setColor(PickerPlugin slot, const Rgb8& color, const std::string& answerPath) {
    const auto body = std::string("(") + slotProcedure(slot, "set") + " '(" + std::to_string(color.red) + " " +
                      std::to_string(color.green) + " " + std::to_string(color.blue) + ")) ";
    return reporting(answerPath, body, slot);
}

std::string GimpScript::getColor(PickerPlugin slot, const std::string& answerPath) { return reporting(answerPath, "", slot); }

std::optional<ColorValue> GimpScript::readAnswer(const std::string& text) {
    const auto end = text.rfind(kAnswerEnd);
    if (end == std::string::npos) return std::nullopt;
    for (size_t i = end + std::string_view(kAnswerEnd).size(); i < text.size(); ++i) {
        if (!std::isspace(static_cast<unsigned char>(text[i]))) return std::nullopt;
    }
    // The innermost list: numbers between the last "(" before the first ")" and that ")".
    const auto close = text.find(')');
    if (close == std::string::npos || close > end) return std::nullopt;
    const auto open = text.rfind('(', close);
    if (open == std::string::npos) return std::nullopt;
    std::vector<double> numbers;
    const std::string inner = text.substr(open + 1, close - open - 1);
    const char* at = inner.c_str();
    while (*at) {
        if (std::isspace(static_cast<unsigned char>(*at))) {
            ++at;
            continue;
        }
        char* next = nullptr;
        const double value = std::strtod(at, &next);
        if (next == at || !(value >= 0 && value <= 255) || numbers.size() == 4) return std::nullopt;
        numbers.push_back(value);
        at = next;
    }
    // Everything between the list and the mark is closing brackets and blanks.
    for (size_t i = close; i < end; ++i) {
        if (text[i] != ')' && !std::isspace(static_cast<unsigned char>(text[i]))) return std::nullopt;
    }
    switch (numbers.size()) {
        case 1: return ColorValue::rgb(numbers[0] / 255, numbers[0] / 255, numbers[0] / 255);
        case 2: return ColorValue::rgb(numbers[0] / 255, numbers[0] / 255, numbers[0] / 255, numbers[1] / 255);
        case 3: return ColorValue::rgb(numbers[0] / 255, numbers[1] / 255, numbers[2] / 255);
        case 4: return ColorValue::rgb(numbers[0] / 255, numbers[1] / 255, numbers[2] / 255, numbers[3] / 255);
        default: return std::nullopt;
    }
}

DBusCall GimpScript::batchRun(const std::string& script) {
    return {"org.gimp.GIMP.UI", "/org/gimp/GIMP/UI", "org.gimp.GIMP.UI", "BatchRun", {std::string("plug-in-script-fu-eval"), script}};
}

std::string GimpBridge::nextAnswerName() { return "gimp-" + std::to_string(getpid()) + "-" + std::to_string(++calls_) + ".answer"; }

template <class Result>
void GimpBridge::run(const std::string& script, const std::string& name, const Answer<Result>& finish,
                     std::function<void(const std::string& answer)> read) {
    answers_.await(name, std::move(read));
    bus_.call(GimpScript::batchRun(script), kBridgeTimeLimit, [finish](const std::optional<std::string>& error) {
        if (error) finish.fail("GIMP is not reachable on the session bus (" + *error + ")");
    });
}

template <class Result>
Answer<Result> GimpBridge::answer(std::function<void(const Result&)> done, Result failure, const std::string& what,
                                  const std::string& name) {
    // However the call ends, a late answer file is removed unread.
    return Answer<Result>(
        [this, name, done](const Result& result) {
            answers_.forget(name);
            done(result);
        },
        std::move(failure), what);
}

void GimpBridge::getColor(PickerPlugin slot, GetDone done) {
    const auto name = nextAnswerName();
    const auto finish = answer<std::vector<ColorValue>>(std::move(done), {}, "GIMP get " + slotName(slot), name);
    const auto folder = answers_.path();
    if (folder.empty()) return finish.fail("the private folder for GIMP's answers cannot be made");
    run(GimpScript::getColor(slot, folder + "/" + name), name, finish, [finish](const std::string& answer) {
        const auto color = GimpScript::readAnswer(answer);
        if (!color) return finish.fail("GIMP's answer is not a color");
        finish({*color});
    });
}

void GimpBridge::setColor(PickerPlugin slot, const ColorValue& color, SetDone done) {
    const auto name = nextAnswerName();
    const auto wanted = rgb8(color);
    const auto finish = answer<bool>(std::move(done), false, "GIMP set " + slotName(slot), name);
    const auto folder = answers_.path();
    if (folder.empty()) return finish.fail("the private folder for GIMP's answers cannot be made");
    run(GimpScript::setColor(slot, wanted, folder + "/" + name), name, finish, [wanted, finish](const std::string& answer) {
        // GIMP reports the colour it now holds: the set worked when that is the colour sent.
        const auto held = GimpScript::readAnswer(answer);
        const auto near = [](int a, int b) { return std::abs(a - b) <= 1; };
        if (!held || !near(rgb8(*held).red, wanted.red) || !near(rgb8(*held).green, wanted.green) || !near(rgb8(*held).blue, wanted.blue)) {
            return finish.fail("GIMP did not take the color");
        }
        finish(true);
    });
}

}  // namespace kro
