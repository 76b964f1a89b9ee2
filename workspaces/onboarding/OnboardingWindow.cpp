#include "workspaces/onboarding/OnboardingWindow.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSystemTrayIcon>
#include <QVBoxLayout>

#include "app/AppDelegate.h"
#include "picker/HotKeyLabel.h"
#include "picker/HotKeys.h"

namespace kro {
namespace {

QString shortcutOf(HotKeyIdentifier identifier) {
    const auto* key = HotKeys::shared().hotKey(identifier);
    if (!key || key->deleted || !key->enabled()) return "no shortcut";
    return "<b>" + QString::fromStdString(readableShortcutLabel(key->flags, key->code)).toHtmlEscaped() + "</b>";
}

QLabel* paragraph(const QString& html, QWidget* parent) {
    auto* label = new QLabel(html, parent);
    label->setWordWrap(true);
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setAccessibleName(QString(html).remove(QRegularExpression("<[^>]*>")));
    return label;
}

}  // namespace

bool trayHostAvailable() { return QSystemTrayIcon::isSystemTrayAvailable(); }

OnboardingWindow::OnboardingWindow(AppDelegate* delegate, QWidget* parent)
    : QWidget(parent, Qt::Window), delegate_(delegate) {
    setWindowTitle("Welcome to Kro");
    setAccessibleName("Welcome to Kro");
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(14);
    auto* title = new QLabel("Welcome to Kro", this);
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    title->setFont(big);
    layout->addWidget(title);
    layout->addWidget(paragraph("Kro lives in the tray. It picks colors from anywhere on the screen, keeps them in a "
                                "history and in palettes, and copies each one as text in the format you choose.",
                                this));
    shortcuts_ = paragraph({}, this);
    loupe_ = paragraph({}, this);
    tray_ = paragraph({}, this);
    tray_->setAccessibleName("Tray check");
    layout->addWidget(shortcuts_);
    layout->addWidget(loupe_);
    layout->addWidget(tray_);
    layout->addStretch(1);

    auto* buttons = new QDialogButtonBox(this);
    auto* preferences = buttons->addButton("Open Preferences", QDialogButtonBox::ActionRole);
    preferences->setAccessibleName("Open the preferences");
    connect(preferences, &QPushButton::clicked, this, [this] {
        if (delegate_) delegate_->openPreferences();
    });
    auto* done = buttons->addButton("Start Picking", QDialogButtonBox::AcceptRole);
    done->setAccessibleName("Close the tour");
    done->setDefault(true);
    connect(done, &QPushButton::clicked, this, &QWidget::close);
    layout->addWidget(buttons);
    refresh();
    resize(520, 480);
}

void OnboardingWindow::refresh() {
    shortcuts_->setText("<b>Pick a color</b> with " + shortcutOf(HotKeyIdentifier::openPicker) +
                        " from any application. The library opens with " + shortcutOf(HotKeyIdentifier::openMainMenu) +
                        ", the contrast checker with " + shortcutOf(HotKeyIdentifier::openContrastChecker) +
                        " and the color dock shows or hides with " + shortcutOf(HotKeyIdentifier::toggleColorDock) +
                        ". Every shortcut can be changed in Preferences › Shortcuts.");
    loupe_->setText("<b>In the loupe</b>, click, " + shortcutOf(HotKeyIdentifier::pickColorEnter) + " or " +
                    shortcutOf(HotKeyIdentifier::pickColorSpace) +
                    " picks the color under the centre; the arrow keys move one pixel (ten with Shift), the scroll "
                    "wheel zooms, holding Ctrl offers the other modes (several colors, contrast) and " +
                    shortcutOf(HotKeyIdentifier::closePicker) + " closes it.");
    if (trayHostAvailable()) {
        tray_->setText("<b>✓ The tray icon is in your panel.</b> A left click opens the menu window with your "
                       "palettes; a right click lists every window of Kro.");
    } else {
        tray_->setText("<b>⚠ This desktop shows no tray icons.</b> Kro runs all the same and answers its shortcuts. "
                       "On GNOME, install the AppIndicator extension (<tt>sudo apt install "
                       "gnome-shell-extension-appindicator</tt>), turn it on in the Extensions application and log in "
                       "again. Until then, <tt>kro open kro://settings</tt> opens the preferences from a terminal.");
    }
    tray_->setAccessibleName(QString(tray_->text()).remove(QRegularExpression("<[^>]*>")));
}

QString OnboardingWindow::trayText() const { return tray_->text(); }

void OnboardingWindow::showEvent(QShowEvent* event) {
    refresh();
    QWidget::showEvent(event);
}

void OnboardingWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

OnboardingWindow& OnboardingWindowController::window() {
    if (!window_) window_ = std::make_unique<OnboardingWindow>(delegate_);
    return *window_;
}

void OnboardingWindowController::show() {
    auto& shown = window();
    shown.show();
    shown.raise();
    shown.activateWindow();
}

void OnboardingWindowController::hide() {
    if (window_) window_->hide();
}

void OnboardingWindowController::close() {
    if (window_) window_->close();
}

bool OnboardingWindowController::isVisible() const { return window_ && window_->isVisible(); }

}  // namespace kro
