#pragma once
// A fresh fake environment and fresh singletons for each test of the library.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "library/CloudHook.h"
#include "library/ContrastUndo.h"
#include "library/DockData.h"
#include "library/Preferences.h"
#include "library/Settings.h"
#include "library/User.h"
#include "library/UserUndo.h"
#include "platform/testing/TestEnvironment.h"

namespace kro::testing {

class LibraryTest : public ::testing::Test {
protected:
    LibraryTest() {
        User::resetShared();
        UserUndo::shared().reset();
        ContrastUndo::shared().reset();
        Preferences::resetSharedForTesting();
        Settings::resetSharedForTesting();
        DockData::resetSharedForTesting();
        setCloudUpdate([this](const std::string& file, const std::string& function, int line) {
            cloudCalls.push_back(file + "|" + function + "|" + std::to_string(line));
            environment.notifications.post("test.cloud");
        });
        environment.notifications.clearPostedNames();
    }
    ~LibraryTest() override { setCloudUpdate({}); }

    const std::vector<std::string>& posted() const { return environment.notifications.postedNames(); }
    size_t postedCount(const std::string& name) const {
        return static_cast<size_t>(std::count(posted().begin(), posted().end(), name));
    }
    User& user() { return *User::shared(); }
    std::string v5Path() const { return "/home/test/data/kroapp.Kro/v5/user.json"; }
    std::string v4Path() const { return "/home/test/data/kroapp.Kro/v4/user.json"; }
    void putFile(const std::string& path, const std::string& bytes) {
        environment.files.createDirectories(parentPath(path));
        environment.files.files[path] = bytes;
    }

    TestEnvironment environment;
    std::vector<std::string> cloudCalls;
};

}  // namespace kro::testing
