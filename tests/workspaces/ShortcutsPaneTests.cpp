// The shortcuts pane: a typed combination is recorded, saved and announced; a reserved one or one another
// action has is refused with its reason and changes nothing; one another program holds is kept and shown as
// unavailable; Escape, Backspace and reset; a change made elsewhere shows in the pane.
#include <QKeyEvent>
#include <QTreeWidget>
#include <set>

#include "WorkspaceTest.h"
#include "library/Notifications.h"
#include "picker/HotKeyLabel.h"
#include "picker/HotKeys.h"
#include "platform/HotKeyCenter.h"
#include "workspaces/preferences/ShortcutsPane.h"

namespace kro::testing {
namespace {

// A desktop on which another program holds some combinations.
class HoldingHotKeyCenter final : public HotKeyCenter {
public:
    bool registerHotKey(int flags, int code, int, const std::string&) override { return !held.count({flags, code}); }
    void unregisterAll() override {}
    std::set<std::pair<int, int>> held;
};

constexpr int kCtrlAlt = HotKeyFlags::command | HotKeyFlags::option;

class ShortcutsPaneTest : public WorkspaceTest {
protected:
    ShortcutsPaneTest() {
        HotKeys::resetSharedForTesting();
        HotKeys::shared().load();
        HotKeys::shared().setHotKeyCenter(&center);
        environment.notifications.clearPostedNames();
    }
    ~ShortcutsPaneTest() override { HotKeys::shared().setHotKeyCenter(nullptr); }

    // Types a combination into the pane while it records for `identifier`.
    void record(HotKeyIdentifier identifier, Qt::Key key, Qt::KeyboardModifiers modifiers) {
        pane.startRecording(identifier);
        ASSERT_TRUE(pane.isRecording());
        QKeyEvent press(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(pane.tree(), &press);
        EXPECT_FALSE(pane.isRecording());
    }
    const HotKey& key(HotKeyIdentifier identifier) { return *HotKeys::shared().hotKey(identifier); }
    QString shown(HotKeyIdentifier identifier, int column) { return pane.row(identifier)->text(column); }
    std::vector<std::string> posted() const { return environment.notifications.postedNames(); }
    void forget() { environment.notifications.clearPostedNames(); }

    HoldingHotKeyCenter center;
    ShortcutsPane pane;
};

TEST_F(ShortcutsPaneTest, RecordsAFreeCombinationAndRefusesReservedAndUsedOnesWithTheReason) {
    const auto panel = HotKeyIdentifier::openColorPanel;
    const HotKey before = key(panel);

    // Ctrl+W closes windows everywhere: refused, with what it does, and nothing is written.
    record(panel, Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(pane.refusal().contains("We are sorry but you can't use this shortcut")) << pane.refusal().toStdString();
    EXPECT_TRUE(pane.refusal().contains("Close the frontmost window")) << pane.refusal().toStdString();
    EXPECT_EQ(key(panel).code, before.code);
    EXPECT_TRUE(posted().empty());

    // Ctrl+Alt+P is the picker's: refused, naming it.
    record(panel, Qt::Key_P, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(pane.refusal().contains("already used in app (Pick Color)")) << pane.refusal().toStdString();
    EXPECT_EQ(key(panel).flags, before.flags);

    // Ctrl+Alt+J is free: recorded, saved, then announced; the row shows it and the message goes.
    record(panel, Qt::Key_J, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(pane.refusal().isEmpty());
    EXPECT_EQ(key(panel).flags, kCtrlAlt);
    EXPECT_EQ(QString::fromStdString(*keyLabel(key(panel).code)).toUpper(), "J");
    EXPECT_EQ(posted(), (std::vector<std::string>{Notifications::shortcutsSaved, Notifications::shortcutsUpdated}));
    EXPECT_EQ(shown(panel, 1).toStdString(), readableShortcutLabel(kCtrlAlt, key(panel).code));

    // The loupe's own keys cannot be recorded at all.
    pane.startRecording(HotKeyIdentifier::pickColorEnter);
    EXPECT_FALSE(pane.isRecording());
    EXPECT_TRUE(pane.refusal().contains("cannot be changed"));
}

TEST_F(ShortcutsPaneTest, ACombinationAnotherProgramHoldsIsKeptAndShownUnavailable) {
    const auto contrast = HotKeyIdentifier::openContrastChecker;
    const int codeOfK = key(HotKeyIdentifier::openColorPanel).code;  // shipped Ctrl+Alt+Shift+K
    center.held.insert({kCtrlAlt, codeOfK});
    record(contrast, Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(key(contrast).code, codeOfK) << "kept, to work once the other program lets go";
    EXPECT_TRUE(pane.refusal().contains("This shortcut is unavailable")) << pane.refusal().toStdString();
    EXPECT_EQ(shown(contrast, 2), "Unavailable");
    EXPECT_FALSE(pane.row(contrast)->toolTip(2).isEmpty());
}

TEST_F(ShortcutsPaneTest, EscapeCancelsBackspaceRemovesResetRestoresAndChangesElsewhereShow) {
    const auto picker = HotKeyIdentifier::openPicker;
    const HotKey shipped = key(picker);

    pane.startRecording(picker);
    EXPECT_EQ(shown(picker, 1), "Type the shortcut…");
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(pane.tree(), &escape);
    EXPECT_FALSE(pane.isRecording());
    EXPECT_FALSE(key(picker).deleted);
    EXPECT_TRUE(posted().empty());

    pane.startRecording(picker);
    QKeyEvent backspace(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    QApplication::sendEvent(pane.tree(), &backspace);
    EXPECT_TRUE(key(picker).deleted);
    EXPECT_EQ(shown(picker, 1), "None");

    // The row's check box switches the shortcut; a switch made elsewhere (a reset, a sync) shows in the row.
    pane.row(picker)->setCheckState(0, Qt::Unchecked);
    EXPECT_FALSE(key(picker).enabled());
    HotKeys::shared().setEnabled(picker, true);
    EXPECT_EQ(pane.row(picker)->checkState(0), Qt::Checked);

    forget();
    pane.resetShortcuts(false);
    EXPECT_FALSE(key(picker).deleted);
    EXPECT_EQ(key(picker).code, shipped.code);
    EXPECT_EQ(shown(picker, 1).toStdString(), readableShortcutLabel(shipped.flags, shipped.code));
    EXPECT_EQ(posted(), (std::vector<std::string>{Notifications::shortcutsSaved, Notifications::shortcutsUpdated}));
}

}  // namespace
}  // namespace kro::testing
