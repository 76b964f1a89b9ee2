#include "bridges/InkscapeBridge.h"

#include <expat.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <memory>


namespace kro {
namespace {

constexpr const char* kStyleElement = "http://www.inkscape.org/namespaces/inkscape|clipboard";
// The clipboard changes hands a moment after the copy; Inkscape's document is looked for this often, this
// many times, before the read gives up.
constexpr Seconds kClipboardPoll{0.05};
constexpr int kClipboardAttempts = 12;

std::string slotName(PickerPlugin slot) { return slot == PickerPlugin::primary ? "fill" : "stroke"; }

std::string trimmed(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
    return std::string(text);
}

// The value of one property in a style attribute ("fill:#ff0080;stroke:none").
std::optional<std::string> styleProperty(const std::string& style, const std::string& property) {
    size_t start = 0;
    while (start <= style.size()) {
        auto end = style.find(';', start);
        if (end == std::string::npos) end = style.size();
        const auto declaration = std::string_view(style).substr(start, end - start);
        const auto colon = declaration.find(':');
        if (colon != std::string_view::npos && trimmed(declaration.substr(0, colon)) == property) {
            return trimmed(declaration.substr(colon + 1));
        }
        start = end + 1;
    }
    return std::nullopt;
}

struct StyleSearch {
    XML_Parser parser;
    std::optional<std::string> style;
};

void XMLCALL startElement(void* data, const XML_Char* name, const XML_Char** attributes) {
    auto* search = static_cast<StyleSearch*>(data);
    if (std::string_view(name) != kStyleElement) return;
    for (int i = 0; attributes[i]; i += 2) {
        if (std::string_view(attributes[i]) == "style") search->style = attributes[i + 1];
    }
    XML_StopParser(search->parser, XML_FALSE);
}

}  // namespace

DBusCall InkscapeActions::activate(const std::string& action, const std::optional<std::string>& parameter) {
    DBusStringVariants parameters;
    if (parameter) parameters.values.push_back(*parameter);
    return {"org.inkscape.Inkscape", "/org/inkscape/Inkscape", "org.gtk.Actions", "Activate",
            {action, parameters, DBusEmptyDictionary{}}};
}

bool InkscapeActions::isUnreachable(const std::string& error) {
    // A program that hangs or dies mid-call has the same name on the bus: only a missing one is unreachable.
    for (const char* name : {"ServiceUnknown", "NameHasNoOwner", "UnknownObject", "UnknownInterface", "UnknownMethod", "InvalidArgs"}) {
        if (error.find(name) != std::string::npos) return true;
    }
    return false;
}

DBusCall InkscapeActions::setProperty(PickerPlugin slot, const Rgb8& color) {
    return activate("object-set-property", slotName(slot) + "," + cssHex(color));
}

std::optional<ColorValue> InkscapeActions::readClipboardStyle(const std::string& svg, PickerPlugin slot) {
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(XML_ParserCreateNS(nullptr, '|'),
                                                                                          &XML_ParserFree);
    if (!parser) return std::nullopt;
    StyleSearch search{parser.get(), std::nullopt};
    XML_SetUserData(parser.get(), &search);
    XML_SetStartElementHandler(parser.get(), startElement);
    // Stopping at the style element ends the parse early; anything short of it is not Inkscape's document.
    XML_Parse(parser.get(), svg.data(), static_cast<int>(std::min<size_t>(svg.size(), INT_MAX)), XML_TRUE);
    if (!search.style) return std::nullopt;
    const auto value = styleProperty(*search.style, slotName(slot));
    return value ? cssColor(*value) : std::nullopt;
}

void InkscapeBridge::getColor(PickerPlugin slot, GetDone done) {
    const Answer<std::vector<ColorValue>> finish(std::move(done), {}, "Inkscape get " + slotName(slot));
    bus_.call(InkscapeActions::activate("copy"), kBridgeTimeLimit, [this, slot, finish](const std::optional<std::string>& error) {
        if (!finish.pending()) return;
        if (error && !InkscapeActions::isUnreachable(*error)) return finish.fail("Inkscape does not answer (" + *error + ")");
        // An Inkscape without its actions on the bus still copies on Ctrl+C, when a window of it is there.
        if (error && (!simulateCopy_ || !simulateCopy_())) {
            return finish.fail("Inkscape's actions cannot be reached (" + *error + "), and no window of it can copy");
        }
        readClipboard(slot, finish);
    });
}

void InkscapeBridge::readClipboard(PickerPlugin slot, const Answer<std::vector<ColorValue>>& finish, int attempt) {
    if (!finish.pending()) return;
    const auto text = clipboard_ ? clipboard_->text() : std::nullopt;
    if (const auto color = text ? InkscapeActions::readClipboardStyle(*text, slot) : std::nullopt) return finish({*color});
    if (attempt + 1 >= kClipboardAttempts) {
        return finish.fail("Inkscape put no selection with a plain " + slotName(slot) + " color on the clipboard");
    }
    env().mainQueue->post([this, slot, finish, attempt] { readClipboard(slot, finish, attempt + 1); }, kClipboardPoll);
}

void InkscapeBridge::setColor(PickerPlugin slot, const ColorValue& color, SetDone done) {
    const Answer<bool> finish(std::move(done), false, "Inkscape set " + slotName(slot));
    // The action has run on the selection by the time Inkscape answers.
    bus_.call(InkscapeActions::setProperty(slot, rgb8(color)), kBridgeTimeLimit, [finish](const std::optional<std::string>& error) {
        if (error) return finish.fail("Inkscape did not run the action (" + *error + ")");
        finish(true);
    });
}

}  // namespace kro
