#pragma once
// A fresh fake environment and fresh singletons for each test of documents.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "cloud/Snapshots.h"
#include "formats/ColorFormats.h"
#include "library/User.h"
#include "library/UserUndo.h"
#include "platform/testing/TestEnvironment.h"

namespace kro::testing {

class DocumentTest : public ::testing::Test {
protected:
    DocumentTest() {
        User::resetShared();
        UserUndo::shared().reset();
        ColorFormats::resetShared();
        Snapshots::resetShared();
        environment.notifications.clearPostedNames();
    }

    std::string put(const std::string& name, const std::string& bytes) {
        const std::string path = "/home/test/in/" + name;
        environment.files.createDirectories("/home/test/in");
        environment.files.files[path] = bytes;
        return path;
    }
    size_t postedCount(const std::string& name) const {
        const auto& posted = environment.notifications.postedNames();
        return static_cast<size_t>(std::count(posted.begin(), posted.end(), name));
    }
    User& user() { return *User::shared(); }

    TestEnvironment environment;
};

}  // namespace kro::testing
