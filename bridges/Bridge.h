#pragma once
// A channel to one design application with its four operations: get and set the primary colour (fill,
// foreground) and the secondary colour (stroke, background). Every answer comes once, on the main queue,
// within the bridge's time limit; a failure is an empty list or false, with one log line saying why.
#include <functional>
#include <memory>
#include <optional>
#include <string>
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

// Wraps a completion so that it runs once: with the first answer, or with `onTimeout`'s value when the time
// limit passes first (logging `what` then). Later answers are dropped.
template <class Result>
std::function<void(const Result&)> answerOnce(std::function<void(const Result&)> done, Result onTimeout,
                                              const std::string& what, Milliseconds limit = kBridgeTimeLimit) {
    auto pending = std::make_shared<std::function<void(const Result&)>>(std::move(done));
    env().mainQueue->post(
        [pending, onTimeout, what] {
            if (!*pending) return;
            SHERLOG(what + ": no answer within the time limit", SherlogLevel::error);
            auto call = std::move(*pending);
            *pending = nullptr;
            call(onTimeout);
        },
        std::chrono::duration_cast<Seconds>(limit));
    return [pending](const Result& result) {
        if (!*pending) return;
        auto call = std::move(*pending);
        *pending = nullptr;
        call(result);
    };
}

// The 8-bit sRGB components of a colour, rounded half away from zero.
struct Rgb8 {
    int red = 0;
    int green = 0;
    int blue = 0;
};
Rgb8 rgb8(const ColorValue& color);
// "#rrggbb".
std::string cssHex(const Rgb8& color);
// An opaque colour from "#rgb", "#rrggbb" or a CSS colour name, in any case; nothing for any other text.
std::optional<ColorValue> cssColor(const std::string& text);

}  // namespace kro
