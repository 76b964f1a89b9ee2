#pragma once
// Sync for a command run without the agent. The agent compares the library with the account's record once it
// has loaded it and every minute after; a command has one run. So, with the agent's sync installed, a command
// that adds to the library first brings it level with the record, and every command waits for the pushes its
// changes set off before it ends.
#include <chrono>
#include <functional>
#include <iosfwd>

namespace kro::cli {

// Longer than the HTTP client's own limits on a fetch and the push it may set off.
inline constexpr std::chrono::seconds kSyncLimit{90};

// Runs the main queue's work as it comes until `done` holds. False when the limit came first, or when the main
// queue is not one a command can run by hand.
bool runMainQueueUntil(const std::function<bool()>& done, std::chrono::milliseconds limit = kSyncLimit);

// Settles the library just loaded against the account's record before the command adds to it, so that the
// change goes to the server on top of the other machines' work instead of over it. When the server cannot be
// asked, says so on `err` and keeps the command's change here only: the next sync sends it.
void catchUpBeforeChange(std::ostream& err);

// Waits for the pushes the command set off, says on `err` what did not reach the sync server, and ends the
// sync, so that its threads stop before the process does. False when requests are still under way at the
// limit: the process must then end without waiting for them. Once finished, a second call returns at once.
bool finishHeadlessSync(std::ostream& err);

}  // namespace kro::cli
