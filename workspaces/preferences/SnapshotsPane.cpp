#include "workspaces/preferences/SnapshotsPane.h"

#include <QComboBox>
#include <QDateTime>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "cloud/CloudAccount.h"
#include "cloud/CloudSignIn.h"
#include "cloud/CloudSync.h"
#include "cloud/Snapshots.h"
#include "library/Notifications.h"
#include "library/Preferences.h"
#include "library/User.h"
#include "platform/Environment.h"
#include "platform/SecretStore.h"

namespace kro {
namespace {

std::unique_ptr<SecretStore> secrets() { return makeSecretStore(env().paths); }

QString localTime(const std::string& utc) {
    const auto when = QDateTime::fromString(QString::fromStdString(utc), Qt::ISODate);
    return when.isValid() ? QLocale().toString(when.toLocalTime(), QLocale::ShortFormat) : QString::fromStdString(utc);
}

int snapshotColorCount(const Snapshot& snapshot) {
    int count = snapshot.history ? int(snapshot.history->colors.size()) : 0;
    for (const auto& palette : snapshot.palettes) count += int(palette->colors.size());
    return count;
}

}  // namespace

SnapshotsPane::SnapshotsPane(QWidget* parent)
    : QWidget(parent),
      binder_(this),
      list_(new QTreeWidget(this)),
      server_(new QLineEdit(this)),
      user_(new QLineEdit(this)),
      password_(new QLineEdit(this)),
      signInButton_(new QPushButton("Sign In", this)),
      signOutButton_(new QPushButton("Sign Out", this)),
      status_(new QLabel(this)),
      lastSync_(new QLabel(this)) {
    auto* layout = new QVBoxLayout(this);

    auto* snapshots = new QGroupBox("Snapshots", this);
    auto* snapshotLayout = new QVBoxLayout(snapshots);
    auto* refreshRow = new QFormLayout();
    auto* refresh = binder_.choice("How often a snapshot is taken", {"Never", "Every minute", "Every hour", "Every day"},
                                   [] { return int(Preferences::shared().snapshotsRefresh()); },
                                   [](int index) { Preferences::shared().setSnapshotsRefresh(SnapshotRefresh(index)); });
    refresh->setObjectName("snapshotsRefresh");
    refreshRow->addRow("Take a snapshot:", refresh);
    snapshotLayout->addLayout(refreshRow);
    list_->setColumnCount(4);
    list_->setHeaderLabels({"Taken", "On", "Palettes", "Colors"});
    list_->setRootIsDecorated(false);
    list_->setAccessibleName("Snapshots");
    list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    snapshotLayout->addWidget(list_, 1);
    auto* buttons = new QHBoxLayout();
    auto* take = new QPushButton("Take Snapshot Now", this);
    take->setAccessibleName("Take a snapshot of the library now");
    connect(take, &QPushButton::clicked, this, [this] { takeSnapshot(); });
    auto* restore = new QPushButton("Restore…", this);
    restore->setAccessibleName("Restore the library from the selected snapshot");
    connect(restore, &QPushButton::clicked, this, [this] {
        if (!list_->currentItem()) return;
        if (QMessageBox::question(this, "Restore this snapshot?",
                                  "The library's history and palettes are replaced by the snapshot's. Undo in the "
                                  "library window takes it back.") == QMessageBox::Yes) {
            restoreSelected();
        }
    });
    auto* remove = new QPushButton("Delete", this);
    remove->setAccessibleName("Delete the selected snapshot");
    connect(remove, &QPushButton::clicked, this, [this] { deleteSelected(); });
    buttons->addWidget(take);
    buttons->addStretch(1);
    buttons->addWidget(restore);
    buttons->addWidget(remove);
    // Restore and Delete act on the snapshot in hand: without one they are greyed.
    const auto followSelection = [this, restore, remove] {
        restore->setEnabled(list_->currentItem() != nullptr);
        remove->setEnabled(list_->currentItem() != nullptr);
    };
    connect(list_, &QTreeWidget::currentItemChanged, this, followSelection);
    followSelection();
    snapshotLayout->addLayout(buttons);
    layout->addWidget(snapshots, 1);

    auto* account = new QGroupBox("Sync", this);
    auto* form = new QFormLayout(account);
    server_->setPlaceholderText("https://dav.example.org/kro/");
    server_->setAccessibleName("Sync server URL");
    user_->setAccessibleName("Sync user name");
    password_->setEchoMode(QLineEdit::Password);
    password_->setAccessibleName("Sync password");
    form->addRow("Server:", server_);
    form->addRow("User:", user_);
    form->addRow("Password:", password_);
    auto* accountButtons = new QHBoxLayout();
    signInButton_->setAccessibleName("Sign in to the sync server");
    signOutButton_->setAccessibleName("Sign out of the sync server");
    connect(signInButton_, &QPushButton::clicked, this, [this] { signIn(); });
    connect(password_, &QLineEdit::returnPressed, this, [this] { signIn(); });
    connect(signOutButton_, &QPushButton::clicked, this, [this] { signOut(); });
    accountButtons->addWidget(signInButton_);
    accountButtons->addWidget(signOutButton_);
    accountButtons->addStretch(1);
    form->addRow("", accountButtons);
    status_->setWordWrap(true);
    status_->setAccessibleName("Account status");
    status_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form->addRow("", status_);
    lastSync_->setWordWrap(true);
    lastSync_->setAccessibleName("Last sync");
    lastSync_->setText("No sync since Kro started.");
    form->addRow("Last sync:", lastSync_);
    layout->addWidget(account);

    cloudObserver_ = CloudSync::shared().addObserver([this](const CloudReport& report) {
        const QString when = QLocale().toString(QTime::currentTime(), QLocale::ShortFormat);
        lastSync_->setText(when + ": " + QString::fromStdString(report.sentence));
    });
    binder_.refreshOn({Notifications::preferencesUpdated});
    binder_.refresh();
    observers_.on({Notifications::snapshotsUpdated}, [this] { refreshList(); });
    refreshList();
    refreshAccount();
}

SnapshotsPane::~SnapshotsPane() { CloudSync::shared().removeObserver(cloudObserver_); }

void SnapshotsPane::refreshList() {
    const auto current = list_->currentItem() ? list_->currentItem()->data(0, Qt::UserRole).toString() : QString();
    list_->clear();
    const auto& all = Snapshots::shared().snapshots;
    // The newest first.
    for (auto it = all.rbegin(); it != all.rend(); ++it) {
        const auto& snapshot = **it;
        auto* item = new QTreeWidgetItem(list_, {localTime(snapshot.createdAt), QString::fromStdString(snapshot.device.value_or("")),
                                                 QString::number(snapshot.palettes.size()),
                                                 QString::number(snapshotColorCount(snapshot))});
        item->setData(0, Qt::UserRole, QString::fromStdString(snapshot.uuid));
        if (item->data(0, Qt::UserRole).toString() == current) list_->setCurrentItem(item);
    }
}

void SnapshotsPane::takeSnapshot() { Snapshots::shared().add(Snapshot::make(*User::shared())); }

void SnapshotsPane::restoreSelected() {
    if (!list_->currentItem()) return;
    const auto snapshot = Snapshots::shared().snapshot(list_->currentItem()->data(0, Qt::UserRole).toString().toStdString());
    if (snapshot) snapshot->restore(*User::shared());
}

void SnapshotsPane::deleteSelected() {
    if (!list_->currentItem()) return;
    Snapshots::shared().remove(list_->currentItem()->data(0, Qt::UserRole).toString().toStdString());
}

void SnapshotsPane::refreshAccount() {
    std::string problem;
    const auto account = loadCloudAccount(&problem);
    if (account) {
        server_->setText(QString::fromStdString(account->server));
        user_->setText(QString::fromStdString(account->user));
        status_->setText("Signed in as " + QString::fromStdString(account->user) + ". The library syncs every minute and after each change.");
    } else {
        status_->setText(problem.empty() ? QString("Signed out: the library stays on this machine.") : QString::fromStdString(problem));
    }
    signOutButton_->setEnabled(account.has_value());
    signInButton_->setEnabled(!signIn_);
}

void SnapshotsPane::signIn() {
    if (signIn_) return;
    const CloudAccount account{server_->text().trimmed().toStdString(), user_->text().trimmed().toStdString(), false};
    signIn_ = std::make_unique<CloudSignIn>(account, password_->text().toStdString(), secrets);
    status_->setText("Signing in…");
    signInButton_->setEnabled(false);
    signIn_->start([this](const std::optional<std::string>& failure) {
        // Let go of the sign-in on a later turn: its request is over, but this runs inside its answer.
        env().mainQueue->post([done = std::shared_ptr<CloudSignIn>(signIn_.release())] {});
        password_->clear();
        if (failure) {
            status_->setText("Could not sign in: " + QString::fromStdString(*failure) + ". Nothing was kept.");
            signInButton_->setEnabled(true);
            return;
        }
        refreshAccount();
        CloudSync::shared().fetchCloudKit("Kro/SnapshotsPane", "signIn()", __LINE__);
    });
}

void SnapshotsPane::signOut() {
    signOutOfCloud(secrets);
    password_->clear();
    refreshAccount();
}

QString SnapshotsPane::accountStatus() const { return status_->text(); }

}  // namespace kro
