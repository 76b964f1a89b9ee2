#include "library/User.h"

#include "library/CloudHook.h"
#include "library/JsonDecode.h"
#include "library/LibraryEncoder.h"
#include "library/RecordText.h"
#include "library/Notifications.h"
#include "library/Sherlog.h"
#include "library/UserUndo.h"
#include "platform/Environment.h"

namespace kro {
namespace {

// The file is written straight from the encoding's pieces: a large library's text is never copied whole.
bool saveWhole(const EncodedLibrary& encoded) { return User::store().savePieces(encoded.views()); }

std::shared_ptr<User>& sharedInstance() {
    static std::shared_ptr<User> user;
    return user;
}

}  // namespace

User::User()
    : uuid(newUUID()),
      history(makeHistory()),
      palettes{makeFirstPalette()},
      createdAt(dateText(env().clock->now())) {}

User::User(Undecoded) {}

const std::shared_ptr<User>& User::shared() {
    auto& user = sharedInstance();
    if (!user) user = std::make_shared<User>();
    return user;
}

void User::resetShared() {
    sharedInstance() = std::make_shared<User>();
    store().forget();
}

PaletteRef User::makeHistory() {
    auto history = std::make_shared<Palette>();
    history->name = "Color History";
    history->originalName = "Color History";
    history->isHistory = true;
    return history;
}

PaletteRef User::makeFirstPalette() {
    struct Swatch {
        const char* name;
        double red, green, blue;
    };
    static const Swatch swatches[] = {
        {"Inch Worm", 0.69, 0.96, 0.4},       {"Eucalyptus", 0.29, 0.95, 0.63},
        {"Maya Blue", 0.36, 0.79, 0.96},      {"Majorelle Blue", 0.4, 0.22, 0.94},
        {"Pale Magenta", 0.97, 0.54, 0.88},
    };
    auto palette = std::make_shared<Palette>();
    palette->name = "Your First Palette!";
    palette->originalName = "Your First Palette!";
    for (const auto& swatch : swatches) {
        palette->colors.push_back(Color::make(ColorValue::rgb(swatch.red, swatch.green, swatch.blue), swatch.name));
    }
    return palette;
}

Json User::toJson() const {
    Json json = Json::object();
    json["uuid"] = uuid;
    json["history"] = history->toJson();
    if (paletteUUID) json["paletteUUID"] = *paletteUUID;
    Json array = Json::array();
    for (const auto& palette : palettes) array.push_back(palette->toJson());
    json["palettes"] = std::move(array);
    json["createdAt"] = createdAt;
    if (updatedAt) json["updatedAt"] = *updatedAt;
    return json;
}

std::string User::jsonText() const {
    std::string out;
    size_t colorCount = history->colors.size();
    for (const auto& palette : palettes) colorCount += palette->colors.size();
    out.reserve(512 + 320 * colorCount);
    appendJsonText(out, [](const Palette& palette, std::string& text) { palette.appendJsonText(text); });
    return out;
}

void User::appendJsonText(std::string& out, const PaletteWriter& appendPalette) const {
    using namespace record_text;
    bool first = true;
    out += '{';
    appendKey(out, "uuid", first), appendString(out, uuid);
    appendKey(out, "history", first), appendPalette(*history, out);
    if (paletteUUID) appendKey(out, "paletteUUID", first), appendString(out, *paletteUUID);
    appendKey(out, "palettes", first);
    out += '[';
    for (size_t i = 0; i < palettes.size(); ++i) {
        if (i) out += ',';
        appendPalette(*palettes[i], out);
    }
    out += ']';
    appendKey(out, "createdAt", first), appendString(out, createdAt);
    if (updatedAt) appendKey(out, "updatedAt", first), appendString(out, *updatedAt);
    out += '}';
}

std::shared_ptr<User> User::fromJson(const Json& json) {
    using namespace json_decode;
    const auto& o = object(json, "User");
    std::shared_ptr<User> user(new User(Undecoded{}));
    user->uuid = text(o, "uuid").value_or(newUUID());
    const Json* history = member(o, "history");
    user->history = history ? Palette::fromJson(*history) : makeHistory();
    user->paletteUUID = text(o, "paletteUUID");
    if (const Json* palettes = member(o, "palettes")) {
        if (!palettes->is_array()) throw JsonDecodeError("\"palettes\" is not an array");
        user->palettes.reserve(palettes->size());
        for (const auto& palette : *palettes) user->palettes.push_back(Palette::fromJson(palette));
    } else {
        user->palettes.push_back(makeFirstPalette());
    }
    user->createdAt = text(o, "createdAt").value_or(dateText(env().clock->now()));
    user->updatedAt = text(o, "updatedAt");
    return user;
}

const Store& User::store() {
    static const Store store({"user.json", Notifications::userLoaded, Notifications::userSaved});
    return store;
}

void User::load(const StoreCompletion& completion) {
    store().load([](const Json& json) { return User::fromJson(json); },
                 [this](const std::shared_ptr<User>& loaded, bool migrating) {
                     // The stored time is kept, not stamped: a library is as old as its last change, and
                     // only then does the first comparison with the sync server tell which side is newer.
                     // Pushing from here would put an old library over newer work from another machine.
                     copyFields(*loaded, true);
                     // A library found only in an older version folder is written to the present one.
                     if (migrating) save();
                 },
                 completion);
}

bool User::save() const { return saveWhole(LibraryEncoder::shared().encode(*this)); }

void User::moveUpdatedAt() {
    using namespace std::chrono;
    const auto now = floor<seconds>(env().clock->now());
    const auto parsed = updatedAt ? parseDateText(*updatedAt) : std::nullopt;
    const auto last = parsed.value_or(now);
    updatedAt = dateText(last >= now ? last + seconds(1) : now);
}

void User::trigger(bool undo, bool save, bool notify, bool cloud, const char* file, const char* function, int line) {
    moveUpdatedAt();
    runPipelineAfterStamp(undo, save, notify, cloud, file, function, line);
}

void User::runPipelineAfterStamp(bool undo, bool save, bool notify, bool cloud, const char* file,
                                 const char* function, int line) {
    // Encoded once for both the undo state and the file, re-encoding only what changed since the last time.
    if (undo || save) {
        const auto encoded = LibraryEncoder::shared().encode(*this);
        if (undo) UserUndo::shared().saveEncoded(encoded, 0, file, function, line);
        if (save) saveWhole(encoded);
    }
    if (notify) env().notifications->post(Notifications::userUpdated);
    if (cloud) updateCloudKit(file, function, line);
}

bool User::copyFields(const User& other, bool includeUpdatedAt) {
    bool changed = false;
    auto copy = [&changed](auto& field, const auto& value, auto same) {
        if (!same(field, value)) {
            field = value;
            changed = true;
        }
    };
    auto equal = [](const auto& a, const auto& b) { return a == b; };
    copy(uuid, other.uuid, equal);
    copy(history, other.history, [](const PaletteRef& a, const PaletteRef& b) { return *a == *b; });
    copy(paletteUUID, other.paletteUUID, equal);
    copy(palettes, other.palettes, [](const auto& a, const auto& b) { return samePalettes(a, b); });
    copy(createdAt, other.createdAt, equal);
    // A time that is not a date counts as unknown, which loses to any record's time: it must never make a
    // library look newer than it is.
    const auto otherUpdatedAt = other.updatedAt && parseDateText(*other.updatedAt) ? other.updatedAt : std::nullopt;
    if (includeUpdatedAt) copy(updatedAt, otherUpdatedAt, equal);
    return changed;
}

bool User::operator==(const User& other) const {
    return uuid == other.uuid && *history == *other.history && paletteUUID == other.paletteUUID &&
           samePalettes(palettes, other.palettes) && createdAt == other.createdAt && updatedAt == other.updatedAt;
}

}  // namespace kro
