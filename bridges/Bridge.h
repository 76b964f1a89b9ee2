#pragma once
// A channel to one design application with its four operations: get and set the primary colour (fill,
// foreground) and the secondary colour (stroke, background). Every answer comes once, on the main queue,
// within the bridge's time limit; a failure is an empty list or false, with one log line saying why.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "library/Sherlog.h"
#include "picker/PickerTypes.h"
#include "platform/Environment.h"
#include "platform/BridgeChannels.h"
#include "platform/ColorValue.h"

namespace kro {

// How long a bridge waits for its application before it gives up.
inline constexpr Milliseconds kBridgeTimeLimit{2000};

class Bridge {
public:
    using GetDone = std::function<void(const std::vector<ColorValue>& colors)>;
    using SetDone = std::function<void(bool success)>;
    virtual ~Bridge() = default;
    virtual void getColor(PickerPlugin slot, GetDone done) = 0;
    virtual void setColor(PickerPlugin slot, const ColorValue& color, SetDone done) = 0;
};

// A completion that runs once: with the first answer, or with the failure value when the time limit passes
// first. A failure logs one line, "what: why"; later answers are dropped. Copies share the one completion.
template <class Result>
class Answer {
public:
    Answer(std::function<void(const Result&)> done, Result failure, std::string what, Milliseconds limit = kBridgeTimeLimit)
        : state_(std::make_shared<State>(State{std::move(done), std::move(failure), std::move(what)})) {
        env().mainQueue->post([state = state_] { Answer(state).fail("no answer within the time limit"); },
                              std::chrono::duration_cast<Seconds>(limit));
    }
    void operator()(const Result& result) const {
        if (state_->done) std::exchange(state_->done, nullptr)(result);
    }
    void fail(const std::string& why) const {
        if (!pending()) return;
        SHERLOG(state_->what + ": " + why, SherlogLevel::error);
        (*this)(state_->failure);
    }
    // Whether no answer has been given yet: work done after that is wasted.
    bool pending() const { return static_cast<bool>(state_->done); }

private:
    struct State {
        std::function<void(const Result&)> done;
        Result failure;
        std::string what;
    };
    explicit Answer(std::shared_ptr<State> state) : state_(std::move(state)) {}
    std::shared_ptr<State> state_;
};

// The 8-bit sRGB components of a colour, rounded half away from zero.
struct Rgb8 {
    int red = 0;
    int green = 0;
    int blue = 0;
};
Rgb8 rgb8(const ColorValue& color);
// ASCII letters in lower case: names of applications and colours compare so.
std::string lowerCase(std::string text);
// "#rrggbb".
std::string cssHex(const Rgb8& color);
// An opaque colour from "#rgb", "#rrggbb" or a CSS colour name, in any case; nothing for any other text.
std::optional<ColorValue> cssColor(const std::string& text);

}  // namespace kro
