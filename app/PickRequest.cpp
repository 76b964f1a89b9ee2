#include "app/PickRequest.h"

#include "formats/ColorFormatParse.h"
#include "formats/ColorFormats.h"

namespace kro {

bool isPickRequest(const Json& request) { return request.is_object() && request.contains("pick"); }

std::optional<PickRequest> PickRequest::read(const Json& request, std::string& error) {
    const auto& body = request["pick"];
    if (!body.is_object()) {
        error = "the agent did not understand the request";
        return std::nullopt;
    }
    PickRequest pick;
    const auto count = body.value("count", Json(1));
    if (!count.is_number_integer() || count.get<long long>() < 1 || count.get<long long>() > kMaxCount) {
        error = "the count of colors must be a whole number from 1 to " + std::to_string(kMaxCount);
        return std::nullopt;
    }
    pick.count = count.get<int>();
    if (body.contains("format") && body["format"].is_string()) pick.formatName = body["format"].get<std::string>();
    if (body.contains("template") && body["template"].is_string()) pick.templateText = body["template"].get<std::string>();
    if (pick.formatName && !ColorFormats::shared().format(*pick.formatName)) {
        error = "no format named \"" + *pick.formatName + "\"";
        return std::nullopt;
    }
    return pick;
}

std::string PickRequest::render(const ColorValue& color) const {
    if (templateText) return ColorFormatParse::parse(color, *templateText);
    return ColorFormats::shared().clipboardString(color, formatName);
}

}  // namespace kro
