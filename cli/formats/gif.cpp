#ifdef VANTREL_WITH_GIF
#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <new>

#include "formats/codecs.h"
#include "memory.h"

namespace tool {
namespace {

struct Source {
  const Bytes& file;
  std::size_t position = 0;
};

int read_from(GifFileType* gif, GifByteType* into, int count) {
  auto& source = *static_cast<Source*>(gif->UserData);
  const std::size_t taken = std::min(static_cast<std::size_t>(count), source.file.size() - source.position);
  if (taken != 0) std::memcpy(into, source.file.data() + source.position, taken);
  source.position += taken;
  return static_cast<int>(taken);
}

struct CloseGif {
  void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};
using Gif = std::unique_ptr<GifFileType, CloseGif>;

[[noreturn]] void fail(const ForeignCode& foreign) {
  if (foreign.missed_memory()) throw std::bad_alloc();
  refuse_damaged(Format::kGif);
}

/** Goes on to the first picture; which of its colours is seen through is told in front of it, -1 for none. */
int seek_picture(const Gif& gif, const ForeignCode& foreign) {
  int clear = NO_TRANSPARENT_COLOR;
  for (;;) {
    GifRecordType type = UNDEFINED_RECORD_TYPE;
    if (DGifGetRecordType(gif.get(), &type) == GIF_ERROR || type == TERMINATE_RECORD_TYPE) fail(foreign);
    if (type == IMAGE_DESC_RECORD_TYPE) return clear;
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(gif.get(), &code, &block) == GIF_ERROR) fail(foreign);
    while (block != nullptr) {
      GraphicsControlBlock control{};
      if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
        clear = control.TransparentColor;
      }
      if (DGifGetExtensionNext(gif.get(), &block) == GIF_ERROR) fail(foreign);
    }
  }
}

/** The colours of the picture, white where it is seen through or where there are none. */
std::array<GifColorType, 256> palette_of(const Gif& gif, int clear) {
  std::array<GifColorType, 256> palette{};
  palette.fill({255, 255, 255});
  const ColorMapObject* const map = gif->Image.ColorMap != nullptr ? gif->Image.ColorMap : gif->SColorMap;
  if (map != nullptr) std::copy_n(map->Colors, std::min(map->ColorCount, 256), palette.begin());
  if (clear >= 0 && clear < 256) palette[static_cast<std::size_t>(clear)] = {255, 255, 255};
  return palette;
}

bool is_gray(const std::array<GifColorType, 256>& palette) {
  return std::all_of(palette.begin(), palette.end(),
                     [](const GifColorType& c) { return c.Red == c.Green && c.Green == c.Blue; });
}

}  // namespace

/** The first picture, on white where it does not fill the screen. */
Picture read_gif(const Bytes& file, const Limits& limits) {
  const ForeignCode foreign;
  Source source{file};
  const Gif gif(DGifOpen(&source, read_from, nullptr));
  if (!gif) fail(foreign);
  check_size(gif->SWidth, gif->SHeight, 24, limits);
  const int clear = seek_picture(gif, foreign);
  if (DGifGetImageDesc(gif.get()) == GIF_ERROR) fail(foreign);
  const int left = gif->Image.Left;
  const int top = gif->Image.Top;
  const int width = gif->Image.Width;
  const int height = gif->Image.Height;
  const bool interlaced = gif->Image.Interlace;
  if (left < 0 || top < 0 || width <= 0 || height <= 0 || left + width > gif->SWidth || top + height > gif->SHeight) {
    fail(foreign);
  }
  const auto palette = palette_of(gif, clear);
  const bool gray = is_gray(palette);
  Picture picture;
  picture.image = Bitmap(gif->SWidth, gif->SHeight, gray ? VANTREL_FORMAT_GRAY : VANTREL_FORMAT_RGB);
  std::fill(picture.image.row(0), picture.image.row(gif->SHeight), 255);
  Bytes row(static_cast<std::size_t>(width));
  const auto read_row = [&](int y) {
    if (DGifGetLine(gif.get(), row.data(), width) == GIF_ERROR) fail(foreign);
    unsigned char* to = picture.image.row(top + y) + std::ptrdiff_t{gray ? 1 : 3} * left;
    for (const unsigned char index : row) {
      const GifColorType& colour = palette[index];
      *to++ = colour.Red;
      if (gray) continue;
      *to++ = colour.Green;
      *to++ = colour.Blue;
    }
  };
  constexpr std::array<std::array<int, 2>, 4> kPasses = {{{0, 8}, {4, 8}, {2, 4}, {1, 2}}};
  for (const auto& [first, step] : kPasses) {
    if (!interlaced && first != 0) break;
    for (int y = first; y < height; y += interlaced ? step : 1) read_row(y);
  }
  return picture;
}

}  // namespace tool
#endif
