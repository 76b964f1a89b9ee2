#include "platform/linux/WaylandScreenCopy.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <functional>

#include <wayland-client.h>

#include "wlr-layer-shell-unstable-v1-client-protocol.h"
#include "wlr-screencopy-unstable-v1-client-protocol.h"
#include "xdg-output-unstable-v1-client-protocol.h"

namespace kro {

struct Output {
    wl_output* output = nullptr;
    zxdg_output_v1* xdgOutput = nullptr;
    std::string name;
    int32_t transform = WL_OUTPUT_TRANSFORM_NORMAL;
};

// The clear layer that holds the pointer while a still is taken.
struct Cover {
    wl_surface* surface = nullptr;
    zwlr_layer_surface_v1* layer = nullptr;
    wl_buffer* buffer = nullptr;
    uint32_t width = 0, height = 0;
    bool configured = false;
    bool closed = false;
    Output* output = nullptr;
    bool pointerIn = false;
    double x = 0, y = 0;
};

// The shared memory the compositor copies into, kept from one copy to the next while the output's buffer stays
// the same: fresh memory costs a page fault per page on both sides of every copy.
struct CopyBuffer {
    int fd = -1;
    void* data = MAP_FAILED;
    size_t size = 0;
    wl_buffer* buffer = nullptr;
    uint32_t format = 0, width = 0, height = 0, stride = 0;

    bool fits(uint32_t f, uint32_t w, uint32_t h, uint32_t s) const {
        return buffer && format == f && width == w && height == h && stride == s;
    }
    void release(bool connected) {
        if (buffer && connected) wl_buffer_destroy(buffer);
        buffer = nullptr;
        if (data != MAP_FAILED) munmap(data, size);
        data = MAP_FAILED;
        if (fd >= 0) close(fd);
        fd = -1;
    }
};

struct WaylandScreenCopy::State {
    wl_display* display = nullptr;
    wl_registry* registry = nullptr;
    wl_shm* shm = nullptr;
    wl_compositor* compositor = nullptr;
    wl_seat* seat = nullptr;
    wl_pointer* pointer = nullptr;
    zwlr_layer_shell_v1* layerShell = nullptr;
    std::unique_ptr<Cover> cover;
    CopyBuffer copyBuffer;
    zwlr_screencopy_manager_v1* manager = nullptr;
    uint32_t managerVersion = 0;
    zxdg_output_manager_v1* outputManager = nullptr;
    std::vector<std::unique_ptr<Output>> outputs;

    ~State() {
        removeCover();
        copyBuffer.release(!broken());
        if (pointer) wl_pointer_destroy(pointer);
        if (seat) wl_seat_destroy(seat);
        if (layerShell) zwlr_layer_shell_v1_destroy(layerShell);
        if (compositor) wl_compositor_destroy(compositor);
        for (auto& output : outputs) {
            if (output->xdgOutput) zxdg_output_v1_destroy(output->xdgOutput);
            if (output->output) wl_output_destroy(output->output);
        }
        if (manager) zwlr_screencopy_manager_v1_destroy(manager);
        if (outputManager) zxdg_output_manager_v1_destroy(outputManager);
        if (shm) wl_shm_destroy(shm);
        if (registry) wl_registry_destroy(registry);
        if (display) wl_display_disconnect(display);
    }

    bool broken() const { return !display || wl_display_get_error(display) != 0; }

    void removeCover() {
        if (!cover) return;
        if (!broken()) {
            if (cover->layer) zwlr_layer_surface_v1_destroy(cover->layer);
            if (cover->surface) wl_surface_destroy(cover->surface);
            if (cover->buffer) wl_buffer_destroy(cover->buffer);
            wl_display_flush(display);
        }
        cover.reset();
    }

    // Reads and dispatches events until `done` holds, the time runs out or the connection breaks.
    bool dispatchUntil(const std::function<bool()>& done, double timeoutSeconds) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(timeoutSeconds);
        while (!done()) {
            if (broken()) return false;
            while (wl_display_prepare_read(display) != 0) wl_display_dispatch_pending(display);
            wl_display_flush(display);
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
            if (left.count() <= 0) {
                wl_display_cancel_read(display);
                return false;
            }
            pollfd descriptor{wl_display_get_fd(display), POLLIN, 0};
            if (poll(&descriptor, 1, static_cast<int>(left.count())) <= 0) {
                wl_display_cancel_read(display);
                continue;
            }
            if (wl_display_read_events(display) != 0) return false;
            wl_display_dispatch_pending(display);
        }
        return true;
    }
};

namespace {

void outputGeometry(void* data, wl_output*, int32_t, int32_t, int32_t, int32_t, int32_t, const char*, const char*, int32_t transform) {
    static_cast<Output*>(data)->transform = transform;
}
void outputMode(void*, wl_output*, uint32_t, int32_t, int32_t, int32_t) {}
void outputDone(void*, wl_output*) {}
void outputScale(void*, wl_output*, int32_t) {}
void outputName(void* data, wl_output*, const char* name) {
    auto* output = static_cast<Output*>(data);
    if (output->name.empty()) output->name = name;
}
void outputDescription(void*, wl_output*, const char*) {}
const wl_output_listener kOutputListener{outputGeometry, outputMode, outputDone, outputScale, outputName, outputDescription};

void xdgPosition(void*, zxdg_output_v1*, int32_t, int32_t) {}
void xdgSize(void*, zxdg_output_v1*, int32_t, int32_t) {}
void xdgDone(void*, zxdg_output_v1*) {}
void xdgName(void* data, zxdg_output_v1*, const char* name) { static_cast<Output*>(data)->name = name; }
void xdgDescription(void*, zxdg_output_v1*, const char*) {}
const zxdg_output_v1_listener kXdgOutputListener{xdgPosition, xdgSize, xdgDone, xdgName, xdgDescription};

// The pointer on the cover: its place, and no cursor image while it is there.
void pointerEnter(void* data, wl_pointer* pointer, uint32_t serial, wl_surface* surface, wl_fixed_t x, wl_fixed_t y) {
    auto& cover = static_cast<WaylandScreenCopy::State*>(data)->cover;
    if (!cover || surface != cover->surface) return;
    wl_pointer_set_cursor(pointer, serial, nullptr, 0, 0);
    cover->pointerIn = true;
    cover->x = wl_fixed_to_double(x);
    cover->y = wl_fixed_to_double(y);
}
void pointerLeave(void*, wl_pointer*, uint32_t, wl_surface*) {}
void pointerMotion(void* data, wl_pointer*, uint32_t, wl_fixed_t x, wl_fixed_t y) {
    auto& cover = static_cast<WaylandScreenCopy::State*>(data)->cover;
    if (!cover) return;
    cover->x = wl_fixed_to_double(x);
    cover->y = wl_fixed_to_double(y);
}
void pointerButton(void*, wl_pointer*, uint32_t, uint32_t, uint32_t, uint32_t) {}
void pointerAxis(void*, wl_pointer*, uint32_t, uint32_t, wl_fixed_t) {}
void pointerFrame(void*, wl_pointer*) {}
void pointerAxisSource(void*, wl_pointer*, uint32_t) {}
void pointerAxisStop(void*, wl_pointer*, uint32_t, uint32_t) {}
void pointerAxisDiscrete(void*, wl_pointer*, uint32_t, int32_t) {}
const wl_pointer_listener kPointerListener{.enter = pointerEnter,
                                          .leave = pointerLeave,
                                          .motion = pointerMotion,
                                          .button = pointerButton,
                                          .axis = pointerAxis,
                                          .frame = pointerFrame,
                                          .axis_source = pointerAxisSource,
                                          .axis_stop = pointerAxisStop,
                                          .axis_discrete = pointerAxisDiscrete,
                                          .axis_value120 = nullptr};

void seatCapabilities(void* data, wl_seat* seat, uint32_t capabilities) {
    auto* state = static_cast<WaylandScreenCopy::State*>(data);
    if ((capabilities & WL_SEAT_CAPABILITY_POINTER) && !state->pointer) {
        state->pointer = wl_seat_get_pointer(seat);
        wl_pointer_add_listener(state->pointer, &kPointerListener, state);
    }
}
void seatName(void*, wl_seat*, const char*) {}
const wl_seat_listener kSeatListener{seatCapabilities, seatName};

void surfaceEnter(void* data, wl_surface*, wl_output* entered) {
    auto* state = static_cast<WaylandScreenCopy::State*>(data);
    for (auto& output : state->outputs) {
        if (output->output == entered && state->cover) state->cover->output = output.get();
    }
}
void surfaceLeave(void*, wl_surface*, wl_output*) {}
const wl_surface_listener kSurfaceListener{surfaceEnter, surfaceLeave};

void layerConfigure(void* data, zwlr_layer_surface_v1* layer, uint32_t serial, uint32_t width, uint32_t height) {
    auto& cover = static_cast<WaylandScreenCopy::State*>(data)->cover;
    zwlr_layer_surface_v1_ack_configure(layer, serial);
    if (!cover) return;
    cover->width = width;
    cover->height = height;
    cover->configured = true;
}
void layerClosed(void* data, zwlr_layer_surface_v1*) {
    auto& cover = static_cast<WaylandScreenCopy::State*>(data)->cover;
    if (cover) cover->closed = true;
}
const zwlr_layer_surface_v1_listener kLayerListener{layerConfigure, layerClosed};

void registryGlobal(void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t version) {
    auto* state = static_cast<WaylandScreenCopy::State*>(data);
    if (std::strcmp(interface, wl_shm_interface.name) == 0) {
        state->shm = static_cast<wl_shm*>(wl_registry_bind(registry, name, &wl_shm_interface, 1));
    } else if (std::strcmp(interface, wl_compositor_interface.name) == 0) {
        state->compositor = static_cast<wl_compositor*>(wl_registry_bind(registry, name, &wl_compositor_interface, 4));
    } else if (std::strcmp(interface, wl_seat_interface.name) == 0 && !state->seat) {
        state->seat = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, std::min<uint32_t>(version, 5)));
        wl_seat_add_listener(state->seat, &kSeatListener, state);
    } else if (std::strcmp(interface, zwlr_layer_shell_v1_interface.name) == 0) {
        state->layerShell = static_cast<zwlr_layer_shell_v1*>(wl_registry_bind(registry, name, &zwlr_layer_shell_v1_interface, 1));
    } else if (std::strcmp(interface, zwlr_screencopy_manager_v1_interface.name) == 0) {
        state->managerVersion = std::min<uint32_t>(version, 3);
        state->manager = static_cast<zwlr_screencopy_manager_v1*>(
            wl_registry_bind(registry, name, &zwlr_screencopy_manager_v1_interface, state->managerVersion));
    } else if (std::strcmp(interface, zxdg_output_manager_v1_interface.name) == 0 && version >= 2) {
        state->outputManager = static_cast<zxdg_output_manager_v1*>(
            wl_registry_bind(registry, name, &zxdg_output_manager_v1_interface, std::min<uint32_t>(version, 3)));
    } else if (std::strcmp(interface, wl_output_interface.name) == 0) {
        auto output = std::make_unique<Output>();
        output->output = static_cast<wl_output*>(wl_registry_bind(registry, name, &wl_output_interface, std::min<uint32_t>(version, 4)));
        wl_output_add_listener(output->output, &kOutputListener, output.get());
        state->outputs.push_back(std::move(output));
    }
}
void registryGlobalRemove(void*, wl_registry*, uint32_t) {}
const wl_registry_listener kRegistryListener{registryGlobal, registryGlobalRemove};

// One copy in flight: the buffer the compositor asked for, then its answer.
struct Frame {
    uint32_t format = 0;
    uint32_t width = 0, height = 0, stride = 0;
    bool shmOffered = false;
    bool bufferDone = false;  // every buffer kind has been told (version 3); earlier versions copy at once
    uint32_t flags = 0;
    bool ready = false;
    bool failed = false;
};

void frameBuffer(void* data, zwlr_screencopy_frame_v1*, uint32_t format, uint32_t width, uint32_t height, uint32_t stride) {
    auto* frame = static_cast<Frame*>(data);
    *frame = Frame{format, width, height, stride, true, frame->bufferDone, frame->flags, false, false};
}
void frameFlags(void* data, zwlr_screencopy_frame_v1*, uint32_t flags) { static_cast<Frame*>(data)->flags = flags; }
void frameReady(void* data, zwlr_screencopy_frame_v1*, uint32_t, uint32_t, uint32_t) { static_cast<Frame*>(data)->ready = true; }
void frameFailed(void* data, zwlr_screencopy_frame_v1*) { static_cast<Frame*>(data)->failed = true; }
void frameDamage(void*, zwlr_screencopy_frame_v1*, uint32_t, uint32_t, uint32_t, uint32_t) {}
void frameDmabuf(void*, zwlr_screencopy_frame_v1*, uint32_t, uint32_t, uint32_t) {}
void frameBufferDone(void* data, zwlr_screencopy_frame_v1*) { static_cast<Frame*>(data)->bufferDone = true; }
const zwlr_screencopy_frame_v1_listener kFrameListener{frameBuffer, frameFlags, frameReady, frameFailed,
                                                       frameDamage, frameDmabuf, frameBufferDone};

// The 32-bit formats a compositor offers for shared memory, with or without alpha; the screen is opaque.
bool readable(uint32_t format) {
    return format == WL_SHM_FORMAT_ARGB8888 || format == WL_SHM_FORMAT_XRGB8888 || format == WL_SHM_FORMAT_ABGR8888 ||
           format == WL_SHM_FORMAT_XBGR8888;
}

// The buffer as 0xAARRGGBB, rows top to bottom whichever way the compositor wrote them.
Bitmap upright(const uint8_t* data, const Frame& frame) {
    const int width = static_cast<int>(frame.width), height = static_cast<int>(frame.height);
    Bitmap image{width, height, std::vector<uint32_t>(static_cast<size_t>(width) * height)};
    const bool yInvert = frame.flags & ZWLR_SCREENCOPY_FRAME_V1_FLAGS_Y_INVERT;
    const bool bgr = frame.format == WL_SHM_FORMAT_ABGR8888 || frame.format == WL_SHM_FORMAT_XBGR8888;
    for (int y = 0; y < height; ++y) {
        const auto* row = reinterpret_cast<const uint32_t*>(data + static_cast<size_t>(yInvert ? height - 1 - y : y) * frame.stride);
        auto* target = &image.pixels[static_cast<size_t>(y) * width];
        if (bgr) {
            for (int x = 0; x < width; ++x) {
                const uint32_t p = row[x];
                target[x] = 0xFF000000u | ((p & 0xFFu) << 16) | (p & 0xFF00u) | ((p >> 16) & 0xFFu);
            }
        } else {
            for (int x = 0; x < width; ++x) target[x] = row[x] | 0xFF000000u;
        }
    }
    return image;
}

}  // namespace

WaylandScreenCopy::WaylandScreenCopy() : state_(std::make_unique<State>()) {
    state_->display = wl_display_connect(nullptr);
    if (!state_->display) return;
    state_->registry = wl_display_get_registry(state_->display);
    wl_registry_add_listener(state_->registry, &kRegistryListener, state_.get());
    wl_display_roundtrip(state_->display);
    if (state_->outputManager) {
        for (auto& output : state_->outputs) {
            output->xdgOutput = zxdg_output_manager_v1_get_xdg_output(state_->outputManager, output->output);
            zxdg_output_v1_add_listener(output->xdgOutput, &kXdgOutputListener, output.get());
        }
    }
    wl_display_roundtrip(state_->display);
}

WaylandScreenCopy::~WaylandScreenCopy() = default;

bool WaylandScreenCopy::available() const { return !state_->broken() && state_->manager && state_->shm; }

std::vector<std::string> WaylandScreenCopy::outputNames() const {
    std::vector<std::string> names;
    for (const auto& output : state_->outputs) names.push_back(output->name);
    return names;
}

std::optional<WaylandScreenCopy::PointerPlace> WaylandScreenCopy::cover(double timeoutSeconds) {
    auto& state = *state_;
    state.removeCover();
    if (state.broken() || !state.layerShell || !state.compositor || !state.shm || !state.pointer) return std::nullopt;
    state.cover = std::make_unique<Cover>();
    auto& cover = *state.cover;
    cover.surface = wl_compositor_create_surface(state.compositor);
    wl_surface_add_listener(cover.surface, &kSurfaceListener, &state);
    // No output named: the compositor puts it on the one in use, which is the one under the pointer.
    cover.layer = zwlr_layer_shell_v1_get_layer_surface(state.layerShell, cover.surface, nullptr, ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY,
                                                        "kro-picker");
    zwlr_layer_surface_v1_add_listener(cover.layer, &kLayerListener, &state);
    zwlr_layer_surface_v1_set_anchor(cover.layer, ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
                                                      ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT);
    zwlr_layer_surface_v1_set_exclusive_zone(cover.layer, -1);
    wl_surface_commit(cover.surface);
    if (!state.dispatchUntil([&] { return cover.configured || cover.closed; }, timeoutSeconds) || cover.closed || !cover.width ||
        !cover.height) {
        state.removeCover();
        return std::nullopt;
    }
    // A clear picture of the output's size; fresh shared memory reads as zeros, which is transparent.
    const size_t size = static_cast<size_t>(cover.width) * cover.height * 4;
    const int fd = memfd_create("kro-cover", MFD_CLOEXEC);
    if (fd < 0 || ftruncate(fd, static_cast<off_t>(size)) != 0) {
        if (fd >= 0) close(fd);
        state.removeCover();
        return std::nullopt;
    }
    auto* pool = wl_shm_create_pool(state.shm, fd, static_cast<int32_t>(size));
    cover.buffer = wl_shm_pool_create_buffer(pool, 0, static_cast<int32_t>(cover.width), static_cast<int32_t>(cover.height),
                                             static_cast<int32_t>(cover.width * 4), WL_SHM_FORMAT_ARGB8888);
    wl_shm_pool_destroy(pool);
    close(fd);
    wl_surface_attach(cover.surface, cover.buffer, 0, 0);
    wl_surface_damage(cover.surface, 0, 0, static_cast<int32_t>(cover.width), static_cast<int32_t>(cover.height));
    wl_surface_commit(cover.surface);
    state.dispatchUntil([&] { return cover.pointerIn && cover.output; }, timeoutSeconds);
    // One more round trip: the cursor is gone from every frame drawn after the compositor has read this.
    wl_display_roundtrip(state.display);
    if (!cover.pointerIn || !cover.output) {
        state.removeCover();
        return std::nullopt;
    }
    return PointerPlace{cover.output->name, cover.x, cover.y};
}

void WaylandScreenCopy::uncover() { state_->removeCover(); }

std::optional<Bitmap> WaylandScreenCopy::copy(const std::string& outputName, std::string& error, double timeoutSeconds) {
    if (state_->broken()) {
        error = "the compositor closed its connection";
        return std::nullopt;
    }
    if (!available()) {
        error = "the compositor offers no screen copy";
        return std::nullopt;
    }
    Output* output = nullptr;
    for (auto& candidate : state_->outputs) {
        if (candidate->name == outputName || (outputName.empty() && !output)) output = candidate.get();
    }
    if (!output) {
        error = "the compositor has no output named " + outputName;
        return std::nullopt;
    }
    // A copy comes in the output's own buffer orientation; turning it upright is not done yet.
    if (output->transform != WL_OUTPUT_TRANSFORM_NORMAL) {
        error = "the output " + output->name + " is rotated or flipped, which the screen copy does not handle yet";
        return std::nullopt;
    }

    Frame frame;
    // The cursor stays out: the loupe hides it, and a pointer drawn into the picture would be sampled.
    auto* handle = zwlr_screencopy_manager_v1_capture_output(state_->manager, 0, output->output);
    zwlr_screencopy_frame_v1_add_listener(handle, &kFrameListener, &frame);
    const bool v3 = state_->managerVersion >= 3;
    const bool offered = state_->dispatchUntil(
        [&] { return frame.failed || (frame.shmOffered && (!v3 || frame.bufferDone)); }, timeoutSeconds);
    std::optional<Bitmap> image;
    if (!offered || frame.failed || !frame.shmOffered) {
        error = state_->broken() ? "the compositor closed its connection" : "the compositor offered no buffer to copy into";
    } else if (!readable(frame.format)) {
        error = "the compositor copies only in a pixel format we do not read (" + std::to_string(frame.format) + ")";
    } else {
        auto& buffer = state_->copyBuffer;
        if (!buffer.fits(frame.format, frame.width, frame.height, frame.stride)) {
            buffer.release(!state_->broken());
            buffer.size = static_cast<size_t>(frame.stride) * frame.height;
            buffer.fd = memfd_create("kro-screen-copy", MFD_CLOEXEC);
            if (buffer.fd >= 0 && ftruncate(buffer.fd, static_cast<off_t>(buffer.size)) == 0) {
                buffer.data = mmap(nullptr, buffer.size, PROT_READ | PROT_WRITE, MAP_SHARED, buffer.fd, 0);
            }
            if (buffer.data == MAP_FAILED) {
                error = std::string("no memory to copy the screen into: ") + std::strerror(errno);
                buffer.release(!state_->broken());
            } else {
                auto* pool = wl_shm_create_pool(state_->shm, buffer.fd, static_cast<int32_t>(buffer.size));
                buffer.buffer = wl_shm_pool_create_buffer(pool, 0, static_cast<int32_t>(frame.width), static_cast<int32_t>(frame.height),
                                                          static_cast<int32_t>(frame.stride), frame.format);
                wl_shm_pool_destroy(pool);
                buffer.format = frame.format, buffer.width = frame.width, buffer.height = frame.height, buffer.stride = frame.stride;
            }
        }
        if (buffer.buffer) {
            zwlr_screencopy_frame_v1_copy(handle, buffer.buffer);
            if (!state_->dispatchUntil([&] { return frame.ready || frame.failed; }, timeoutSeconds)) {
                error = state_->broken() ? "the compositor closed its connection" : "the compositor did not copy the screen in time";
            } else if (frame.failed) {
                error = "the compositor could not copy the screen";
            } else {
                image = upright(static_cast<const uint8_t*>(buffer.data), frame);
            }
        }
    }
    zwlr_screencopy_frame_v1_destroy(handle);
    if (!state_->broken()) wl_display_flush(state_->display);
    return image;
}

}  // namespace kro
