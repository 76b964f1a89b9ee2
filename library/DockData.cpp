#include "library/DockData.h"

#include <memory>

#include "library/DefaultsKeys.h"
#include "library/DefaultsValue.h"
#include "library/Notifications.h"
#include "platform/Environment.h"
#include "platform/CaseText.h"

namespace kro {

std::string text(DockWindowPosition position) {
    switch (position) {
        case DockWindowPosition::left: return "left";
        case DockWindowPosition::top: return "top";
        case DockWindowPosition::right: return "right";
        case DockWindowPosition::bottom: return "bottom";
    }
    return "left";
}

std::optional<DockWindowPosition> dockWindowPositionFromText(const std::string& value) {
    return caseFromText<DockWindowPosition>(
        value, {DockWindowPosition::left, DockWindowPosition::top, DockWindowPosition::right, DockWindowPosition::bottom});
}

namespace {

constexpr const char* kWriter = "saveDockData(_:forKey:logName:logValue:notifications:encoder:)";
constexpr const char* kReader = "loadDockData(forKey:logName:level:decoder:assign:)";

using TextsCodec = DefaultsCodec<std::vector<std::string>>;
using PositionCodec = DefaultsEnumCodec<DockWindowPosition, dockWindowPositionFromText>;
using OptionalIntCodec = DefaultsCodec<std::optional<int>>;
using OptionalNumberCodec = DefaultsCodec<std::optional<double>>;

std::unique_ptr<DockData>& instance() {
    static std::unique_ptr<DockData> dock;
    return dock;
}

}  // namespace

#define KRO_DOCK_FIELDS(visit)                                                                     \
    visit(TextsCodec, dockHiddenPalettes_, DefaultsKeys::dockHiddenPalettes, "dockHiddenPalettes"); \
    visit(PositionCodec, position_, DefaultsKeys::dockPosition, "position");                       \
    visit(OptionalIntCodec, screenIndex_, DefaultsKeys::dockScreenIndex, "screenIndex");           \
    visit(OptionalNumberCodec, posX_, DefaultsKeys::dockPosX, "posX");                             \
    visit(OptionalNumberCodec, posY_, DefaultsKeys::dockPosY, "posY")

DockData& DockData::shared() {
    auto& dock = instance();
    if (!dock) dock.reset(new DockData());
    return *dock;
}

void DockData::resetSharedForTesting() { instance().reset(new DockData()); }

void DockData::load() {
#define KRO_READ(Codec, field, key, logName) readDefaultsField<Codec>(field, key, logName, SherlogLevel::debug, kReader)
    KRO_DOCK_FIELDS(KRO_READ);
#undef KRO_READ
}

void DockData::resetToDefaults() {
    *this = DockData();
#define KRO_WRITE(Codec, field, key, logName) env().defaults->setData(key, compactText(Codec::encode(field)))
    KRO_DOCK_FIELDS(KRO_WRITE);
#undef KRO_WRITE
}

#define KRO_SETTER(Name, Codec, field, key, logName)                                                         \
    void DockData::Name(decltype(field) value) {                                                             \
        writeDefaultsField<Codec>(field, std::move(value), suppressSideEffects_, key, logName,               \
                                  {Notifications::preferencesUpdated, Notifications::dockUpdated}, kWriter); \
    }
KRO_SETTER(setDockHiddenPalettes, TextsCodec, dockHiddenPalettes_, DefaultsKeys::dockHiddenPalettes,
           "dockHiddenPalettes")
KRO_SETTER(setPosition, PositionCodec, position_, DefaultsKeys::dockPosition, "position")
KRO_SETTER(setScreenIndex, OptionalIntCodec, screenIndex_, DefaultsKeys::dockScreenIndex, "screenIndex")
KRO_SETTER(setPosX, OptionalNumberCodec, posX_, DefaultsKeys::dockPosX, "posX")
KRO_SETTER(setPosY, OptionalNumberCodec, posY_, DefaultsKeys::dockPosY, "posY")
#undef KRO_SETTER

}  // namespace kro
