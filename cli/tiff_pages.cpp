#include "tiff_pages.h"

#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace tool {
namespace {

/** The library's images are no larger, so neither need be a piece of one. */
constexpr tmsize_t kMaxPieceBytes = 0x7fffffff;

/** A file in memory, as libtiff's callbacks see it. */
struct Memory {
  const std::vector<unsigned char>* file;
  std::uint64_t position = 0;
};

tmsize_t read_memory(thandle_t handle, void* into, tmsize_t count) {
  auto& memory = *static_cast<Memory*>(handle);
  const std::uint64_t size = memory.file->size();
  const std::uint64_t left = memory.position < size ? size - memory.position : 0;
  const std::uint64_t bytes = std::min(left, static_cast<std::uint64_t>(count));
  if (bytes != 0) std::memcpy(into, memory.file->data() + memory.position, bytes);
  memory.position += bytes;
  return static_cast<tmsize_t>(bytes);
}

tmsize_t write_memory(thandle_t, void*, tmsize_t) { return 0; }

toff_t seek_memory(thandle_t handle, toff_t offset, int whence) {
  auto& memory = *static_cast<Memory*>(handle);
  const std::uint64_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? memory.position : memory.file->size();
  return memory.position = from + offset;
}

int close_memory(thandle_t) { return 0; }

toff_t size_of_memory(thandle_t handle) { return static_cast<Memory*>(handle)->file->size(); }

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffPtr = std::unique_ptr<TIFF, CloseTiff>;

/** Opens the file without mapping it into memory; null when it is damaged. */
TiffPtr open_tiff(Memory& memory) {
  return TiffPtr(TIFFClientOpen("input", "rm", &memory, read_memory, write_memory, seek_memory, close_memory,
                                size_of_memory, nullptr, nullptr));
}

/** Opens the file at a page (from 1); null when it has no such page. */
TiffPtr open_page(Memory& memory, int page) {
  TiffPtr tiff = open_tiff(memory);
  if (tiff && TIFFSetDirectory(tiff.get(), static_cast<tdir_t>(page - 1)) == 0) tiff.reset();
  return tiff;
}

/** Whether a strip or tile lies within the file and can be decoded into `work`. */
bool decodes(TIFF* tiff, std::uint32_t piece, bool tiled, std::uint64_t file_size, std::vector<unsigned char>& work) {
  const std::uint64_t offset = TIFFGetStrileOffset(tiff, piece);
  const std::uint64_t bytes = TIFFGetStrileByteCount(tiff, piece);
  if (offset == 0 || bytes == 0 || offset > file_size || bytes > file_size - offset) return false;
  const auto room = static_cast<tmsize_t>(work.size());
  const tmsize_t read = tiled ? TIFFReadEncodedTile(tiff, piece, work.data(), room)
                              : TIFFReadEncodedStrip(tiff, piece, work.data(), room);
  return read >= 0;
}

bool is_complete(TIFF* tiff, std::uint64_t file_size) {
  const bool tiled = TIFFIsTiled(tiff) != 0;
  const std::uint32_t pieces = tiled ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
  const tmsize_t size = tiled ? TIFFTileSize(tiff) : TIFFStripSize(tiff);
  if (pieces == 0 || size <= 0 || size > kMaxPieceBytes) return false;
  std::vector<unsigned char> work(static_cast<std::size_t>(size));
  for (std::uint32_t piece = 0; piece < pieces; ++piece) {
    if (!decodes(tiff, piece, tiled, file_size, work)) return false;
  }
  return true;
}

bool is_gray(TIFF* tiff) {
  std::uint16_t photometric = 0;
  return TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric) == 1 &&
         (photometric == PHOTOMETRIC_MINISBLACK || photometric == PHOTOMETRIC_MINISWHITE);
}

/** Gray samples come as they are stored; colours come through libtiff, which multiplies them if the file did not. */
bool is_premultiplied(TIFF* tiff) {
  if (!is_gray(tiff)) return true;
  std::uint16_t count = 0;
  std::uint16_t* kinds = nullptr;
  return TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) == 1 && count > 0 &&
         kinds[0] == EXTRASAMPLE_ASSOCALPHA;
}

bool has_resolution(TIFF* tiff) {
  std::uint16_t unit = RESUNIT_NONE;
  return TIFFGetFieldDefaulted(tiff, TIFFTAG_RESOLUTIONUNIT, &unit) == 1 && unit != RESUNIT_NONE;
}

}  // namespace

int tiff_page_count(const std::vector<unsigned char>& file) {
  Memory memory{&file};
  const TiffPtr tiff = open_tiff(memory);
  return tiff ? static_cast<int>(TIFFNumberOfDirectories(tiff.get())) : 0;
}

TiffSize tiff_size(const std::vector<unsigned char>& file, int page) {
  Memory memory{&file};
  const TiffPtr tiff = open_page(memory, page);
  TiffSize size;
  if (!tiff) return size;
  TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &size.width);
  TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &size.height);
  if (TIFFIsTiled(tiff.get()) == 0) return size;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  TIFFGetField(tiff.get(), TIFFTAG_TILEWIDTH, &width);
  TIFFGetField(tiff.get(), TIFFTAG_TILELENGTH, &height);
  size.width = std::max(size.width, width);
  size.height = std::max(size.height, height);
  return size;
}

TiffPage tiff_page(const std::vector<unsigned char>& file, int page) {
  Memory memory{&file};
  const TiffPtr tiff = open_page(memory, page);
  if (!tiff) return {};
  return {is_complete(tiff.get(), file.size()), is_gray(tiff.get()), is_premultiplied(tiff.get()),
          has_resolution(tiff.get())};
}

}  // namespace tool
