// The desktop portal's replies from arbitrary bytes: the bytes become values of the bus (nested lists and
// dictionaries of any kind), which answer a Screenshot, a PickColor and a shortcuts session as their Response,
// their call's own answer, and as an activated shortcut. Also the file URIs and shortcut labels.
#include <cstdint>
#include <string>

#include "platform/Portal.h"
#include "platform/PortalHotKeyCenter.h"
#include "platform/testing/FakePortalBus.h"
#include "platform/testing/TestEnvironment.h"

namespace {

using kro::BusValue;

struct Bytes {
    const uint8_t* data;
    size_t size;
    size_t at = 0;
    uint8_t next() { return at < size ? data[at++] : 0; }
    std::string text() {
        const size_t length = next() % 24;
        std::string result;
        for (size_t i = 0; i < length && at < size; ++i) result += static_cast<char>(next());
        return result;
    }
};

BusValue value(Bytes& bytes, int depth) {
    const uint8_t kind = bytes.next();
    switch (depth > 4 ? kind % 4 : kind % 6) {
        case 0: return BusValue::ofText(bytes.text());
        case 1: return BusValue::ofInteger(static_cast<int8_t>(bytes.next()));
        case 2: return BusValue::ofNumber((bytes.next() - 64) / 128.0);
        case 3: return {};
        case 4: {
            std::vector<BusValue> items(bytes.next() % 5);
            for (auto& item : items) item = value(bytes, depth + 1);
            return BusValue::ofList(std::move(items));
        }
        default: {
            kro::BusDict entries;
            static const char* const keys[] = {"uri", "color", "session_handle", "x"};
            for (int n = bytes.next() % 4; n > 0; --n) entries[keys[bytes.next() % 4]] = value(bytes, depth + 1);
            return BusValue::ofDict(std::move(entries));
        }
    }
}

std::vector<BusValue> arguments(Bytes& bytes) {
    std::vector<BusValue> values(bytes.next() % 5);
    for (auto& item : values) item = value(bytes, 0);
    return values;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    kro::testing::TestEnvironment environment;
    kro::testing::FakePortalBus bus;
    Bytes bytes{data, size};

    int ends = 0;
    auto screenshot = kro::PortalRequest::start(
        bus, [&bus](const std::string& token, kro::PortalBus::Reply reply) { bus.screenshot(token, std::move(reply)); },
        [&ends](const kro::PortalOutcome& outcome) {
            ++ends;
            kro::screenshotAnswer(outcome);
        });
    auto pick = kro::PortalRequest::start(
        bus, [&bus](const std::string& token, kro::PortalBus::Reply reply) { bus.pickColor(token, std::move(reply)); },
        [&ends](const kro::PortalOutcome& outcome) {
            ++ends;
            kro::pickColorAnswer(outcome);
        });
    kro::PortalHotKeyCenter keys(&bus, [](int) { return std::optional<kro::PortalShortcut>(kro::PortalShortcut{"openPicker", "", ""}); },
                                 [](const std::string&) {});
    keys.delegate = [](int) {};
    keys.registerHotKey(0x180000, 35, 2, bytes.text());
    environment.queue.runDue();

    // The call's own answers: an error or values, then Responses on every path, then signals.
    for (size_t call = 0; call < bus.calls.size() && call < 8; ++call) {
        if (bytes.next() % 2) {
            bus.calls[call].reply({bytes.text(), bytes.text()}, {});
        } else {
            bus.calls[call].reply({}, arguments(bytes));
        }
        const auto path = kro::portalRequestPath(bus.uniqueName(), bus.calls[call].token);
        bus.emit(path, kro::kPortalRequest, "Response", arguments(bytes));
        environment.queue.runDue();
    }
    bus.emit(kro::kPortalObject, kro::kPortalGlobalShortcuts, "Activated", arguments(bytes));
    environment.queue.advance(kro::Seconds(200));
    // Every request ends once and only once.
    if (ends != 2) __builtin_trap();

    const std::string rest(reinterpret_cast<const char*>(data), size);
    kro::pathOfFileURI(rest);
    kro::pathOfFileURI("file://" + rest);
    kro::portalTrigger(rest);
    return 0;
}
