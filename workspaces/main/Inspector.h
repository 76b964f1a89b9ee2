#pragma once
// The inspector beside the colour grid: one colour, large, with its name, its text in every format of the
// catalogue (a click copies that text), its components, its contrast against white and black, and how it
// looks to people with each colour-vision deficiency. It shows a library colour (named by uuid and read
// live, so an edit anywhere shows at once) or a colour picked for it that is not in the library yet.
#include <QWidget>
#include <optional>
#include <string>

#include "library/Palette.h"
#include "platform/ColorValue.h"
#include "workspaces/common/Observers.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QGridLayout;

namespace kro {

class AppDelegate;
class ColorSwatch;
class LibraryActions;

class Inspector : public QWidget {
public:
    Inspector(AppDelegate* delegate, LibraryActions& actions, QWidget* parent = nullptr);

    // A colour of a palette, or nothing.
    void showColor(const std::string& paletteUUID, const std::string& colorUUID);
    // A colour picked for the inspector; "Add to Palette" puts it in the palette shown beside.
    void showPicked(const ColorValue& color, const std::string& paletteUUID);
    void clear();

    // What it shows now, read from the library.
    ColorRef color() const;
    const std::optional<ColorValue>& picked() const { return picked_; }

private:
    void refresh();
    void refreshFormats(const ColorValue& value);
    void copyText(const std::string& text);

    AppDelegate* delegate_;
    LibraryActions& actions_;
    Observers observers_;
    std::string paletteUUID_;
    std::string colorUUID_;
    std::optional<ColorValue> picked_;

    ColorSwatch* swatch_;
    QLineEdit* name_;
    QListWidget* formats_;
    QLabel* components_;
    QLabel* contrast_;
    ColorSwatch* blindness_[4];
    QPushButton* add_;
};

}  // namespace kro
