// Runs a target on files, or on all files in folders, without a fuzzer.
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

void run(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  // The name stays in the output of what crashes.
  std::fprintf(stderr, "%s\n", path.c_str());
  LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int count, char** arguments) {
  int runs = 0;
  for (int i = 1; i < count; ++i) {
    if (!fs::is_directory(arguments[i])) {
      run(arguments[i]);
      ++runs;
      continue;
    }
    for (const auto& entry : fs::recursive_directory_iterator(arguments[i])) {
      if (!entry.is_regular_file()) continue;
      run(entry.path());
      ++runs;
    }
  }
  std::printf("%d inputs\n", runs);
  return runs > 0 ? 0 : 1;
}
