#include "library/StoreLock.h"

#include "library/Directory.h"
#include "platform/Environment.h"

namespace kro {
namespace {

// Main thread only, like the stores.
int gHeld = 0;
bool gRequired = false;

}  // namespace

std::optional<std::string> StoreLock::path() {
    const auto folder = Directory::applicationFolder();
    if (!folder) return std::nullopt;
    return joinPath(*folder, "stores.lock");
}

std::unique_ptr<StoreLock> StoreLock::take(std::chrono::milliseconds wait, std::string* reason) {
    const auto lockPath = path();
    std::string why = "there is no data folder";
    if (!lockPath || !env().files->createDirectories(parentPath(*lockPath), &why)) {
        if (reason) *reason = why;
        return nullptr;
    }
    auto held = env().files->lock(*lockPath, wait, reason);
    if (!held) return nullptr;
    ++gHeld;
    return std::unique_ptr<StoreLock>(new StoreLock(std::move(held)));
}

StoreLock::~StoreLock() { --gHeld; }

void StoreLock::requireForWriting(bool required) { gRequired = required; }

bool StoreLock::mayWrite() { return !gRequired || gHeld > 0; }

}  // namespace kro
