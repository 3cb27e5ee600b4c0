#include "formats/tiff_file.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace tool {
namespace {

TiffMemory& memory_of(thandle_t handle) { return *static_cast<TiffMemory*>(handle); }

tmsize_t read_memory(thandle_t handle, void* into, tmsize_t count) {
  TiffMemory& memory = memory_of(handle);
  const Bytes& bytes = memory.reading != nullptr ? *memory.reading : memory.written;
  const std::uint64_t left = memory.position < bytes.size() ? bytes.size() - memory.position : 0;
  const std::uint64_t taken = std::min(left, static_cast<std::uint64_t>(count));
  if (taken != 0) std::memcpy(into, bytes.data() + memory.position, taken);
  memory.position += taken;
  return static_cast<tmsize_t>(taken);
}

tmsize_t write_memory(thandle_t handle, void* from, tmsize_t count) {
  TiffMemory& memory = memory_of(handle);
  if (memory.reading != nullptr) return 0;
  const std::uint64_t end = memory.position + static_cast<std::uint64_t>(count);
  if (memory.written.size() < end) memory.written.resize(end);
  std::memcpy(memory.written.data() + memory.position, from, static_cast<std::size_t>(count));
  memory.position = end;
  return count;
}

toff_t seek_memory(thandle_t handle, toff_t offset, int whence) {
  TiffMemory& memory = memory_of(handle);
  const std::uint64_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? memory.position : memory.size();
  return memory.position = from + offset;
}

int close_memory(thandle_t) { return 0; }

toff_t size_of_memory(thandle_t handle) { return memory_of(handle).size(); }

TiffPtr opened(TiffMemory& memory, const char* mode) {
  return TiffPtr(TIFFClientOpen("picture", mode, &memory, read_memory, write_memory, seek_memory, close_memory,
                                size_of_memory, nullptr, nullptr));
}

}  // namespace

TiffPtr open_tiff(TiffMemory& memory) { return opened(memory, "rm"); }

TiffPtr create_tiff(TiffMemory& memory) {
  TiffPtr tiff = opened(memory, "w");
  if (!tiff) throw std::bad_alloc();
  return tiff;
}

std::uint32_t tiff_number(TIFF* tiff, std::uint32_t tag) {
  std::uint32_t value = 0;
  TIFFGetFieldDefaulted(tiff, tag, &value);
  return value;
}

std::uint16_t tiff_short(TIFF* tiff, std::uint32_t tag) {
  std::uint16_t value = 0;
  TIFFGetFieldDefaulted(tiff, tag, &value);
  return value;
}

}  // namespace tool
