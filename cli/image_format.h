/**
 * @file image_format.h
 * @brief The file formats that the tool reads and writes, and their names.
 */
#ifndef VANTREL_CLI_IMAGE_FORMAT_H
#define VANTREL_CLI_IMAGE_FORMAT_H

#include <optional>
#include <string>
#include <string_view>

namespace tool {

/** Those from kGif on are only read, but for kPdf. */
enum class Format { kPng, kJpeg, kTiff, kBmp, kPnm, kWebp, kGif, kJpeg2000, kHeif, kPdf };

/** The names of the formats that are read and written, for messages. */
inline constexpr const char* kFormatNames = "PNG, JPEG, TIFF, BMP, PNM or WebP";

/** The names of those that are written. */
inline constexpr const char* kWrittenNames = "PNG, JPEG, TIFF, BMP, PNM, WebP or PDF";

/** The format that a name or file ending stands for ("png", "JPG", "tif", "ppm", ...). */
std::optional<Format> format_of_name(std::string_view name);

/** The format that a path's ending stands for. */
std::optional<Format> format_of_path(const std::string& path);

/** Whether a path is called like a picture, not like a document. */
bool is_picture_name(const std::string& path);

/** The usual ending, without its dot. */
const char* ending_of(Format format);

}  // namespace tool

#endif
