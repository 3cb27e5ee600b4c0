#include "tiff_pages.h"

#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace tool {
namespace {

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

}  // namespace

int tiff_page_count(const std::vector<unsigned char>& file) {
  Memory memory{&file};
  const TiffPtr tiff = open_tiff(memory);
  return tiff ? static_cast<int>(TIFFNumberOfDirectories(tiff.get())) : 0;
}

bool tiff_page_is_complete(const std::vector<unsigned char>& file, int page) {
  Memory memory{&file};
  const TiffPtr tiff = open_page(memory, page);
  if (!tiff) return false;
  const std::uint32_t pieces =
      TIFFIsTiled(tiff.get()) != 0 ? TIFFNumberOfTiles(tiff.get()) : TIFFNumberOfStrips(tiff.get());
  for (std::uint32_t i = 0; i < pieces; ++i) {
    const std::uint64_t offset = TIFFGetStrileOffset(tiff.get(), i);
    const std::uint64_t bytes = TIFFGetStrileByteCount(tiff.get(), i);
    if (offset == 0 || bytes == 0 || offset > file.size() || bytes > file.size() - offset) return false;
  }
  return pieces != 0;
}

bool tiff_page_is_gray(const std::vector<unsigned char>& file, int page) {
  Memory memory{&file};
  const TiffPtr tiff = open_page(memory, page);
  std::uint16_t photometric = 0;
  return tiff && TIFFGetField(tiff.get(), TIFFTAG_PHOTOMETRIC, &photometric) == 1 &&
         (photometric == PHOTOMETRIC_MINISBLACK || photometric == PHOTOMETRIC_MINISWHITE);
}

}  // namespace tool
