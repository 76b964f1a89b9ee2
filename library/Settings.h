#pragma once
// Window frames and sort orders. Every setter stores, logs and posts "SettingsUpdated".
#include <optional>
#include <string>

#include "library/Palette.h"

namespace kro {

// The order of the format list. Stored by case name; the labels the list shows belong to the catalogue.
enum class ColorFormatSort { dateASC, dateDESC, nameASC, nameDESC };
std::string text(ColorFormatSort sort);
std::optional<ColorFormatSort> colorFormatSortFromText(const std::string& value);

struct SettingsSize {
    double width = 0;
    double height = 0;
    bool operator==(const SettingsSize&) const = default;
};

struct SettingsRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(const SettingsRect&) const = default;
};

// A window's frame and how it was placed ("center", "remembered"…, as the window decides).
struct SettingsFrame {
    SettingsRect frame;
    std::string position;
    bool operator==(const SettingsFrame&) const = default;
};

class Settings {
public:
    static Settings& shared();
    static void resetSharedForTesting();

    void load();
    // Every field back to its default and written, with side effects suppressed; posts nothing.
    void resetToDefaults();

    bool suppressSideEffects() const { return suppressSideEffects_; }
    void setSuppressSideEffects(bool value) { suppressSideEffects_ = value; }

    bool listView() const { return listView_; }
    void setListView(bool value);
    const std::optional<SettingsFrame>& mainFrame() const { return mainFrame_; }
    void setMainFrame(std::optional<SettingsFrame> value);
    const std::optional<SettingsSize>& menuSize() const { return menuSize_; }
    void setMenuSize(std::optional<SettingsSize> value);
    const std::optional<std::string>& colorPanelFormat() const { return colorPanelFormat_; }
    void setColorPanelFormat(std::optional<std::string> value);
    PaletteColorSort colorSort() const { return colorSort_; }
    void setColorSort(PaletteColorSort value);
    ColorFormatSort formatSort() const { return formatSort_; }
    void setFormatSort(ColorFormatSort value);

private:
    Settings() = default;

    bool suppressSideEffects_ = false;
    bool listView_ = false;
    std::optional<SettingsFrame> mainFrame_;
    std::optional<SettingsSize> menuSize_;
    std::optional<std::string> colorPanelFormat_;
    PaletteColorSort colorSort_ = PaletteColorSort::none;
    ColorFormatSort formatSort_ = ColorFormatSort::dateASC;
};

}  // namespace kro
