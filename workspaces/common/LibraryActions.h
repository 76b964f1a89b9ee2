#pragma once
// How a window runs a library operation: the operation itself does the work and the change pipeline; this
// only tells the person what came of it. A locked palette's refusal gets its reason, and a save that did
// not reach the disk is reported once, in one place, until a later save succeeds.
#include <functional>
#include <string>

#include "library/Palette.h"

namespace kro {

class LibraryActions {
public:
    // `notice` shows a short message in the window; `failure` shows (or, with an empty text, clears) the
    // standing message of a failed save.
    LibraryActions(std::function<void(const std::string&)> notice, std::function<void(const std::string&)> failure)
        : notice_(std::move(notice)), failure_(std::move(failure)) {}

    // Runs `operation` on `palette` unless it is locked, in which case the reason is shown and nothing runs.
    // Returns what the operation returned.
    bool edit(const Palette& palette, const std::function<bool()>& operation);
    // Runs an operation that no lock stands in the way of.
    bool run(const std::function<bool()>& operation);

    void notice(const std::string& text) const {
        if (notice_) notice_(text);
    }

    // Why an edit of a locked palette did nothing.
    static std::string lockedReason(const Palette& palette);
    // Whether the library's file holds the library as it stands in memory. The pipeline does not hand its
    // save result back, so the file's closing time stamp, which every change moves, is compared.
    static bool libraryFileIsCurrent();

private:
    void checkSaved();

    std::function<void(const std::string&)> notice_;
    std::function<void(const std::string&)> failure_;
    bool failureShown_ = false;
};

}  // namespace kro
