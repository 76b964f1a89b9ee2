#include "documents/DocumentHandler.h"

#include <algorithm>
#include <stdexcept>
#include <variant>

#include "cloud/Snapshots.h"
#include "documents/KroDocument.h"
#include "documents/PaletteMapping.h"
#include "exchange/PalErrors.h"
#include "exchange/PaletteCoder.h"
#include "formats/ColorFormats.h"
#include "library/Notifications.h"
#include "library/Sherlog.h"
#include "library/User.h"
#include "platform/Environment.h"

namespace kro {
namespace {

// A file that is skipped: the reason goes to the log.
struct Skipped : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::string lowercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c); });
    return text;
}

// The file name less its extension: the name of a palette whose file carries none.
std::string stem(const std::string& path) {
    const auto name = fileName(path);
    const auto dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

class Import {
public:
    ImportSummary summary;
    bool libraryChanged = false;

    void open(const std::string& path) {
        std::string reason;
        const auto bytes = env().files->read(path, &reason);
        if (!bytes) throw Skipped("cannot read the file (" + reason + ")");
        const auto extension = lowercased(fileExtension(path));
        if (const auto kind = documentKind(extension)) {
            return std::visit([this](const auto& record) { add(record); }, readDocument(*kind, *bytes));
        }
        addExchangePalette(*bytes, extension, stem(path));
    }

private:
    void add(const PaletteRef& palette) {
        auto& user = *User::shared();
        if (user.palette(palette->uuid)) {
            ++summary.duplicates;
            return;
        }
        palette->isHistory = false;
        user.palettes.push_back(palette);
        ++summary.palettes;
        libraryChanged = true;
    }

    void add(const ColorRef& color) {
        auto& history = *User::shared()->history;
        if (history.lock) throw Skipped("the history is locked");
        if (history.containsHex(color->hex)) {
            ++summary.duplicates;
            return;
        }
        const auto now = dateText(env().clock->now());
        color->group = Color::normalizedGroup(color->group);
        color->createdAt = now;
        color->updatedAt = now;
        history.colors.insert(history.colors.begin(), color);
        history.updatedAt = now;
        ++summary.colors;
        libraryChanged = true;
    }

    void add(const ColorFormatItemRef& format) {
        auto& formats = ColorFormats::shared();
        const bool known = std::any_of(formats.formats.begin(), formats.formats.end(),
                                       [&](const ColorFormatItemRef& item) { return item->uuid == format->uuid; });
        if (known) {
            ++summary.duplicates;
            return;
        }
        // An imported format is the user's own, whatever the exporting catalogue called it.
        format->name = formats.uniqueName(format->name);
        format->custom = true;
        format->selected = true;
        formats.formats.push_back(format);
        formats.stamp();
        formats.save();
        env().notifications->post(Notifications::colorFormatUpdated);
        ++summary.formats;
    }

    void add(const SnapshotRef& snapshot) {
        if (Snapshots::shared().add(snapshot)) {
            ++summary.snapshots;
        } else {
            ++summary.duplicates;
        }
    }

    void addExchangePalette(const std::string& bytes, const std::string& extension, const std::string& fileStem) {
        PAL::Palette exchanged;
        try {
            exchanged = PAL::decode(bytes, extension);
        } catch (const PAL::CommonError& error) {
            throw Skipped("no palette format reads it (" + std::string(PAL::caseName(error.errorCase())) + ")");
        }
        auto colors = libraryColors(exchanged);
        if (colors.empty()) throw Skipped("the palette holds no colors");
        auto& user = *User::shared();
        auto palette = Palette::make(std::move(colors), exchanged.name.empty() ? fileStem : exchanged.name);
        user.palettes.push_back(palette);
        ++summary.palettes;
        libraryChanged = true;
    }
};

std::string counted(int count, const char* singular, const char* plural) {
    return std::to_string(count) + " " + (count == 1 ? singular : plural);
}

}  // namespace

std::string ImportSummary::message() const {
    std::vector<std::string> parts;
    if (palettes) parts.push_back(counted(palettes, "palette", "palettes"));
    if (colors) parts.push_back(counted(colors, "color", "colors"));
    if (formats) parts.push_back(counted(formats, "format", "formats"));
    if (snapshots) parts.push_back(counted(snapshots, "snapshot", "snapshots"));
    if (parts.empty()) {
        if (failed.size() == 1) return "Could not import " + fileName(failed[0].path);
        if (!failed.empty()) return "Could not import " + counted(static_cast<int>(failed.size()), "file", "files");
        return duplicates ? "Already in your library" : "Nothing to import";
    }
    std::string text = "Imported ";
    for (size_t i = 0; i < parts.size(); ++i) {
        if (i > 0) text += i + 1 == parts.size() ? " and " : ", ";
        text += parts[i];
    }
    if (!failed.empty()) text += " (" + counted(static_cast<int>(failed.size()), "file", "files") + " skipped)";
    return text;
}

ImportSummary DocumentHandler::openFiles(const std::vector<std::string>& paths) {
    Import import;
    for (const auto& path : paths) {
        try {
            import.open(path);
        } catch (const std::exception& error) {
            // Record decoding, JSON and exchange errors alike: the file is skipped, the others go on.
            import.summary.failed.push_back({path, error.what()});
            SHERLOG("Import skipped " + path + ": " + error.what(), SherlogLevel::error);
        }
    }
    if (import.libraryChanged) User::shared()->trigger(true, true, true, true);
    return import.summary;
}

}  // namespace kro
