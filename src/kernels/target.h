/**
 * @file target.h
 * @brief Compiling a stretch of a file for a processor that the library is not compiled for.
 *
 * Everything that is defined between the two macros may use the named instructions, and everything that is included
 * there must define its functions in an unnamed namespace: an inline function would reach other files, and processors
 * without those instructions.
 */
#ifndef VANTREL_KERNELS_TARGET_H
#define VANTREL_KERNELS_TARGET_H

#define VANTREL_PRAGMA(text) _Pragma(#text)

#if defined(__clang__)
#define VANTREL_BEGIN_TARGET(instructions) \
  VANTREL_PRAGMA(clang attribute push(__attribute__((target(instructions))), apply_to = function))
#define VANTREL_END_TARGET VANTREL_PRAGMA(clang attribute pop)
#elif defined(__GNUC__)
#define VANTREL_BEGIN_TARGET(instructions) \
  VANTREL_PRAGMA(GCC push_options)         \
  VANTREL_PRAGMA(GCC target(instructions))
#define VANTREL_END_TARGET VANTREL_PRAGMA(GCC pop_options)
#endif

/** What the files of this room ask before they define a form. The bodies take pixels out of words as little-endian
 * ones. */
#if defined(__GNUC__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#define VANTREL_HAS_VECTORS 1
#if defined(__x86_64__)
#define VANTREL_HAS_X86_FORMS 1
#endif
#endif

#endif
