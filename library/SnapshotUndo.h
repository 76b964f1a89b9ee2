#pragma once
// The undo engine: whole states, not inverse operations. The newest state is at position 0 and older ones
// follow; the index is the position of the state on screen. Nothing is ever trimmed, and a state recorded
// after an undo goes in at the present index without dropping the newer states, which redo still reaches.
//
// Recording digests the state's text (MD5), or compares the state itself, and skips a state equal to the last
// one recorded; the insertion itself runs on the background queue after the given delay, at the index it
// finds then. A mutex guards the list and the index, which the main thread and the insertion share.
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "library/Sherlog.h"
#include "platform/Crypto.h"
#include "platform/Environment.h"
#include "platform/Json.h"

namespace kro {

// A record's JSON as a dictionary snapshot; nothing (logged) when the top level is not a dictionary.
std::optional<Json> dictionarySnapshot(const Json& encoded);

template <class State>
class SnapshotUndo {
public:
    // `source` names the owner in the log ("Kro/UserUndo").
    explicit SnapshotUndo(std::string source) : source_(std::move(source)) {}

    // Records `state`, whose stable text is `digestText`, `after` seconds from now. `function` is the
    // literal name of the caller's save, for the insertion's log line.
    void save(State state, const std::string& digestText, double after, const std::string& function) {
        saveWithDigest(std::move(state), md5Hex(digestText), after, function);
    }

    // The same with the MD5 of the state's text already made.
    void saveWithDigest(State state, std::string digest, double after, const std::string& function) {
        unsigned long generation;
        {
            std::lock_guard lock(mutex_);
            if (!indexInBounds()) return;
            if (lastMD5_ && *lastMD5_ == digest) return;
            lastMD5_ = std::move(digest);
            generation = generation_;
        }
        insertLater(std::move(state), after, function, generation);
    }

    // The same for a state that compares with the last one itself (State's ==), which decides what the
    // digests' equality decides without hashing the whole text: for states that share their unchanged parts.
    void saveUnlessSame(State state, double after, const std::string& function) {
        unsigned long generation;
        {
            std::lock_guard lock(mutex_);
            if (!indexInBounds()) return;
            if (lastState_ && *lastState_ == state) return;
            lastState_ = state;
            generation = generation_;
        }
        insertLater(std::move(state), after, function, generation);
    }

    bool canUndo() const {
        std::lock_guard lock(mutex_);
        log("canUndo");
        return undoManagerIndex_ + 1 < static_cast<long>(undoManager_.size());
    }
    bool canRedo() const {
        std::lock_guard lock(mutex_);
        log("canRedo");
        return undoManagerIndex_ > 0 && undoManagerIndex_ <= static_cast<long>(undoManager_.size());
    }

    // The state an undo or a redo applies; nothing when there is none.
    std::optional<State> undoState() const { return canUndo() ? stateAt(index() + 1) : std::nullopt; }
    std::optional<State> redoState() const { return canRedo() ? stateAt(index() - 1) : std::nullopt; }

    void moveIndex(long by) {
        std::lock_guard lock(mutex_);
        undoManagerIndex_ += by;
    }

    long index() const {
        std::lock_guard lock(mutex_);
        return undoManagerIndex_;
    }
    size_t count() const {
        std::lock_guard lock(mutex_);
        return undoManager_.size();
    }
    // Whether a state was recorded since the last reset (perhaps still on its way into the list).
    bool recordedAny() const {
        std::lock_guard lock(mutex_);
        return lastMD5_.has_value() || lastState_.has_value();
    }
    // The state at `position` (0 is the newest); nothing out of range.
    std::optional<State> stateAt(long position) const {
        std::lock_guard lock(mutex_);
        if (position < 0 || position >= static_cast<long>(undoManager_.size())) return std::nullopt;
        return undoManager_[position];
    }

    // Forgets every state; insertions still pending are dropped.
    void reset() {
        std::lock_guard lock(mutex_);
        undoManager_.clear();
        undoManagerIndex_ = 0;
        lastMD5_.reset();
        lastState_.reset();
        ++generation_;
    }

    // For tests of the bounds.
    void setIndexForTesting(long index) {
        std::lock_guard lock(mutex_);
        undoManagerIndex_ = index;
    }

private:
    bool indexInBounds() const {
        return undoManagerIndex_ >= 0 && undoManagerIndex_ <= static_cast<long>(undoManager_.size());
    }
    // The insertion, on the background queue after `after` seconds, at the index it finds then.
    void insertLater(State state, double after, const std::string& function, unsigned long generation) {
        env().backgroundQueue->post(
            [this, state = std::move(state), function, generation]() mutable {
                std::lock_guard lock(mutex_);
                if (generation != generation_ || !indexInBounds()) return;
                Sherlog::print("will insert instance at " + std::to_string(undoManagerIndex_) + " of " +
                                   std::to_string(undoManager_.size()),
                               SherlogLevel::debug, source_, function, __LINE__);
                undoManager_.insert(undoManager_.begin() + undoManagerIndex_, std::move(state));
            },
            Seconds(after));
    }
    void log(const char* what) const {
        Sherlog::print(std::string(what) + " " + std::to_string(undoManagerIndex_) + " of " +
                           std::to_string(undoManager_.size()),
                       SherlogLevel::debug, source_, what, __LINE__);
    }

    mutable std::mutex mutex_;
    std::vector<State> undoManager_;
    long undoManagerIndex_ = 0;
    std::optional<std::string> lastMD5_;
    std::optional<State> lastState_;
    unsigned long generation_ = 0;
    std::string source_;
};

}  // namespace kro
