#include "workspaces/common/NoticeBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include "library/Sherlog.h"

namespace kro {

NoticeBar::NoticeBar(QWidget* parent) : QFrame(parent), label_(new QLabel(this)), close_(new QToolButton(this)) {
    setAccessibleName("Notice");
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 4, 4, 4);
    label_->setWordWrap(true);
    label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(label_, 1);
    close_->setText("Dismiss");
    close_->setAccessibleName("Dismiss notice");
    close_->setAutoRaise(true);
    layout->addWidget(close_);
    connect(close_, &QToolButton::clicked, this, [this] {
        failure_ = false;
        hide();
    });
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, [this] {
        if (!failure_) hide();
    });
    hide();
}

QString NoticeBar::text() const { return isHidden() ? QString() : label_->text(); }

void NoticeBar::present(const QString& text, bool failure) {
    // Logged too, so that what a window told its person can be read back afterwards.
    SHERLOG("notice: " + text.toStdString(), SherlogLevel::info);
    failure_ = failure;
    label_->setText(text);
    label_->setAccessibleName(text);
    QPalette colors = palette();
    const auto base = parentWidget() ? parentWidget()->palette() : palette();
    colors.setColor(QPalette::Window, failure ? QColor(190, 40, 40) : base.color(QPalette::ToolTipBase));
    colors.setColor(QPalette::WindowText, failure ? QColor(Qt::white) : base.color(QPalette::ToolTipText));
    setPalette(colors);
    label_->setPalette(colors);
    close_->setVisible(failure);
    show();
}

void NoticeBar::showNotice(const QString& text, int milliseconds) {
    // A standing failure is not hidden by a passing notice.
    if (failure_ || text.isEmpty()) return;
    present(text, false);
    timer_.start(milliseconds);
}

void NoticeBar::showFailure(const QString& text) {
    if (text.isEmpty()) {
        failure_ = false;
        hide();
        return;
    }
    timer_.stop();
    present(text, true);
}

}  // namespace kro
