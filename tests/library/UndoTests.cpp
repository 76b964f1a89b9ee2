// Undo keeps whole states: the newest first, nothing trimmed, insertions on the background queue.
#include "LibraryTestSupport.h"

namespace kro::testing {
namespace {

using Undo = LibraryTest;

std::vector<std::string> historyHexes() {
    std::vector<std::string> result;
    for (const auto& color : User::shared()->history->colors) result.push_back(color->hex);
    return result;
}

TEST_F(Undo, AStateIsRecordedOnceOnTheBackgroundQueueAndUndoNeedsTwo) {
    auto& undo = UserUndo::shared();
    user().trigger(true, false, false, false);
    EXPECT_EQ(undo.engine().count(), 0u);
    environment.queue.runDue();
    EXPECT_EQ(undo.engine().count(), 1u);
    EXPECT_FALSE(undo.canUndo());
    undo.save(user(), 0);
    undo.save(user(), 0);
    environment.queue.runDue();
    EXPECT_EQ(undo.engine().count(), 1u) << "the same state is recorded once";
    // The delay holds the insertion back.
    user().palettes[0]->name = "Changed";
    undo.save(user(), 0.5);
    environment.queue.advance(Seconds(0.4));
    EXPECT_EQ(undo.engine().count(), 1u);
    environment.queue.advance(Seconds(0.2));
    EXPECT_EQ(undo.engine().count(), 2u);
    EXPECT_TRUE(undo.canUndo());
    EXPECT_FALSE(undo.canRedo());
}

TEST_F(Undo, UndoAndRedoPutWholeStatesBackAndTheListOnlyGrows) {
    auto& undo = UserUndo::shared();
    user().addColorToTarget(Color::make(0.5, 0.5, 0.5, 1, "a"));
    environment.queue.runDue();
    user().addColorToTarget(Color::make(0.25, 0.25, 0.25, 1, "b"));
    environment.queue.runDue();
    ASSERT_EQ(historyHexes(), (std::vector<std::string>{"3F3F3F", "7F7F7F"}));

    environment.notifications.clearPostedNames();
    undo.undo();
    environment.queue.runDue();
    EXPECT_EQ(historyHexes(), (std::vector<std::string>{"7F7F7F"}));
    EXPECT_EQ(undo.engine().index(), 1);
    EXPECT_EQ(undo.engine().count(), 3u);  // the restored state is recorded too
    EXPECT_EQ(posted(), (std::vector<std::string>{"UserSaved", "UserUpdated", "test.cloud"}));
    EXPECT_NE(environment.files.files.at(v5Path()).find("7F7F7F"), std::string::npos);
    EXPECT_EQ(environment.files.files.at(v5Path()).find("3F3F3F"), std::string::npos);
    EXPECT_TRUE(undo.canRedo());

    undo.redo();
    environment.queue.runDue();
    EXPECT_EQ(historyHexes(), (std::vector<std::string>{"3F3F3F", "7F7F7F"}));
    EXPECT_EQ(undo.engine().index(), 0);
    EXPECT_EQ(undo.engine().count(), 4u);
}

TEST_F(Undo, AnEditAfterAnUndoKeepsTheNewerStatesWithinReach) {
    auto& undo = UserUndo::shared();
    for (double level : {0.1, 0.2, 0.3}) {
        user().addColorToTarget(Color::make(level, level, level, 1, "x"));
        environment.queue.runDue();
    }
    undo.undo();
    environment.queue.runDue();
    ASSERT_EQ(historyHexes(), (std::vector<std::string>{"333333", "191919"}));
    const long index = undo.engine().index();
    const size_t count = undo.engine().count();

    user().addColorToTarget(Color::make(0.9, 0.9, 0.9, 1, "new"));
    environment.queue.runDue();
    EXPECT_EQ(undo.engine().index(), index);
    EXPECT_EQ(undo.engine().count(), count + 1);
    // No truncation: redo walks back up to the state with all three colours.
    ASSERT_TRUE(undo.canRedo());
    undo.redo();
    environment.queue.runDue();
    EXPECT_EQ(historyHexes(), (std::vector<std::string>{"4C4C4C", "333333", "191919"}));
}

TEST_F(Undo, AnIndexAtTheCountRecordsAndOneBeyondItStops) {
    auto& engine = UserUndo::shared().engine();
    user().trigger(true, false, false, false);
    environment.queue.runDue();
    engine.setIndexForTesting(1);  // == count
    user().trigger(true, false, false, false);
    environment.queue.runDue();
    EXPECT_EQ(engine.count(), 2u);
    engine.setIndexForTesting(3);  // > count
    user().trigger(true, false, false, false);
    environment.queue.runDue();
    EXPECT_EQ(engine.count(), 2u);
    engine.setIndexForTesting(-1);
    EXPECT_FALSE(UserUndo::shared().canRedo());
    user().trigger(true, false, false, false);
    environment.queue.runDue();
    EXPECT_EQ(engine.count(), 2u);
}

TEST_F(Undo, TheContrastPairsComeBackToTheCaller) {
    auto& undo = ContrastUndo::shared();
    const ContrastColors first{ColorValue::rgb(0, 0, 0), ColorValue::rgb(1, 1, 1)};
    const ContrastColors second{ColorValue::rgb(1, 0, 0), ColorValue::rgb(1, 1, 1)};
    undo.save(first, 0);
    environment.queue.runDue();
    undo.save(second, 0);
    undo.save(second, 0);
    environment.queue.runDue();
    EXPECT_EQ(undo.engine().count(), 2u);
    auto back = undo.undo();
    ASSERT_TRUE(back);
    EXPECT_EQ(back->first, first.first);
    EXPECT_FALSE(undo.undo());
    auto forward = undo.redo();
    ASSERT_TRUE(forward);
    EXPECT_EQ(forward->first, second.first);
}

}  // namespace
}  // namespace kro::testing
