/* A native Wayland window of known colours for the end-to-end test, and the pointer of a headless seat.
 *
 * Usage: colour_client TITLE RRGGBB RRGGBB RRGGBB RRGGBB
 * Opens an xdg-shell toplevel with the title, painted in four blocks (top left, top right, bottom left,
 * bottom right) of the given colours at buffer scale 1, whatever size the compositor gives it. It also creates
 * a virtual pointer on the seat: a headless compositor has no pointer until some client makes one, and without
 * one no client is told where the cursor is. Runs until killed. */
#define _GNU_SOURCE
#include <errno.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

#include "wlr-virtual-pointer-unstable-v1-client-protocol.h"
#include "xdg-shell-client-protocol.h"

static struct wl_compositor *compositor;
static struct wl_shm *shm;
static struct wl_seat *seat;
static struct xdg_wm_base *wm_base;
static struct zwlr_virtual_pointer_manager_v1 *pointer_manager;
static struct wl_surface *surface;
static uint32_t colours[4];
static int width = 600, height = 400;
static int configured;

static void global(void *data, struct wl_registry *registry, uint32_t name, const char *interface, uint32_t version) {
    (void)data;
    if (strcmp(interface, wl_compositor_interface.name) == 0) {
        compositor = wl_registry_bind(registry, name, &wl_compositor_interface, 4);
    } else if (strcmp(interface, wl_shm_interface.name) == 0) {
        shm = wl_registry_bind(registry, name, &wl_shm_interface, 1);
    } else if (strcmp(interface, wl_seat_interface.name) == 0 && !seat) {
        seat = wl_registry_bind(registry, name, &wl_seat_interface, 1);
    } else if (strcmp(interface, xdg_wm_base_interface.name) == 0) {
        wm_base = wl_registry_bind(registry, name, &xdg_wm_base_interface, 1);
    } else if (strcmp(interface, zwlr_virtual_pointer_manager_v1_interface.name) == 0) {
        pointer_manager = wl_registry_bind(registry, name, &zwlr_virtual_pointer_manager_v1_interface, version < 2 ? version : 2);
    }
}
static void global_remove(void *data, struct wl_registry *registry, uint32_t name) { }
static const struct wl_registry_listener registry_listener = {global, global_remove};

static void ping(void *data, struct xdg_wm_base *base, uint32_t serial) { (void)data; xdg_wm_base_pong(base, serial); }
static const struct xdg_wm_base_listener wm_base_listener = {ping};

static void paint(void) {
    const int stride = width * 4;
    const size_t size = (size_t)stride * height;
    int fd = memfd_create("colour-client", MFD_CLOEXEC);
    if (fd < 0 || ftruncate(fd, (off_t)size) != 0) exit(1);
    uint32_t *pixels = mmap(NULL, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (pixels == MAP_FAILED) exit(1);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) pixels[(size_t)y * width + x] = 0xFF000000u | colours[(y >= height / 2) * 2 + (x >= width / 2)];
    struct wl_shm_pool *pool = wl_shm_create_pool(shm, fd, (int32_t)size);
    struct wl_buffer *buffer = wl_shm_pool_create_buffer(pool, 0, width, height, stride, WL_SHM_FORMAT_XRGB8888);
    wl_shm_pool_destroy(pool);
    munmap(pixels, size);
    close(fd);
    wl_surface_attach(surface, buffer, 0, 0);
    wl_surface_damage_buffer(surface, 0, 0, width, height);
    wl_surface_commit(surface);
}

static void surface_configure(void *data, struct xdg_surface *xdg_surface, uint32_t serial) {
    (void)data;
    xdg_surface_ack_configure(xdg_surface, serial);
    configured = 1;
    paint();
}
static const struct xdg_surface_listener surface_listener = {surface_configure};

static void toplevel_configure(void *data, struct xdg_toplevel *toplevel, int32_t w, int32_t h, struct wl_array *states) {
    (void)data, (void)toplevel, (void)states;
    if (w > 0 && h > 0) width = w, height = h;
}
static void toplevel_close(void *data, struct xdg_toplevel *toplevel) { (void)data, (void)toplevel; exit(0); }
static const struct xdg_toplevel_listener toplevel_listener = {.configure = toplevel_configure, .close = toplevel_close};

int main(int argc, char **argv) {
    if (argc != 6) {
        fprintf(stderr, "usage: %s TITLE RRGGBB RRGGBB RRGGBB RRGGBB\n", argv[0]);
        return 2;
    }
    for (int i = 0; i < 4; ++i) colours[i] = (uint32_t)strtoul(argv[2 + i], NULL, 16);
    struct wl_display *display = wl_display_connect(NULL);
    if (!display) {
        fprintf(stderr, "colour_client: no Wayland display: %s\n", strerror(errno));
        return 1;
    }
    struct wl_registry *registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &registry_listener, NULL);
    wl_display_roundtrip(display);
    if (!compositor || !shm || !wm_base) {
        fprintf(stderr, "colour_client: the compositor lacks wl_compositor, wl_shm or xdg_wm_base\n");
        return 1;
    }
    if (pointer_manager && seat) zwlr_virtual_pointer_manager_v1_create_virtual_pointer(pointer_manager, seat);
    xdg_wm_base_add_listener(wm_base, &wm_base_listener, NULL);
    surface = wl_compositor_create_surface(compositor);
    struct xdg_surface *xdg_surface = xdg_wm_base_get_xdg_surface(wm_base, surface);
    xdg_surface_add_listener(xdg_surface, &surface_listener, NULL);
    struct xdg_toplevel *toplevel = xdg_surface_get_toplevel(xdg_surface);
    xdg_toplevel_add_listener(toplevel, &toplevel_listener, NULL);
    xdg_toplevel_set_title(toplevel, argv[1]);
    xdg_toplevel_set_app_id(toplevel, argv[1]);
    wl_surface_commit(surface);
    while (wl_display_dispatch(display) != -1) {
    }
    return 0;
}
