/**
 * @file exports.h
 * @brief The library's own place in the file system, learned once when it is loaded.
 *
 * `szPath` holds the folder part of the loader's name of the library, with the final separator. The name is taken as it
 * is: loaded through a symbolic link the folder is that of the link, so that a host finds what it installed next to
 * the name it asked for; loaded through a relative path the folder is relative to the working directory at that
 * moment, and a host that changes directory later makes it absolute first. A name of 256 characters or more, or none,
 * leaves `szPath` empty, as does linking the objects into a program, which has no library to find.
 */
#ifndef VANTREL_IMAGE_LOADING_EXPORTS_H
#define VANTREL_IMAGE_LOADING_EXPORTS_H

#include "vantrel.h"

/**
 * The loader's path of the image that is this library, or null when the loader does not list it. The string belongs to
 * the loader and lives as long as the library is loaded. May be called from any thread.
 */
VANTREL_API const char* GetDllPath();

/**
 * Fills `szPath`. This happens by itself when the library is loaded, before any other function can be called; calling
 * it again writes the same once more, so not while another thread reads `szPath`.
 */
VANTREL_API void initializer();

/** Does nothing; kept for hosts that look it up. */
VANTREL_API void finalizer();

#endif
