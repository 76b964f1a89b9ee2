#pragma once
// GIMP 2.10 and 3, through the "org.gimp.GIMP.UI" service on the session bus. Its `BatchRun` only queues a
// Script-Fu command and answers true at once, whether or not the command later works, so every command
// writes its outcome to a file in our private drop folder and the bridge learns the outcome from that file.
#include <optional>
#include <string>

#include "bridges/Bridge.h"

namespace kro {

namespace GimpScript {
// The Script-Fu that sets the slot's colour, then reports the colour GIMP now holds, into `answerPath`.
std::string setColor(PickerPlugin slot, const Rgb8& color, const std::string& answerPath);
// The Script-Fu that reports the slot's colour into `answerPath`.
std::string getColor(PickerPlugin slot, const std::string& answerPath);
// The colour in an answer file: a Script-Fu colour list (1 to 4 numbers, 0 to 255, in any nesting of
// lists: GIMP 2.10 writes "((255 0 128))", GIMP 3 may add alpha or drop a level) and the closing mark.
std::optional<ColorValue> readAnswer(const std::string& text);
// The D-Bus call that queues a Script-Fu command.
DBusCall batchRun(const std::string& script);
}  // namespace GimpScript

class GimpBridge final : public Bridge {
public:
    GimpBridge(SessionBus& bus, DropFolder& answers) : bus_(bus), answers_(answers) {}
    void getColor(PickerPlugin slot, GetDone done) override;
    void setColor(PickerPlugin slot, const ColorValue& color, SetDone done) override;

private:
    std::string nextAnswerName();
    template <class Result>
    Answer<Result> answer(std::function<void(const Result&)> done, Result failure, const std::string& what, const std::string& name);
    // Queues `script`, which writes the answer file `name`, and hands that file's text to `read`; a bus error
    // fails the call.
    template <class Result>
    void run(const std::string& script, const std::string& name, const Answer<Result>& finish,
             std::function<void(const std::string& answer)> read);

    SessionBus& bus_;
    DropFolder& answers_;
    int calls_ = 0;
};

}  // namespace kro
