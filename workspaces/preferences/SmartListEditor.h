#pragma once
// The editor of one per-application list (smart formats or smart profiles): its switch, then one row per
// application with its choice (a format of the catalogue, or a colour profile) and whether it applies. An
// application is added from the windows on screen, by its desktop id, or by typing the id.
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "workspaces/common/Observers.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QTableWidget;

namespace kro {

class Workspace;

class SmartListEditor : public QWidget {
public:
    // How the editor reaches its list, so one editor serves both.
    struct Access {
        QString what;  // "format" or "color profile"
        std::function<bool()> switchedOn;
        std::function<void(bool)> setSwitchedOn;
        // Application identifier, display name, choice (an index into choices()), enabled.
        struct Row {
            std::string identifier;
            std::string name;
            int choice = 0;
            bool enabled = true;
        };
        std::function<std::vector<Row>()> rows;
        std::function<QStringList()> choices;
        std::function<void(const std::string& identifier, const std::string& name)> add;
        std::function<void(const std::string& identifier)> remove;
        std::function<void(const std::string& identifier, int choice)> setChoice;
        std::function<void(const std::string& identifier, bool enabled)> setEnabled;
        std::vector<const char*> notifications;
    };

    SmartListEditor(Access access, Workspace* workspace, QWidget* parent = nullptr);
    QTableWidget* table() const { return table_; }
    QCheckBox* switchBox() const { return switch_; }
    // Adds the application (used by the menu of running applications and the typed id).
    void addApplication(const std::string& identifier, const std::string& name);

private:
    void refresh();
    void showRunningApplications();

    Access access_;
    Workspace* workspace_;
    QCheckBox* switch_;
    QTableWidget* table_;
    QLineEdit* typed_;
    Observers observers_;
};

// The two lists, bound to the catalogue and the profiles.
SmartListEditor* makeSmartFormatsEditor(Workspace* workspace, QWidget* parent);
SmartListEditor* makeSmartProfilesEditor(Workspace* workspace, QWidget* parent);

}  // namespace kro
