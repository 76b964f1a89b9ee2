#include "workspaces/contrast/ContrastWindow.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "app/AppDelegate.h"
#include "formats/color/ColorConversions.h"
#include "formats/color/ColorName.h"
#include "formats/color/WCAG.h"
#include "library/ContrastUndo.h"
#include "library/Notifications.h"
#include "library/Preferences.h"
#include "platform/Environment.h"
#include "workspaces/common/HexEntry.h"
#include "workspaces/common/Swatch.h"
#include "workspaces/contrast/ContrastPreview.h"

namespace kro {
namespace {

// The thresholds of the level grid: normal text needs 4.5 for AA and 7 for AAA, large text 3 and 4.5.
constexpr double kThreshold[2][2] = {{4.5, 7.0}, {3.0, 4.5}};

QPushButton* button(const QString& text, const QString& accessible, QWidget* parent) {
    auto* made = new QPushButton(text, parent);
    made->setAccessibleName(accessible);
    return made;
}

}  // namespace

ContrastWindow::ContrastWindow(AppDelegate* delegate, QWidget* parent)
    : QWidget(parent, Qt::Window),
      delegate_(delegate),
      ratio_(new QLabel(this)),
      level_(new QLabel(this)),
      explanation_(new QLabel(this)),
      preview_(new ContrastPreview(this)),
      vision_(new QComboBox(this)),
      undo_(button("Undo", "Undo the last change of the colors", this)),
      redo_(button("Redo", "Redo the change of the colors", this)) {
    setWindowTitle("Kro Contrast Checker");
    setAccessibleName("Contrast checker");
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(12);

    auto* wells = new QHBoxLayout();
    wells->addWidget(makeWell(foreground, "Foreground"), 1);
    auto* swapButton = button("⇄", "Swap the foreground and background colors", this);
    swapButton->setToolTip("Swap colors");
    connect(swapButton, &QPushButton::clicked, this, [this] { swap(); });
    wells->addWidget(swapButton, 0, Qt::AlignVCenter);
    wells->addWidget(makeWell(background, "Background"), 1);
    layout->addLayout(wells);

    // The score: the ratio, its level in words, and the grid of what it passes.
    auto* score = new QHBoxLayout();
    QFont big = ratio_->font();
    big.setPointSizeF(big.pointSizeF() * 2.2);
    big.setBold(true);
    ratio_->setFont(big);
    ratio_->setAccessibleName("Contrast ratio");
    ratio_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    score->addWidget(ratio_);
    auto* words = new QVBoxLayout();
    QFont bold = level_->font();
    bold.setBold(true);
    level_->setFont(bold);
    level_->setAccessibleName("Conformance level");
    explanation_->setWordWrap(true);
    explanation_->setAccessibleName("What the level means");
    words->addWidget(level_);
    words->addWidget(explanation_);
    score->addLayout(words, 1);
    layout->addLayout(score);

    auto* grid = new QGridLayout();
    grid->addWidget(new QLabel("<b>AA</b>", this), 0, 1, Qt::AlignCenter);
    grid->addWidget(new QLabel("<b>AAA</b>", this), 0, 2, Qt::AlignCenter);
    const QString rows[2] = {"Normal text", "Large text (18pt, or 14pt bold)"};
    for (int row = 0; row < 2; ++row) {
        grid->addWidget(new QLabel(rows[row], this), row + 1, 0);
        for (int column = 0; column < 2; ++column) {
            auto* cell = new QLabel(this);
            cell->setAlignment(Qt::AlignCenter);
            cells_[row][column] = cell;
            grid->addWidget(cell, row + 1, column + 1);
        }
    }
    grid->setColumnStretch(0, 1);
    grid->setColumnMinimumWidth(1, 90);
    grid->setColumnMinimumWidth(2, 90);
    layout->addLayout(grid);

    layout->addWidget(preview_, 1);

    auto* bottom = new QHBoxLayout();
    auto* visionLabel = new QLabel("Preview as seen &with:", this);
    for (auto blindness : kAllColorBlindness) {
        vision_->addItem(blindness == ColorBlindness::normal ? "Normal vision" : QString::fromStdString(text(blindness)));
    }
    vision_->setAccessibleName("Color vision of the preview");
    visionLabel->setBuddy(vision_);
    connect(vision_, &QComboBox::activated, this, [](int index) {
        Preferences::shared().setColorBlindness(kAllColorBlindness[size_t(index)]);
    });
    bottom->addWidget(visionLabel);
    bottom->addWidget(vision_);
    bottom->addStretch(1);
    connect(undo_, &QPushButton::clicked, this, [this] { undo(); });
    connect(redo_, &QPushButton::clicked, this, [this] { redo(); });
    bottom->addWidget(undo_);
    bottom->addWidget(redo_);
    layout->addLayout(bottom);

    observers_.on({Notifications::colorBlindnessUpdated}, [this] { refresh(); });
    record();
    refresh();
    resize(560, 560);
}

QWidget* ContrastWindow::makeWell(Role role, const QString& title) {
    auto* box = new QGroupBox(title, this);
    auto& well = wells_[role];
    auto* layout = new QVBoxLayout(box);
    well.swatch = new ColorSwatch(box);
    well.swatch->setMinimumSize(96, 72);
    well.swatch->setAccessibleName(title + " color");
    layout->addWidget(well.swatch, 1);
    well.name = new QLabel(box);
    well.name->setAccessibleName(title + " color name");
    layout->addWidget(well.name);
    well.hex = new HexEntry(box);
    well.hex->setAccessibleName(title + " hex value");
    well.hex->onColor = [this, role](const ColorValue& color) { setColor(role, color); };
    layout->addWidget(well.hex);
    auto* buttons = new QHBoxLayout();
    well.pick = button("Pick", "Pick the " + title.toLower() + " color from the screen", box);
    connect(well.pick, &QPushButton::clicked, this, [this, role] {
        if (delegate_) delegate_->openPicker(role == foreground ? PickerSource::contrastForeground : PickerSource::contrastBackground);
    });
    well.fix = button("Fix", "Fix the " + title.toLower() + " color to reach large-text contrast", box);
    well.fix->setToolTip("Changes the brightness until the pair reaches 3.0 (AA Large)");
    connect(well.fix, &QPushButton::clicked, this, [this, role] { fix(role); });
    buttons->addWidget(well.pick);
    buttons->addWidget(well.fix);
    layout->addLayout(buttons);
    return box;
}

void ContrastWindow::setColors(const ColorValue& foreground, const ColorValue& background) {
    display(foreground, background);
    record();
}

void ContrastWindow::setColor(Role role, const ColorValue& color) {
    auto pair = colors_;
    pair[role] = color;
    setColors(pair[0], pair[1]);
}

void ContrastWindow::fix(Role role) {
    const auto fixed = WCAG::fixed(colors_[role], colors_[1 - role]);
    if (fixed) setColor(role, *fixed);
}

void ContrastWindow::swap() { setColors(colors_[background], colors_[foreground]); }

void ContrastWindow::undo() {
    if (auto pair = ContrastUndo::shared().undo()) display(pair->first, pair->second);
}

void ContrastWindow::redo() {
    if (auto pair = ContrastUndo::shared().redo()) display(pair->first, pair->second);
}

void ContrastWindow::display(const ColorValue& foreground, const ColorValue& background) {
    colors_ = {foreground, background};
    refresh();
    env().notifications->post(Notifications::colorUpdated);
}

void ContrastWindow::record() {
    ContrastUndo::shared().save({colors_[0], colors_[1]}, 0);
    // The state goes in on the background queue; the buttons look again once it is there.
    QTimer::singleShot(100, this, [this] {
        undo_->setEnabled(ContrastUndo::shared().canUndo());
        redo_->setEnabled(ContrastUndo::shared().canRedo());
    });
}

QString ContrastWindow::ratioText() const { return ratio_->text(); }
QString ContrastWindow::levelText() const { return level_->text(); }
QString ContrastWindow::levelCell(int row, int column) const { return cells_[row][column]->text(); }

void ContrastWindow::refresh() {
    for (int role : {foreground, background}) {
        auto& well = wells_[size_t(role)];
        const auto& color = colors_[size_t(role)];
        well.swatch->setColor(displayColor(color));
        const auto srgb = color.usingColorSpace(ColorSpace::sRGB());
        const auto name = ColorName::name(srgb.red(), srgb.green(), srgb.blue());
        well.name->setText(QString::fromStdString(name.value_or("")));
        well.hex->showColor(color);
    }
    const double ratio = WCAG::ratio(colors_[0], colors_[1]);
    const auto level = WCAG::level(ratio);
    ratio_->setText(QString::fromStdString(WCAG::ratioText(ratio)));
    level_->setText(QString::fromStdString(label(level)));
    // The score in the title too, so a window list or a screen reader gives it without opening the window.
    setWindowTitle(ratio_->text() + " " + level_->text() + " — Kro Contrast Checker");
    explanation_->setText(QString::fromStdString(explanation(level)));
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 2; ++column) {
            const bool pass = ratio >= kThreshold[row][column];
            cells_[size_t(row)][size_t(column)]->setText(pass ? "✓ Pass" : "✗ Fail");
            cells_[size_t(row)][size_t(column)]->setAccessibleName(
                QString(row == 0 ? "Normal text " : "Large text ") + (column == 0 ? "AA: " : "AAA: ") +
                (pass ? "pass" : "fail"));
        }
    }
    // A fix is offered only while the pair fails outright.
    for (auto& well : wells_) well.fix->setEnabled(level == WCAGConformanceLevel::fail);

    const auto blindness = Preferences::shared().colorBlindness();
    vision_->setCurrentIndex(int(blindness));
    preview_->setBlindness(blindness);
    preview_->setColors(colors_[0], colors_[1]);
    undo_->setEnabled(ContrastUndo::shared().canUndo());
    redo_->setEnabled(ContrastUndo::shared().canRedo());
}

void ContrastWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Undo)) return undo();
    if (event->matches(QKeySequence::Redo)) return redo();
    if (event->matches(QKeySequence::Close) || event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

ContrastWindow& ContrastWindowController::window() {
    if (!window_) window_ = std::make_unique<ContrastWindow>(delegate_);
    return *window_;
}

void ContrastWindowController::show() {
    auto& shown = window();
    shown.show();
    shown.raise();
    shown.activateWindow();
}

void ContrastWindowController::hide() {
    if (window_) window_->hide();
}

void ContrastWindowController::close() {
    if (window_) window_->close();
}

bool ContrastWindowController::isVisible() const { return window_ && window_->isVisible(); }

void ContrastWindowController::showColors(const ColorValue& foreground, const ColorValue& background) {
    window().setColors(foreground, background);
}

void ContrastWindowController::takeColor(const ColorValue& color, int role) {
    // Nothing when the checker was never opened: the pick was started from it, so it exists.
    if (!window_) return;
    window_->setColor(role == 0 ? ContrastWindow::foreground : ContrastWindow::background, color);
    show();
}

}  // namespace kro
