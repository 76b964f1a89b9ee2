// The appearance pane: theme, tray icon, colour vision, and the loupe.
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QSpinBox>

#include "library/Notifications.h"
#include "library/Preferences.h"
#include "workspaces/preferences/PaneBinder.h"
#include "workspaces/preferences/Panes.h"

namespace kro {
namespace {

constexpr AppTheme kThemes[] = {AppTheme::automatic, AppTheme::light, AppTheme::dark};

class AppearancePane : public QWidget {
public:
    explicit AppearancePane(QWidget* parent) : QWidget(parent), binder_(this) {
        auto& preferences = Preferences::shared();
        auto* form = new QFormLayout(this);

        auto* theme = binder_.choice("Theme", {"Follow the desktop", "Light", "Dark"},
                                     [&] { return int(std::find(std::begin(kThemes), std::end(kThemes), preferences.appTheme()) - std::begin(kThemes)); },
                                     [&](int index) { preferences.setAppTheme(kThemes[index]); });
        theme->setObjectName("appTheme");
        form->addRow("Theme:", theme);

        auto* style = binder_.choice("Tray icon style", {"Icon only", "Icon with the last color's swatch"},
                                     [&] { return int(preferences.statusItemStyle()); },
                                     [&](int index) { preferences.setStatusItemStyle(StatusItemStyle(index)); });
        style->setObjectName("statusItemStyle");
        form->addRow("Tray icon:", style);
        auto* lastColor = binder_.check("Show the last copied color in the tray icon",
                                        [&] { return preferences.displayLastColor(); },
                                        [&](bool on) { preferences.setDisplayLastColor(on); });
        lastColor->setObjectName("displayLastColor");
        form->addRow("", lastColor);

        QStringList kinds;
        for (auto blindness : kAllColorBlindness) {
            kinds << (blindness == ColorBlindness::normal ? QString("Normal vision") : QString::fromStdString(text(blindness)));
        }
        auto* vision = binder_.choice("Color vision of swatches and previews", kinds,
                                      [&] { return int(preferences.colorBlindness()); },
                                      [&](int index) { preferences.setColorBlindness(kAllColorBlindness[size_t(index)]); });
        vision->setObjectName("colorBlindness");
        form->addRow("Color vision:", vision);

        // The loupe's size and zoom move in the steps its own keys take.
        auto* size = binder_.number("Loupe size", 120, 360, 60, [&] { return preferences.pickerSize(); },
                                    [&](int value) { preferences.setPickerSize(value); });
        size->setObjectName("pickerSize");
        size->setSuffix(" px");
        form->addRow("Loupe size:", size);
        auto* zoom = binder_.number("Loupe zoom", 4, 24, 4, [&] { return preferences.pickerZoom(); },
                                    [&](int value) { preferences.setPickerZoom(value); });
        zoom->setObjectName("pickerZoom");
        zoom->setSuffix(" ×");
        form->addRow("Loupe zoom:", zoom);
        auto* name = binder_.check("Show the color's name under the loupe", [&] { return preferences.showNameOverlay(); },
                                   [&](bool on) { preferences.setShowNameOverlay(on); });
        name->setObjectName("showNameOverlay");
        form->addRow("Loupe overlays:", name);
        auto* value = binder_.check("Show the color's value under the loupe",
                                    [&] { return preferences.showColorOverlay(); },
                                    [&](bool on) { preferences.setShowColorOverlay(on); });
        value->setObjectName("showColorOverlay");
        form->addRow("", value);

        binder_.refreshOn({Notifications::preferencesUpdated});
        binder_.refresh();
    }

private:
    PaneBinder binder_;
};

}  // namespace

QWidget* makeAppearancePane(QWidget* parent) { return new AppearancePane(parent); }

}  // namespace kro
