#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#if defined(__ELF__)
#include "image/loading/elf_header.h"
#endif
#include "image/loading/exports.h"
#include "image/loading/loaded_images.h"

namespace {

using vantrel::image::LoadedImage;
using vantrel::image::name_of_image;
using vantrel::image::store_folder;

constexpr int kHeaders[4] = {};
constexpr const void* kProgram = &kHeaders[0];
constexpr const void* kLibrary = &kHeaders[1];
constexpr const void* kOther = &kHeaders[2];
constexpr const void* kAbsent = &kHeaders[3];

std::string search(const void* header, const std::vector<LoadedImage>& list) {
  const char* name = name_of_image(header, [&](auto&& visit) {
    for (const LoadedImage& image : list) visit(image);
  });
  return name == nullptr ? "(null)" : name;
}

TEST(LoaderList, FindsTheImageWithTheHeader) {
  EXPECT_EQ(search(kLibrary, {{kProgram, "program"}, {kOther, "other"}, {kLibrary, "library"}, {kOther, "again"}}),
            "library");
}

TEST(LoaderList, LastOfSeveralMatchesWins) {
  EXPECT_EQ(search(kLibrary, {{kProgram, "program"}, {kLibrary, "a"}, {kOther, "b"}, {kLibrary, "c"}, {kLibrary, "d"}}),
            "d");
}

TEST(LoaderList, NoMatchGivesNull) {
  EXPECT_EQ(search(kAbsent, {{kProgram, "program"}, {kLibrary, "library"}}), "(null)");
  EXPECT_EQ(search(kLibrary, {}), "(null)");
}

TEST(LoaderList, MainProgramIsPassedOver) {
  EXPECT_EQ(search(kProgram, {{kProgram, "program"}, {kLibrary, "library"}}), "(null)");
  EXPECT_EQ(search(kProgram, {{kProgram, "first"}, {kProgram, "second"}}), "second");
}

#if defined(__ELF__)
/** A segment of a file that the loader knows. */
ElfW(Phdr) segment(unsigned type, unsigned offset, unsigned address) {
  ElfW(Phdr) header{};
  header.p_type = type;
  header.p_offset = offset;
  header.p_vaddr = address;
  return header;
}

TEST(LoaderList, HeaderIsInTheSegmentThatBeginsWithTheFile) {
  const std::array segments = {segment(PT_PHDR, 0, 0x10), segment(PT_LOAD, 0x1000, 0x2000), segment(PT_LOAD, 0, 0x300)};
  EXPECT_EQ(vantrel::image::header_of(segments, 0x70000), reinterpret_cast<const void*>(0x70300));
  EXPECT_EQ(vantrel::image::header_of(std::span(segments).first(2), 0x70000), nullptr);
}
#endif

/** What is stored of a path, in a buffer that held something else before. */
std::string folder_of(const char* path) {
  std::array<char, 256> folder;
  folder.fill('x');
  store_folder(path, folder);
  return folder.data();
}

TEST(StoreFolder, KeepsEverythingUpToTheLastSeparator) {
  EXPECT_EQ(folder_of("/usr/local/lib/vantrel.dylib"), "/usr/local/lib/");
  EXPECT_EQ(folder_of("/vantrel.so"), "/");
  EXPECT_EQ(folder_of("./vantrel.so"), "./");
  EXPECT_EQ(folder_of("disk:folder:vantrel"), "disk:folder:");
  EXPECT_EQ(folder_of("/folder/disk:vantrel"), "/folder/disk:");
  EXPECT_EQ(folder_of("disk:folder/vantrel"), "disk:folder/");
  EXPECT_EQ(folder_of("/folder/"), "/folder/");
}

TEST(StoreFolder, NoSeparatorGivesEmpty) {
  EXPECT_EQ(folder_of("vantrel.so"), "");
  EXPECT_EQ(folder_of(""), "");
}

TEST(StoreFolder, NoPathGivesEmpty) { EXPECT_EQ(folder_of(nullptr), ""); }

TEST(StoreFolder, PathMustFitWithItsTerminator) {
  const std::string folder = "/" + std::string(200, 'f') + "/";
  const std::string fits = folder + std::string(255 - folder.size(), 'v');
  EXPECT_EQ(folder_of(fits.c_str()), folder);
  EXPECT_EQ(folder_of((fits + "v").c_str()), "");
  const std::string all_folder = std::string(254, 'f') + "/";
  EXPECT_EQ(folder_of(all_folder.c_str()), all_folder);
  EXPECT_EQ(folder_of((all_folder + "/").c_str()), "");
}

TEST(LibraryPath, ObjectsLinkedIntoAProgramHaveNoLibrary) {
  EXPECT_EQ(GetDllPath(), nullptr);
  initializer();
  EXPECT_STREQ(szPath, "");
  finalizer();
  EXPECT_STREQ(szPath, "");
}

}  // namespace
