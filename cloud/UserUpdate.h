#pragma once
// Settles the library against the record read from the cloud. The two "updatedAt" texts share one date
// format and compare as text: equal, nothing happens; the library later, it is pushed; the record later,
// its "paletteUUID" and "palettes" are copied in where they differ (the history stays local), and the
// library's `createdAt` takes the record's "updatedAt" text. A change is stamped, recorded for undo, saved,
// and announced with "UserUpdated" and "UserCloudMerged". A record that does not decode changes nothing.
#include <string>

#include "cloud/CloudRecord.h"

namespace kro {

class User;

// What settling found. Only `merged` changes the library.
enum class SettleResult { undecodable, same, libraryNewer, nothingToCopy, merged };
// A sentence for a person: what a sync did.
std::string describe(SettleResult result);

SettleResult update(User& user, const CloudRecord& with, bool undo, bool save, bool notify, bool cloud,
                    const std::string& file, const std::string& function, int line);

}  // namespace kro
