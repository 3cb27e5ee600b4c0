#include "image/loading/exports.h"

#include <cstdint>
#include <cstring>

#include "image/loading/loaded_images.h"

#if defined(__APPLE__)
#include <mach-o/dyld.h>
extern "C" const mach_header __dso_handle __attribute__((visibility("hidden")));
#elif defined(__ELF__)
#include "image/loading/elf_header.h"
extern "C" const ElfW(Ehdr) __ehdr_start __attribute__((visibility("hidden")));
#endif

char szPath[256];

namespace vantrel::image {
namespace {

#if defined(__APPLE__)

const void* own_header() { return &__dso_handle; }

template <class Visit>
void for_each_loaded_image(Visit& visit) {
  const std::uint32_t count = _dyld_image_count();
  for (std::uint32_t i = 0; i < count; ++i) visit(LoadedImage{_dyld_get_image_header(i), _dyld_get_image_name(i)});
}

#elif defined(__ELF__)

/** Provided by the linker, like the header handle of other systems. */
const void* own_header() { return &__ehdr_start; }

template <class Visit>
void for_each_loaded_image(Visit& visit) {
  const auto callback = [](dl_phdr_info* image, std::size_t, void* context) {
    const void* header = header_of({image->dlpi_phdr, image->dlpi_phnum}, image->dlpi_addr);
    (*static_cast<Visit*>(context))(LoadedImage{header, image->dlpi_name});
    return 0;
  };
  dl_iterate_phdr(callback, &visit);
}

#else

/** A loader whose list is not known here: the library is not found, and `szPath` stays empty. */
const void* own_header() { return nullptr; }

template <class Visit>
void for_each_loaded_image(Visit&) {}

#endif

const char* own_path() {
  return name_of_image(own_header(), [](auto&& visit) { for_each_loaded_image(visit); });
}

// Not the exported function itself: a host with an `initializer` of its own would have that one run in its place.
#if defined(__GNUC__)
[[gnu::constructor]] void at_load() { store_folder(own_path(), szPath); }
#else
[[maybe_unused]] const bool stored_at_load = (store_folder(own_path(), szPath), true);
#endif

}  // namespace

void store_folder(const char* path, std::span<char> folder) {
  folder[0] = '\0';
  const std::size_t length = path == nullptr ? 0 : std::strlen(path);
  if (length >= folder.size()) return;
  std::size_t end = length;
  while (end > 0 && path[end - 1] != '/' && path[end - 1] != ':') --end;
  if (end > 0) std::memcpy(folder.data(), path, end);
  folder[end] = '\0';
}

}  // namespace vantrel::image

const char* GetDllPath() { return vantrel::image::own_path(); }

void initializer() { vantrel::image::store_folder(vantrel::image::own_path(), szPath); }

void finalizer() {}
