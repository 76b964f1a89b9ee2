#pragma once
// How a preferences pane binds its controls: each control is made with a reader and a writer of its field.
// A person's change calls the writer (the field's own setter, which stores, logs and posts); the pane reads
// every field again, with the controls' signals held, whenever one of its notifications arrives, so a change
// made anywhere else (a shortcut, the dock's menu, the command line, a reset) shows at once.
#include <QString>
#include <QStringList>
#include <functional>
#include <initializer_list>
#include <vector>

#include "workspaces/common/Observers.h"

class QCheckBox;
class QComboBox;
class QSpinBox;
class QWidget;

namespace kro {

class PaneBinder {
public:
    explicit PaneBinder(QWidget* pane) : pane_(pane) {}

    QCheckBox* check(const QString& text, std::function<bool()> read, std::function<void(bool)> write);
    // A menu of `items`; the field is read and written as the item's index.
    QComboBox* choice(const QString& accessible, const QStringList& items, std::function<int()> read,
                      std::function<void(int)> write);
    // A number written when the person is done with it (Return, the arrows, leaving the field).
    QSpinBox* number(const QString& accessible, int minimum, int maximum, int step, std::function<int()> read,
                     std::function<void(int)> write);
    // Any other reading the pane needs when its fields change.
    void onRefresh(std::function<void()> read) { readers_.push_back(std::move(read)); }

    // Reads every field again on each of these notifications.
    void refreshOn(std::initializer_list<const char*> names);
    void refresh();

private:
    QWidget* pane_;
    std::vector<std::function<void()>> readers_;
    Observers observers_;
};

}  // namespace kro
