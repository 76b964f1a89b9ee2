#pragma once
// The load and save procedure every store shares (the library, the format catalogue, the smart lists,
// hot keys, snapshots), each with its own file name and notifications.
//
// Load: try each row of the load list; a file that cannot be read is skipped, one that does not decode is
// skipped with its error kept. The first that decodes is posted as "…Loaded" and handed to `apply`, which
// copies it into the singleton (and saves when the row is migrating). When none decodes, nothing is written.
// What interrupted writes left beside the file is cleared first.
//
// Save: encode compact, create the present version folder, write the file atomically (a temporary file
// renamed over the old one, so a failed write leaves the previous file whole), post "…Saved". A present file
// that is there but did not load is never written over: the first save puts it aside as
// "<name>.damaged-<UTC time>". A failed save and a damaged file put aside are posted as "StoreProblem".
// While the process is bound to the stores' lock (StoreLock), nothing is written without it.
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/Directory.h"
#include "library/Sherlog.h"
#include "platform/Environment.h"
#include "platform/Json.h"

namespace kro {

using StoreCompletion = std::function<void(bool success, const std::optional<std::string>& lastError)>;

struct StoreFile {
    std::string fileName;            // "user.json"
    std::string loadedNotification;  // "UserLoaded"
    std::string savedNotification;   // "UserSaved"
};

class Store {
public:
    explicit Store(StoreFile file) : file_(std::move(file)) {}

    const StoreFile& file() const { return file_; }
    // The path of the store in a version folder; nothing when there is no data directory.
    std::optional<std::string> path(const std::string& version) const;

    // `decode(const Json&)` returns the record (a shared pointer) or throws when the JSON is not one;
    // `apply(record, migrating)` puts it in place. The completion gets success and the last decoding error.
    template <class Decode, class Apply>
    void load(Decode&& decode, Apply&& apply, const StoreCompletion& completion = {}) const {
        std::optional<std::string> lastError;
        if (!Directory::applicationFolder()) {
            if (completion) completion(false, std::nullopt);
            return;
        }
        beginLoad();
        for (const auto& row : Directory::loadList()) {
            auto json = readRow(row, lastError);
            if (!json) continue;
            decltype(decode(*json)) record;
            try {
                record = decode(*json);
            } catch (const std::exception& error) {
                lastError = error.what();
                Sherlog::print("Store " + file_.fileName + " in " + row.version + " does not decode: " + error.what(),
                               SherlogLevel::error, "Kro/Store", "load(completion:)", __LINE__);
                if (row.version == Directory::currentVersion) markDamaged(error.what());
                continue;
            }
            env().notifications->post(file_.loadedNotification, record);
            apply(record, row.migrating);
            if (completion) completion(true, std::nullopt);
            return;
        }
        if (completion) completion(false, lastError);
    }

    // Writes the record's JSON to the present version. False when encoding, the folder or the write failed;
    // "…Saved" is posted once the write was attempted.
    bool save(const Json& json) const { return saveText(compactText(json)); }
    // The same with the record already encoded as compact JSON text.
    bool saveText(const std::string& bytes) const { return savePieces({std::string_view(bytes)}); }
    // The same with that text in pieces, written one after the other.
    bool savePieces(const std::vector<std::string_view>& pieces) const;

    // For a store read by its own means: clears what interrupted writes left, and forgets earlier damage.
    void beginLoad() const;
    // The present version's file is there but did not load: the next save puts it aside first.
    void markDamaged(const std::string& reason) const;
    // Why the present file did not load, while it waits to be put aside.
    const std::optional<std::string>& damage() const { return damaged_; }
    // Forgets the damage and the failed save it knew of (a full reset; tests).
    void forget() const;

private:
    // The parsed file of one row; nothing when it cannot be read (skipped quietly) or parsed (error kept).
    std::optional<Json> readRow(const DirectoryLoadRow& row, std::optional<std::string>& lastError) const;
    // Moves the damaged file aside; false (reported) when it is there and cannot be moved.
    bool keepDamaged(const std::string& target) const;
    void reportFailedSave(const std::string& target, const std::string& reason) const;

    StoreFile file_;
    // Why the present file did not load, until it is put aside.
    mutable std::optional<std::string> damaged_;
    mutable bool lastSaveFailed_ = false;
};

}  // namespace kro
