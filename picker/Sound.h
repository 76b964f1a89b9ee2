#pragma once
// The program's event sounds, silent when the preferences say so.
#include "platform/Sound.h"

namespace kro {

class Sound {
public:
    // Set at launch; without a player every sound is silent.
    static void setPlayer(SoundPlayer* player);
    static void playColor();
    static void playPalette();
    static void playLicense();
};

}  // namespace kro
