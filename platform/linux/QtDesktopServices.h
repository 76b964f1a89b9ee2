#pragma once
#include <QObject>

#include "platform/Desktop.h"

class QNetworkInformation;

namespace kro {

class QtClipboard final : public Clipboard {
public:
    std::optional<std::string> text() const override;
    void setText(const std::string& text) override;
};

// Reachability through QNetworkInformation; without a backend the status is never reported.
class QtNetworkMonitor final : public NetworkMonitor {
public:
    void start(std::function<void(NetworkStatus)> handler) override;
    void cancel() override;

private:
    QMetaObject::Connection connection_;
};

// Forced light or dark is the Fusion style with a light or dark palette; otherwise the desktop's own style.
class QtAppearance final : public Appearance {
public:
    void apply(std::optional<bool> dark) override;
};

class QtApplication final : public Application {
public:
    void quit() override;
};

}  // namespace kro
