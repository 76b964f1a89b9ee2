#pragma once
// The formats pane: the catalogue's formats in their order, to add, duplicate, rename, delete, move, sort
// and choose as the copied format; the three templates of the format in hand with their options, and a live
// preview of what they give for sample colours. Template edits are kept a moment after the last keystroke
// (and at once when the field is left), so the catalogue is not rewritten on every key.
#include <QTimer>
#include <QWidget>
#include <array>
#include <string>

#include "formats/ColorFormatItem.h"
#include "workspaces/common/Observers.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QTableWidget;

namespace kro {

class FormatsPane : public QWidget {
public:
    enum Template { copied, loupe, listRow };

    explicit FormatsPane(QWidget* parent = nullptr);

    QListWidget* list() const { return list_; }
    QPlainTextEdit* templateEditor(Template which) const { return editors_[which]; }
    QLineEdit* nameField() const { return name_; }
    QTableWidget* preview() const { return preview_; }
    // The format in hand; null when none.
    ColorFormatItemRef current() const;
    // Keeps whatever is typed but not yet kept.
    void commitEdits();

    void addFormat();
    void duplicateFormat();
    void deleteFormat();
    void moveFormat(int by);
    void useFormat();

private:
    void refreshList();
    void showFormat();
    void refreshPreview();
    ColorFormatItem edited() const;

    QListWidget* list_;
    QLineEdit* name_;
    std::array<QPlainTextEdit*, 3> editors_{};
    std::array<QCheckBox*, 3> options_{};
    QLineEdit* notes_;
    QTableWidget* preview_;
    QPushButton* use_;
    QPushButton* duplicate_;
    QPushButton* delete_;
    QPushButton* up_;
    QPushButton* down_;
    QComboBox* sort_;
    QTimer commitTimer_;
    std::string shownUUID_;
    Observers observers_;
};

}  // namespace kro
