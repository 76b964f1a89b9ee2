#include "picker/CMD.h"

#include <unistd.h>

#include "library/Sherlog.h"
#include "picker/HotKey.h"
#include "platform/Environment.h"

namespace kro {
namespace {

constexpr int kCopyKey = 8;   // C
constexpr int kPasteKey = 9;  // V
constexpr int kPause = 100000;

KeySimulator* gSimulator = nullptr;
std::function<void(int)>& sleeper() {
    static std::function<void(int)> sleep = [](int microseconds) { usleep(static_cast<useconds_t>(microseconds)); };
    return sleep;
}

// Key down with the primary modifier, key up without it, each after a pause.
void postShortcut(int code) {
    if (!gSimulator || !gSimulator->available()) return;
    sleeper()(kPause);
    if (!gSimulator->postKey(code, true, HotKeyFlags::command)) return;
    sleeper()(kPause);
    gSimulator->postKey(code, false, 0);
}

}  // namespace

void CMD::setKeySimulator(KeySimulator* simulator) { gSimulator = simulator; }
void CMD::setSleep(std::function<void(int)> sleep) { sleeper() = std::move(sleep); }

void CMD::performCopy(const Clipboard* clipboard) {
    postShortcut(kCopyKey);
    if (!clipboard) return;
    if (const auto text = clipboard->text()) SHERLOG("cmd performe copy: " + *text, SherlogLevel::debug);
}

void CMD::performPaste(std::function<void()> accessibilityCheck) {
    if (accessibilityCheck) env().mainQueue->post(std::move(accessibilityCheck), Seconds(0.1));
    postShortcut(kPasteKey);
    SHERLOG("cmd performe paste", SherlogLevel::debug);
}

}  // namespace kro
