#include "cloud/UserUpdate.h"

#include "library/CloudHook.h"
#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "library/Sherlog.h"
#include "library/User.h"
#include "platform/Environment.h"

namespace kro {
namespace {

constexpr const char* kSource = "Kro/User+Update";
constexpr const char* kFunction = "update(with:undo:save:notify:cloud:file:function:line:)";

std::string recordDescription(const CloudRecord& record, const CloudRecordFields& fields) {
    return "CloudKit record " + record.recordName + ": updatedAt " + fields.updatedAt.value_or("<null>") +
           ", paletteUUID " + fields.paletteUUID.value_or("<null>") + ", " +
           std::to_string(fields.palettes ? fields.palettes->size() : 0) + " palettes";
}

}  // namespace

std::string describe(SettleResult result) {
    switch (result) {
        case SettleResult::undecodable:
            return "the record on the sync server is not a library this program reads; the library stays as it is";
        case SettleResult::same: return "The library and the record on the sync server are the same";
        case SettleResult::libraryNewer: return "The library is newer than the record on the sync server";
        case SettleResult::nothingToCopy:
            return "The record on the sync server is newer but holds nothing the library lacks";
        case SettleResult::merged: return "The newer record on the sync server was merged into the library";
    }
    return {};
}

SettleResult update(User& user, const CloudRecord& with, bool undo, bool save, bool notify, bool cloud,
                    const std::string& file, const std::string& function, int line) {
    CloudRecordFields remote;
    try {
        remote = decodeCloudRecord(with.document);
    } catch (const JsonDecodeError& error) {
        Sherlog::print(std::string("CloudKit record does not decode, the library stays as it is: ") + error.what(),
                       SherlogLevel::error, file, function, line);
        return SettleResult::undecodable;
    }

    // A missing time on either side counts as different, and as earlier than any time.
    const std::string local = user.updatedAt.value_or("");
    const std::string remoteUpdatedAt = remote.updatedAt.value_or("");
    if (user.updatedAt && remote.updatedAt && local == remoteUpdatedAt) return SettleResult::same;
    if (local > remoteUpdatedAt) {
        if (cloud) updateCloudKit(kSource, kFunction, 95);
        return SettleResult::libraryNewer;
    }

    bool changed = false;
    if (user.paletteUUID != remote.paletteUUID) {
        user.paletteUUID = remote.paletteUUID;
        changed = true;
    }
    if (remote.palettes && !samePalettes(user.palettes, *remote.palettes)) {
        user.palettes = *remote.palettes;
        changed = true;
    }
    // The creation time pairs with the record's "updatedAt": it takes that text, or the present time when
    // the text is not a date.
    if (user.createdAt != remoteUpdatedAt) {
        user.createdAt = parseDateText(remoteUpdatedAt) ? remoteUpdatedAt : dateText(env().clock->now());
        changed = true;
    }
    if (!changed) return SettleResult::nothingToCopy;

    Sherlog::print(recordDescription(with, remote), SherlogLevel::info, file, function, line);
    user.moveUpdatedAt();
    user.runPipelineAfterStamp(undo, save, notify, false, kSource, kFunction, __LINE__);
    env().notifications->post(Notifications::userCloudMerged);
    return SettleResult::merged;
}

}  // namespace kro
