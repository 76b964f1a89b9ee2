#include "library/CloudHook.h"

namespace kro {
namespace {
CloudUpdate& installed() {
    static CloudUpdate update;
    return update;
}
}  // namespace

void setCloudUpdate(CloudUpdate update) { installed() = std::move(update); }

void updateCloudKit(const std::string& file, const std::string& function, int line) {
    if (installed()) installed()(file, function, line);
}

}  // namespace kro
