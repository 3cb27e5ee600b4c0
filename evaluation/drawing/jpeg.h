// JPEG files, and what saving as one does to a picture.
#pragma once

#include <string>
#include <vector>

#include "drawing/texture.h"

namespace vantrel::drawing {

// Throws std::runtime_error where it cannot be read.
Texture read_jpeg(const std::string& path);

// Compresses the pixels and decompresses them again, in place.
void pass_through_jpeg(std::vector<unsigned char>& bgr, int width, int height, int quality, bool halved_chroma);

}  // namespace vantrel::drawing
