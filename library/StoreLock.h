#pragma once
// One process at a time changes the stores, for the whole of its load, change and save: the agent for its
// lifetime, a command that finds no agent for its run. The lock is the file "stores.lock" in the application
// folder, beside the version folders, so that an agent of another session on the same home counts too.
#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "platform/Files.h"

namespace kro {

class StoreLock {
public:
    // Waits up to `wait` for another holder to let go; nothing when it did not, or when the lock cannot be made
    // at all (then with `reason`, which stays empty when another holder kept it).
    static std::unique_ptr<StoreLock> take(std::chrono::milliseconds wait, std::string* reason = nullptr);
    ~StoreLock();
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;

    static std::optional<std::string> path();

    // From now on this process writes a store only while it holds the lock, so a command that only reads can
    // never write behind the holder's back (a migrating load, say). Tests, which never call it, write freely.
    static void requireForWriting(bool required = true);
    static bool mayWrite();

private:
    explicit StoreLock(std::unique_ptr<Files::Lock> held) : held_(std::move(held)) {}
    std::unique_ptr<Files::Lock> held_;
};

}  // namespace kro
