// The preferences panes: a control writes its field and posts that field's notifications in order; a change
// made elsewhere shows in the pane; the formats pane previews templates as they are typed.
#include "WorkspaceTest.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTableWidget>

#include <QPushButton>

#include "formats/SmartFormats.h"
#include "formats/SmartProfiles.h"
#include "library/DockData.h"
#include "library/Notifications.h"
#include "workspaces/preferences/FormatsPane.h"
#include "workspaces/onboarding/OnboardingWindow.h"
#include "workspaces/preferences/Panes.h"
#include "workspaces/preferences/PreferencesWindow.h"
#include "workspaces/preferences/SmartListEditor.h"

namespace kro::testing {
namespace {

class PreferencesPaneTest : public WorkspaceTest {
protected:
    template <typename Control>
    Control* control(QWidget* pane, const char* name) {
        auto* found = pane->findChild<Control*>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    std::vector<std::string> posted() const { return environment.notifications.postedNames(); }
    void forget() { environment.notifications.clearPostedNames(); }
};

TEST_F(PreferencesPaneTest, GeneralPaneWritesItsFieldsAndFollowsChangesMadeElsewhere) {
    std::unique_ptr<QWidget> pane(makeGeneralPane(nullptr));
    auto& preferences = Preferences::shared();

    auto* sounds = control<QCheckBox>(pane.get(), "playSounds");
    const bool before = preferences.playSounds();
    forget();
    sounds->click();
    EXPECT_EQ(preferences.playSounds(), !before);
    EXPECT_EQ(posted(), std::vector<std::string>{Notifications::preferencesUpdated});

    // Automatic import announces the preferences, then the import itself.
    forget();
    control<QCheckBox>(pane.get(), "autoImport")->click();
    EXPECT_EQ(posted(), (std::vector<std::string>{Notifications::preferencesUpdated, Notifications::autoImportUpdated}));

    // The history limit keeps its switch in the sign.
    preferences.setHistoryLimit(40);
    auto* limitOn = control<QCheckBox>(pane.get(), "historyLimitOn");
    auto* limit = control<QSpinBox>(pane.get(), "historyLimit");
    EXPECT_TRUE(limitOn->isChecked());
    EXPECT_EQ(limit->value(), 40);
    limitOn->click();
    EXPECT_EQ(preferences.historyLimit(), -40);
    EXPECT_FALSE(limit->isEnabled());
    limitOn->click();
    limit->setValue(55);
    EXPECT_EQ(preferences.historyLimit(), 55);

    // Changed elsewhere (a shortcut, the command line, a reset): the pane shows it.
    preferences.setPlaySounds(before);
    EXPECT_EQ(sounds->isChecked(), before);
}

TEST_F(PreferencesPaneTest, AppearanceAndDockPanesPostInTheirOrderAndFollowTheDockData) {
    std::unique_ptr<QWidget> appearance(makeAppearancePane(nullptr));
    auto* theme = control<QComboBox>(appearance.get(), "appTheme");
    forget();
    theme->setCurrentIndex(2);
    emit theme->activated(2);
    EXPECT_EQ(Preferences::shared().appTheme(), AppTheme::dark);
    EXPECT_EQ(posted(), (std::vector<std::string>{Notifications::appThemeUpdated, Notifications::preferencesUpdated}));
    Preferences::shared().setAppTheme(AppTheme::light);
    EXPECT_EQ(theme->currentIndex(), 1);

    std::unique_ptr<QWidget> dock(makeDockPane(nullptr));
    auto* edge = control<QComboBox>(dock.get(), "position");
    DockData::shared().setPosX(120);
    emit edge->activated(3);
    EXPECT_EQ(DockData::shared().position(), DockWindowPosition(3));
    EXPECT_FALSE(DockData::shared().posX()) << "a chosen edge replaces the dragged place";
    DockData::shared().setPosition(DockWindowPosition(1));
    EXPECT_EQ(edge->currentIndex(), 1);
}

TEST_F(PreferencesPaneTest, FormatsPanePreviewsTemplatesAsTypedAndKeepsThemForTheNextCopy) {
    FormatsPane pane;
    pane.addFormat();
    auto item = pane.current();
    ASSERT_TRUE(item && item->custom);

    auto* copied = pane.templateEditor(FormatsPane::copied);
    copied->setPlainText("R=hex[red]");
    // Dodger blue, the first sample: red is 0x1E.
    EXPECT_EQ(pane.preview()->item(0, 0)->text().toUpper(), "R=1E");
    EXPECT_NE(item->clipboardFormat, "R=hex[red]") << "kept only after a pause or on leaving";

    // Text the language does not read shows as the language returns it, with no dialog.
    copied->setPlainText("hex[red");
    EXPECT_EQ(pane.preview()->item(0, 0)->text().toStdString(),
              item->text(ColorValue::rgb(30 / 255.0, 144 / 255.0, 1), "hex[red"));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);

    copied->setPlainText("R=hex[red]");
    pane.useFormat();
    EXPECT_EQ(item->clipboardFormat, "R=hex[red]");
    EXPECT_EQ(QString::fromStdString(ColorFormats::shared().clipboardString(ColorValue::rgb(1, 0, 0))).toUpper(), "R=FF");
}

// Both per-application editors: the switch is the preference, a row is added, its choice and its check
// write the item, and edits or removals made elsewhere show in the table.
TEST_F(PreferencesPaneTest, SmartFormatAndProfileEditorsWriteTheirListsAndFollowThem) {
    SmartFormats::resetShared();
    SmartProfiles::resetShared();
    struct Case {
        SmartListEditor* (*make)(Workspace*, QWidget*);
        const char* listUpdated;
        std::function<bool()> switchedOn;
        std::function<int(const std::string&)> choiceOf;
        std::function<bool(const std::string&)> enabled;
        std::function<void(const std::string&, int)> chooseElsewhere;
        std::function<void(const std::string&)> removeElsewhere;
    };
    const auto formatIndex = [](const std::string& name) {
        const auto& formats = ColorFormats::shared().formats;
        for (size_t i = 0; i < formats.size(); ++i) {
            if (formats[i]->name == name) return int(i);
        }
        return -1;
    };
    const auto formatName = [](int index) { return ColorFormats::shared().formats[size_t(index)]->name; };
    const Case cases[] = {
        {makeSmartFormatsEditor, Notifications::smartFormatsUpdated, [] { return Preferences::shared().smartFormats(); },
         [&](const std::string& id) { return formatIndex(SmartFormats::shared().item(id)->format); },
         [](const std::string& id) { return SmartFormats::shared().item(id)->enabled; },
         [&](const std::string& id, int choice) {
             SmartFormats::shared().edit(id, [&](SmartFormatItem& item) { item.format = formatName(choice); });
         },
         [](const std::string& id) { SmartFormats::shared().remove(id); }},
        {makeSmartProfilesEditor, Notifications::smartProfilesUpdated, [] { return Preferences::shared().smartProfiles(); },
         [](const std::string& id) { return int(SmartProfiles::shared().item(id)->profile); },
         [](const std::string& id) { return SmartProfiles::shared().item(id)->enabled; },
         [](const std::string& id, int choice) {
             SmartProfiles::shared().edit(id, [&](SmartProfileItem& item) { item.profile = kAllColorSpaceProfiles[size_t(choice)]; });
         },
         [](const std::string& id) { SmartProfiles::shared().remove(id); }},
    };
    const std::string inkscape = "org.inkscape.Inkscape";
    for (const auto& which : cases) {
        SCOPED_TRACE(which.listUpdated);
        std::unique_ptr<SmartListEditor> editor(which.make(nullptr, nullptr));
        auto* table = editor->table();
        EXPECT_FALSE(table->isEnabled()) << "the rows wait for the switch";

        forget();
        editor->switchBox()->click();
        EXPECT_TRUE(which.switchedOn());
        EXPECT_EQ(posted(), (std::vector<std::string>{Notifications::preferencesUpdated, which.listUpdated}));
        EXPECT_TRUE(table->isEnabled());

        const int rowsBefore = table->rowCount();
        forget();
        editor->addApplication(inkscape, "Inkscape");
        ASSERT_EQ(table->rowCount(), rowsBefore + 1);
        EXPECT_NE(std::find(posted().begin(), posted().end(), which.listUpdated), posted().end());
        int row = 0;
        while (row < table->rowCount() && table->item(row, 0)->data(Qt::UserRole).toString().toStdString() != inkscape) ++row;
        ASSERT_LT(row, table->rowCount());

        auto* choice = qobject_cast<QComboBox*>(table->cellWidget(row, 1));
        ASSERT_NE(choice, nullptr);
        EXPECT_FALSE(choice->accessibleName().isEmpty());
        emit choice->activated(2);
        EXPECT_EQ(which.choiceOf(inkscape), 2);
        table->item(row, 0)->setCheckState(Qt::Unchecked);
        EXPECT_FALSE(which.enabled(inkscape));

        which.chooseElsewhere(inkscape, 1);
        choice = qobject_cast<QComboBox*>(table->cellWidget(row, 1));
        EXPECT_EQ(choice->currentIndex(), 1);
        which.removeElsewhere(inkscape);
        EXPECT_EQ(table->rowCount(), rowsBefore);
    }
}

// The about pane links the folders Kro keeps its files in, and its button shows the tour again.
TEST_F(PreferencesPaneTest, AboutPaneShowsTheFoldersAndTheTourAgain) {
    delegate->onboardingWindowController = std::make_unique<OnboardingWindowController>(delegate.get());
    std::unique_ptr<QWidget> about(makeAboutPane(delegate.get(), nullptr));
    QStringList links;
    for (auto* label : about->findChildren<QLabel*>()) {
        if (!label->text().contains("<a href")) continue;
        EXPECT_FALSE(label->accessibleName().isEmpty()) << label->text().toStdString();
        EXPECT_TRUE(label->textInteractionFlags() & Qt::LinksAccessibleByKeyboard);
        links << label->text();
    }
    const auto linked = [&links](const std::string& folder) {
        return links.filter("file://" + QString::fromStdString(folder) + "\">").size() == 1;
    };
    EXPECT_TRUE(linked(environment.paths.dataHome + "/kroapp.Kro"));
    EXPECT_TRUE(linked(environment.paths.configHome + "/kroapp.Kro"));
    QPushButton* tour = nullptr;
    for (auto* button : about->findChildren<QPushButton*>()) {
        if (button->text().contains("Tour")) tour = button;
    }
    ASSERT_NE(tour, nullptr);
    EXPECT_FALSE(delegate->onboardingWindowController->isVisible());
    tour->click();
    EXPECT_TRUE(delegate->onboardingWindowController->isVisible());
    delegate->onboardingWindowController->close();
}

TEST_F(PreferencesPaneTest, TheWindowOpensThePaneTheSettingsCommandNames) {
    PreferencesWindow window(delegate.get());
    const auto formats = preferencesPane("formats");
    ASSERT_TRUE(formats);
    window.showPane(formats->number);
    EXPECT_EQ(window.paneNumber(), formats->number);
    EXPECT_EQ(window.windowTitle(), "Formats — Kro Preferences");
    EXPECT_TRUE(window.pane(formats->number)->isAncestorOf(window.formats()));
    EXPECT_EQ(window.focusWidget(), window.formats()->list()) << "the keyboard starts in the pane opened";
    window.showPane(42);
    EXPECT_EQ(window.paneNumber(), formats->number) << "an unknown pane leaves the window where it was";
}

}  // namespace
}  // namespace kro::testing
