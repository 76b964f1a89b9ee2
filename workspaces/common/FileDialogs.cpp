#include "workspaces/common/FileDialogs.h"

#include <QFile>
#include <QFileDialog>
#include <optional>

namespace kro::FileDialogs {
namespace {

// The next prepared answer, when the tests prepared any.
std::optional<QString> preparedAnswer() {
    const QString path = qEnvironmentVariable("KRO_TEST_DIALOG_ANSWERS");
    if (path.isEmpty()) return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return QString();
    QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
    file.close();
    const QString answer = lines.isEmpty() ? QString() : lines.takeFirst();
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) file.write(lines.join('\n').toUtf8());
    return answer;
}

}  // namespace

QStringList openFiles(QWidget* parent, const QString& title, const QString& filter) {
    if (auto answer = preparedAnswer()) return answer->isEmpty() ? QStringList() : answer->split('|');
    return QFileDialog::getOpenFileNames(parent, title, QString(), filter);
}

QString saveFile(QWidget* parent, const QString& title, const QString& suggestedPath, const QStringList& filters,
                 QString& selectedFilter) {
    if (auto answer = preparedAnswer()) return *answer;
    return QFileDialog::getSaveFileName(parent, title, suggestedPath, filters.join(";;"), &selectedFilter);
}

}  // namespace kro::FileDialogs
