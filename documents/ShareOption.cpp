#include "documents/ShareOption.h"

#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <cctype>
#include <set>

#include "documents/PaletteMapping.h"
#include "documents/PalettePDF.h"
#include "exchange/PalErrors.h"
#include "exchange/PaletteCoder.h"
#include "library/SealedDocument.h"
#include "library/Sherlog.h"
#include "platform/Environment.h"

extern char** environ;

namespace kro {
namespace {

struct OptionInfo {
    ShareOptionPalette option;
    const char* label;
    const char* extension;
};

const OptionInfo kOptions[] = {
    {ShareOptionPalette::kro, "Kro Palette", "palette"},
    {ShareOptionPalette::ase, "Adobe Swatch Exchange (ASE)", "ase"},
    {ShareOptionPalette::clr, "Apple Color List (CLR)", "clr"},
    {ShareOptionPalette::json, "JavaScript Object Notation (JSON)", "json"},
    {ShareOptionPalette::pdf, "Portable Document Format (PDF)", "pdf"},
};

const OptionInfo& infoOf(ShareOptionPalette option) { return kOptions[static_cast<int>(option)]; }

PAL::PaletteFormat exchangeFormat(ShareOptionPalette option) {
    switch (option) {
    case ShareOptionPalette::ase: return PAL::PaletteFormat::ase;
    case ShareOptionPalette::clr: return PAL::PaletteFormat::clr;
    default: return PAL::PaletteFormat::json;
    }
}

// A file name from a record's name: no folder separators, never empty or hidden.
std::string safeName(const std::string& name, const std::string& fallback) {
    std::string safe = name;
    std::replace(safe.begin(), safe.end(), '/', '-');
    while (!safe.empty() && safe.front() == '.') safe.erase(safe.begin());
    return safe.empty() ? fallback : safe;
}

void logShareFailure(const std::string& error) {
    Sherlog::print("share fail with: " + error, SherlogLevel::error, "Kro/ShareOption", "saveToDesktop", __LINE__);
}

}  // namespace

const std::vector<ShareOptionPalette>& allShareOptionPalettes() {
    static const std::vector<ShareOptionPalette> all = {ShareOptionPalette::kro, ShareOptionPalette::ase,
                                                        ShareOptionPalette::clr, ShareOptionPalette::json,
                                                        ShareOptionPalette::pdf};
    return all;
}

std::string label(ShareOptionPalette option) { return infoOf(option).label; }
std::string fileExtension(ShareOptionPalette option) { return infoOf(option).extension; }

std::optional<ShareOptionPalette> shareOptionForExtension(const std::string& extension) {
    std::string lower = extension;
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const auto& info : kOptions) {
        if (lower == info.extension) return info.option;
    }
    return std::nullopt;
}

bool isAvailable(ShareOptionPalette option) {
    if (option == ShareOptionPalette::kro || option == ShareOptionPalette::pdf) return true;
    return PAL::coder(exchangeFormat(option))->writes();
}

std::optional<std::string> paletteFileBytes(const Palette& palette, ShareOptionPalette option) {
    switch (option) {
    case ShareOptionPalette::kro: return sealDocument(palette.toJson());
    case ShareOptionPalette::pdf: return palettePDF(palette);
    default: break;
    }
    const auto coder = PAL::coder(exchangeFormat(option));
    if (!coder->writes()) {
        SHERLOG("Export failed: writing " + label(option) + " files is not built", SherlogLevel::error);
        return std::nullopt;
    }
    try {
        return coder->encode(exchangePalette(palette));
    } catch (const std::exception& error) {
        SHERLOG("Export failed: " + label(option) + ": " + error.what(), SherlogLevel::error);
        return std::nullopt;
    }
}

bool openWithXdgOpen(const std::string& folder) {
    const char* argv[] = {"xdg-open", folder.c_str(), nullptr};
    pid_t child = 0;
    if (posix_spawnp(&child, "xdg-open", nullptr, nullptr, const_cast<char* const*>(argv), environ) != 0) return false;
    // xdg-open hands the folder to the file manager and returns; reap it so no zombie is left.
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string ShareOption::exportFolder() {
    return env().paths.cacheHome + "/" + kBundleIdentifier + "/export/palettes";
}

std::optional<std::string> ShareOption::write(const std::string& name, const std::string& extension,
                                              const std::string& bytes, std::set<std::string>& taken) {
    auto& files = *env().files;
    const auto folder = exportFolder();
    if (!files.createDirectories(folder)) {
        SHERLOG("Export failed: cannot create " + folder, SherlogLevel::error);
        return std::nullopt;
    }
    // A new export replaces the last one's file of the same name, but two records of one name in one export
    // do not overwrite each other.
    auto path = joinPath(folder, name + "." + extension);
    for (int n = 1; taken.count(path); ++n) path = joinPath(folder, name + " (" + std::to_string(n) + ")." + extension);
    taken.insert(path);
    if (!files.writeAtomically(path, bytes)) {
        SHERLOG("Export failed: cannot write " + path, SherlogLevel::error);
        return std::nullopt;
    }
    return path;
}

std::optional<std::vector<std::string>> ShareOption::exportPalettes(const std::vector<PaletteRef>& palettes,
                                                                   ShareOptionPalette option) {
    std::vector<std::string> written;
    std::set<std::string> taken;
    for (const auto& palette : palettes) {
        const auto bytes = paletteFileBytes(*palette, option);
        if (!bytes) return std::nullopt;
        const auto path = write(safeName(palette->name.value_or(""), "Palette"), fileExtension(option), *bytes, taken);
        if (!path) return std::nullopt;
        written.push_back(*path);
    }
    return written;
}

std::optional<std::vector<std::string>> ShareOption::exportFormats(const std::vector<ColorFormatItemRef>& formats) {
    std::vector<std::string> written;
    std::set<std::string> taken;
    for (const auto& format : formats) {
        const auto path = write(safeName(format->name, "Format"), "format", sealDocument(format->toJson()), taken);
        if (!path) return std::nullopt;
        written.push_back(*path);
    }
    return written;
}

std::optional<std::string> ShareOption::exportSnapshot(const Snapshot& snapshot) {
    const auto name = "Snapshot " + readableDate(snapshot.createdAt).substr(0, 11);
    std::set<std::string> taken;
    return write(safeName(name, "Snapshot"), "snapshot", sealDocument(snapshot.toJson()), taken);
}

bool ShareOption::saveToDesktop(const std::vector<std::string>& paths) {
    auto& files = *env().files;
    const auto desktop = env().paths.desktopDir;
    if (!files.createDirectories(desktop)) {
        logShareFailure("cannot create " + desktop);
        return false;
    }
    bool allSaved = true;
    for (const auto& path : paths) {
        const auto bytes = files.read(path);
        if (!bytes || !files.writeAtomically(joinPath(desktop, fileName(path)), *bytes)) {
            logShareFailure("cannot save " + fileName(path) + " in " + desktop);
            allSaved = false;
        }
    }
    return allSaved;
}

bool ShareOption::openExportFolder() {
    const auto folder = exportFolder();
    if (!env().files->createDirectories(folder) || !opener_(folder)) {
        SHERLOG("Cannot open the export folder " + folder, SherlogLevel::error);
        return false;
    }
    return true;
}

}  // namespace kro
