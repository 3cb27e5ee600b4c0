#include "drawing/jpeg.h"

#include <jpeglib.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace vantrel::drawing {
namespace {

// Without an own error handler the library would end the program.
[[noreturn]] void fail(j_common_ptr info) {
  char text[JMSG_LENGTH_MAX];
  info->err->format_message(info, text);
  throw std::runtime_error(std::string("JPEG: ") + text);
}

jpeg_error_mgr* throwing(jpeg_error_mgr& errors) {
  jpeg_std_error(&errors);
  errors.error_exit = fail;
  return &errors;
}

struct Decompression {
  jpeg_error_mgr errors;
  jpeg_decompress_struct info;

  Decompression() {
    info.err = throwing(errors);
    jpeg_create_decompress(&info);
  }
  ~Decompression() { jpeg_destroy_decompress(&info); }
  Decompression(const Decompression&) = delete;

  // Hands out each row.
  template <class Take>
  void read(J_COLOR_SPACE space, Take take) {
    jpeg_read_header(&info, TRUE);
    info.out_color_space = space;
    jpeg_start_decompress(&info);
    while (info.output_scanline < info.output_height) {
      JSAMPROW row = take(info.output_scanline);
      jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
  }
};

struct Compression {
  jpeg_error_mgr errors;
  jpeg_compress_struct info;
  unsigned char* bytes = nullptr;
  unsigned long size = 0;

  Compression() {
    info.err = throwing(errors);
    jpeg_create_compress(&info);
    jpeg_mem_dest(&info, &bytes, &size);
  }
  ~Compression() {
    jpeg_destroy_compress(&info);
    std::free(bytes);
  }
  Compression(const Compression&) = delete;

  void write(const std::vector<unsigned char>& bgr, int width, int height, int quality, bool halved_chroma) {
    info.image_width = static_cast<JDIMENSION>(width), info.image_height = static_cast<JDIMENSION>(height);
    info.input_components = 3, info.in_color_space = JCS_EXT_BGR;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = halved_chroma ? 2 : 1;
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height) {
      const std::size_t at = static_cast<std::size_t>(info.next_scanline) * static_cast<std::size_t>(width) * 3;
      JSAMPROW row = const_cast<JSAMPROW>(bgr.data() + at);  // the library only reads it
      jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
  }
};

}  // namespace

Texture read_jpeg(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) throw std::runtime_error("cannot read " + path);
  Decompression decompression;
  jpeg_stdio_src(&decompression.info, file.get());
  std::vector<unsigned char> bgr;
  std::size_t stride = 0;
  decompression.read(JCS_EXT_BGR, [&](JDIMENSION y) {
    stride = static_cast<std::size_t>(decompression.info.output_width) * 3;
    bgr.resize(stride * decompression.info.output_height);
    return bgr.data() + stride * y;
  });
  Texture texture(static_cast<int>(decompression.info.output_width), static_cast<int>(decompression.info.output_height),
                  gray(0));
  const unsigned char* byte = bgr.data();
  for (int y = 0; y < texture.height(); ++y) {
    for (int x = 0; x < texture.width(); ++x, byte += 3) {
      texture.row(y)[x] =
          byte[0] | static_cast<std::uint32_t>(byte[1]) << 8 | static_cast<std::uint32_t>(byte[2]) << 16;
    }
  }
  return texture;
}

void pass_through_jpeg(std::vector<unsigned char>& bgr, int width, int height, int quality, bool halved_chroma) {
  Compression compression;
  compression.write(bgr, width, height, quality, halved_chroma);
  Decompression decompression;
  jpeg_mem_src(&decompression.info, compression.bytes, compression.size);
  decompression.read(JCS_EXT_BGR, [&](JDIMENSION y) {
    return bgr.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width) * 3;
  });
}

}  // namespace vantrel::drawing
