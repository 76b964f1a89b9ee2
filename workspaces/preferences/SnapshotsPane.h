#pragma once
// The snapshots pane: how often a snapshot of the library is taken, the list of snapshots to restore or
// delete, one taken now; and the sync account: server, user and password (kept in the secret store only
// once the server has accepted them), signing out, and what the last sync did.
#include <QWidget>
#include <memory>

#include "workspaces/common/Observers.h"
#include "workspaces/preferences/PaneBinder.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace kro {

class CloudSignIn;

class SnapshotsPane : public QWidget {
public:
    explicit SnapshotsPane(QWidget* parent = nullptr);
    ~SnapshotsPane() override;

    QTreeWidget* list() const { return list_; }
    void takeSnapshot();
    void restoreSelected();
    void deleteSelected();

    QLineEdit* serverField() const { return server_; }
    QLineEdit* userField() const { return user_; }
    QLineEdit* passwordField() const { return password_; }
    // Asks the server; the account is kept only when it answers. The outcome shows in the status line.
    void signIn();
    void signOut();
    QString accountStatus() const;
    bool signingIn() const { return signIn_ != nullptr; }

private:
    void refreshList();
    void refreshAccount();

    PaneBinder binder_;
    QTreeWidget* list_;
    QLineEdit* server_;
    QLineEdit* user_;
    QLineEdit* password_;
    QPushButton* signInButton_;
    QPushButton* signOutButton_;
    QLabel* status_;
    QLabel* lastSync_;
    std::unique_ptr<CloudSignIn> signIn_;
    int cloudObserver_ = -1;
    Observers observers_;
};

}  // namespace kro
