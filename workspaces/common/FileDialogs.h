#pragma once
// The file dialogs of the windows. The end-to-end tests cannot click through a dialog, so when
// KRO_TEST_DIALOG_ANSWERS names a file, each dialog takes its answer from the first line of that file
// (removing it) instead of asking; an empty line is a cancelled dialog.
#include <QString>
#include <QStringList>

class QWidget;

namespace kro::FileDialogs {

// Files to import; empty when cancelled.
QStringList openFiles(QWidget* parent, const QString& title, const QString& filter);
// Where to save; empty when cancelled. `selectedFilter` holds the filter in use, and is set to the one
// chosen.
QString saveFile(QWidget* parent, const QString& title, const QString& suggestedPath, const QStringList& filters,
                 QString& selectedFilter);

}  // namespace kro::FileDialogs
