#pragma once
// Files opened with the program: its own documents ("palette", "color", "format", "snapshot": JSON, sealed or
// plain) and every palette file the exchange layer reads. Each path is read by its lower-cased extension and
// what it holds goes into the library, the format catalogue or the snapshots. A file that fails is logged
// and skipped; the others go on.
#include <string>
#include <vector>

namespace kro {

struct SkippedFile {
    std::string path;
    std::string reason;
};

struct ImportSummary {
    int palettes = 0;
    int colors = 0;
    int formats = 0;
    int snapshots = 0;
    int duplicates = 0;  // already there, so not added again
    std::vector<SkippedFile> failed;

    bool importedAnything() const { return palettes + colors + formats + snapshots > 0; }
    // The one line shown at the tray: "Imported 2 palettes and 1 color", or why nothing was.
    std::string message() const;
};

class DocumentHandler {
public:
    // Reads every path in order; the library's pipeline runs once at the end when a palette or colour came in.
    static ImportSummary openFiles(const std::vector<std::string>& paths);
};

}  // namespace kro
