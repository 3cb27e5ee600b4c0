// How much memory vantrel_find takes beyond the scan: peak_memory LIBRARY METHOD PICTURE.ppm prints the most bytes that
// were allocated at a time during the call. Its own malloc takes the place of the C library's in the whole process.
#include <dlfcn.h>
#include <malloc.h>
#include <vantrel_cards.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* block);
}

namespace {

size_t now = 0;
size_t most = 0;

void* counted(void* block) {
  now += malloc_usable_size(block);
  most = std::max(most, now);
  return block;
}

}  // namespace

extern "C" {
void* malloc(size_t size) { return counted(__libc_malloc(size)); }
void* calloc(size_t count, size_t size) { return counted(__libc_calloc(count, size)); }
void* memalign(size_t alignment, size_t size) { return counted(__libc_memalign(alignment, size)); }
void* aligned_alloc(size_t alignment, size_t size) { return memalign(alignment, size); }

int posix_memalign(void** block, size_t alignment, size_t size) {
  *block = memalign(alignment, size);
  return *block == nullptr ? 12 : 0;
}

void* realloc(void* block, size_t size) {
  const size_t before = malloc_usable_size(block);
  void* moved = __libc_realloc(block, size);
  if (moved == nullptr && size != 0) return nullptr;
  now -= before;
  return counted(moved);
}

void free(void* block) {
  now -= malloc_usable_size(block);
  __libc_free(block);
}
}

namespace {

struct Picture {
  int width = 0;
  int height = 0;
  std::vector<unsigned char> pixels;  // red, green, blue
};

Picture read(const char* name) {
  Picture picture;
  std::FILE* file = std::fopen(name, "rb");
  if (file == nullptr) return picture;
  if (std::fscanf(file, "P6 %d %d 255", &picture.width, &picture.height) == 2 && std::fgetc(file) != EOF) {
    picture.pixels.resize(size_t{3} * static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height));
    if (std::fread(picture.pixels.data(), 1, picture.pixels.size(), file) != picture.pixels.size()) picture = {};
  }
  std::fclose(file);
  return picture;
}

/** Bytes at the most during one search, or 0 if it failed. */
size_t peak_of(decltype(&vantrel_find) find, const Picture& picture, vantrel_method method) {
  const vantrel_image scan = {picture.pixels.data(),        picture.width,      picture.height,
                              3 * ptrdiff_t{picture.width}, VANTREL_FORMAT_RGB, 300.0};
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.methods = &method;
  options.method_count = 1;
  vantrel_cards* cards = nullptr;
  const size_t before = now;
  most = now;
  return find(&scan, &options, &cards) == VANTREL_OK ? most - before : 0;
}

}  // namespace

int main(int count, char** words) {
  if (count != 4) return std::fputs("usage: peak_memory LIBRARY METHOD PICTURE.ppm\n", stderr), 2;
  void* library = dlopen(words[1], RTLD_NOW);
  if (library == nullptr) return std::fprintf(stderr, "peak_memory: %s\n", dlerror()), 1;
  const auto find = reinterpret_cast<decltype(&vantrel_find)>(dlsym(library, "vantrel_find"));
  const Picture picture = read(words[3]);
  if (find == nullptr || picture.pixels.empty()) return std::fputs("peak_memory: no library or picture\n", stderr), 1;
  const size_t peak = peak_of(find, picture, static_cast<vantrel_method>(std::atoi(words[2])));
  if (peak == 0) return std::fputs("peak_memory: the search failed\n", stderr), 1;
  std::printf("%zu\n", peak);
  return 0;
}
