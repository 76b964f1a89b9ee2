#include "platform/linux/QtDesktopServices.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QNetworkInformation>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

namespace kro {

std::optional<std::string> QtClipboard::text() const {
    const auto* mime = QGuiApplication::clipboard()->mimeData(QClipboard::Clipboard);
    if (!mime || !mime->hasText()) return std::nullopt;
    return mime->text().toStdString();
}

void QtClipboard::setText(const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text), QClipboard::Clipboard);
}

void QtNetworkMonitor::start(std::function<void(NetworkStatus)> handler) {
    if (!QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability)) return;
    auto* info = QNetworkInformation::instance();
    auto report = [handler](QNetworkInformation::Reachability reachability) {
        switch (reachability) {
            case QNetworkInformation::Reachability::Online: handler(NetworkStatus::satisfied); break;
            case QNetworkInformation::Reachability::Unknown: break;
            case QNetworkInformation::Reachability::Disconnected: handler(NetworkStatus::unsatisfied); break;
            default: handler(NetworkStatus::requiresConnection); break;
        }
    };
    connection_ = QObject::connect(info, &QNetworkInformation::reachabilityChanged, info, report);
    report(info->reachability());
}

void QtNetworkMonitor::cancel() { QObject::disconnect(connection_); }

namespace {

// Kro's dark palette. Every group is filled: without its own disabled colours a disabled button or field
// would be drawn in the bright text of an enabled one and look usable.
QPalette darkPalette() {
    const QColor window(45, 45, 48), base(30, 30, 32), text(230, 230, 230), highlight(64, 128, 220);
    // Buttons a step lighter than the window, so that a checked one (drawn darker) and a notice (drawn in the
    // tooltip colour) stand apart from it.
    const QColor button(60, 60, 64), note(72, 70, 60);
    const QColor dimmed(120, 120, 126), dimmedBase(38, 38, 41);
    // From the button and window colours Qt derives the bevel shades (light, mid, dark, shadow) Fusion draws.
    QPalette palette(button, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window.lighter(110));
    palette.setColor(QPalette::ToolTipBase, note);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, QColor(150, 150, 156));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, highlight.lighter(130));
    palette.setColor(QPalette::LinkVisited, QColor(170, 130, 230));
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText,
                      QPalette::PlaceholderText, QPalette::Link}) {
        palette.setColor(QPalette::Disabled, role, dimmed);
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, dimmedBase);
    palette.setColor(QPalette::Disabled, QPalette::Button, dimmedBase);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(70, 70, 76));
    return palette;
}

}  // namespace

void QtAppearance::apply(std::optional<bool> dark) {
    static const QString systemStyle = QApplication::style()->name();
    static const QPalette systemPalette = QApplication::palette();
    if (!dark) {
        QApplication::setStyle(QStyleFactory::create(systemStyle));
        QApplication::setPalette(systemPalette);
    } else if (*dark) {
        QApplication::setStyle(QStyleFactory::create("Fusion"));
        QApplication::setPalette(darkPalette());
    } else {
        auto* fusion = QStyleFactory::create("Fusion");
        QApplication::setStyle(fusion);
        QApplication::setPalette(fusion->standardPalette());
    }
}

void QtApplication::quit() { QCoreApplication::quit(); }

}  // namespace kro
