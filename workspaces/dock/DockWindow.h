#pragma once
// The colour dock: a floating strip of the palettes' swatches at an edge of a screen (`DockData.position`
// on `screenIndex`), or where it was dragged to (`posX`, `posY`). It stays above other windows without
// taking the focus, shows on every workspace while `dockAllSpaces` is on, leaves out the palettes the
// person hid, and copies a clicked colour through the one delivery path. Its context menu hides a
// palette, moves the dock to another edge or hides the dock.
#include <QWidget>
#include <memory>
#include <vector>

#include "library/Color.h"
#include "platform/WindowControllers.h"
#include "workspaces/common/Observers.h"

namespace kro {

class AppDelegate;

class DockWindow : public QWidget {
public:
    explicit DockWindow(AppDelegate* delegate, QWidget* parent = nullptr);

    // Reads the dock data and the library again, then places and shows the strip.
    void present();
    bool vertical() const;
    // The colour under a point of the window; null between swatches.
    ColorRef colorAt(const QPoint& point) const;
    // The palettes shown, by uuid, in order.
    std::vector<std::string> shownPalettes() const;
    // Where a colour's swatch is drawn (tests).
    QRect swatchRect(const std::string& colorUUID) const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    struct Cell {
        QRect rect;
        ColorRef color;
    };
    struct Row {
        QRect rect;
        std::string uuid;
        QString name;
    };
    void relayout();
    void place();
    // Translucent with rounded corners where the desktop composites, else opaque and square.
    void matchCompositing();

    AppDelegate* delegate_;
    std::vector<Row> rows_;
    std::vector<Cell> cells_;
    QRect handle_;
    QPoint dragOffset_;
    bool dragging_ = false;
    bool moved_ = false;
    Observers observers_;
};

class DockWindowController final : public WindowController {
public:
    explicit DockWindowController(AppDelegate* delegate) : delegate_(delegate) {}
    void show() override;
    void hide() override;
    void close() override;
    bool isVisible() const override;
    DockWindow& window();

private:
    AppDelegate* delegate_;
    std::unique_ptr<DockWindow> window_;
};

}  // namespace kro
