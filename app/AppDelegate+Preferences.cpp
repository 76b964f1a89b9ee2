// The preferences window's "Reset All": every preference back to its default and written, and each store
// the window edits back to the shipped one, each announced once.
#include "app/AppDelegate.h"
#include "formats/ColorFormats.h"
#include "formats/SmartFormats.h"
#include "formats/SmartProfiles.h"
#include "library/Notifications.h"
#include "library/Preferences.h"
#include "picker/HotKeys.h"
#include "platform/Environment.h"

namespace kro {

void AppDelegate::resetAllPreferences() {
    // Preferences, settings, dock data and the login item, then their notifications.
    Preferences::shared().reset();
    ColorFormats::shared().resetToShipped();
    SmartFormats::shared().resetToShipped();
    SmartProfiles::shared().resetToShipped();
    HotKeys::shared().resetToShipped();
    // The snapshots are the person's own and stay; their pane reads the refresh preference again.
    env().notifications->post(Notifications::snapshotsUpdated);
}

}  // namespace kro
