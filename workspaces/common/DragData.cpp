#include "workspaces/common/DragData.h"

#include <QColor>
#include <QUrl>

#include "documents/DocumentHandler.h"
#include "formats/ColorFormats.h"
#include "formats/color/ImportColor.h"
#include "library/Sherlog.h"
#include "library/User.h"
#include "platform/Json.h"
#include "workspaces/common/LibraryActions.h"
#include "workspaces/common/Swatch.h"

namespace kro::DragData {
namespace {

QByteArray payload(const Json& json) { return QByteArray::fromStdString(compactText(json)); }

std::optional<Json> ourPayload(const QMimeData& data, const char* type) {
    if (!data.hasFormat(type)) return std::nullopt;
    auto json = Json::parse(data.data(type).toStdString(), nullptr, false);
    if (!json.is_object()) return std::nullopt;
    return json;
}

std::string clipboardTexts(const std::vector<ColorRef>& colors) {
    std::string text;
    for (const auto& color : colors) {
        if (!text.empty()) text += "\n";
        text += ColorFormats::shared().clipboardString(color->colorValue());
    }
    return text;
}

std::vector<std::string> localFiles(const QMimeData& data) {
    std::vector<std::string> paths;
    for (const auto& url : data.urls()) {
        if (url.isLocalFile()) paths.push_back(url.toLocalFile().toStdString());
    }
    return paths;
}

// Colours of another program: its colour value, else the colours written in its text.
std::vector<ColorRef> foreignColors(const QMimeData& data) {
    std::vector<ColorRef> colors;
    if (data.hasColor()) {
        const auto color = qvariant_cast<QColor>(data.colorData()).toRgb();
        colors.push_back(Color::make(ColorValue::rgb(color.redF(), color.greenF(), color.blueF(), color.alphaF())));
    } else if (data.hasText()) {
        for (const auto& value : ImportColor::colors(data.text().toStdString(), allImportColorPatterns())) {
            colors.push_back(Color::make(value));
        }
    }
    return colors;
}

}  // namespace

std::unique_ptr<QMimeData> colors(const Palette& palette, const std::vector<ColorRef>& colors) {
    auto data = std::make_unique<QMimeData>();
    Json uuids = Json::array();
    for (const auto& color : colors) uuids.push_back(color->uuid);
    data->setData(colorType, payload(Json{{"palette", palette.uuid}, {"colors", uuids}}));
    data->setText(QString::fromStdString(clipboardTexts(colors)));
    if (!colors.empty()) data->setColorData(displayColor(*colors.front()));
    return data;
}

std::unique_ptr<QMimeData> palette(const Palette& palette) {
    auto data = std::make_unique<QMimeData>();
    data->setData(paletteType, payload(Json{{"palette", palette.uuid}}));
    data->setText(QString::fromStdString(clipboardTexts(palette.colors)));
    return data;
}

std::optional<ColorDrag> colorDrag(const QMimeData& data) {
    const auto json = ourPayload(data, colorType);
    if (!json || !(*json)["palette"].is_string() || !(*json)["colors"].is_array()) return std::nullopt;
    auto source = User::shared()->palette((*json)["palette"].get<std::string>());
    if (!source) return std::nullopt;
    ColorDrag drag{source, {}};
    for (const auto& uuid : (*json)["colors"]) {
        if (!uuid.is_string()) continue;
        for (const auto& color : source->colors) {
            if (color->uuid == uuid.get<std::string>()) drag.colors.push_back(color);
        }
    }
    if (drag.colors.empty()) return std::nullopt;
    return drag;
}

PaletteRef paletteDrag(const QMimeData& data) {
    const auto json = ourPayload(data, paletteType);
    if (!json || !(*json)["palette"].is_string()) return nullptr;
    return User::shared()->palette((*json)["palette"].get<std::string>());
}

bool accepts(const QMimeData& data) {
    return data.hasFormat(colorType) || !localFiles(data).empty() || data.hasColor() || data.hasText();
}

bool drop(const QMimeData& data, const PaletteRef& target, size_t index, bool copy, LibraryActions& actions) {
    SHERLOG("Drop of " + data.formats().join(", ").toStdString() + " on " + target->name.value_or("<null>"),
            SherlogLevel::debug);
    auto& user = *User::shared();
    if (data.hasFormat(colorType)) {
        const auto drag = colorDrag(data);
        if (!drag) return false;
        if (copy && drag->palette != target) {
            return actions.edit(*target, [&] { return user.copyColors(drag->colors, target, index); });
        }
        if (drag->palette->lock) {
            actions.notice(LibraryActions::lockedReason(*drag->palette));
            return false;
        }
        return actions.edit(*target, [&] { return user.moveColors(drag->palette, drag->colors, target, index); });
    }
    if (const auto files = localFiles(data); !files.empty()) {
        // Files become palettes of their own, as when they are opened with Kro.
        ImportSummary summary;
        const bool changed = actions.run([&] {
            summary = DocumentHandler::openFiles(files);
            return summary.importedAnything();
        });
        actions.notice(summary.message());
        return changed;
    }
    const auto found = foreignColors(data);
    if (found.empty()) return false;
    return actions.edit(*target, [&] { return user.copyColors(found, target, index); });
}

}  // namespace kro::DragData
