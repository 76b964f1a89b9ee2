#pragma once
// Short event sounds.
#include <string>

namespace kro {

class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;
    // Plays the shipped sound `name` ("color", "palette", "license") without waiting; silent when it is missing.
    virtual void play(const std::string& name) = 0;
};

}  // namespace kro
