/**
 * @file loaded_images.h
 * @brief The search for one image in the loader's list, and what the library keeps of its name.
 */
#ifndef VANTREL_IMAGE_LOADING_LOADED_IMAGES_H
#define VANTREL_IMAGE_LOADING_LOADED_IMAGES_H

#include <cstddef>
#include <span>

namespace vantrel::image {

/** What the loader says of one program or library in the process. */
struct LoadedImage {
  const void* header; /**< where its file header is mapped */
  const char* name;   /**< its path as the loader knows it; owned by the loader */
};

/**
 * The name of the image with that header, or null. The first image of the list is the main program and is passed over;
 * of several matches the last one counts.
 *
 * @param for_each_image calls what it is given with every LoadedImage, in the loader's order.
 */
template <class ForEachImage>
const char* name_of_image(const void* header, ForEachImage&& for_each_image) {
  const char* name = nullptr;
  bool main_program = true;
  for_each_image([&](const LoadedImage& image) {
    if (!main_program && image.header == header) name = image.name;
    main_program = false;
  });
  return name;
}

/**
 * Stores the part of a path up to and including its last '/' or ':' as a string; a name without either gives an empty
 * one. So does a null path, and one that does not fit with its terminator, since half a folder's name is worse than
 * none.
 */
void store_folder(const char* path, std::span<char> folder);

}  // namespace vantrel::image

#endif
