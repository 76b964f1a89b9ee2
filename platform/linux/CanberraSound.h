#pragma once
// Event sounds through libcanberra, from the sound files compiled into the program.
#include <string>

#include "platform/Sound.h"

struct ca_context;

namespace kro {

class CanberraSound final : public SoundPlayer {
public:
    // `folder` receives the sound files once, since libcanberra plays files by path.
    explicit CanberraSound(std::string folder);
    ~CanberraSound() override;
    void play(const std::string& name) override;

private:
    std::string folder_;
    ca_context* context_ = nullptr;
};

}  // namespace kro
