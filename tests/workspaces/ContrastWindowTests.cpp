// The contrast checker: its numbers for a table of pairs, swap, fix, undo of the pair, the hex entry.
#include "WorkspaceTest.h"

#include <QPushButton>
#include <QTest>

#include "formats/color/WCAG.h"
#include "library/ContrastUndo.h"
#include "workspaces/common/HexEntry.h"
#include "workspaces/contrast/ContrastWindow.h"

namespace kro::testing {
namespace {

ColorValue hex(unsigned rgb) {
    return ColorValue::rgb(((rgb >> 16) & 0xFF) / 255.0, ((rgb >> 8) & 0xFF) / 255.0, (rgb & 0xFF) / 255.0, 1);
}

class ContrastWindowTest : public WorkspaceTest {
protected:
    ContrastWindowTest() { ContrastUndo::shared().reset(); }
    ContrastWindow checker{delegate.get()};
};

TEST_F(ContrastWindowTest, ShowsTheRatioAndTheLevelsItReaches) {
    struct Pair {
        unsigned foreground, background;
        const char* ratio;
        const char* level;
        const char* normalAA;
        const char* largeAA;
        const char* normalAAA;
    };
    const Pair pairs[] = {
        {0x777777, 0xFFFFFF, "4.48", "AA Large", "✗ Fail", "✓ Pass", "✗ Fail"},
        {0x767676, 0xFFFFFF, "4.54", "AA", "✓ Pass", "✓ Pass", "✗ Fail"},
        {0x000000, 0xFFFFFF, "21.00", "AAA", "✓ Pass", "✓ Pass", "✓ Pass"},
        {0xFFFFFF, 0x000000, "21.00", "AAA", "✓ Pass", "✓ Pass", "✓ Pass"},
        {0x1E90FF, 0x1E90FF, "1.00", "Fail", "✗ Fail", "✗ Fail", "✗ Fail"},
        // Shows as 3.00 and still fails: the level is decided on the unrounded ratio.
        {0x959595, 0xFFFFFF, "3.00", "Fail", "✗ Fail", "✗ Fail", "✗ Fail"},
    };
    for (const auto& pair : pairs) {
        SCOPED_TRACE(pair.ratio);
        checker.setColors(hex(pair.foreground), hex(pair.background));
        EXPECT_EQ(checker.ratioText().toStdString(), pair.ratio);
        EXPECT_EQ(checker.levelText().toStdString(), pair.level);
        EXPECT_TRUE(checker.windowTitle().startsWith(QString(pair.ratio) + " " + pair.level)) << checker.windowTitle().toStdString();
        EXPECT_EQ(checker.levelCell(0, 0).toStdString(), pair.normalAA);
        EXPECT_EQ(checker.levelCell(1, 0).toStdString(), pair.largeAA);
        EXPECT_EQ(checker.levelCell(0, 1).toStdString(), pair.normalAAA);
        // A fix is offered only while the pair fails.
        EXPECT_EQ(checker.fixButton(ContrastWindow::foreground)->isEnabled(), std::string(pair.level) == "Fail");
    }
}

TEST_F(ContrastWindowTest, SwapFixAndUndoChangeThePairAsOneStepEach) {
    checker.setColors(hex(0xAAAAAA), hex(0xFFFFFF));
    settle();
    checker.swap();
    settle();
    EXPECT_EQ(checker.hexEntry(ContrastWindow::foreground)->text(), "#FFFFFF");
    EXPECT_EQ(checker.hexEntry(ContrastWindow::background)->text(), "#AAAAAA");

    // The fix darkens the grey on white until large text passes, and leaves white alone.
    checker.fix(ContrastWindow::background);
    settle();
    EXPECT_GE(WCAG::ratio(checker.color(ContrastWindow::foreground), checker.color(ContrastWindow::background)),
              WCAG::kFixTarget);
    EXPECT_EQ(checker.hexEntry(ContrastWindow::foreground)->text(), "#FFFFFF");
    EXPECT_EQ(checker.levelText(), "AA Large");

    // Each change went back on its own.
    checker.undo();
    EXPECT_EQ(checker.hexEntry(ContrastWindow::background)->text(), "#AAAAAA");
    checker.undo();
    EXPECT_EQ(checker.hexEntry(ContrastWindow::foreground)->text(), "#AAAAAA");
    checker.redo();
    EXPECT_EQ(checker.hexEntry(ContrastWindow::foreground)->text(), "#FFFFFF");
}

TEST_F(ContrastWindowTest, AHexEntryThatDoesNotReadIsRefusedInPlace) {
    checker.setColors(hex(0x777777), hex(0xFFFFFF));
    auto* entry = checker.hexEntry(ContrastWindow::foreground);
    entry->setText("#12345G");
    QTest::keyClick(entry, Qt::Key_Return);
    EXPECT_TRUE(entry->isRefused());
    EXPECT_EQ(checker.ratioText(), "4.48") << "the pair stays";

    entry->setText(" 000 ");
    QTest::keyClick(entry, Qt::Key_Return);
    EXPECT_FALSE(entry->isRefused());
    EXPECT_EQ(checker.ratioText(), "21.00");
}

}  // namespace
}  // namespace kro::testing
