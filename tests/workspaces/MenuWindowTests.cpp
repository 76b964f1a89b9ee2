// The menu window: swatch rows of the history and the palettes; a click or Return copies the colour.
#include "WorkspaceTest.h"

#include <QTest>

#include "workspaces/menu/MenuWindow.h"
#include "workspaces/menu/SwatchStripView.h"

namespace kro::testing {
namespace {

using MenuWindowTest = WorkspaceTest;

TEST_F(MenuWindowTest, ASwatchClickedOrChosenByKeysCopiesItsColourAndTheSizeIsKept) {
    user().addColorToTarget(Color::make(1, 0, 0, 1, "Red"));
    MenuWindow menu(delegate.get());
    menu.resize(360, 420);
    menu.show();
    settle();
    auto* strips = menu.strips();
    ASSERT_EQ(strips->model()->rowCount(), 2);

    // The second swatch of the palette row.
    const auto row = strips->model()->index(1, 0);
    const QRect rect = strips->visualRect(row);
    QPoint second;
    for (int x = rect.left(); x < rect.right() && second.isNull(); ++x) {
        for (int y = rect.top(); y < rect.bottom(); ++y) {
            if (strips->swatchAt(row, {x, y}) == 1) {
                second = {x, y};
                break;
            }
        }
    }
    ASSERT_FALSE(second.isNull());
    QTest::mouseClick(strips->viewport(), Qt::LeftButton, {}, second);
    EXPECT_EQ(fake.clipboard.contents, ColorFormats::shared().clipboardString(user().palettes[0]->colors[1]->colorValue()));

    // Up to the history, Return: its first colour.
    strips->setFocus();
    QTest::keyClick(strips, Qt::Key_Up);
    QTest::keyClick(strips, Qt::Key_Return);
    EXPECT_EQ(fake.clipboard.contents, ColorFormats::shared().clipboardString(user().history->colors[0]->colorValue()));

    // Another window adds a colour: the row shows it.
    user().addColorToTarget(Color::make(0, 1, 0, 1, "Green"));
    EXPECT_EQ(strips->model()->index(0, 0).data(CountRole).toInt(), 2);

    menu.hide();
    ASSERT_TRUE(Settings::shared().menuSize());
    EXPECT_EQ(Settings::shared().menuSize()->width, 360);
}

}  // namespace
}  // namespace kro::testing
