// JPEG files are read with libjpeg-turbo rather than stb: stb's JPEG decoder reads past its Huffman
// tables on damaged files, while libjpeg-turbo is Debian's maintained, fuzzed reader. Its memory is held
// to what the declared size needs, and a progressive file gets a bounded number of scans, so that a
// small file cannot make it work for minutes.
#include <csetjmp>
#include <cstddef>
#include <cstdio>

#include <jpeglib.h>  // needs size_t and FILE declared first

#include "exchange/PalErrors.h"
#include "exchange/coders/RasterImage.h"

namespace PAL {

namespace {

// A progressive file has about ten; thousands of tiny scans would each walk the whole picture.
constexpr int mostScans = 100;

struct Errors {
    jpeg_error_mgr manager;  // first, so the library's pointer to it is a pointer to this
    std::jmp_buf jump;
};

[[noreturn]] void fail(j_common_ptr info) { std::longjmp(reinterpret_cast<Errors*>(info->err)->jump, 1); }
void ignoreMessage(j_common_ptr, int) {}

void limitScans(j_common_ptr info) {
    if (info->is_decompressor && reinterpret_cast<j_decompress_ptr>(info)->input_scan_number > mostScans) fail(info);
}

// Adobe writes CMYK JPEGs inverted; other writers rarely write CMYK at all.
void cmykToRGBA(RasterImage& image, bool inverted) {
    for (std::size_t i = 0; i < image.rgba.size(); i += 4) {
        std::uint8_t* p = &image.rgba[i];
        const int c = inverted ? p[0] : 255 - p[0], m = inverted ? p[1] : 255 - p[1], y = inverted ? p[2] : 255 - p[2];
        const int k = inverted ? p[3] : 255 - p[3];
        p[0] = static_cast<std::uint8_t>((c * k + 127) / 255);
        p[1] = static_cast<std::uint8_t>((m * k + 127) / 255);
        p[2] = static_cast<std::uint8_t>((y * k + 127) / 255);
        p[3] = 255;
    }
}

}  // namespace

RasterImage readJPEGImage(std::string_view bytes) {
    // Everything the error path touches lives before setjmp, so the jump skips no destructor.
    jpeg_decompress_struct info{};
    Errors errors{};
    jpeg_progress_mgr progress{};
    RasterImage image;
    info.err = jpeg_std_error(&errors.manager);
    errors.manager.error_exit = fail;
    errors.manager.emit_message = ignoreMessage;  // damaged data is decoded as far as it goes
    if (setjmp(errors.jump)) {
        jpeg_destroy_decompress(&info);
        throw CommonError(CommonError::Case::invalidFormat);
    }
    jpeg_create_decompress(&info);
    progress.progress_monitor = limitScans;
    info.progress = &progress;
    jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned long>(bytes.size()));
    jpeg_read_header(&info, TRUE);

    const auto pixels = static_cast<std::uint64_t>(info.image_width) * info.image_height;
    if (pixels == 0 || pixels > maximumRasterPixels) fail(reinterpret_cast<j_common_ptr>(&info));
    // A progressive file keeps every coefficient until its last scan: two bytes for each of up to four
    // components, plus the working rows.
    info.mem->max_memory_to_use = static_cast<long>(pixels * 8 + (16 << 20));
    const bool cmyk = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
    info.out_color_space = cmyk ? JCS_CMYK : JCS_EXT_RGBA;
    jpeg_start_decompress(&info);

    image.width = static_cast<int>(info.output_width);
    image.height = static_cast<int>(info.output_height);
    image.rgba.resize(pixels * 4);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = &image.rgba[static_cast<std::size_t>(info.output_scanline) * info.output_width * 4];
        jpeg_read_scanlines(&info, &row, 1);
    }
    if (cmyk) cmykToRGBA(image, info.saw_Adobe_marker);
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    return image;
}

}  // namespace PAL
