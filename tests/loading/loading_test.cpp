// The library loaded more than once: as two copies side by side, and a thousand times one after another.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "support/answer.h"
#include "support/scans.h"

namespace {

namespace fs = std::filesystem;
using support::Answer;
using Clip = int (*)(void**, void**, BITMAPPTR*, int);

Answer clip_with(Clip clip) {
  support::Image scan = support::scan_of({20, 15, 180, 12, 22, 140, 178, 143}, 200, 160, 24);
  BITMAPPTR out{};
  const int code = clip(scan.handle(), nullptr, &out, 1);
  return support::taken(code, out);
}

Clip clip_of(void* library) { return reinterpret_cast<Clip>(dlsym(library, "AutoClipRedundantImg")); }

/** A folder with copies of the library, which the loader takes for libraries of their own. */
class Copies : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "vantrel-copies-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder_ = name;
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string copy(const char* name) const {
    fs::copy_file(VANTREL_LIBRARY, folder_ / name);
    return (folder_ / name).string();
  }

 private:
  fs::path folder_;
};

TEST_F(Copies, SideBySideGiveTheSameAndKeepTheirOwnFolders) {
  void* const first = dlopen(copy("first.so").c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const second = dlopen(copy("second.so").c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  ASSERT_NE(clip_of(first), clip_of(second));
  const Answer linked = clip_with(AutoClipRedundantImg);
  EXPECT_EQ(linked.code, 1);
  EXPECT_EQ(clip_with(clip_of(first)), linked);
  EXPECT_EQ(clip_with(clip_of(second)), linked);
  EXPECT_NE(dlsym(first, "szPath"), dlsym(second, "szPath"));
  EXPECT_EQ(dlclose(first), 0);
  // The other one is not disturbed.
  EXPECT_EQ(clip_with(clip_of(second)), linked);
  EXPECT_EQ(dlclose(second), 0);
}

std::ptrdiff_t open_descriptors() {
  return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator{});
}

/** Bytes of the process that are in memory. */
long resident() {
  std::ifstream file("/proc/self/statm");
  long all = 0, resident = 0;
  file >> all >> resident;
  return resident * sysconf(_SC_PAGESIZE);
}

TEST_F(Copies, AThousandLoadsLeaveNothingBehind) {
  if (!fs::exists("/proc/self/statm")) GTEST_SKIP() << "nothing here tells of the memory of a process";
  const std::string path = copy("one.so");
  std::ptrdiff_t descriptors = 0;
  long memory = 0;
  constexpr int kFirst = 100;  // until the allocator has what it needs
  for (int i = 0; i < kFirst + 1000; ++i) {
    if (i == kFirst) {
      descriptors = open_descriptors();
      memory = resident();
    }
    void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    if (i % 100 == 0) {
      ASSERT_EQ(clip_with(clip_of(library)).code, 1);
    }
    ASSERT_EQ(dlclose(library), 0);
    ASSERT_EQ(dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "it stayed";
  }
  EXPECT_EQ(open_descriptors(), descriptors);
#if !defined(__SANITIZE_ADDRESS__)
  // A sanitizer keeps a record of every load.
  EXPECT_LT(resident() - memory, 512 * 1024);
#endif
}

}  // namespace
