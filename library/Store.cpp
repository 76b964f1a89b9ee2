#include "library/Store.h"

#include "library/JsonDecode.h"

namespace kro {

std::optional<std::string> Store::path(const std::string& version) const {
    auto folder = Directory::folder(version);
    if (!folder) return std::nullopt;
    return joinPath(*folder, file_.fileName);
}

std::optional<Json> Store::readRow(const DirectoryLoadRow& row, std::optional<std::string>& lastError) const {
    auto filePath = path(row.version);
    if (!filePath) return std::nullopt;
    auto bytes = env().files->read(*filePath);
    if (!bytes) return std::nullopt;
    try {
        return parseJson(*bytes);
    } catch (const JsonDecodeError& error) {
        lastError = error.what();
        Sherlog::print("Store " + *filePath + " is not JSON: " + error.what(), SherlogLevel::error, "Kro/Store",
                       "load(completion:)", __LINE__);
        return std::nullopt;
    }
}

bool Store::saveText(const std::string& bytes) const {
    auto folder = Directory::folder(Directory::currentVersion);
    if (!folder) {
        Sherlog::print("No data folder to save " + file_.fileName, SherlogLevel::error, "Kro/Store", "save()", __LINE__);
        return false;
    }
    if (!env().files->isDirectory(*folder) && !env().files->createDirectories(*folder)) {
        Sherlog::print("Cannot create " + *folder, SherlogLevel::error, "Kro/Store", "save()", __LINE__);
        return false;
    }
    const bool written = env().files->writeAtomically(joinPath(*folder, file_.fileName), bytes);
    if (!written) {
        Sherlog::print("Cannot write " + file_.fileName + "; the previous file stays", SherlogLevel::error,
                       "Kro/Store", "save()", __LINE__);
    }
    env().notifications->post(file_.savedNotification);
    return written;
}

}  // namespace kro
