#include "platform/linux/QtQueues.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>
#include <QTimer>

namespace kro {
namespace {

int milliseconds(Seconds delay) { return std::max(0, static_cast<int>(delay.count() * 1000.0 + 0.5)); }

class QtTimer final : public Timer {
public:
    QtTimer(Seconds interval, Task tick) : timer_(new QTimer(QCoreApplication::instance())) {
        timer_->setInterval(milliseconds(interval));
        QObject::connect(timer_, &QTimer::timeout, timer_, [tick = std::move(tick)] { tick(); });
        timer_->start();
    }
    ~QtTimer() override { invalidate(); }
    void invalidate() override {
        if (timer_) {
            timer_->stop();
            timer_->deleteLater();
            timer_ = nullptr;
        }
    }
    bool isValid() const override { return timer_ != nullptr; }

private:
    QPointer<QTimer> timer_;
};

}  // namespace

void QtMainQueue::post(Task task, Seconds delay) {
    auto* app = QCoreApplication::instance();
    if (!app) return;
    const int ms = milliseconds(delay);
    // Hop to the main thread first; a delay is then counted by a main-thread timer.
    QMetaObject::invokeMethod(app, [task = std::move(task), ms, app]() mutable {
        if (ms == 0) {
            task();
        } else {
            QTimer::singleShot(ms, app, std::move(task));
        }
    }, Qt::QueuedConnection);
}

std::unique_ptr<Timer> QtMainQueue::scheduleRepeating(Seconds interval, Task tick) {
    return std::make_unique<QtTimer>(interval, std::move(tick));
}

}  // namespace kro
