#pragma once
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kro {

// Whole-file access. Paths are absolute, '/'-separated. Where a call takes `reason`, a failure puts there why,
// in the system's own words ("No space left on device"), so that a person can be told.
class Files {
public:
    // Held while it exists; destroying it lets the next holder in.
    class Lock {
    public:
        virtual ~Lock() = default;
    };

    virtual ~Files() = default;
    virtual std::optional<std::string> read(const std::string& path, std::string* reason = nullptr) const = 0;
    // Writes a temporary file beside the target, flushes it and renames it over the target: a failure or a
    // crash leaves the previous file whole. What earlier writes of the same file left behind when they were
    // killed is removed first.
    bool writeAtomically(const std::string& path, const std::string& bytes, std::string* reason = nullptr) {
        return writePiecesAtomically(path, {std::string_view(bytes)}, reason);
    }
    // The same, for a file that is `pieces` one after the other: a large text kept in pieces is written
    // without first being copied into one.
    virtual bool writePiecesAtomically(const std::string& path, const std::vector<std::string_view>& pieces,
                                       std::string* reason = nullptr) = 0;
    // Renames `from` to `to` in one step; both are in the same folder or file system.
    virtual bool move(const std::string& from, const std::string& to, std::string* reason = nullptr) = 0;
    // Removes the temporary files that interrupted atomic writes of `path` left beside it, skipping any that a
    // writer is still filling.
    virtual void removeStaleTemporaries(const std::string& path) = 0;
    // Takes the exclusive lock of the file at `path` (made when missing), waiting up to `wait` for another
    // holder to let go. Nothing when it did not, or when the file can be neither made nor opened (then with
    // `reason`; it stays empty for a lock that another holder kept). A process that ends lets go of its locks.
    virtual std::unique_ptr<Lock> lock(const std::string& path, std::chrono::milliseconds wait,
                                       std::string* reason = nullptr) = 0;
    virtual bool exists(const std::string& path) const = 0;
    virtual bool isDirectory(const std::string& path) const = 0;
    // Creates the folder and its parents; true when it exists afterwards.
    virtual bool createDirectories(const std::string& path, std::string* reason = nullptr) = 0;
    virtual bool remove(const std::string& path) = 0;
    // Names (not paths) of the entries of a folder, sorted; empty when it cannot be read.
    virtual std::vector<std::string> list(const std::string& folder) const = 0;
};

// The parent folder of a path ("" for a bare name).
std::string parentPath(const std::string& path);
// The file name of a path.
std::string fileName(const std::string& path);
// The extension of a file name without the dot, as written ("" when none).
std::string fileExtension(const std::string& path);
std::string joinPath(const std::string& folder, const std::string& name);
// Whether `name` is one of the temporary files an atomic write of `target` makes beside it: "." + the target's
// name + "." + six letters or digits.
bool isTemporaryOf(const std::string& name, const std::string& target);

}  // namespace kro
