#pragma once
// The window's inline messages: a short notice that fades after a few seconds ("Color Created", an import
// summary, why a locked palette refused), and a standing failure message that stays until it is cleared.
// Screen readers hear both: the label's accessible name is the message.
#include <QFrame>
#include <QTimer>

class QLabel;
class QToolButton;

namespace kro {

class NoticeBar : public QFrame {
public:
    explicit NoticeBar(QWidget* parent = nullptr);

    void showNotice(const QString& text, int milliseconds = 2500);
    // An empty text clears it.
    void showFailure(const QString& text);
    QString text() const;

private:
    void present(const QString& text, bool failure);

    QLabel* label_;
    QToolButton* close_;
    QTimer timer_;
    bool failure_ = false;
};

}  // namespace kro
