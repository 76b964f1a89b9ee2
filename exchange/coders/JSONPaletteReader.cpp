#include "exchange/coders/JSONPaletteReader.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "exchange/PalErrors.h"
#include "platform/Json.h"

namespace PAL {

namespace {

using Json = kro::Json;

CommonError invalidFormat() { return CommonError(CommonError::Case::invalidFormat); }

// What a field's value turned out to be; for a value of the wrong kind only that matters.
enum class Kind : std::uint8_t { absent, string, number, array, other };

struct TextField {
    Kind kind = Kind::absent;
    std::string text;
};

// The "colors" of the palette or of a group: the colours read so far, or the error of the first one
// refused (the colours after it are still parsed, for the syntax, but not kept).
struct ColorList {
    Kind kind = Kind::absent;
    std::vector<Color> colors;
    std::optional<CommonError> error;

    void refuse(CommonError refusal) {
        if (!error) error = std::move(refusal);
    }
};

// The fields of the colour object being read.
struct ColorFields {
    TextField name, space, type;
    Kind componentsKind = Kind::absent;
    bool componentsAreNumbers = true;
    std::size_t componentCount = 0;
    double components[4] = {};
    Kind alphaKind = Kind::absent;
    double alpha = 1;

    // Keeps the texts' storage for the next colour.
    void reset() {
        name.kind = space.kind = type.kind = Kind::absent;
        componentsKind = alphaKind = Kind::absent;
        componentsAreNumbers = true;
        componentCount = 0;
    }
};

struct GroupFields {
    TextField name;
    ColorList colors;
};

// What a value is for, from where it stands in the document.
enum class Role : std::uint8_t {
    document,
    palette,
    paletteName,
    paletteColors,
    paletteGroups,
    colorList,
    color,
    colorName,
    colorSpace,
    colorComponents,
    component,
    colorType,
    colorAlpha,
    groupList,
    group,
    groupName,
    groupColors,
    ignored,
};

// The parser's events, in the shape nlohmann's sax_parse calls.
class PaletteEvents {
public:
    bool null() { return value(Kind::other); }
    bool boolean(bool) { return value(Kind::other); }
    bool number_integer(Json::number_integer_t number) { return value(Kind::number, static_cast<double>(number)); }
    bool number_unsigned(Json::number_unsigned_t number) { return value(Kind::number, static_cast<double>(number)); }
    bool number_float(Json::number_float_t number, const std::string&) { return value(Kind::number, number); }
    bool string(std::string& text) { return value(Kind::string, 0, &text); }
    bool binary(Json::binary_t&) { return value(Kind::other); }
    bool start_object(std::size_t);
    bool key(std::string& key);
    bool end_object();
    bool start_array(std::size_t);
    bool end_array() {
        frames.pop_back();
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) { return false; }

    // The palette of a document that parsed.
    Palette palette();

private:
    struct Frame {
        Role role;
        Role next;  // the role of the container's next value
    };
    Role nextRole() const { return frames.empty() ? Role::document : frames.back().next; }
    // A scalar, or a container where a scalar belongs, as `kind`.
    bool value(Kind kind, double number = 0, const std::string* text = nullptr);
    void finishColor();
    void finishGroup();

    std::vector<Frame> frames;
    bool rootIsObject = false;
    TextField paletteName;
    ColorList paletteColors;
    Kind groupsKind = Kind::absent;
    std::vector<Group> groups;
    std::optional<CommonError> groupsError;
    ColorList* currentList = nullptr;  // the list the colour being read belongs to
    ColorFields color;
    GroupFields group;
};

void setText(TextField& field, Kind kind, const std::string* text) {
    field.kind = kind;
    if (text) field.text.assign(*text);
}

bool PaletteEvents::value(Kind kind, double number, const std::string* text) {
    switch (nextRole()) {
        case Role::paletteName: setText(paletteName, kind, text); break;
        case Role::paletteColors: paletteColors.kind = kind; break;
        case Role::paletteGroups: groupsKind = kind; break;
        case Role::color: currentList->refuse(invalidFormat()); break;  // not an object
        case Role::colorName: setText(color.name, kind, text); break;
        case Role::colorSpace: setText(color.space, kind, text); break;
        case Role::colorComponents: color.componentsKind = kind; break;
        case Role::component:
            if (kind != Kind::number) color.componentsAreNumbers = false;
            else if (color.componentCount < 4) color.components[color.componentCount] = number;
            ++color.componentCount;
            break;
        case Role::colorType: setText(color.type, kind, text); break;
        case Role::colorAlpha:
            color.alphaKind = kind;
            color.alpha = number;
            break;
        case Role::group:
            if (!groupsError) groupsError = invalidFormat();  // not an object
            break;
        case Role::groupName: setText(group.name, kind, text); break;
        case Role::groupColors: group.colors.kind = kind; break;
        case Role::document:
        case Role::palette:
        case Role::colorList:
        case Role::groupList:
        case Role::ignored: break;
    }
    return true;
}

bool PaletteEvents::start_object(std::size_t) {
    switch (nextRole()) {
        case Role::document:
            rootIsObject = true;
            frames.push_back({Role::palette, Role::ignored});
            return true;
        case Role::color:
            color.reset();
            frames.push_back({Role::color, Role::ignored});
            return true;
        case Role::group:
            group.name.kind = Kind::absent;
            group.colors = ColorList{};
            frames.push_back({Role::group, Role::ignored});
            return true;
        default:
            value(Kind::other);
            frames.push_back({Role::ignored, Role::ignored});
            return true;
    }
}

bool PaletteEvents::start_array(std::size_t) {
    switch (nextRole()) {
        case Role::paletteColors:
        case Role::groupColors:
            currentList = nextRole() == Role::paletteColors ? &paletteColors : &group.colors;
            currentList->kind = Kind::array;
            frames.push_back({Role::colorList, Role::color});
            return true;
        case Role::paletteGroups:
            groupsKind = Kind::array;
            frames.push_back({Role::groupList, Role::group});
            return true;
        case Role::colorComponents:
            color.componentsKind = Kind::array;
            frames.push_back({Role::colorComponents, Role::component});
            return true;
        default:
            value(Kind::other);
            frames.push_back({Role::ignored, Role::ignored});
            return true;
    }
}

// A repeated key counts by its last value, so each key starts its field afresh.
bool PaletteEvents::key(std::string& key) {
    Frame& frame = frames.back();
    frame.next = Role::ignored;
    switch (frame.role) {
        case Role::palette:
            if (key == "name") {
                paletteName.kind = Kind::absent;
                frame.next = Role::paletteName;
            } else if (key == "colors") {
                paletteColors = ColorList{};
                frame.next = Role::paletteColors;
            } else if (key == "groups") {
                groupsKind = Kind::absent;
                groups.clear();
                groupsError.reset();
                frame.next = Role::paletteGroups;
            }
            break;
        case Role::color:
            if (key == "name") {
                color.name.kind = Kind::absent;
                frame.next = Role::colorName;
            } else if (key == "colorSpace") {
                color.space.kind = Kind::absent;
                frame.next = Role::colorSpace;
            } else if (key == "colorComponents") {
                color.componentsKind = Kind::absent;
                color.componentsAreNumbers = true;
                color.componentCount = 0;
                frame.next = Role::colorComponents;
            } else if (key == "colorType") {
                color.type.kind = Kind::absent;
                frame.next = Role::colorType;
            } else if (key == "alpha") {
                color.alphaKind = Kind::absent;
                frame.next = Role::colorAlpha;
            }
            break;
        case Role::group:
            if (key == "name") {
                group.name.kind = Kind::absent;
                frame.next = Role::groupName;
            } else if (key == "colors") {
                group.colors = ColorList{};
                frame.next = Role::groupColors;
            }
            break;
        default: break;
    }
    return true;
}

bool PaletteEvents::end_object() {
    const Role role = frames.back().role;
    frames.pop_back();
    if (role == Role::color) finishColor();
    if (role == Role::group) finishGroup();
    return true;
}

// The checks of a colour in the order the tree reading makes them.
void PaletteEvents::finishColor() {
    if (currentList->error) return;
    const auto refuse = [&](CommonError error) { currentList->refuse(std::move(error)); };
    if (color.name.kind != Kind::absent && color.name.kind != Kind::string) return refuse(invalidFormat());
    if (color.space.kind != Kind::string) return refuse(invalidFormat());
    const auto space = colorSpaceFromText(color.space.text);
    if (!space) return refuse(CommonError(CommonError::Case::unknownColorMode, color.space.text));
    if (color.componentsKind != Kind::array || !color.componentsAreNumbers) return refuse(invalidFormat());
    if (color.componentCount != static_cast<std::size_t>(componentCount(*space)))
        return refuse(CommonError(CommonError::Case::invalidColorComponentCountForModelType));
    ColorType type = ColorType::global;
    if (color.type.kind != Kind::absent) {
        const auto parsed = color.type.kind == Kind::string ? colorTypeFromText(color.type.text) : std::nullopt;
        if (!parsed) return refuse(invalidFormat());
        type = *parsed;
    }
    if (color.alphaKind != Kind::absent && color.alphaKind != Kind::number) return refuse(invalidFormat());
    currentList->colors.emplace_back(*space, Components(color.components, color.componentCount),
                                     color.alphaKind == Kind::absent ? 1.0 : color.alpha,
                                     color.name.kind == Kind::absent ? std::string() : color.name.text, type);
}

// A group needs its colours; they are judged before its name.
void PaletteEvents::finishGroup() {
    if (groupsError) return;
    if (group.colors.kind != Kind::array) groupsError = invalidFormat();
    else if (group.colors.error) groupsError = std::move(group.colors.error);
    else if (group.name.kind != Kind::absent && group.name.kind != Kind::string) groupsError = invalidFormat();
    else groups.emplace_back(group.name.kind == Kind::absent ? std::string() : group.name.text, std::move(group.colors.colors));
}

Palette PaletteEvents::palette() {
    if (!rootIsObject || paletteColors.kind != Kind::array) throw invalidFormat();
    if (paletteColors.error) throw *paletteColors.error;
    if (paletteName.kind != Kind::absent && paletteName.kind != Kind::string) throw invalidFormat();
    Palette palette(paletteName.kind == Kind::absent ? std::string() : paletteName.text, std::move(paletteColors.colors));
    if (groupsKind != Kind::absent) {
        if (groupsKind != Kind::array) throw invalidFormat();
        if (groupsError) throw *groupsError;
        palette.groups = std::move(groups);
    }
    return palette;
}

}  // namespace

Palette readJSONPalette(std::string_view text) {
    PaletteEvents events;
    if (!Json::sax_parse(text.begin(), text.end(), &events)) throw invalidFormat();
    return events.palette();
}

}  // namespace PAL
