#include "image_format.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>

namespace tool {
namespace {

struct Name {
  const char* ending;
  Format format;
};

/** The first name of each format is its usual ending. PNM's variants hold the same three kinds of picture. */
constexpr std::array kNames = {Name{"png", Format::kPng},  Name{"jpg", Format::kJpeg},  Name{"jpeg", Format::kJpeg},
                               Name{"tif", Format::kTiff}, Name{"tiff", Format::kTiff}, Name{"bmp", Format::kBmp},
                               Name{"pnm", Format::kPnm},  Name{"pbm", Format::kPnm},   Name{"pgm", Format::kPnm},
                               Name{"ppm", Format::kPnm},  Name{"webp", Format::kWebp}, Name{"pdf", Format::kPdf}};

}  // namespace

std::optional<Format> format_of_name(std::string_view name) {
  std::string lower(name);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const auto* known = std::find_if(kNames.begin(), kNames.end(), [&](const Name& n) { return lower == n.ending; });
  if (known == kNames.end()) return std::nullopt;
  return known->format;
}

std::optional<Format> format_of_path(const std::string& path) {
  const std::string ending = std::filesystem::path(path).extension().string();
  return ending.empty() ? std::nullopt : format_of_name(ending.substr(1));
}

bool is_picture_name(const std::string& path) { return format_of_path(path).value_or(Format::kPdf) != Format::kPdf; }

const char* ending_of(Format format) {
  return std::find_if(kNames.begin(), kNames.end(), [&](const Name& n) { return n.format == format; })->ending;
}

}  // namespace tool
