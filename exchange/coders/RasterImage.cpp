// PNG and GIF are read, and PNG and JPEG written, by stb, compiled in here rather than linked from
// Debian's shared library: only those two readers are built, and every allocation the reader makes goes
// through a limit worked out from the picture's declared size. A file whose compressed data would
// inflate beyond that size, or whose chunk lengths promise gigabytes, then fails instead of taking them.
// JPEG files are read by JPEGReader.cpp.
#include "exchange/coders/RasterImage.h"

#include <zlib.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>

#include "exchange/PalErrors.h"

namespace {

thread_local std::size_t allocationLimit = 0;

void* limitedMalloc(std::size_t size) { return size <= allocationLimit ? std::malloc(size) : nullptr; }
void* limitedRealloc(void* block, std::size_t size) { return size <= allocationLimit ? std::realloc(block, size) : nullptr; }

// PNG output through zlib's deflate, which is faster and tighter than stb's own.
unsigned char* zlibCompress(unsigned char* data, int length, int* outLength, int quality) {
    uLongf size = compressBound(static_cast<uLong>(length));
    auto* out = static_cast<unsigned char*>(std::malloc(size));
    if (!out) return nullptr;
    if (compress2(out, &size, data, static_cast<uLong>(length), std::clamp(quality, 1, 9)) != Z_OK) {
        std::free(out);
        return nullptr;
    }
    *outLength = static_cast<int>(size);
    return out;
}

}  // namespace

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_ONLY_GIF
#define STBI_NO_STDIO
#define STBI_NO_LINEAR
#define STBI_NO_HDR
#define STBI_MALLOC(size) limitedMalloc(size)
#define STBI_REALLOC(block, size) limitedRealloc(block, size)
#define STBI_FREE(block) std::free(block)
#include <stb/stb_image.h>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#define STBIW_ZLIB_COMPRESS zlibCompress
#include <stb/stb_image_write.h>

namespace PAL {

namespace {

// The reader's fixed tables (the LZW dictionary, one decoder state) fit well inside this.
constexpr std::size_t fixedAllocation = 1 << 20;

class AllocationLimit {
public:
    explicit AllocationLimit(std::size_t limit) { allocationLimit = limit; }
    ~AllocationLimit() { allocationLimit = 0; }
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

void appendBytes(void* context, void* data, int size) {
    static_cast<std::string*>(context)->append(static_cast<const char*>(data), static_cast<std::size_t>(size));
}

void checkWritable(const RasterImage& image) {
    const auto pixels = static_cast<std::uint64_t>(std::max(image.width, 0)) * static_cast<std::uint64_t>(std::max(image.height, 0));
    if (pixels == 0 || pixels > maximumRasterPixels || image.rgba.size() != pixels * 4)
        throw CommonError(CommonError::Case::cannotCreateImage);
}

}  // namespace

RasterImage readRasterImage(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xD8\xFF")) return readJPEGImage(bytes);
    if (bytes.empty() || bytes.size() > INT_MAX) refuse();
    const auto* data = reinterpret_cast<const stbi_uc*>(bytes.data());
    const int length = static_cast<int>(bytes.size());

    int width = 0, height = 0, channels = 0;
    {
        AllocationLimit limit(fixedAllocation);
        if (!stbi_info_from_memory(data, length, &width, &height, &channels)) refuse();
    }
    if (width <= 0 || height <= 0) refuse();
    const auto pixels = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    if (pixels > maximumRasterPixels) refuse();

    // Sixteen-bit RGBA is the widest decoded form, plus one filter byte per PNG row.
    AllocationLimit limit(static_cast<std::size_t>(pixels * 8 + static_cast<std::uint64_t>(height)) + fixedAllocation);
    int decodedWidth = 0, decodedHeight = 0;
    const std::unique_ptr<stbi_uc, void (*)(void*)> decoded(
        stbi_load_from_memory(data, length, &decodedWidth, &decodedHeight, &channels, 4), stbi_image_free);
    if (!decoded || decodedWidth != width || decodedHeight != height) refuse();

    RasterImage image;
    image.width = width;
    image.height = height;
    image.rgba.assign(decoded.get(), decoded.get() + pixels * 4);
    return image;
}

std::string pngBytes(const RasterImage& image) {
    checkWritable(image);
    std::string out;
    if (!stbi_write_png_to_func(appendBytes, &out, image.width, image.height, 4, image.rgba.data(), image.width * 4))
        throw CommonError(CommonError::Case::cannotCreateImage);
    return out;
}

std::string jpegBytes(const RasterImage& image, int quality) {
    checkWritable(image);
    std::vector<std::uint8_t> rgb(image.rgba.size() / 4 * 3);
    for (std::size_t from = 0, to = 0; from < image.rgba.size(); from += 4, to += 3) {
        const int alpha = image.rgba[from + 3];
        for (int channel = 0; channel < 3; ++channel)
            rgb[to + channel] = static_cast<std::uint8_t>((image.rgba[from + channel] * alpha + 255 * (255 - alpha) + 127) / 255);
    }
    std::string out;
    if (!stbi_write_jpg_to_func(appendBytes, &out, image.width, image.height, 3, rgb.data(), std::clamp(quality, 1, 100)))
        throw CommonError(CommonError::Case::cannotCreateImage);
    return out;
}

}  // namespace PAL
