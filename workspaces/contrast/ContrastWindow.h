#pragma once
// The contrast checker: a foreground and a background colour, their WCAG ratio and the levels it reaches
// for normal and large text, a preview of text in the two colours drawn through the chosen colour vision,
// a fix for each colour, swap, and undo of the pair. The pair is the checker's own, not library state;
// each change of it is one undo step.
#include <QWidget>
#include <array>
#include <memory>

#include "platform/ColorValue.h"
#include "platform/WindowControllers.h"
#include "workspaces/common/Observers.h"

class QComboBox;
class QLabel;
class QPushButton;

namespace kro {

class AppDelegate;
class ColorSwatch;
class ContrastPreview;
class HexEntry;

class ContrastWindow : public QWidget {
public:
    enum Role { foreground = 0, background = 1 };

    explicit ContrastWindow(AppDelegate* delegate, QWidget* parent = nullptr);

    // Shows the pair and records it as an undo step.
    void setColors(const ColorValue& foreground, const ColorValue& background);
    // One of the two, the other kept.
    void setColor(Role role, const ColorValue& color);
    const ColorValue& color(Role role) const { return colors_[role]; }

    // Walks the colour's brightness until the pair reaches large-text contrast; nothing when it already does.
    void fix(Role role);
    void swap();
    void undo();
    void redo();

    QString ratioText() const;
    QString levelText() const;
    HexEntry* hexEntry(Role role) const { return wells_[role].hex; }
    QPushButton* fixButton(Role role) const { return wells_[role].fix; }
    ContrastPreview* preview() const { return preview_; }
    QComboBox* visionMenu() const { return vision_; }
    // The pass or fail text of a level cell: row 0 normal text, row 1 large text; column 0 AA, column 1 AAA.
    QString levelCell(int row, int column) const;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Well {
        ColorSwatch* swatch = nullptr;
        QLabel* name = nullptr;
        HexEntry* hex = nullptr;
        QPushButton* pick = nullptr;
        QPushButton* fix = nullptr;
    };
    QWidget* makeWell(Role role, const QString& title);
    // Shows the pair without recording it (undo and redo).
    void display(const ColorValue& foreground, const ColorValue& background);
    void refresh();
    void record();

    AppDelegate* delegate_;
    std::array<ColorValue, 2> colors_{ColorValue::rgb(0, 0, 0), ColorValue::rgb(1, 1, 1)};
    std::array<Well, 2> wells_;
    QLabel* ratio_;
    QLabel* level_;
    QLabel* explanation_;
    std::array<std::array<QLabel*, 2>, 2> cells_{};
    ContrastPreview* preview_;
    QComboBox* vision_;
    QPushButton* undo_;
    QPushButton* redo_;
    Observers observers_;
};

class ContrastWindowController final : public WindowController {
public:
    explicit ContrastWindowController(AppDelegate* delegate) : delegate_(delegate) {}
    void show() override;
    void hide() override;
    void close() override;
    bool isVisible() const override;
    void showColors(const ColorValue& foreground, const ColorValue& background) override;
    void takeColor(const ColorValue& color, int role) override;
    ContrastWindow& window();

private:
    AppDelegate* delegate_;
    std::unique_ptr<ContrastWindow> window_;
};

}  // namespace kro
