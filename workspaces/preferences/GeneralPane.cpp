// The general pane: start at login, sounds, the history limit, colour profile, automatic import.
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>
#include <cstdlib>

#include "library/Notifications.h"
#include "library/Preferences.h"
#include "workspaces/preferences/PaneBinder.h"
#include "workspaces/preferences/Panes.h"

namespace kro {
namespace {

class GeneralPane : public QWidget {
public:
    explicit GeneralPane(QWidget* parent) : QWidget(parent), binder_(this) {
        auto& preferences = Preferences::shared();
        auto* form = new QFormLayout(this);
        form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);

        auto* login = binder_.check("Start Kro when I log in", [&] { return preferences.startLogin(); },
                                    [&](bool on) { preferences.setStartLogin(on); });
        login->setObjectName("startLogin");
        form->addRow("Startup:", login);
        auto* sounds = binder_.check("Play sounds", [&] { return preferences.playSounds(); },
                                     [&](bool on) { preferences.setPlaySounds(on); });
        sounds->setObjectName("playSounds");
        form->addRow("Sounds:", sounds);

        // The history limit keeps its switch in the sign: above 0 is on, and the number is the absolute value.
        auto* limitRow = new QHBoxLayout();
        auto* limitOn = binder_.check("Keep at most", [&] { return preferences.historyLimit() > 0; },
                                      [&](bool on) {
                                          const int size = std::max(1, std::abs(preferences.historyLimit()));
                                          preferences.setHistoryLimit(on ? size : -size);
                                      });
        limitOn->setObjectName("historyLimitOn");
        auto* limit = binder_.number("History limit", 1, 10000, 5,
                                     [&] { return std::max(1, std::abs(preferences.historyLimit())); },
                                     [&](int value) { preferences.setHistoryLimit(preferences.historyLimit() > 0 ? value : -value); });
        limit->setObjectName("historyLimit");
        limit->setSuffix(" colors");
        binder_.onRefresh([&preferences, limit] { limit->setEnabled(preferences.historyLimit() > 0); });
        limitRow->addWidget(limitOn);
        limitRow->addWidget(limit);
        limitRow->addWidget(new QLabel("in the history", this));
        limitRow->addStretch(1);
        form->addRow("History:", limitRow);

        QStringList profiles;
        for (auto profile : kAllColorSpaceProfiles) profiles << QString::fromStdString(text(profile));
        auto* profile = binder_.choice("Color profile of picked colors", profiles,
                                       [&] { return int(preferences.colorSpaceProfile()); },
                                       [&](int index) { preferences.setColorSpaceProfile(kAllColorSpaceProfiles[size_t(index)]); });
        profile->setObjectName("colorSpaceProfile");
        form->addRow("Color profile:", profile);

        auto* importBox = new QGroupBox("Automatic import", this);
        auto* importLayout = new QVBoxLayout(importBox);
        auto* autoImport = binder_.check("Add colors copied to the clipboard to the history",
                                         [&] { return preferences.autoImport(); },
                                         [&](bool on) { preferences.setAutoImport(on); });
        autoImport->setObjectName("autoImport");
        importLayout->addWidget(autoImport);
        auto* patterns = new QHBoxLayout();
        auto* patternColumns = new QFormLayout();
        for (auto pattern : allImportColorPatterns()) {
            auto* box = binder_.check(QString::fromStdString(text(pattern)),
                                      [&preferences, pattern] { return preferences.autoImportPattern().count(pattern) > 0; },
                                      [&preferences, pattern](bool on) {
                                          auto set = preferences.autoImportPattern();
                                          if (on) set.insert(pattern); else set.erase(pattern);
                                          preferences.setAutoImportPattern(set);
                                      });
            box->setObjectName(QString::fromStdString("autoImportPattern." + caseName(pattern)));
            binder_.onRefresh([&preferences, box] { box->setEnabled(preferences.autoImport()); });
            patternColumns->addRow(box);
        }
        patterns->addSpacing(24);
        patterns->addLayout(patternColumns);
        importLayout->addLayout(patterns);
        form->addRow(importBox);

        binder_.refreshOn({Notifications::preferencesUpdated});
        binder_.refresh();
    }

private:
    PaneBinder binder_;
};

}  // namespace

QWidget* makeGeneralPane(QWidget* parent) { return new GeneralPane(parent); }

}  // namespace kro
