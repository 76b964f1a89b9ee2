#include "workspaces/preferences/PreferencesWindow.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include "app/AppDelegate.h"
#include "workspaces/preferences/FormatsPane.h"
#include "workspaces/preferences/Panes.h"
#include "workspaces/preferences/ShortcutsPane.h"
#include "workspaces/preferences/SmartListEditor.h"
#include "workspaces/preferences/SnapshotsPane.h"

namespace kro {
namespace {

// The panes in the order of the sidebar, with the numbers the "settings" URL command gives them.
struct PaneEntry {
    int number;
    const char* title;
};
constexpr PaneEntry kPanes[] = {{0, "General"}, {1, "Appearance"}, {2, "Formats"}, {6, "Shortcuts"},
                                {5, "Dock"},    {8, "Snapshots"},  {9, "About"}};

// The first control of a pane a person can type into or press, in the order Tab takes; a row of tabs is
// passed over, as it switches between parts of the pane rather than changing anything.
QWidget* firstControl(QWidget* page) {
    for (QWidget* widget = page->nextInFocusChain(); widget && widget != page; widget = widget->nextInFocusChain()) {
        if (!page->isAncestorOf(widget) || qobject_cast<QTabBar*>(widget)) continue;
        if ((widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled() && widget->isVisibleTo(page)) return widget;
    }
    return nullptr;
}

int indexOf(int number) {
    for (int index = 0; index < int(std::size(kPanes)); ++index) {
        if (kPanes[index].number == number) return index;
    }
    return -1;
}

}  // namespace

QWidget* paneWithTitle(const QString& title, QWidget* content, QWidget* parent) {
    auto* page = new QWidget(parent);
    auto* layout = new QVBoxLayout(page);
    auto* heading = new QLabel(title, page);
    QFont big = heading->font();
    big.setPointSizeF(big.pointSizeF() * 1.3);
    big.setBold(true);
    heading->setFont(big);
    layout->addWidget(heading);
    auto* scroll = new QScrollArea(page);
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    // Tab goes straight to the pane's controls: the scroll area itself is no stop (it still scrolls a focused
    // control into view).
    scroll->setFocusPolicy(Qt::NoFocus);
    layout->addWidget(scroll, 1);
    page->setAccessibleName(title + " preferences");
    return page;
}

PreferencesWindow::PreferencesWindow(AppDelegate* delegate, QWidget* parent)
    : QWidget(parent, Qt::Window), delegate_(delegate), sidebar_(new QListWidget(this)), stack_(new QStackedWidget(this)) {
    setWindowTitle("Kro Preferences");
    setAccessibleName("Preferences");
    auto* layout = new QHBoxLayout(this);

    auto* side = new QVBoxLayout();
    sidebar_->setAccessibleName("Preference panes");
    sidebar_->setFixedWidth(sidebar_->fontMetrics().horizontalAdvance("Appearance") + 56);
    for (const auto& entry : kPanes) sidebar_->addItem(entry.title);
    // The title names the pane, as desktop settings windows do.
    connect(sidebar_, &QListWidget::currentRowChanged, this, [this](int row) {
        stack_->setCurrentIndex(row);
        if (row >= 0) setWindowTitle(QString(kPanes[row].title) + " — Kro Preferences");
    });
    side->addWidget(sidebar_, 1);
    auto* reset = new QPushButton("Reset All…", this);
    reset->setAccessibleName("Reset every preference to its default");
    connect(reset, &QPushButton::clicked, this, [this] { resetAll(); });
    side->addWidget(reset);
    layout->addLayout(side);

    Workspace* workspace = delegate_ ? delegate_->workspace() : nullptr;
    formats_ = new FormatsPane(this);
    auto* formatTabs = new QTabWidget(this);
    formatTabs->addTab(formats_, "Formats");
    formatTabs->addTab(makeSmartFormatsEditor(workspace, this), "Smart Formats");
    formatTabs->addTab(makeSmartProfilesEditor(workspace, this), "Smart Profiles");
    formatTabs->setAccessibleName("Formats and per-application choices");
    shortcuts_ = new ShortcutsPane(this);
    snapshots_ = new SnapshotsPane(this);
    for (const auto& entry : kPanes) {
        QWidget* content = nullptr;
        switch (entry.number) {
            case 0: content = makeGeneralPane(this); break;
            case 1: content = makeAppearancePane(this); break;
            case 2: content = formatTabs; break;
            case 6: content = shortcuts_; break;
            case 5: content = makeDockPane(this); break;
            case 8: content = snapshots_; break;
            case 9: content = makeAboutPane(delegate_, this); break;
        }
        stack_->addWidget(paneWithTitle(entry.title, content, this));
    }
    layout->addWidget(stack_, 1);
    sidebar_->setCurrentRow(0);
    resize(860, 620);
}

void PreferencesWindow::showPane(int number) {
    const int index = indexOf(number);
    if (index < 0) return;
    sidebar_->setCurrentRow(index);
    // Opened at a pane, the keyboard starts in it.
    if (auto* first = firstControl(stack_->widget(index))) first->setFocus(Qt::OtherFocusReason);
}

int PreferencesWindow::paneNumber() const {
    const int index = stack_->currentIndex();
    return index >= 0 ? kPanes[index].number : -1;
}

QWidget* PreferencesWindow::pane(int number) const {
    const int index = indexOf(number);
    return index >= 0 ? stack_->widget(index) : nullptr;
}

void PreferencesWindow::resetAll(bool ask) {
    if (ask && QMessageBox::question(this, "Reset all preferences?",
                                     "Every preference, format, per-application choice and shortcut goes back to "
                                     "Kro's own. Your palettes and snapshots stay.") != QMessageBox::Yes) {
        return;
    }
    if (delegate_) delegate_->resetAllPreferences();
}

void PreferencesWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Close) || event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void PreferencesWindow::hideEvent(QHideEvent* event) {
    // Typing in a template is kept when the window goes.
    formats_->commitEdits();
    QWidget::hideEvent(event);
}

PreferencesWindow& PreferencesWindowController::window() {
    if (!window_) window_ = std::make_unique<PreferencesWindow>(delegate_);
    return *window_;
}

void PreferencesWindowController::show() {
    auto& shown = window();
    shown.show();
    shown.raise();
    shown.activateWindow();
}

void PreferencesWindowController::hide() {
    if (window_) window_->hide();
}

void PreferencesWindowController::close() {
    if (window_) window_->close();
}

bool PreferencesWindowController::isVisible() const { return window_ && window_->isVisible(); }

void PreferencesWindowController::showPane(int number) { window().showPane(number); }

}  // namespace kro
