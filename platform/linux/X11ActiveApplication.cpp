#include "platform/linux/X11ActiveApplication.h"

#include <QCoreApplication>

#include <cstdlib>
#include <cstring>

#include "platform/linux/X11Connection.h"

namespace kro {
namespace {

std::vector<xcb_window_t> windowList(const std::optional<std::string>& bytes) {
    if (!bytes) return {};
    std::vector<xcb_window_t> windows(bytes->size() / 4);
    std::memcpy(windows.data(), bytes->data(), windows.size() * 4);
    return windows;
}

std::string utf8Property(xcb_window_t window, const char* name) {
    auto text = x11::property(window, x11::atom(name), x11::atom("UTF8_STRING"), 1024).value_or("");
    if (const auto end = text.find('\0'); end != std::string::npos) text.resize(end);
    return text;
}

std::optional<RunningApplication> applicationOf(xcb_window_t window) {
    if (window == XCB_WINDOW_NONE) return std::nullopt;
    const auto wmClass = x11::property(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 1024);
    if (!wmClass) return std::nullopt;
    RunningApplication application;
    application.window = window;
    // "instance\0Class\0"
    const auto split = wmClass->find('\0');
    application.windowInstance = wmClass->substr(0, split);
    if (split != std::string::npos) application.windowClass = std::string(wmClass->c_str() + split + 1);
    // GTK announces its application id, KDE's frameworks the desktop file.
    application.desktopId = utf8Property(window, "_GTK_APPLICATION_ID");
    if (application.desktopId.empty()) application.desktopId = utf8Property(window, "_KDE_NET_WM_DESKTOP_FILE");
    application.title = utf8Property(window, "_NET_WM_NAME");
    if (auto pid = x11::property(window, x11::atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 4); pid && pid->size() == 4) {
        uint32_t value;
        std::memcpy(&value, pid->data(), 4);
        application.pid = static_cast<int>(value);
    }
    return application;
}

std::optional<RunningApplication> frontmost() {
    const auto windows = windowList(x11::property(x11::root(), x11::atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 4));
    return applicationOf(windows.empty() ? xcb_window_t{XCB_WINDOW_NONE} : windows.front());
}

}  // namespace

X11ActiveApplication::~X11ActiveApplication() {
    if (auto* app = QCoreApplication::instance(); app && started_) app->removeNativeEventFilter(this);
}

void X11ActiveApplication::start(Changed changed) {
    changed_ = std::move(changed);
    auto* connection = x11::connection();
    if (!connection) return changed_(std::nullopt);
    if (!started_) {
        // Property changes of the root, added to whatever else this connection already listens for there.
        auto* attributes = xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, x11::root()), nullptr);
        const uint32_t mask = (attributes ? attributes->your_event_mask : 0) | XCB_EVENT_MASK_PROPERTY_CHANGE;
        free(attributes);
        xcb_change_window_attributes(connection, x11::root(), XCB_CW_EVENT_MASK, &mask);
        xcb_flush(connection);
        QCoreApplication::instance()->installNativeEventFilter(this);
        started_ = true;
    }
    last_ = frontmost();
    changed_(last_);
}

void X11ActiveApplication::activeWindowChanged() {
    auto application = frontmost();
    if (application == last_) return;
    last_ = application;
    if (changed_) changed_(application);
}

bool X11ActiveApplication::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") return false;
    auto* event = static_cast<xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return false;
    auto* notify = reinterpret_cast<xcb_property_notify_event_t*>(event);
    if (notify->window == x11::root() && notify->atom == x11::atom("_NET_ACTIVE_WINDOW")) {
        // Read after this event is done with, on the next turn of the loop.
        QMetaObject::invokeMethod(QCoreApplication::instance(), [this] { activeWindowChanged(); }, Qt::QueuedConnection);
    }
    return false;
}

std::vector<RunningApplication> X11ActiveApplication::running() const {
    std::vector<RunningApplication> applications;
    if (!x11::connection()) return applications;
    for (auto window : windowList(x11::property(x11::root(), x11::atom("_NET_CLIENT_LIST_STACKING"), XCB_ATOM_WINDOW))) {
        if (auto application = applicationOf(window)) applications.push_back(std::move(*application));
    }
    return applications;
}

void X11ActiveApplication::activate(const RunningApplication& application) {
    auto* connection = x11::connection();
    if (!connection) return;
    // The window manager's way: a request to make it active, as a pager sends it.
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = static_cast<xcb_window_t>(application.window);
    event.type = x11::atom("_NET_ACTIVE_WINDOW");
    event.data.data32[0] = 2;
    event.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(connection, 0, x11::root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(connection);
}

}  // namespace kro
