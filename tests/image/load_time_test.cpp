#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "image/loading/exports.h"

namespace {

namespace fs = std::filesystem;

struct Loaded {
  std::string folder;
  std::string name;
};

/** An empty folder with the library copied to wherever a test wants it. */
class LoadTime : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "vantrel-load-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    root_ = fs::canonical(name);
  }
  void TearDown() override { fs::remove_all(root_); }

  fs::path copy_to(const fs::path& path) const {
    fs::create_directories((root_ / path).parent_path());
    fs::copy_file(VANTREL_LIBRARY, root_ / path);
    return root_ / path;
  }

  /** A copy whose absolute path has that many characters. */
  fs::path copy_to_path_of(std::size_t length) const {
    fs::path folder;
    while ((root_ / folder).string().size() < length - 60) folder /= std::string(40, 'f');
    const std::size_t rest = length - (root_ / folder).string().size() - 1;
    return copy_to(folder / std::string(rest, 'v'));
  }

  /** What a program with that working directory sees after it has loaded the library by that path. */
  Loaded load(const std::string& path, const fs::path& directory = "") const {
    const std::string command = "cd '" + (root_ / directory).string() + "' && '" LOAD_PROBE "' '" + path + "'";
    FILE* output = popen(command.c_str(), "r");
    std::string text;
    for (int c; (c = std::fgetc(output)) != EOF;) text += static_cast<char>(c);
    EXPECT_EQ(pclose(output), 0) << command;
    const std::size_t line = text.find('\n');
    return {text.substr(0, line), text.substr(line + 1, text.size() - line - 2)};
  }

  fs::path root_;
};

TEST_F(LoadTime, AbsolutePathsOfDifferentDepth) {
  for (const char* path : {"library.so", "a/library.so", "a/b/c/d/library.so", "with space/and:colon.so"}) {
    const std::string absolute = copy_to(path).string();
    const Loaded loaded = load(absolute);
    EXPECT_EQ(loaded.name, absolute);
    EXPECT_EQ(loaded.folder, absolute.substr(0, absolute.find_last_of("/:") + 1));
  }
}

TEST_F(LoadTime, ARelativePathGivesARelativeFolder) {
  copy_to("a/b/library.so");
  EXPECT_EQ(load("a/b/library.so").folder, "a/b/");
  EXPECT_EQ(load("./library.so", "a/b").folder, "./");
  EXPECT_EQ(load("../b/library.so", "a/b").folder, "../b/");
  EXPECT_EQ(load("../b/library.so", "a/b").name, "../b/library.so");
}

TEST_F(LoadTime, ALinkGivesTheFolderOfTheLink) {
  const fs::path library = copy_to("real/library.so");
  fs::create_directories(root_ / "links");
  fs::create_symlink(library, root_ / "links/link.so");
  fs::create_directory_symlink(root_ / "real", root_ / "links/folder");
  EXPECT_EQ(load((root_ / "links/link.so").string()).folder, (root_ / "links/").string());
  EXPECT_EQ(load((root_ / "links/folder/library.so").string()).folder, (root_ / "links/folder/").string());
}

TEST_F(LoadTime, APathLongerThanTheBufferGivesNoFolder) {
  const fs::path fits = copy_to_path_of(255);
  EXPECT_EQ(load(fits.string()).folder, fits.parent_path().string() + "/");
  const fs::path too_long = copy_to_path_of(256);
  EXPECT_EQ(load(too_long.string()).folder, "");
  EXPECT_EQ(load(too_long.string()).name, too_long.string());
  const fs::path far_too_long = copy_to_path_of(700);
  EXPECT_EQ(load(far_too_long.string()).folder, "");
}

TEST_F(LoadTime, LinkedIntoAProgramTheFolderIsThatOfTheLoadersName) {
  ASSERT_NE(GetDllPath(), nullptr);
  const std::string name = GetDllPath();
  EXPECT_TRUE(fs::equivalent(name, VANTREL_LIBRARY));
  EXPECT_EQ(szPath, name.substr(0, name.rfind('/') + 1));
}

TEST_F(LoadTime, RunningTheInitializerAgainChangesNothing) {
  const std::string before = szPath;
  initializer();
  finalizer();
  EXPECT_EQ(szPath, before);
}

}  // namespace
