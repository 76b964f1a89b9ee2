#pragma once
// The load and save procedure every store shares (the library, the format catalogue, the smart lists,
// hot keys, snapshots), each with its own file name and notifications.
//
// Load: try each row of the load list; a file that cannot be read is skipped, one that does not decode is
// skipped with its error kept. The first that decodes is posted as "…Loaded" and handed to `apply`, which
// copies it into the singleton (and saves when the row is migrating). When none decodes, nothing is written:
// a damaged file stays as it is until the next change saves over it.
//
// Save: encode compact, create the present version folder, write the file atomically (a temporary file
// renamed over the old one, so a failed write leaves the previous file whole), post "…Saved".
#include <exception>
#include <functional>
#include <optional>
#include <string>

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
    bool saveText(const std::string& bytes) const;

private:
    // The parsed file of one row; nothing when it cannot be read (skipped quietly) or parsed (error kept).
    std::optional<Json> readRow(const DirectoryLoadRow& row, std::optional<std::string>& lastError) const;

    StoreFile file_;
};

}  // namespace kro
