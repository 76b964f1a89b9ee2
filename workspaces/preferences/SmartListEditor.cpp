#include "workspaces/preferences/SmartListEditor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>
#include <map>

#include "formats/ColorFormats.h"
#include "formats/SmartFormats.h"
#include "formats/SmartProfiles.h"
#include "library/Notifications.h"
#include "library/Preferences.h"
#include "platform/Workspace.h"

namespace kro {

SmartListEditor::SmartListEditor(Access access, Workspace* workspace, QWidget* parent)
    : QWidget(parent), access_(std::move(access)), workspace_(workspace), table_(new QTableWidget(this)),
      typed_(new QLineEdit(this)) {
    auto* layout = new QVBoxLayout(this);
    switch_ = new QCheckBox("Use a different " + access_.what + " for these applications", this);
    switch_->setAccessibleName(switch_->text());
    connect(switch_, &QCheckBox::toggled, this, [this](bool on) { access_.setSwitchedOn(on); });
    layout->addWidget(switch_);

    table_->setColumnCount(2);
    table_->setHorizontalHeaderLabels({"Application", access_.what.left(1).toUpper() + access_.what.mid(1)});
    table_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    table_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    table_->verticalHeader()->hide();
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setAccessibleName("Applications with their own " + access_.what);
    connect(table_, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (item->column() != 0) return;
        access_.setEnabled(item->data(Qt::UserRole).toString().toStdString(), item->checkState() == Qt::Checked);
    });
    layout->addWidget(table_, 1);

    auto* buttons = new QHBoxLayout();
    auto* running = new QPushButton("Add Running Application…", this);
    running->setAccessibleName("Add an application from the windows on screen");
    connect(running, &QPushButton::clicked, this, [this] { showRunningApplications(); });
    typed_->setPlaceholderText("or a desktop id, such as org.inkscape.Inkscape");
    typed_->setAccessibleName("Desktop id of an application to add");
    connect(typed_, &QLineEdit::returnPressed, this, [this] {
        const auto identifier = typed_->text().trimmed().toStdString();
        if (identifier.empty()) return;
        addApplication(identifier, identifier);
        typed_->clear();
    });
    auto* remove = new QPushButton("Remove", this);
    remove->setAccessibleName("Remove the selected application");
    connect(remove, &QPushButton::clicked, this, [this] {
        if (auto* item = table_->item(table_->currentRow(), 0)) access_.remove(item->data(Qt::UserRole).toString().toStdString());
    });
    buttons->addWidget(running);
    buttons->addWidget(typed_, 1);
    buttons->addWidget(remove);
    layout->addLayout(buttons);

    for (const char* name : access_.notifications) observers_.on({name}, [this] { refresh(); });
    observers_.on({Notifications::preferencesUpdated}, [this] { refresh(); });
    refresh();
}

void SmartListEditor::addApplication(const std::string& identifier, const std::string& name) {
    access_.add(identifier, name);
}

void SmartListEditor::showRunningApplications() {
    QMenu menu(this);
    std::map<std::string, std::string> applications;
    if (workspace_) {
        workspace_->refresh();
        for (const auto& window : workspace_->items()) {
            if (!window.bundle.empty() && window.bundle != "kroapp.Kro") applications.emplace(window.bundle, window.name);
        }
    }
    for (const auto& [identifier, name] : applications) {
        menu.addAction(QString::fromStdString(identifier + "  —  " + name),
                       [this, identifier = identifier] { addApplication(identifier, identifier); });
    }
    if (applications.empty()) menu.addAction("No application windows are open")->setEnabled(false);
    menu.exec(mapToGlobal(QPoint(0, height())));
}

void SmartListEditor::refresh() {
    const QSignalBlocker hold(table_);
    const QSignalBlocker holdSwitch(switch_);
    switch_->setChecked(access_.switchedOn());
    const auto rows = access_.rows();
    const auto choices = access_.choices();
    table_->setRowCount(int(rows.size()));
    for (int row = 0; row < int(rows.size()); ++row) {
        const auto& entry = rows[size_t(row)];
        auto* name = new QTableWidgetItem(QString::fromStdString(entry.name == entry.identifier ? entry.identifier
                                                                                                : entry.name + " (" + entry.identifier + ")"));
        name->setData(Qt::UserRole, QString::fromStdString(entry.identifier));
        name->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        name->setCheckState(entry.enabled ? Qt::Checked : Qt::Unchecked);
        table_->setItem(row, 0, name);
        auto* menu = new QComboBox(table_);
        menu->addItems(choices);
        menu->setCurrentIndex(entry.choice);
        menu->setAccessibleName(access_.what + " for " + QString::fromStdString(entry.identifier));
        connect(menu, &QComboBox::activated, this,
                [this, identifier = entry.identifier](int index) { access_.setChoice(identifier, index); });
        table_->setCellWidget(row, 1, menu);
    }
    table_->setEnabled(access_.switchedOn());
}

SmartListEditor* makeSmartFormatsEditor(Workspace* workspace, QWidget* parent) {
    SmartListEditor::Access access;
    access.what = "format";
    access.switchedOn = [] { return Preferences::shared().smartFormats(); };
    access.setSwitchedOn = [](bool on) { Preferences::shared().setSmartFormats(on); };
    auto names = [] {
        QStringList list;
        for (const auto& item : ColorFormats::shared().formats) list << QString::fromStdString(item->name);
        return list;
    };
    access.choices = names;
    access.rows = [names] {
        std::vector<SmartListEditor::Access::Row> rows;
        const auto choices = names();
        for (const auto& [identifier, item] : SmartFormats::shared().items) {
            rows.push_back({identifier, item->name, std::max(0, int(choices.indexOf(QString::fromStdString(item->format)))), item->enabled});
        }
        return rows;
    };
    access.add = [](const std::string& identifier, const std::string& name) {
        if (SmartFormats::shared().item(identifier)) return;
        auto item = std::make_shared<SmartFormatItem>();
        item->name = name;
        item->format = ColorFormats::shared().selectedFormatName;
        SmartFormats::shared().add(identifier, item);
    };
    access.remove = [](const std::string& identifier) { SmartFormats::shared().remove(identifier); };
    access.setChoice = [](const std::string& identifier, int choice) {
        const auto& formats = ColorFormats::shared().formats;
        if (choice < 0 || choice >= int(formats.size())) return;
        SmartFormats::shared().edit(identifier, [&](SmartFormatItem& item) { item.format = formats[size_t(choice)]->name; });
    };
    access.setEnabled = [](const std::string& identifier, bool enabled) {
        SmartFormats::shared().edit(identifier, [enabled](SmartFormatItem& item) { item.enabled = enabled; });
    };
    access.notifications = {Notifications::smartFormatsUpdated, Notifications::colorFormatUpdated};
    return new SmartListEditor(std::move(access), workspace, parent);
}

SmartListEditor* makeSmartProfilesEditor(Workspace* workspace, QWidget* parent) {
    SmartListEditor::Access access;
    access.what = "color profile";
    access.switchedOn = [] { return Preferences::shared().smartProfiles(); };
    access.setSwitchedOn = [](bool on) { Preferences::shared().setSmartProfiles(on); };
    access.choices = [] {
        QStringList list;
        for (auto profile : kAllColorSpaceProfiles) list << QString::fromStdString(text(profile));
        return list;
    };
    access.rows = [] {
        std::vector<SmartListEditor::Access::Row> rows;
        for (const auto& [identifier, item] : SmartProfiles::shared().items) {
            rows.push_back({identifier, item->name, int(item->profile), item->enabled});
        }
        return rows;
    };
    access.add = [](const std::string& identifier, const std::string& name) {
        if (SmartProfiles::shared().item(identifier)) return;
        auto item = std::make_shared<SmartProfileItem>();
        item->name = name;
        SmartProfiles::shared().add(identifier, item);
    };
    access.remove = [](const std::string& identifier) { SmartProfiles::shared().remove(identifier); };
    access.setChoice = [](const std::string& identifier, int choice) {
        SmartProfiles::shared().edit(identifier, [choice](SmartProfileItem& item) { item.profile = kAllColorSpaceProfiles[size_t(choice)]; });
    };
    access.setEnabled = [](const std::string& identifier, bool enabled) {
        SmartProfiles::shared().edit(identifier, [enabled](SmartProfileItem& item) { item.enabled = enabled; });
    };
    access.notifications = {Notifications::smartProfilesUpdated};
    return new SmartListEditor(std::move(access), workspace, parent);
}

}  // namespace kro
