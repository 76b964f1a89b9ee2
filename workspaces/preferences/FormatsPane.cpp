#include "workspaces/preferences/FormatsPane.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>

#include "formats/ColorFormatUndo.h"
#include "formats/ColorFormats.h"
#include "library/Notifications.h"
#include "library/Settings.h"
#include "workspaces/common/Swatch.h"

namespace kro {
namespace {

constexpr const char* kOptionNames[3] = {ColorFormatOption::allCaps, ColorFormatOption::showPrefix,
                                         ColorFormatOption::removeWhiteSpaces};
constexpr const char* kOptionLabels[3] = {"All caps", "Show the # prefix", "Remove white space"};
constexpr std::string ColorFormatItem::*kTemplates[3] = {&ColorFormatItem::clipboardFormat,
                                                         &ColorFormatItem::pickerFormat, &ColorFormatItem::menuFormat};
constexpr ColorFormatSort kSorts[] = {ColorFormatSort::dateASC, ColorFormatSort::dateDESC, ColorFormatSort::nameASC,
                                      ColorFormatSort::nameDESC};

// The preview's sample colours: a saturated blue, a translucent red, a dark green and plain white.
std::vector<ColorValue> sampleColors() {
    return {ColorValue::rgb(30 / 255.0, 144 / 255.0, 1), ColorValue::rgb(1, 99 / 255.0, 71 / 255.0, 0.5),
            ColorValue::rgb(0.1, 0.35, 0.2), ColorValue::rgb(1, 1, 1)};
}

std::optional<bool> option(const ColorFormatOptions& options, const char* name) {
    for (const auto& [key, on] : options) {
        if (key == name) return on;
    }
    return std::nullopt;
}

ColorFormatOptions withOption(ColorFormatOptions options, const char* name, std::optional<bool> value) {
    const auto found = std::find_if(options.begin(), options.end(), [name](const auto& entry) { return entry.first == name; });
    if (!value) {
        if (found != options.end()) options.erase(found);
    } else if (found != options.end()) {
        found->second = *value;
    } else {
        options.emplace_back(name, *value);
    }
    return options;
}

QPushButton* button(const QString& text, const QString& accessible, QWidget* parent) {
    auto* made = new QPushButton(text, parent);
    made->setAccessibleName(accessible);
    made->setToolTip(accessible);
    return made;
}

}  // namespace

FormatsPane::FormatsPane(QWidget* parent)
    : QWidget(parent),
      list_(new QListWidget(this)),
      name_(new QLineEdit(this)),
      notes_(new QLineEdit(this)),
      preview_(new QTableWidget(this)),
      use_(button("Use for Copying", "Copy colors in this format", this)),
      duplicate_(button("Duplicate", "Duplicate the format", this)),
      delete_(button("Delete", "Delete the format", this)),
      up_(button("↑", "Move the format up", this)),
      down_(button("↓", "Move the format down", this)),
      sort_(new QComboBox(this)) {
    auto* layout = new QHBoxLayout(this);

    // The list and what is done to it.
    auto* left = new QVBoxLayout();
    list_->setAccessibleName("Formats");
    list_->setMinimumWidth(180);
    connect(list_, &QListWidget::currentRowChanged, this, [this] {
        commitEdits();
        showFormat();
    });
    connect(list_, &QListWidget::itemActivated, this, [this] { useFormat(); });
    left->addWidget(list_, 1);
    auto* edits = new QHBoxLayout();
    auto* add = button("+", "Add a format", this);
    connect(add, &QPushButton::clicked, this, [this] { addFormat(); });
    connect(duplicate_, &QPushButton::clicked, this, [this] { duplicateFormat(); });
    connect(delete_, &QPushButton::clicked, this, [this] { deleteFormat(); });
    connect(up_, &QPushButton::clicked, this, [this] { moveFormat(-1); });
    connect(down_, &QPushButton::clicked, this, [this] { moveFormat(+1); });
    delete_->setText("−");
    // The row shares the column's width, so the list keeps room for the templates beside it.
    for (auto* made : {add, delete_, duplicate_, up_, down_}) {
        made->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        edits->addWidget(made, made == duplicate_ ? 3 : 1);
    }
    left->addLayout(edits);
    sort_->addItems({"Sort by date added", "Sort by date, newest first", "Sort by name", "Sort by name, Z to A"});
    sort_->setAccessibleName("Sort the formats");
    sort_->setObjectName("formatSort");
    connect(sort_, &QComboBox::activated, this, [this](int index) {
        commitEdits();
        Settings::shared().setFormatSort(kSorts[index]);
        ColorFormats::shared().sortFormats(kSorts[index]);
    });
    left->addWidget(sort_);
    connect(use_, &QPushButton::clicked, this, [this] { useFormat(); });
    left->addWidget(use_);
    auto* column = new QWidget(this);
    column->setLayout(left);
    left->setContentsMargins(0, 0, 0, 0);
    column->setMaximumWidth(fontMetrics().averageCharWidth() * 36);
    layout->addWidget(column);

    // The format in hand.
    auto* form = new QFormLayout();
    name_->setAccessibleName("Format name");
    connect(name_, &QLineEdit::editingFinished, this, [this] {
        if (auto item = current(); item && item->custom) ColorFormats::shared().rename(item, name_->text().trimmed().toStdString());
    });
    form->addRow("Name:", name_);
    const QString editorNames[3] = {"Copied text", "Loupe label", "List row"};
    for (int which = 0; which < 3; ++which) {
        auto* editor = new QPlainTextEdit(this);
        editor->setAccessibleName(editorNames[which] + " template");
        editor->setTabChangesFocus(true);
        editor->setFixedHeight(editor->fontMetrics().lineSpacing() * 3 + 12);
        QFont mono = editor->font();
        mono.setFamily("monospace");
        editor->setFont(mono);
        connect(editor, &QPlainTextEdit::textChanged, this, [this] {
            refreshPreview();
            commitTimer_.start();
        });
        editors_[size_t(which)] = editor;
        form->addRow(editorNames[which] + ":", editor);
    }
    commitTimer_.setSingleShot(true);
    commitTimer_.setInterval(600);
    connect(&commitTimer_, &QTimer::timeout, this, [this] { commitEdits(); });

    auto* optionsRow = new QHBoxLayout();
    for (int which = 0; which < 3; ++which) {
        auto* box = new QCheckBox(kOptionLabels[which], this);
        box->setTristate(true);
        box->setAccessibleName(kOptionLabels[which]);
        box->setToolTip("Half-checked: the text stays as the template gives it");
        connect(box, &QCheckBox::stateChanged, this, [this, which](int state) {
            auto item = current();
            if (!item) return;
            const std::optional<bool> value = state == Qt::PartiallyChecked ? std::nullopt : std::optional<bool>(state == Qt::Checked);
            item->change(&ColorFormatItem::options, withOption(item->options, kOptionNames[which], value));
            ColorFormatUndo::shared().save(ColorFormats::shared(), 0);
        });
        options_[size_t(which)] = box;
        optionsRow->addWidget(box);
    }
    optionsRow->addStretch(1);
    form->addRow("Options:", optionsRow);
    notes_->setAccessibleName("Notes");
    connect(notes_, &QLineEdit::editingFinished, this, [this] {
        if (auto item = current()) item->change(&ColorFormatItem::notes, notes_->text().toStdString());
    });
    form->addRow("Notes:", notes_);

    preview_->setAccessibleName("Preview on sample colors");
    preview_->setColumnCount(3);
    preview_->setHorizontalHeaderLabels({"Copied", "Loupe", "List"});
    preview_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    preview_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    preview_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    preview_->setSelectionMode(QAbstractItemView::NoSelection);
    preview_->setRowCount(int(sampleColors().size()));
    form->addRow("Preview:", preview_);
    layout->addLayout(form, 1);

    // Tab walks the list and what is done to it, then the format in hand from its name down.
    QWidget* order[] = {list_, add, delete_, duplicate_, up_, down_, sort_, use_, name_, editors_[0], editors_[1],
                        editors_[2], options_[0], options_[1], options_[2], notes_, preview_};
    for (size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);

    observers_.on({Notifications::colorFormatUpdated}, [this] {
        refreshList();
        showFormat();
    });
    refreshList();
    showFormat();
}

ColorFormatItemRef FormatsPane::current() const {
    const int row = list_->currentRow();
    const auto& formats = ColorFormats::shared().formats;
    return row >= 0 && row < int(formats.size()) ? formats[size_t(row)] : nullptr;
}

void FormatsPane::refreshList() {
    const QSignalBlocker hold(list_);
    const auto& catalogue = ColorFormats::shared();
    list_->clear();
    int currentRow = -1;
    for (size_t row = 0; row < catalogue.formats.size(); ++row) {
        const auto& item = catalogue.formats[row];
        const bool chosen = item->name == catalogue.selectedFormatName;
        auto* entry = new QListWidgetItem((chosen ? "✓ " : "    ") + QString::fromStdString(item->name), list_);
        entry->setData(Qt::AccessibleTextRole, QString::fromStdString(item->name) + (chosen ? ", used for copying" : ""));
        if (!item->custom) entry->setToolTip("Shipped with Kro: duplicate it to change it");
        if (item->uuid == shownUUID_) currentRow = int(row);
    }
    list_->setCurrentRow(currentRow >= 0 ? currentRow : std::min(0, list_->count() - 1));
    const QSignalBlocker holdSort(sort_);
    sort_->setCurrentIndex(int(std::find(std::begin(kSorts), std::end(kSorts), Settings::shared().formatSort()) - std::begin(kSorts)));
}

void FormatsPane::showFormat() {
    const auto item = current();
    const bool editable = item && item->custom;
    // Typing that is not kept yet survives a refresh of the same format.
    const bool same = item && item->uuid == shownUUID_;
    shownUUID_ = item ? item->uuid : std::string();
    {
        const QSignalBlocker holdName(name_);
        if (!name_->hasFocus() || !same) name_->setText(item ? QString::fromStdString(item->name) : QString());
    }
    name_->setReadOnly(!editable);
    for (int which = 0; which < 3; ++which) {
        auto* editor = editors_[size_t(which)];
        const QSignalBlocker hold(editor);
        const QString stored = item ? QString::fromStdString((*item).*kTemplates[which]) : QString();
        if (!(same && commitTimer_.isActive()) && editor->toPlainText() != stored) editor->setPlainText(stored);
        editor->setReadOnly(!editable);
        auto* box = options_[size_t(which)];
        const QSignalBlocker holdBox(box);
        const auto value = item ? option(item->options, kOptionNames[which]) : std::nullopt;
        box->setCheckState(!value ? Qt::PartiallyChecked : *value ? Qt::Checked : Qt::Unchecked);
        box->setEnabled(editable);
    }
    {
        const QSignalBlocker holdNotes(notes_);
        notes_->setText(item ? QString::fromStdString(item->notes) : QString());
        // A long note shows its beginning, not its end.
        notes_->setCursorPosition(0);
        notes_->setReadOnly(!editable);
    }
    const int row = list_->currentRow();
    delete_->setEnabled(editable);
    duplicate_->setEnabled(item != nullptr);
    up_->setEnabled(row > 0);
    down_->setEnabled(row >= 0 && row + 1 < list_->count());
    use_->setEnabled(item && item->name != ColorFormats::shared().selectedFormatName);
    refreshPreview();
}

ColorFormatItem FormatsPane::edited() const {
    ColorFormatItem shown;
    if (auto item = current()) shown = *item;
    for (int which = 0; which < 3; ++which) shown.*kTemplates[which] = editors_[size_t(which)]->toPlainText().toStdString();
    return shown;
}

void FormatsPane::refreshPreview() {
    // What the templates give as they stand in the editors, kept or not. The language reports no errors:
    // a template that does not read shows what it returns.
    const auto shown = edited();
    const auto samples = sampleColors();
    for (int row = 0; row < int(samples.size()); ++row) {
        const auto& color = samples[size_t(row)];
        const QColor swatch = displayColor(color);
        auto* header = new QTableWidgetItem("●");
        header->setForeground(swatch);
        header->setToolTip(swatch.name(QColor::HexArgb));
        preview_->setVerticalHeaderItem(row, header);
        for (int which = 0; which < 3; ++which) {
            const auto text = QString::fromStdString(shown.text(color, shown.*kTemplates[which]));
            auto* cell = preview_->item(row, which);
            if (!cell) preview_->setItem(row, which, cell = new QTableWidgetItem());
            cell->setText(text);
            cell->setToolTip(text);
        }
    }
}

void FormatsPane::commitEdits() {
    commitTimer_.stop();
    auto item = current();
    if (!item || !item->custom || item->uuid != shownUUID_) return;
    bool changed = false;
    for (int which = 0; which < 3; ++which) {
        const auto text = editors_[size_t(which)]->toPlainText().toStdString();
        if ((*item).*kTemplates[which] == text) continue;
        item->change(kTemplates[which], text);
        changed = true;
    }
    if (changed) ColorFormatUndo::shared().save(ColorFormats::shared(), 0);
}

void FormatsPane::addFormat() {
    commitEdits();
    auto item = std::make_shared<ColorFormatItem>();
    item->name = "Custom Format";
    shownUUID_.clear();
    ColorFormats::shared().add(item);
    shownUUID_ = item->uuid;
    refreshList();
    showFormat();
    ColorFormatUndo::shared().save(ColorFormats::shared(), 0);
    name_->setFocus();
    name_->selectAll();
}

void FormatsPane::duplicateFormat() {
    commitEdits();
    auto original = current();
    if (!original) return;
    auto copy = std::make_shared<ColorFormatItem>(*original);
    copy->name = original->name + " Copy";
    // The catalogue's rule: a duplicate keeps the notes and options, and starts from the new-format template.
    ColorFormats::shared().add(copy);
    shownUUID_ = copy->uuid;
    refreshList();
    showFormat();
    ColorFormatUndo::shared().save(ColorFormats::shared(), 0);
}

void FormatsPane::deleteFormat() {
    auto item = current();
    if (!item || !item->custom) return;
    commitTimer_.stop();
    const int row = list_->currentRow();
    ColorFormats::shared().deleteFormats({item});
    const auto& formats = ColorFormats::shared().formats;
    shownUUID_ = formats.empty() ? std::string() : formats[size_t(std::min(row, int(formats.size()) - 1))]->uuid;
    refreshList();
    showFormat();
    ColorFormatUndo::shared().save(ColorFormats::shared(), 0);
}

void FormatsPane::moveFormat(int by) {
    commitEdits();
    const int row = list_->currentRow();
    if (row < 0 || row + by < 0 || row + by >= list_->count()) return;
    ColorFormats::shared().move(size_t(row), size_t(row + by));
    ColorFormatUndo::shared().save(ColorFormats::shared(), 0);
}

void FormatsPane::useFormat() {
    commitEdits();
    if (auto item = current()) ColorFormats::shared().select(*item);
}

}  // namespace kro
