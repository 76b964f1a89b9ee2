#pragma once
// A library window on the offscreen platform over fake files, defaults and queues, with the real
// application controller on a fake desktop (its clipboard is read by the tests).
#include <gtest/gtest.h>

#include <QApplication>
#include <memory>

#include "app/AppDelegate.h"
#include "formats/ColorFormats.h"
#include "library/Preferences.h"
#include "library/Settings.h"
#include "library/User.h"
#include "library/UserUndo.h"
#include "platform/testing/FakeDesktop.h"
#include "platform/testing/TestEnvironment.h"
#include "workspaces/main/MainWindow.h"

namespace kro::testing {

class WorkspaceTest : public ::testing::Test {
protected:
    WorkspaceTest() {
        User::resetShared();
        UserUndo::shared().reset();
        Preferences::resetSharedForTesting();
        Settings::resetSharedForTesting();
        ColorFormats::resetShared();
        ColorFormats::shared().load();
        delegate = std::make_unique<AppDelegate>(fake.desktop());
        // The library as it is after launch: one saved state to go back to.
        User::shared()->trigger(true, true, true, false);
        settle();
    }

    // Runs the background undo insertions and Qt's posted events.
    void settle() {
        environment.queue.advance(Seconds(1));
        QApplication::processEvents();
    }

    std::string savedLibrary() const { return environment.files.files.at(libraryPath); }

    // A library window, built on first use.
    MainWindow& window() {
        if (!window_) {
            window_ = std::make_unique<MainWindow>(delegate.get());
            settle();
        }
        return *window_;
    }

    User& user() { return *User::shared(); }

    static constexpr const char* libraryPath = "/home/test/data/kroapp.Kro/v5/user.json";
    TestEnvironment environment;
    FakeDesktop fake;
    std::unique_ptr<AppDelegate> delegate;
    std::unique_ptr<MainWindow> window_;
};

}  // namespace kro::testing
