#pragma once
// The shortcuts pane: every visible shortcut by group, each switched on or off and recorded anew. A
// combination that is reserved by the desktop or taken by another action is refused with the reason; one
// that another program holds is shown as unavailable. Reset puts the shipped table back.
#include <QWidget>
#include <optional>

#include "picker/HotKey.h"
#include "workspaces/common/Observers.h"

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace kro {

class ShortcutsPane : public QWidget {
public:
    explicit ShortcutsPane(QWidget* parent = nullptr);

    // Starts recording for the action; the next key press (with its modifiers) is its new combination.
    void startRecording(HotKeyIdentifier identifier);
    bool isRecording() const { return recording_.has_value(); }
    // What a press gives while recording: Escape cancels, Backspace takes the combination away, anything
    // else is recorded or refused.
    void recordPress(const QKeyEvent& event);
    // The refusal shown, empty when none.
    QString refusal() const;
    QTreeWidget* tree() const { return tree_; }
    // The row of an action (tests).
    QTreeWidgetItem* row(HotKeyIdentifier identifier) const;
    void resetShortcuts(bool ask = true);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refresh();
    void showRefusal(const QString& title, const QString& reason);

    QTreeWidget* tree_;
    QLabel* message_;
    QPushButton* record_;
    std::optional<HotKeyIdentifier> recording_;
    Observers observers_;
};

}  // namespace kro
