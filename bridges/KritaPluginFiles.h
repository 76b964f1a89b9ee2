#pragma once
// Kro's Krita plug-in, shipped inside Kro and written into Krita's folder of Python plug-ins on request.
// Krita loads it at its next start once the user has enabled it.
#include <string>
#include <vector>

namespace kro::KritaPluginFiles {

// $XDG_DATA_HOME/krita/pykrita
std::string pykritaFolder();
// The paths written, relative to that folder.
std::vector<std::string> files();
// Writes every file whole; false with `error` set when one cannot be written (those already written stay,
// each whole, and a second install replaces them).
bool install(std::string& error);
// Removes the files and the plug-in's folder; false with `error` set when one of them stays.
bool remove(std::string& error);

}  // namespace kro::KritaPluginFiles
