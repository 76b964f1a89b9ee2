#include "library/Store.h"

#include <algorithm>

#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "library/StoreLock.h"
#include "library/StoreProblem.h"

namespace kro {
namespace {

// "20260102T030405Z": the time in a file name, without the separators that trouble other tools.
std::string fileNameTime() {
    auto text = dateText(env().clock->now());
    std::erase_if(text, [](char c) { return c == '-' || c == ':'; });
    return text;
}

}  // namespace

std::optional<std::string> Store::path(const std::string& version) const {
    auto folder = Directory::folder(version);
    if (!folder) return std::nullopt;
    return joinPath(*folder, file_.fileName);
}

void Store::beginLoad() const {
    damaged_.reset();
    if (const auto present = path(Directory::currentVersion)) env().files->removeStaleTemporaries(*present);
}

void Store::markDamaged(const std::string& reason) const { damaged_ = reason; }

void Store::forget() const {
    damaged_.reset();
    lastSaveFailed_ = false;
}

std::optional<Json> Store::readRow(const DirectoryLoadRow& row, std::optional<std::string>& lastError) const {
    auto filePath = path(row.version);
    if (!filePath) return std::nullopt;
    std::string reason;
    auto bytes = env().files->read(*filePath, &reason);
    const bool present = row.version == Directory::currentVersion;
    if (!bytes) {
        // A file that is there but cannot be read is as damaged as one that does not decode.
        if (present && env().files->exists(*filePath)) markDamaged(reason);
        return std::nullopt;
    }
    try {
        return parseJson(*bytes);
    } catch (const JsonDecodeError& error) {
        lastError = error.what();
        Sherlog::print("Store " + *filePath + " is not JSON: " + error.what(), SherlogLevel::error, "Kro/Store",
                       "load(completion:)", __LINE__);
        if (present) markDamaged(error.what());
        return std::nullopt;
    }
}

void Store::reportFailedSave(const std::string& target, const std::string& reason) const {
    Sherlog::print("Cannot save " + target + ": " + reason + "; the previous file stays", SherlogLevel::error,
                   "Kro/Store", "save()", __LINE__);
    env().notifications->post(Notifications::storeProblem,
                              StoreProblem{StoreProblem::Kind::saveFailed, target, reason, "", lastSaveFailed_});
    lastSaveFailed_ = true;
}

bool Store::keepDamaged(const std::string& target) const {
    std::string keptAs = target + ".damaged-" + fileNameTime();
    for (int n = 2; env().files->exists(keptAs); ++n) keptAs = target + ".damaged-" + fileNameTime() + "-" + std::to_string(n);
    std::string reason;
    if (!env().files->move(target, keptAs, &reason)) {
        if (env().files->exists(target)) {
            reportFailedSave(target, "the damaged file could not be put aside (" + reason + "), so it was not written over");
            return false;
        }
        damaged_.reset();  // gone meanwhile: nothing to keep
        return true;
    }
    Sherlog::print("Store " + target + " did not load; kept as " + keptAs, SherlogLevel::error, "Kro/Store", "save()",
                   __LINE__);
    env().notifications->post(Notifications::storeProblem,
                              StoreProblem{StoreProblem::Kind::damagedKept, target, *damaged_, keptAs, false});
    damaged_.reset();
    return true;
}

bool Store::savePieces(const std::vector<std::string_view>& pieces) const {
    if (!StoreLock::mayWrite()) {
        Sherlog::print("Not saving " + file_.fileName + ": this process does not hold the stores' lock",
                       SherlogLevel::debug, "Kro/Store", "save()", __LINE__);
        return false;
    }
    const auto target = path(Directory::currentVersion);
    if (!target) {
        reportFailedSave(file_.fileName, "there is no data folder (set HOME or XDG_DATA_HOME)");
        return false;
    }
    const auto folder = parentPath(*target);
    std::string reason;
    if (!env().files->isDirectory(folder) && !env().files->createDirectories(folder, &reason)) {
        reportFailedSave(*target, "the folder " + folder + " cannot be made (" + reason + ")");
        return false;
    }
    if (damaged_ && !keepDamaged(*target)) return false;
    const bool written = env().files->writePiecesAtomically(*target, pieces, &reason);
    if (written) {
        lastSaveFailed_ = false;
    } else {
        reportFailedSave(*target, reason);
    }
    env().notifications->post(file_.savedNotification);
    return written;
}

}  // namespace kro
