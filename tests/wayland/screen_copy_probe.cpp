// Our own connection to the compositor, for the screen copy, breaking under a running agent: each copy before
// the break must give the screen as it is (the second one reusing the first one's shared memory), and every
// call after it must fail with the reason, at once, without hanging or ending the process (a write to the closed
// socket must not raise SIGPIPE).
// Usage: screen_copy_probe X Y RRGGBB   (a point of the output and the colour the compositor shows there)
// Exits 0 when every check holds; otherwise prints what failed and exits 1.
#include <sys/socket.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/linux/WaylandScreenCopy.h"

namespace {

int failures = 0;

void check(bool holds, const std::string& what) {
    std::printf("%s: %s\n", holds ? "ok" : "FAIL", what.c_str());
    if (!holds) ++failures;
}

// The process's only sockets are its connection to the compositor: shut them as a dying compositor would.
int breakConnection() {
    int broken = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        const int fd = std::atoi(entry.path().filename().c_str());
        struct stat status {};
        if (fstat(fd, &status) == 0 && S_ISSOCK(status.st_mode) && shutdown(fd, SHUT_RDWR) == 0) ++broken;
    }
    return broken;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: %s X Y RRGGBB\n", argv[0]);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const int x = std::atoi(argv[1]), y = std::atoi(argv[2]);
    const auto expected = static_cast<uint32_t>(std::stoul(argv[3], nullptr, 16));

    kro::WaylandScreenCopy copier;
    check(copier.available(), "the compositor offers the screen copy");
    for (const char* which : {"first", "second"}) {
        std::string error;
        const auto image = copier.copy("", error);
        check(image && x < image->width && y < image->height && (image->pixel(x, y) & 0xFFFFFFu) == expected,
              std::string("the ") + which + " copy shows " + argv[3] + " at (" + argv[1] + ", " + argv[2] + ")" +
                  (image ? "" : ": " + error));
    }

    check(breakConnection() > 0, "the connection is broken");
    std::string error;
    const auto image = copier.copy("", error, 5);
    check(!image && error == "the compositor closed its connection", "a copy after the break fails with the reason: " + error);
    check(!copier.cover(), "no cover after the break");
    check(!copier.available(), "the screen copy no longer counts as offered");
    return failures == 0 ? 0 : 1;
}
