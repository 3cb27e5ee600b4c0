/**
 * @file library_path.h
 * @brief The library's own place in the file system, learned once when it is loaded.
 */
#ifndef VANTREL_IMAGE_LIBRARY_PATH_H
#define VANTREL_IMAGE_LIBRARY_PATH_H

#include "vantrel.h"

/** The loader's path of the image that is this library, or null when the loader does not list it. */
VANTREL_API const char* GetDllPath();

/** Fills `szPath`; the loader runs it before any other function can be called. */
VANTREL_API void initializer();

/** Does nothing; kept for hosts that look it up. */
VANTREL_API void finalizer();

#endif
