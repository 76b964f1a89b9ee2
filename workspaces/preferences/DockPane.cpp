// The dock pane: whether the colour dock shows, on which workspaces, edge and screen, and which palettes.
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QListWidget>
#include <QScreen>
#include <QSignalBlocker>
#include <algorithm>

#include "library/DockData.h"
#include "library/Notifications.h"
#include "library/Preferences.h"
#include "library/User.h"
#include "workspaces/preferences/PaneBinder.h"
#include "workspaces/preferences/Panes.h"

namespace kro {
namespace {

class DockPane : public QWidget {
public:
    explicit DockPane(QWidget* parent) : QWidget(parent), binder_(this) {
        auto& preferences = Preferences::shared();
        auto& dock = DockData::shared();
        auto* form = new QFormLayout(this);

        auto* visible = binder_.check("Show the color dock", [&] { return preferences.dockVisible(); },
                                      [&](bool on) { preferences.setDockVisible(on); });
        visible->setObjectName("dockVisible");
        form->addRow("Dock:", visible);
        auto* sticky = binder_.check("Show it on every workspace", [&] { return preferences.dockAllSpaces(); },
                                     [&](bool on) { preferences.setDockAllSpaces(on); });
        sticky->setObjectName("dockAllSpaces");
        form->addRow("", sticky);

        auto* edge = binder_.choice("Dock edge", {"Left", "Top", "Right", "Bottom"}, [&] { return int(dock.position()); },
                                    [&dock](int index) {
                                        // A chosen edge replaces the place the dock was dragged to.
                                        dock.setPosX(std::nullopt);
                                        dock.setPosY(std::nullopt);
                                        dock.setPosition(DockWindowPosition(index));
                                    });
        edge->setObjectName("position");
        form->addRow("Edge:", edge);

        QStringList screens;
        for (const auto* screen : QGuiApplication::screens()) screens << screen->name();
        if (screens.isEmpty()) screens << "Screen 1";
        auto* screen = binder_.choice("Dock screen", screens,
                                      [&dock, count = int(screens.size())] { return std::clamp(dock.screenIndex().value_or(0), 0, count - 1); },
                                      [&dock](int index) {
                                          dock.setPosX(std::nullopt);
                                          dock.setPosY(std::nullopt);
                                          dock.setScreenIndex(index);
                                      });
        screen->setObjectName("screenIndex");
        form->addRow("Screen:", screen);

        palettes_ = new QListWidget(this);
        palettes_->setObjectName("dockHiddenPalettes");
        palettes_->setAccessibleName("Palettes shown in the dock");
        connect(palettes_, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
            auto hidden = DockData::shared().dockHiddenPalettes();
            const auto uuid = item->data(Qt::UserRole).toString().toStdString();
            std::erase(hidden, uuid);
            if (item->checkState() != Qt::Checked) hidden.push_back(uuid);
            DockData::shared().setDockHiddenPalettes(hidden);
        });
        form->addRow("Palettes shown:", palettes_);
        binder_.onRefresh([this] { listPalettes(); });

        binder_.refreshOn({Notifications::preferencesUpdated, Notifications::dockUpdated, Notifications::userUpdated,
                           Notifications::userCloudMerged, Notifications::userLoaded});
        binder_.refresh();
    }

private:
    void listPalettes() {
        const QSignalBlocker hold(palettes_);
        const int current = palettes_->currentRow();
        palettes_->clear();
        const auto& hidden = DockData::shared().dockHiddenPalettes();
        for (const auto& palette : User::shared()->palettes) {
            auto* item = new QListWidgetItem(QString::fromStdString(palette->name.value_or("Palette")), palettes_);
            item->setData(Qt::UserRole, QString::fromStdString(palette->uuid));
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            const bool shown = std::find(hidden.begin(), hidden.end(), palette->uuid) == hidden.end();
            item->setCheckState(shown ? Qt::Checked : Qt::Unchecked);
        }
        palettes_->setCurrentRow(std::min(current, palettes_->count() - 1));
    }

    PaneBinder binder_;
    QListWidget* palettes_;
};

}  // namespace

QWidget* makeDockPane(QWidget* parent) { return new DockPane(parent); }

}  // namespace kro
