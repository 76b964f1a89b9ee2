#pragma once
// The colour dock's place and the palettes it hides. Every setter stores, logs and posts
// "PreferencesUpdated" then "DockUpdated".
#include <optional>
#include <string>
#include <vector>

namespace kro {

enum class DockWindowPosition { left, top, right, bottom };
std::string text(DockWindowPosition position);
std::optional<DockWindowPosition> dockWindowPositionFromText(const std::string& value);

class DockData {
public:
    static DockData& shared();
    static void resetSharedForTesting();

    void load();
    // Every field back to its default and written, with side effects suppressed; posts nothing.
    void resetToDefaults();

    bool suppressSideEffects() const { return suppressSideEffects_; }
    void setSuppressSideEffects(bool value) { suppressSideEffects_ = value; }

    // Palette uuids.
    const std::vector<std::string>& dockHiddenPalettes() const { return dockHiddenPalettes_; }
    void setDockHiddenPalettes(std::vector<std::string> value);
    DockWindowPosition position() const { return position_; }
    void setPosition(DockWindowPosition value);
    std::optional<int> screenIndex() const { return screenIndex_; }
    void setScreenIndex(std::optional<int> value);
    std::optional<double> posX() const { return posX_; }
    void setPosX(std::optional<double> value);
    std::optional<double> posY() const { return posY_; }
    void setPosY(std::optional<double> value);

private:
    DockData() = default;

    bool suppressSideEffects_ = false;
    std::vector<std::string> dockHiddenPalettes_;
    DockWindowPosition position_ = DockWindowPosition::left;
    std::optional<int> screenIndex_;
    std::optional<double> posX_;
    std::optional<double> posY_;
};

}  // namespace kro
