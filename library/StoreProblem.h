#pragma once
// What went wrong with a store, as a person must hear it: a save that did not reach the disk, or a damaged file
// put aside before a new one was written in its place. The store posts each one as "StoreProblem" with the
// problem as object; the agent shows it, a command prints it, and a request that saw a failed save fails.
#include <optional>
#include <string>
#include <vector>

#include "platform/NotificationCenter.h"

namespace kro {

struct StoreProblem {
    enum class Kind { saveFailed, damagedKept };

    Kind kind;
    std::string path;    // the store's file
    std::string reason;  // errno's words for a failed save; why the damaged file did not load
    std::string keptAs;  // where the damaged file now is
    // The save before this one failed too: whoever tells a person has told them already.
    bool repeated = false;

    // One sentence naming the file.
    std::string message() const;
};

// Collects the problems posted while it exists (main thread).
class StoreProblemWatch {
public:
    StoreProblemWatch();
    ~StoreProblemWatch();
    StoreProblemWatch(const StoreProblemWatch&) = delete;
    StoreProblemWatch& operator=(const StoreProblemWatch&) = delete;

    const std::vector<StoreProblem>& problems() const { return problems_; }
    // The first save that failed, when one did.
    std::optional<StoreProblem> failedSave() const;

private:
    NotificationCenter::Token token_;
    std::vector<StoreProblem> problems_;
};

}  // namespace kro
