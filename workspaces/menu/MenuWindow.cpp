#include "workspaces/menu/MenuWindow.h"

#include <QCursor>
#include <QEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QSizeGrip>
#include <QVBoxLayout>

#include "app/AppDelegate.h"
#include "library/Settings.h"
#include "workspaces/common/NoticeBar.h"
#include "workspaces/menu/SwatchStripView.h"

namespace kro {
namespace {

QPushButton* button(const QString& text, const QString& accessible, QWidget* parent, const std::function<void()>& run) {
    auto* made = new QPushButton(text, parent);
    made->setAccessibleName(accessible);
    QObject::connect(made, &QPushButton::clicked, [run] { run(); });
    return made;
}

}  // namespace

MenuWindow::MenuWindow(AppDelegate* delegate, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint),
      delegate_(delegate),
      notice_(new NoticeBar(this)),
      actions_([this](const std::string& text) { notice_->showNotice(QString::fromStdString(text)); },
               [this](const std::string& text) { notice_->showFailure(QString::fromStdString(text)); }),
      model_(actions_),
      strips_(new SwatchStripView(this)) {
    setWindowTitle("Kro");
    setAccessibleName("Kro menu");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 4);

    auto* pick = button("Pick Color", "Pick a color", this, [this] {
        if (delegate_) delegate_->openPicker(PickerSource::standard);
    });
    pick->setDefault(true);
    layout->addWidget(pick);
    layout->addWidget(notice_);

    strips_->setAccessibleName("History and palettes");
    strips_->setModel(&model_);
    strips_->onColor = [this](const ColorRef& color) {
        if (delegate_) delegate_->copyColor(color, true, ColorDeliveryTarget::clipboard);
        notice_->showNotice("Copied " + QString::fromStdString(color->name.value_or(color->hex)));
    };
    layout->addWidget(strips_, 1);

    auto* windows = new QGridLayout();
    auto open = [this](void (AppDelegate::*action)()) {
        return [this, action] {
            if (delegate_) (delegate_->*action)();
        };
    };
    auto* library = button("Library", "Open the library window", this, open(&AppDelegate::openMainWindow));
    auto* contrast = button("Contrast", "Open the contrast checker", this, open(&AppDelegate::openContrastWindow));
    auto* panel = button("Color Panel", "Open the color panel", this, open(&AppDelegate::openColorPanel));
    auto* preferences = button("Preferences", "Open the preferences", this, [this] {
        if (delegate_) delegate_->openPreferences();
    });
    auto* quit = button("Quit", "Quit Kro", this, open(&AppDelegate::quit));
    // Windows this build does not have yet are shown, but cannot be opened.
    if (delegate_) {
        contrast->setEnabled(delegate_->contrastWindowController != nullptr);
        panel->setEnabled(delegate_->colorPanelWindowController != nullptr);
        preferences->setEnabled(delegate_->preferencesWindowController != nullptr);
    }
    windows->addWidget(library, 0, 0);
    windows->addWidget(contrast, 0, 1);
    windows->addWidget(panel, 0, 2);
    windows->addWidget(preferences, 1, 0, 1, 2);
    windows->addWidget(quit, 1, 2);
    layout->addLayout(windows);
    auto* grip = new QSizeGrip(this);
    grip->setAccessibleName("Resize");
    layout->addWidget(grip, 0, Qt::AlignBottom | Qt::AlignRight);

    setTabOrder(pick, strips_);
    const auto& size = Settings::shared().menuSize();
    resize(size && size->width >= 240 && size->height >= 240 ? QSize(int(size->width), int(size->height)) : QSize(340, 460));
}

void MenuWindow::present() {
    // Under the tray icon, which is where the pointer is when it was clicked; kept on the screen.
    const QPoint pointer = QCursor::pos();
    const QScreen* screen = QGuiApplication::screenAt(pointer);
    if (!screen) screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);
    QPoint at(pointer.x() - width() / 2, pointer.y() + 12);
    if (at.y() + height() > available.bottom()) at.setY(pointer.y() - height() - 12);
    at.setX(std::clamp(at.x(), available.left(), std::max(available.left(), available.right() - width())));
    at.setY(std::clamp(at.y(), available.top(), std::max(available.top(), available.bottom() - height())));
    move(at);
    show();
    raise();
    activateWindow();
    strips_->setFocus();
    if (!strips_->currentIndex().isValid()) strips_->setCurrentIndex(model_.index(0));
}

void MenuWindow::hideEvent(QHideEvent* event) {
    const SettingsSize kept{double(width()), double(height())};
    if (Settings::shared().menuSize() != kept) Settings::shared().setMenuSize(kept);
    QWidget::hideEvent(event);
}

void MenuWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) return hide();
    QWidget::keyPressEvent(event);
}

bool MenuWindow::event(QEvent* event) {
    // A popover: it goes away when another window takes the focus.
    if (event->type() == QEvent::WindowDeactivate && isVisible()) hide();
    return QWidget::event(event);
}

MenuWindow& MenuWindowController::window() {
    if (!window_) window_ = std::make_unique<MenuWindow>(delegate_);
    return *window_;
}

void MenuWindowController::show() { window().present(); }

void MenuWindowController::hide() {
    if (window_) window_->hide();
}

void MenuWindowController::close() {
    if (window_) window_->close();
}

bool MenuWindowController::isVisible() const { return window_ && window_->isVisible(); }

}  // namespace kro
