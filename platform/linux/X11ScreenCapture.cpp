#include "platform/linux/X11ScreenCapture.h"

#include <xcb/composite.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "platform/linux/X11Connection.h"
#include "platform/linux/X11Screens.h"

namespace kro {
namespace {

struct Box {
    int x, y, width, height;
};

Box intersect(const Box& a, const Box& b) {
    const int left = std::max(a.x, b.x), top = std::max(a.y, b.y);
    const int right = std::min(a.x + a.width, b.x + b.width), bottom = std::min(a.y + a.height, b.y + b.height);
    return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

// Copies the part `box` (global) of a drawable whose top-left lies at `origin` into the image at `area`.
void paint(xcb_drawable_t drawable, int originX, int originY, const Box& box, const Box& area, Bitmap& image) {
    auto* connection = x11::connection();
    auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, static_cast<int16_t>(box.x - originX),
                                static_cast<int16_t>(box.y - originY), static_cast<uint16_t>(box.width),
                                static_cast<uint16_t>(box.height), ~0u);
    auto* reply = xcb_get_image_reply(connection, cookie, nullptr);
    if (!reply) return;
    const auto length = xcb_get_image_data_length(reply);
    if (length >= box.width * box.height * 4) {
        const auto* data = reinterpret_cast<const uint32_t*>(xcb_get_image_data(reply));
        const int stride = length / 4 / box.height;
        for (int row = 0; row < box.height; ++row) {
            auto* target = &image.pixels[static_cast<size_t>(box.y - area.y + row) * image.width + (box.x - area.x)];
            const auto* source = data + static_cast<size_t>(row) * stride;
            for (int column = 0; column < box.width; ++column) target[column] = source[column] | 0xFF000000u;
        }
    }
    free(reply);
}

// The child of the root that holds `window` (itself, or its frame under a reparenting window manager).
std::optional<xcb_window_t> topLevel(xcb_window_t window) {
    auto* connection = x11::connection();
    for (int depth = 0; depth < 32; ++depth) {
        auto* reply = xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr);
        if (!reply) return std::nullopt;
        const auto parent = reply->parent;
        free(reply);
        if (parent == x11::root() || parent == XCB_WINDOW_NONE) return window;
        window = parent;
    }
    return std::nullopt;
}

// The pixmap a wallpaper setter leaves on the root window, if any.
std::optional<xcb_pixmap_t> wallpaperPixmap() {
    const auto pixmap = x11::property(x11::root(), x11::atom("_XROOTPMAP_ID"), XCB_ATOM_PIXMAP);
    if (!pixmap || pixmap->size() != 4) return std::nullopt;
    xcb_pixmap_t id;
    std::memcpy(&id, pixmap->data(), 4);
    return id;
}

}  // namespace

X11ScreenCapture::X11ScreenCapture() {
    auto* connection = x11::connection();
    auto* reply = xcb_composite_query_version_reply(connection, xcb_composite_query_version(connection, 0, 4), nullptr);
    composite_ = reply && (reply->major_version > 0 || reply->minor_version >= 2);
    free(reply);
    if (auto profile = x11::property(x11::root(), x11::atom("_ICC_PROFILE"), XCB_ATOM_CARDINAL)) {
        displayProfile_ = ColorSpace::fromICCProfile(*profile, "Display Native");
    }
}

X11ScreenCapture::~X11ScreenCapture() { endSession(); }

std::vector<ScreenInfo> X11ScreenCapture::screens() const {
    std::vector<ScreenInfo> list;
    uint32_t number = 1;
    for (const auto& screen : x11::nativeScreens()) {
        // The picker's points are X's device pixels, so a capture is never scaled: one pixel, one cell.
        const auto& geometry = screen.geometry;
        list.push_back({number++,
                        {double(geometry.x()), double(geometry.y()), double(geometry.width()), double(geometry.height())},
                        1,
                        displayProfile_,
                        screen.scale});
    }
    return list;
}

std::optional<CaptureFilter> X11ScreenCapture::makeFilter(uint32_t displayID, uint64_t excludedWindow, std::string& error) {
    if (!composite_) {
        error = "the X server has no Composite extension";
        return std::nullopt;
    }
    const auto screens = this->screens();
    const bool known = std::any_of(screens.begin(), screens.end(), [&](const ScreenInfo& s) { return s.displayID == displayID; });
    const auto excluded = topLevel(static_cast<xcb_window_t>(excludedWindow));
    if (!known || !excluded) return std::nullopt;
    if (!redirected_) {
        auto* connection = x11::connection();
        auto cookie = xcb_composite_redirect_subwindows_checked(connection, x11::root(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        if (auto* failure = xcb_request_check(connection, cookie)) {
            free(failure);
            error = "the windows' pixmaps cannot be reached (Composite redirection refused)";
            return std::nullopt;
        }
        redirected_ = true;
    }
    return CaptureFilter{displayID, *excluded};
}

void X11ScreenCapture::beginSession() {
    background_.reset();
    if (wallpaperPixmap()) return;
    auto* root = xcb_setup_roots_iterator(xcb_get_setup(x11::connection())).data;
    if (!root) return;
    const Box area{0, 0, root->width_in_pixels, root->height_in_pixels};
    Bitmap image{area.width, area.height, std::vector<uint32_t>(static_cast<size_t>(area.width) * area.height, 0xFF000000u)};
    paint(x11::root(), 0, 0, area, area, image);
    background_ = std::move(image);
}

void X11ScreenCapture::endSession() {
    background_.reset();
    if (!redirected_ || !x11::connection()) return;
    xcb_composite_unredirect_subwindows(x11::connection(), x11::root(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    xcb_flush(x11::connection());
    redirected_ = false;
}

std::optional<Bitmap> X11ScreenCapture::captureImage(const CaptureFilter& filter, const ScreenRect& sourceRect, int width,
                                                     int height, std::string& error) {
    ScreenInfo screen;
    for (const auto& candidate : screens()) {
        if (candidate.displayID == filter.displayID) screen = candidate;
    }
    if (screen.displayID == 0) {
        error = "display " + std::to_string(filter.displayID) + " is gone";
        return std::nullopt;
    }
    const Box area{static_cast<int>(screen.frame.x + sourceRect.x), static_cast<int>(screen.frame.y + sourceRect.y), width, height};
    Bitmap image{width, height, std::vector<uint32_t>(static_cast<size_t>(width) * height, 0xFF000000u)};
    auto* connection = x11::connection();

    // The desktop background: the wallpaper setter's pixmap, else the desktop as the session found it.
    if (const auto wallpaper = wallpaperPixmap()) {
        paint(*wallpaper, 0, 0, area, area, image);
    } else if (background_) {
        const auto visible = intersect(area, {0, 0, background_->width, background_->height});
        for (int row = 0; row < visible.height; ++row) {
            for (int column = 0; column < visible.width; ++column) {
                image.pixels[static_cast<size_t>(visible.y - area.y + row) * width + (visible.x - area.x + column)] =
                    background_->pixel(visible.x + column, visible.y + row);
            }
        }
    }

    auto* tree = xcb_query_tree_reply(connection, xcb_query_tree(connection, x11::root()), nullptr);
    if (!tree) {
        error = "the window tree cannot be read";
        return std::nullopt;
    }
    const auto* children = xcb_query_tree_children(tree);
    const int count = xcb_query_tree_children_length(tree);
    std::vector<xcb_get_window_attributes_cookie_t> attributes;
    std::vector<xcb_get_geometry_cookie_t> geometries;
    for (int i = 0; i < count; ++i) {
        attributes.push_back(xcb_get_window_attributes(connection, children[i]));
        geometries.push_back(xcb_get_geometry(connection, children[i]));
    }
    // Bottom to top, as the server stacks them.
    for (int i = 0; i < count; ++i) {
        auto* attribute = xcb_get_window_attributes_reply(connection, attributes[i], nullptr);
        auto* geometry = xcb_get_geometry_reply(connection, geometries[i], nullptr);
        const bool drawn = attribute && geometry && children[i] != filter.excludedWindow &&
                           attribute->map_state == XCB_MAP_STATE_VIEWABLE && attribute->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT &&
                           (geometry->depth == 24 || geometry->depth == 32);
        if (drawn) {
            const int border = geometry->border_width;
            const Box frame{geometry->x, geometry->y, geometry->width + 2 * border, geometry->height + 2 * border};
            const auto visible = intersect(frame, area);
            if (visible.width > 0 && visible.height > 0) {
                const xcb_pixmap_t pixmap = xcb_generate_id(connection);
                xcb_composite_name_window_pixmap(connection, children[i], pixmap);
                paint(pixmap, frame.x, frame.y, visible, area, image);
                xcb_free_pixmap(connection, pixmap);
            }
        }
        free(attribute);
        free(geometry);
    }
    free(tree);
    return image;
}

}  // namespace kro
