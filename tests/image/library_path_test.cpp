// The exported data, as a program linked with the library sees it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "image/loading/exports.h"

namespace {

namespace fs = std::filesystem;

TEST(SquareTable, HoldsTheSquaresOfAllBytes) {
  EXPECT_EQ(SQUARE_TABLE[0], 0u);
  EXPECT_EQ(SQUARE_TABLE[1], 1u);
  EXPECT_EQ(SQUARE_TABLE[2], 4u);
  EXPECT_EQ(SQUARE_TABLE[3], 9u);
  EXPECT_EQ(SQUARE_TABLE[16], 256u);
  EXPECT_EQ(SQUARE_TABLE[255], 65025u);
  for (std::uint32_t i = 0; i < 256; ++i) EXPECT_EQ(SQUARE_TABLE[i], i * i);
}

TEST(LibraryFolder, EndsInASeparator) {
  ASSERT_NE(std::memchr(szPath, '\0', sizeof szPath), nullptr);
  const std::string folder = szPath;
  ASSERT_FALSE(folder.empty());
  EXPECT_EQ(folder.back(), '/');
  EXPECT_TRUE(fs::is_directory(folder));
}

TEST(LibraryFolder, IsWhereTheLoadedLibraryLies) {
  Dl_info library{};
  ASSERT_NE(dladdr(reinterpret_cast<void*>(&AutoClipRedundantImg), &library), 0);
  EXPECT_TRUE(fs::equivalent(szPath, fs::path(library.dli_fname).parent_path()));
}

TEST(GetDllPath, NamesTheLibraryAndNotTheProgram) {
  const char* const path = GetDllPath();
  ASSERT_NE(path, nullptr);
  EXPECT_FALSE(fs::equivalent(path, "/proc/self/exe"));
  void* const again = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(again, nullptr);  // the loader knows an image of that name
  EXPECT_NE(dlsym(again, "AutoClipRedundantImg"), nullptr);
  dlclose(again);
}

TEST(Finalizer, DoesNothing) {
  const std::string before(szPath, sizeof szPath);
  finalizer();
  EXPECT_EQ(std::string(szPath, sizeof szPath), before);
}

}  // namespace
