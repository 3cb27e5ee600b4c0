/**
 * @file elf_header.h
 * @brief Where the file header of a loaded image is, from the segments that the loader lists.
 */
#ifndef VANTREL_IMAGE_LOADING_ELF_HEADER_H
#define VANTREL_IMAGE_LOADING_ELF_HEADER_H

#include <link.h>

#include <span>

namespace vantrel::image {

/** The file header is mapped where the segment that begins with the file's first byte is; null without such. */
inline const void* header_of(std::span<const ElfW(Phdr)> segments, ElfW(Addr) base) {
  for (const ElfW(Phdr) & segment : segments) {
    if (segment.p_type == PT_LOAD && segment.p_offset == 0) {
      return reinterpret_cast<const void*>(base + segment.p_vaddr);
    }
  }
  return nullptr;
}

}  // namespace vantrel::image

#endif
