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

void QtAppearance::apply(std::optional<bool> dark) {
    static const QString systemStyle = QApplication::style()->name();
    static const QPalette systemPalette = QApplication::palette();
    if (!dark) {
        QApplication::setStyle(QStyleFactory::create(systemStyle));
        QApplication::setPalette(systemPalette);
    } else if (*dark) {
        QApplication::setStyle(QStyleFactory::create("Fusion"));
        QPalette palette;
        const QColor window(45, 45, 48), base(30, 30, 32), text(230, 230, 230), highlight(64, 128, 220);
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::AlternateBase, window);
        palette.setColor(QPalette::ToolTipBase, window);
        palette.setColor(QPalette::ToolTipText, text);
        palette.setColor(QPalette::Text, text);
        palette.setColor(QPalette::Button, window);
        palette.setColor(QPalette::ButtonText, text);
        palette.setColor(QPalette::Highlight, highlight);
        palette.setColor(QPalette::HighlightedText, Qt::white);
        QApplication::setPalette(palette);
    } else {
        auto* fusion = QStyleFactory::create("Fusion");
        QApplication::setStyle(fusion);
        QApplication::setPalette(fusion->standardPalette());
    }
}

void QtApplication::quit() { QCoreApplication::quit(); }

}  // namespace kro
