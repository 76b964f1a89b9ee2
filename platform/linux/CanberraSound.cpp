#include "platform/linux/CanberraSound.h"

#include <canberra.h>

#include "platform/Environment.h"
#include "platform/Resources.h"

namespace kro {

CanberraSound::CanberraSound(std::string folder) : folder_(std::move(folder)) {
    if (ca_context_create(&context_) != CA_SUCCESS) context_ = nullptr;
    if (context_) ca_context_change_props(context_, CA_PROP_APPLICATION_NAME, "Kro", CA_PROP_APPLICATION_ID, "kroapp.Kro", nullptr);
}

CanberraSound::~CanberraSound() {
    if (context_) ca_context_destroy(context_);
}

void CanberraSound::play(const std::string& name) {
    if (!context_) return;
    const auto bytes = resource(name + ".wav");
    if (!bytes) return;  // a missing sound is silent
    const auto path = folder_ + "/" + name + ".wav";
    auto& files = *env().files;
    if (!files.exists(path)) {
        files.createDirectories(folder_);
        if (!files.writeAtomically(path, std::string(*bytes))) return;
    }
    // Plays asynchronously in libcanberra's own thread.
    // Without a sound server this fails quietly, as a missing sound does.
    ca_context_play(context_, 0, CA_PROP_MEDIA_FILENAME, path.c_str(), CA_PROP_EVENT_DESCRIPTION, name.c_str(), nullptr);
}

}  // namespace kro
