// Runs a target on files, or on all files in folders, without a fuzzer.
#include <dirent.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

namespace {

int runs = 0;

void run_file(const char* path) {
  std::FILE* const file = std::fopen(path, "rb");
  if (file == nullptr) return;
  std::vector<unsigned char> bytes;
  unsigned char buffer[4096];
  for (std::size_t read; (read = std::fread(buffer, 1, sizeof buffer, file)) > 0;) {
    bytes.insert(bytes.end(), buffer, buffer + read);
  }
  std::fclose(file);
  // The name stays in the output of what crashes.
  std::fprintf(stderr, "%s\n", path);
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  ++runs;
}

void run(const char* path) {
  DIR* const folder = opendir(path);
  if (folder == nullptr) return run_file(path);
  while (const dirent* const entry = readdir(folder)) {
    if (entry->d_name[0] == '.') continue;
    std::vector<char> inside(std::strlen(path) + std::strlen(entry->d_name) + 2);
    std::snprintf(inside.data(), inside.size(), "%s/%s", path, entry->d_name);
    run(inside.data());
  }
  closedir(folder);
}

}  // namespace

int main(int count, char** arguments) {
  for (int i = 1; i < count; ++i) run(arguments[i]);
  std::printf("%d inputs\n", runs);
  return runs > 0 ? 0 : 1;
}
