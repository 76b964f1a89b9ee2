// The desktop portal's requests on a fake bus: answers, refusals, silence, and the shortcuts' session.
#include <gtest/gtest.h>

#include "platform/DesktopSession.h"
#include "platform/Portal.h"
#include "platform/PortalHotKeyCenter.h"
#include "platform/testing/FakePortalBus.h"
#include "platform/testing/TestEnvironment.h"

using namespace kro;
using namespace kro::testing;

namespace {

// Starts a Screenshot request and keeps what it ends with.
struct ScreenshotRun {
    explicit ScreenshotRun(FakePortalBus& bus) {
        request = PortalRequest::start(
            bus, [&bus](const std::string& token, PortalBus::Reply reply) { bus.screenshot(token, std::move(reply)); },
            [this](const PortalOutcome& outcome) {
                ++ends;
                answer = screenshotAnswer(outcome);
            });
    }
    std::shared_ptr<PortalRequest> request;
    int ends = 0;
    ScreenshotAnswer answer;
};

BusDict uri(const std::string& value) { return {{"uri", BusValue::ofText(value)}}; }

}  // namespace

TEST(DesktopSession, WaylandWinsUnlessTheLoginSaysX11) {
    EXPECT_EQ(detectSession({"wayland-0", ":0", "wayland", ""}), SessionKind::wayland);
    EXPECT_EQ(detectSession({"wayland-0", ":0", "", ""}), SessionKind::wayland);
    EXPECT_EQ(detectSession({"wayland-0", "", "x11", ""}), SessionKind::wayland);
    EXPECT_EQ(detectSession({"wayland-0", ":0", "x11", ""}), SessionKind::x11);
    EXPECT_EQ(detectSession({"", ":0", "wayland", ""}), SessionKind::x11);
    EXPECT_EQ(detectSession({"", "", "wayland", ""}), SessionKind::none);
}

TEST(DesktopSession, RoutesTakeTheFirstThatWorksAndTestsMayForceOne) {
    const SessionOffers everything{true, 2u, 1u};
    const SessionOffers portalOnly{false, 2u, std::nullopt};
    EXPECT_EQ(chooseRoutes(SessionKind::x11, everything).capture, CaptureRoute::x11Composite);
    EXPECT_EQ(chooseRoutes(SessionKind::x11, everything).hotKeys, HotKeyRoute::x11Grab);

    const auto wayland = chooseRoutes(SessionKind::wayland, everything);
    EXPECT_EQ(wayland.capture, CaptureRoute::screenCopy);
    EXPECT_EQ(wayland.hotKeys, HotKeyRoute::portalGlobalShortcuts);
    EXPECT_EQ(chooseRoutes(SessionKind::wayland, portalOnly).capture, CaptureRoute::portalScreenshot);
    EXPECT_EQ(chooseRoutes(SessionKind::wayland, portalOnly).hotKeys, HotKeyRoute::none);
    EXPECT_EQ(chooseRoutes(SessionKind::wayland, {}).capture, CaptureRoute::none);

    EXPECT_EQ(chooseRoutes(SessionKind::wayland, everything, "portal").capture, CaptureRoute::portalScreenshot);
    EXPECT_EQ(chooseRoutes(SessionKind::wayland, everything, "pick-color").capture, CaptureRoute::portalPickColor);
    EXPECT_EQ(chooseRoutes(SessionKind::wayland, portalOnly, "screen-copy").capture, CaptureRoute::screenCopy);
    EXPECT_EQ(chooseRoutes(SessionKind::wayland, everything, "bogus").capture, CaptureRoute::screenCopy);
    // A forced Wayland route means nothing to an X11 session.
    EXPECT_EQ(chooseRoutes(SessionKind::x11, everything, "portal").capture, CaptureRoute::x11Composite);
}

TEST(DesktopSession, AFailedStillFallsBackOnlyToWhatThePortalOffers) {
    EXPECT_EQ(fallbackAfter(CaptureRoute::screenCopy, {true, 2u, {}}), CaptureRoute::portalScreenshot);
    EXPECT_EQ(fallbackAfter(CaptureRoute::screenCopy, {true, {}, {}}), std::nullopt);
    EXPECT_EQ(fallbackAfter(CaptureRoute::portalScreenshot, {false, 2u, {}}), CaptureRoute::portalPickColor);
    // PickColor came with the interface's second version.
    EXPECT_EQ(fallbackAfter(CaptureRoute::portalScreenshot, {false, 1u, {}}), std::nullopt);
    EXPECT_EQ(fallbackAfter(CaptureRoute::portalPickColor, {true, 2u, {}}), std::nullopt);
    EXPECT_NE(describe(chooseRoutes(SessionKind::wayland, {false, 2u, {}})).find("bind `kro pick`"), std::string::npos);
}

TEST(PortalRequest, AGrantedScreenshotGivesItsLocalFileOnce) {
    TestEnvironment environment;
    FakePortalBus bus;
    ScreenshotRun run(bus);
    ASSERT_EQ(bus.calls.size(), 1u);
    // The Response is awaited on the path the token names, before the call has even answered.
    EXPECT_EQ(bus.subscriptions.begin()->second.path, "/org/freedesktop/portal/desktop/request/1_42/" + bus.calls[0].token);
    bus.respond(0, 0, uri("file:///tmp/Screenshot%20from%20today.png"));
    EXPECT_EQ(run.ends, 1);
    EXPECT_EQ(run.answer.path, "/tmp/Screenshot from today.png");
    EXPECT_EQ(bus.listeners(), 0u);
    // A late echo and the time limit change nothing.
    bus.respond(0, 2);
    environment.queue.advance(Seconds(11));
    EXPECT_EQ(run.ends, 1);
    EXPECT_TRUE(bus.closed.empty());
}

TEST(PortalRequest, AnOlderPortalAnswersOnAPathOfItsOwn) {
    TestEnvironment environment;
    FakePortalBus bus;
    ScreenshotRun run(bus);
    bus.calls[0].reply({}, {BusValue::ofText("/org/freedesktop/portal/desktop/request/1_42/t7")});
    bus.emit("/org/freedesktop/portal/desktop/request/1_42/t7", kPortalRequest, "Response",
             {BusValue::ofInteger(0), BusValue::ofDict(uri("file:///tmp/a.png"))});
    EXPECT_EQ(run.answer.path, "/tmp/a.png");
}

TEST(PortalRequest, RefusalsCancelsSilenceAndAbsenceEachSayWhyInOneLine) {
    TestEnvironment environment;
    FakePortalBus bus;

    ScreenshotRun cancelled(bus);
    bus.respond(0, 1);
    EXPECT_EQ(cancelled.answer.problem, "screenshot was cancelled");

    ScreenshotRun denied(bus);
    bus.respond(1, 2);
    EXPECT_NE(denied.answer.problem.find("refused screenshot: allow Kro to take screenshots"), std::string::npos);

    ScreenshotRun notAllowed(bus);
    bus.calls[2].reply({"org.freedesktop.portal.Error.NotAllowed", "no"}, {});
    EXPECT_NE(notAllowed.answer.problem.find("refused"), std::string::npos);

    ScreenshotRun missing(bus);
    bus.calls[3].reply({"org.freedesktop.DBus.Error.UnknownMethod", "No such interface"}, {});
    EXPECT_NE(missing.answer.problem.find("offers no screenshot: install xdg-desktop-portal"), std::string::npos);
    EXPECT_EQ(missing.ends, 1);

    ScreenshotRun silent(bus);
    environment.queue.advance(Seconds(9.9));
    EXPECT_EQ(silent.ends, 0);
    environment.queue.advance(Seconds(0.2));
    EXPECT_EQ(silent.ends, 1);
    EXPECT_NE(silent.answer.problem.find("did not answer within 10 seconds"), std::string::npos);
    // The portal is told to drop the request, and no listener is left behind.
    EXPECT_EQ(bus.closed, std::vector<std::string>{portalRequestPath(":1.42", bus.calls[4].token)});
    EXPECT_EQ(bus.listeners(), 0u);

    ScreenshotRun remote(bus);
    bus.respond(5, 0, uri("https://example.org/a.png"));
    EXPECT_EQ(remote.answer.path, std::nullopt);
    EXPECT_NE(remote.answer.problem.find("not a local file"), std::string::npos);
}

TEST(PortalRequest, ACancelledRequestNeverAnswers) {
    TestEnvironment environment;
    FakePortalBus bus;
    ScreenshotRun run(bus);
    run.request->cancel();
    bus.respond(0, 0, uri("file:///tmp/a.png"));
    environment.queue.advance(Seconds(11));
    EXPECT_EQ(run.ends, 0);
    EXPECT_EQ(bus.listeners(), 0u);
}

TEST(PortalReplies, PickedColourMustBeThreeComponentsInRange) {
    const auto color = [](std::vector<BusValue> items) {
        return pickColorAnswer({PortalStatus::done, {{"color", BusValue::ofList(std::move(items))}}, {}});
    };
    const auto good = color({BusValue::ofNumber(1), BusValue::ofNumber(0.5), BusValue::ofNumber(0)});
    ASSERT_TRUE(good.color);
    EXPECT_EQ((*good.color)[1], 0.5);
    EXPECT_FALSE(color({BusValue::ofNumber(1), BusValue::ofNumber(0.5)}).color);
    EXPECT_FALSE(color({BusValue::ofNumber(1), BusValue::ofNumber(2), BusValue::ofNumber(0)}).color);
    EXPECT_FALSE(color({BusValue::ofNumber(1), BusValue::ofText("0"), BusValue::ofNumber(0)}).color);
    EXPECT_FALSE(pickColorAnswer({PortalStatus::done, {}, {}}).color);
    EXPECT_EQ(pickColorAnswer({PortalStatus::cancelled, {}, {}}).problem, "colour pick was cancelled");
}

TEST(PortalReplies, FileURIsAndTriggers) {
    EXPECT_EQ(pathOfFileURI("file:///home/a/b%2Fc.png"), "/home/a/b/c.png");
    EXPECT_EQ(pathOfFileURI("file://localhost/tmp/x.png"), "/tmp/x.png");
    EXPECT_EQ(pathOfFileURI("file:///tmp/x.png?query#part"), "/tmp/x.png");
    EXPECT_EQ(pathOfFileURI("file://otherhost/tmp/x.png"), std::nullopt);
    EXPECT_EQ(pathOfFileURI("file:///tmp/%zz"), std::nullopt);
    EXPECT_EQ(pathOfFileURI("file:///tmp/%00"), std::nullopt);
    EXPECT_EQ(pathOfFileURI("file:///tmp/%4"), std::nullopt);

    EXPECT_EQ(portalTrigger("Ctrl+Alt+P"), "CTRL+ALT+p");
    EXPECT_EQ(portalTrigger("Ctrl+Super+Shift+F12"), "CTRL+LOGO+SHIFT+F12");
    EXPECT_EQ(portalTrigger("Ctrl+Space"), "CTRL+space");
    EXPECT_EQ(portalTrigger("Ctrl+§"), "");
    EXPECT_EQ(portalTrigger("Hyper+P"), "");
}

TEST(PortalHotKeyCenter, BindsTheDesktopWideSetOnceAndIgnoresPressesOutsideIt) {
    TestEnvironment environment;
    FakePortalBus bus;
    const auto global = [](int identifier) -> std::optional<PortalShortcut> {
        if (identifier == 2) return PortalShortcut{"openPicker", "Open the picker", {}};
        return std::nullopt;
    };
    std::vector<std::string> reports;
    PortalHotKeyCenter center(&bus, global, [&](const std::string& line) { reports.push_back(line); });
    std::vector<int> pressed;
    center.delegate = [&](int identifier) { pressed.push_back(identifier); };

    center.unregisterAll();
    center.registerHotKey(0x180000, 35, 2, "Ctrl+Alt+P");
    center.registerHotKey(0, 53, 11, "Escape");
    environment.queue.runDue();
    ASSERT_EQ(bus.calls.size(), 1u);
    EXPECT_EQ(bus.calls[0].method, "CreateSession");
    bus.respond(0, 0, {{"session_handle", BusValue::ofText("/org/freedesktop/portal/desktop/session/1_42/kro")}});
    ASSERT_EQ(bus.calls.size(), 2u);
    EXPECT_EQ(bus.calls[1].method, "BindShortcuts");
    // Only the desktop-wide action, with our combination as the preferred trigger.
    ASSERT_EQ(bus.calls[1].shortcuts.size(), 1u);
    EXPECT_EQ(bus.calls[1].shortcuts[0].id, "openPicker");
    EXPECT_EQ(bus.calls[1].shortcuts[0].preferredTrigger, "CTRL+ALT+p");
    bus.respond(1, 0);

    const auto activate = [&](const std::string& session, const std::string& id) {
        bus.emit(kPortalObject, kPortalGlobalShortcuts, "Activated",
                 {BusValue::ofText(session), BusValue::ofText(id), BusValue::ofInteger(0), BusValue::ofDict({})});
    };
    activate("/org/freedesktop/portal/desktop/session/1_42/kro", "openPicker");
    activate("/org/freedesktop/portal/desktop/session/9_9/other", "openPicker");
    EXPECT_EQ(pressed, std::vector<int>{2});

    // The picker's set replaces it while a session runs: the bound shortcut is kept but does nothing, and the
    // loupe's keys are matched here.
    center.unregisterAll();
    center.registerHotKey(0, 53, 11, "Escape");
    environment.queue.runDue();
    activate("/org/freedesktop/portal/desktop/session/1_42/kro", "openPicker");
    EXPECT_TRUE(center.keyPressed(0, 53));
    EXPECT_FALSE(center.keyPressed(0x20000, 53));
    EXPECT_EQ(pressed, (std::vector<int>{2, 11}));

    // The same desktop-wide set again is not bound again.
    center.unregisterAll();
    center.registerHotKey(0x180000, 35, 2, "Ctrl+Alt+P");
    environment.queue.runDue();
    EXPECT_EQ(bus.calls.size(), 2u);
    EXPECT_TRUE(reports.empty());
}

TEST(PortalHotKeyCenter, AFailedSessionIsReportedOnceAndTheLoupeKeysStillWork) {
    TestEnvironment environment;
    FakePortalBus bus;
    std::vector<std::string> reports;
    PortalHotKeyCenter center(&bus, [](int) { return std::optional<PortalShortcut>(PortalShortcut{"openPicker", "Open", {}}); },
                              [&](const std::string& line) { reports.push_back(line); });
    center.registerHotKey(0x180000, 35, 2, "Ctrl+Alt+P");
    environment.queue.runDue();
    bus.calls[0].reply({"org.freedesktop.DBus.Error.UnknownMethod", "no GlobalShortcuts"}, {});
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_NE(reports[0].find("bind `kro pick`"), std::string::npos);
    int presses = 0;
    center.delegate = [&](int) { ++presses; };
    EXPECT_TRUE(center.keyPressed(0x180000, 35));
    EXPECT_EQ(presses, 1);

    // Without the portal nothing is asked at all.
    PortalHotKeyCenter local(nullptr, {}, {});
    local.registerHotKey(0x180000, 35, 2, "Ctrl+Alt+P");
    environment.queue.runDue();
    EXPECT_EQ(bus.calls.size(), 1u);
}
