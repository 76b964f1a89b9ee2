#include "picker/Sound.h"

#include "library/Preferences.h"
#include "platform/Environment.h"

namespace kro {
namespace {

SoundPlayer* gPlayer = nullptr;

void play(const char* name) {
    if (!Preferences::shared().playSounds() || !gPlayer) return;
    gPlayer->play(name);
}

}  // namespace

void Sound::setPlayer(SoundPlayer* player) { gPlayer = player; }
void Sound::playColor() { play("color"); }
void Sound::playPalette() { play("palette"); }
void Sound::playLicense() { play("license"); }

}  // namespace kro
