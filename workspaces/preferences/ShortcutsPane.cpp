#include "workspaces/preferences/ShortcutsPane.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "library/Notifications.h"
#include "picker/HotKeyLabel.h"
#include "picker/HotKeys.h"
#include "platform/DesktopSession.h"
#include "workspaces/preferences/ShortcutRecorder.h"

namespace kro {
namespace {

constexpr int kIdentifierRole = Qt::UserRole + 1;
constexpr HotKeyGroupIdentifier kGroups[] = {HotKeyGroupIdentifier::general, HotKeyGroupIdentifier::picker,
                                             HotKeyGroupIdentifier::zoom_size, HotKeyGroupIdentifier::color_dock,
                                             HotKeyGroupIdentifier::extensions};

QString combinationText(const HotKey& key) {
    if (key.deleted) return "None";
    return QString::fromStdString(readableShortcutLabel(key.flags, key.code));
}

}  // namespace

ShortcutsPane::ShortcutsPane(QWidget* parent)
    : QWidget(parent), tree_(new QTreeWidget(this)), message_(new QLabel(this)), record_(new QPushButton("Record Shortcut", this)) {
    auto* layout = new QVBoxLayout(this);
    tree_->setColumnCount(3);
    tree_->setHeaderLabels({"Action", "Shortcut", "Status"});
    tree_->setAccessibleName("Shortcuts");
    tree_->setRootIsDecorated(false);
    tree_->setUniformRowHeights(true);
    tree_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    tree_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    tree_->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    tree_->installEventFilter(this);
    connect(tree_, &QTreeWidget::itemChanged, this, [](QTreeWidgetItem* item, int column) {
        if (column != 0 || !item->data(0, kIdentifierRole).isValid()) return;
        HotKeys::shared().setEnabled(HotKeyIdentifier(item->data(0, kIdentifierRole).toInt()), item->checkState(0) == Qt::Checked);
    });
    connect(tree_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        if (item->data(0, kIdentifierRole).isValid()) startRecording(HotKeyIdentifier(item->data(0, kIdentifierRole).toInt()));
    });
    layout->addWidget(tree_, 1);
    // Where the desktop takes no shortcuts from applications (Sway, GNOME before 48), how to bind one by hand.
    if (const auto advice = qApp->property(kShortcutAdviceProperty).toString(); !advice.isEmpty()) {
        auto* note = new QLabel(advice, this);
        note->setWordWrap(true);
        note->setAccessibleName("How to bind the picker to a key");
        layout->addWidget(note);
    }

    message_->setWordWrap(true);
    message_->setAccessibleName("Shortcut message");
    message_->hide();
    layout->addWidget(message_);

    auto* buttons = new QHBoxLayout();
    record_->setAccessibleName("Record a new shortcut for the selected action");
    connect(record_, &QPushButton::clicked, this, [this] {
        if (auto* item = tree_->currentItem(); item && item->data(0, kIdentifierRole).isValid()) {
            startRecording(HotKeyIdentifier(item->data(0, kIdentifierRole).toInt()));
        }
    });
    auto* clear = new QPushButton("Clear", this);
    clear->setAccessibleName("Remove the selected action's shortcut");
    connect(clear, &QPushButton::clicked, this, [this] {
        if (auto* item = tree_->currentItem(); item && item->data(0, kIdentifierRole).isValid()) {
            HotKeys::shared().setDeleted(HotKeyIdentifier(item->data(0, kIdentifierRole).toInt()), true);
        }
    });
    auto* reset = new QPushButton("Reset Shortcuts…", this);
    reset->setAccessibleName("Reset every shortcut to Kro's own");
    connect(reset, &QPushButton::clicked, this, [this] { resetShortcuts(); });
    buttons->addWidget(record_);
    buttons->addWidget(clear);
    buttons->addStretch(1);
    buttons->addWidget(reset);
    layout->addLayout(buttons);

    observers_.on({Notifications::shortcutsUpdated}, [this] { refresh(); });
    refresh();
}

QTreeWidgetItem* ShortcutsPane::row(HotKeyIdentifier identifier) const {
    for (int group = 0; group < tree_->topLevelItemCount(); ++group) {
        auto* heading = tree_->topLevelItem(group);
        for (int child = 0; child < heading->childCount(); ++child) {
            if (heading->child(child)->data(0, kIdentifierRole).toInt() == int(identifier)) return heading->child(child);
        }
    }
    return nullptr;
}

void ShortcutsPane::refresh() {
    const QSignalBlocker hold(tree_);
    const auto* current = tree_->currentItem();
    const int currentId = current && current->data(0, kIdentifierRole).isValid() ? current->data(0, kIdentifierRole).toInt() : -1;
    tree_->clear();
    const auto& keys = HotKeys::shared();
    for (auto group : kGroups) {
        std::vector<const HotKey*> members;
        for (const auto& key : keys.hotKeys) {
            if (key.group == group && key.visible) members.push_back(&key);
        }
        if (members.empty()) continue;
        std::sort(members.begin(), members.end(), [](const HotKey* a, const HotKey* b) { return a->index < b->index; });
        auto* heading = new QTreeWidgetItem(tree_, {QString::fromStdString(title(group))});
        heading->setFlags(Qt::ItemIsEnabled);
        QFont bold = heading->font(0);
        bold.setBold(true);
        heading->setFont(0, bold);
        heading->setFirstColumnSpanned(true);
        for (const auto* key : members) {
            const bool held = keys.isUnavailable(key->id);
            QString status = key->readonly ? "Fixed" : !key->enabled() ? "Off" : held ? "Unavailable" : "";
            auto* item = new QTreeWidgetItem(heading, {QString::fromStdString(key->name), combinationText(*key), status});
            item->setData(0, kIdentifierRole, int(key->id));
            if (held) item->setToolTip(2, "Another program holds this combination: choose another");
            if (!key->readonly) {
                item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
                item->setCheckState(0, key->enabled() ? Qt::Checked : Qt::Unchecked);
            }
            if (recording_ && *recording_ == key->id) item->setText(1, "Type the shortcut…");
            if (int(key->id) == currentId) tree_->setCurrentItem(item);
        }
    }
    tree_->expandAll();
}

void ShortcutsPane::startRecording(HotKeyIdentifier identifier) {
    const auto* key = HotKeys::shared().hotKey(identifier);
    if (!key) return;
    if (key->readonly) {
        showRefusal("This shortcut cannot be changed", "It is part of the loupe's own keys.");
        return;
    }
    recording_ = identifier;
    message_->setText("Type the new shortcut for “" + QString::fromStdString(key->name) +
                      "”. Escape cancels; Backspace removes it.");
    message_->setStyleSheet({});
    message_->show();
    refresh();
    tree_->setFocus();
}

void ShortcutsPane::recordPress(const QKeyEvent& event) {
    if (!recording_) return;
    const auto identifier = *recording_;
    if (event.modifiers() == Qt::NoModifier && event.key() == Qt::Key_Escape) {
        recording_.reset();
        message_->hide();
        return refresh();
    }
    if (event.modifiers() == Qt::NoModifier && event.key() == Qt::Key_Backspace) {
        recording_.reset();
        message_->hide();
        HotKeys::shared().setDeleted(identifier, true);
        return refresh();
    }
    const auto combination = combinationOf(event);
    if (!combination) return;  // a modifier alone: wait for the key
    recording_.reset();
    if (auto used = HotKeys::shared().record(identifier, combination->flags, combination->code)) {
        refresh();
        return showRefusal("We are sorry but you can't use this shortcut", QString::fromStdString(used->reason));
    }
    message_->hide();
    if (HotKeys::shared().isUnavailable(identifier)) {
        showRefusal("This shortcut is unavailable",
                    "Another program holds " +
                        QString::fromStdString(readableShortcutLabel(combination->flags, combination->code)) +
                        ". It is kept, and works once that program lets it go.");
    }
    refresh();
}

QString ShortcutsPane::refusal() const { return message_->isVisibleTo(this) ? message_->text() : QString(); }

void ShortcutsPane::showRefusal(const QString& title, const QString& reason) {
    message_->setText("<b>" + title.toHtmlEscaped() + "</b><br>" + reason.toHtmlEscaped());
    message_->setAccessibleName(title + ": " + reason);
    message_->setStyleSheet("QLabel { border: 1px solid #d64541; border-radius: 4px; padding: 6px; }");
    message_->show();
}

void ShortcutsPane::resetShortcuts(bool ask) {
    if (ask && QMessageBox::question(this, "Reset Shortcuts?", "Are you sure you want to reset app shortcuts?") != QMessageBox::Yes) {
        return;
    }
    recording_.reset();
    message_->hide();
    HotKeys::shared().resetToShipped();
}

bool ShortcutsPane::eventFilter(QObject* watched, QEvent* event) {
    if (watched == tree_ && recording_ && event->type() == QEvent::KeyPress) {
        recordPress(*static_cast<QKeyEvent*>(event));
        return true;
    }
    // While recording, the window's own shortcuts (Ctrl+W…) must reach the recorder, not close the window.
    if (watched == tree_ && recording_ && event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace kro
