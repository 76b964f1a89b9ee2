#pragma once
// A pick asked for on the command line (`kro pick`): one JSON object
//   {"pick": {"count": N, "format": NAME}} or {"pick": {"count": N, "template": TEXT}}
// answered, once the person has picked N colours, with {"ok": true, "lines": [text...]}, one line per
// colour in the format asked for (the selected one when none is); or with {"ok": false, "error": text} when
// a session ends without a pick, the loupe is already open, or the format does not exist.
#include <optional>
#include <string>
#include <vector>

#include "platform/ColorValue.h"
#include "platform/Json.h"

namespace kro {

bool isPickRequest(const Json& request);

struct PickRequest {
    static constexpr int kMaxCount = 10000;

    int count = 1;
    std::optional<std::string> formatName;
    std::optional<std::string> templateText;
    std::vector<std::string> lines;
    // A colour was picked in the session now open; a session that ends without one ends the request.
    bool pickedThisSession = false;

    // Nothing, with the reason in `error`, when the request cannot be done.
    static std::optional<PickRequest> read(const Json& request, std::string& error);
    // The colour's text in the request's format.
    std::string render(const ColorValue& color) const;
    bool done() const { return static_cast<int>(lines.size()) >= count; }
};

}  // namespace kro
