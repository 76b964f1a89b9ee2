// Arbitrary bytes read as the account's cloud record, then settled against a library: no crash, no hang,
// and a record that does not decode leaves the library exactly as it was.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "cloud/CloudRecord.h"
#include "cloud/UserUpdate.h"
#include "fuzz/FuzzEnvironment.h"
#include "library/JsonDecode.h"
#include "library/User.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    installFuzzEnvironment();
    kro::CloudRecord record;
    try {
        record.document = kro::parseCloudDocument(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const kro::JsonDecodeError&) {
        return 0;
    }
    record.recordName = "fuzz";
    (void)record.updatedAt();

    kro::User user;
    user.updatedAt = "2026-01-01T00:00:00Z";
    const auto before = kro::compactText(user.toJson());
    bool decodes = true;
    try {
        kro::decodeCloudRecord(record.document);
    } catch (const kro::JsonDecodeError&) {
        decodes = false;
    }
    // No undo, save, notification or push: only the comparison and the merge.
    const auto result = kro::update(user, record, false, false, false, false, "fuzz", "fuzz", 1);
    const bool changed = result == kro::SettleResult::merged;
    if (!decodes && (changed || kro::compactText(user.toJson()) != before)) std::abort();

    // Whatever was merged is written back as a record that decodes.
    record.writeFields(user);
    try {
        kro::decodeCloudRecord(kro::parseCloudDocument(kro::compactText(record.document)));
    } catch (const kro::JsonDecodeError&) {
        std::abort();
    }
    return 0;
}
