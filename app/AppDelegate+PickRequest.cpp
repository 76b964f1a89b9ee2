// Picks asked for on the command line: the loupe opens as from the hot key, each pick is delivered as usual
// (clipboard, history) and its text is also kept for the asker, who is answered when enough colours are
// picked or a session ends without one.
#include "app/AppDelegate.h"
#include "library/Sherlog.h"
#include "platform/Environment.h"

namespace kro {
namespace {

Json refusal(const std::string& error) { return Json{{"ok", false}, {"error", error}}; }

}  // namespace

void AppDelegate::handlePickRequest(const Json& request, const std::function<void(const std::string& reply)>& reply) {
    std::string error;
    auto pick = PickRequest::read(request, error);
    if (!pick) return reply(compactText(refusal(error)));
    if (pendingPick_ || picker_->isOpen) return reply(compactText(refusal("the loupe is already open")));
    pendingPick_ = std::move(*pick);
    pendingPickReply_ = reply;
    openPickerForRequest();
}

void AppDelegate::openPickerForRequest() {
    pendingPick_->pickedThisSession = false;
    // A command-line pick is one colour a session, whatever mode the last session left.
    picker_->mode = PickerMode::standard;
    openPicker(PickerSource::standard);
    if (!picker_->isOpen) finishPickRequest(refusal("the loupe could not open"));
}

void AppDelegate::pickerDidClose() {
    if (!pendingPick_) return;
    if (pendingPick_->done()) return finishPickRequest(Json{{"ok", true}, {"lines", pendingPick_->lines}});
    if (!pendingPick_->pickedThisSession) return finishPickRequest(refusal("no color was picked"));
    // The next colour: a new session once this one has closed.
    env().mainQueue->post([this] {
        if (pendingPick_) openPickerForRequest();
    });
}

void AppDelegate::finishPickRequest(const Json& answer) {
    auto reply = std::move(pendingPickReply_);
    pendingPick_.reset();
    pendingPickReply_ = nullptr;
    SHERLOG("Command-line pick answered: " + compactText(answer), SherlogLevel::debug);
    if (reply) reply(compactText(answer));
}

}  // namespace kro
