// The zip reader on arbitrary bytes: it opens the archive or refuses it, reads each entry or refuses it,
// and whatever it read, written again by our writer, reads back the same.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/PalErrors.h"
#include "exchange/Zip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<PAL::zip::FileToWrite> files;
    std::vector<std::string> contents;
    try {
        const PAL::zip::Reader archive(std::string_view(reinterpret_cast<const char*>(data), size));
        contents.reserve(archive.entries().size());
        for (const auto& entry : archive.entries()) {
            try {
                contents.push_back(archive.read(entry));
                files.push_back({entry.name, contents.back()});
            } catch (const PAL::CommonError&) {
                // this entry refused: the others may still read
            }
        }
    } catch (const PAL::CommonError&) {
        return 0;
    }
    const std::string written = PAL::zip::write(files);
    const PAL::zip::Reader again(written);
    if (again.entries().size() != files.size()) __builtin_trap();
    for (const auto& file : files)
        if (again.read(file.name) != file.data) __builtin_trap();
    return 0;
}
