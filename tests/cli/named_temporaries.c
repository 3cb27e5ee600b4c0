/* To be preloaded: a system that has no files without a name. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>

static int open_next(const char* symbol, const char* path, int flags, unsigned mode) {
  if ((flags & O_TMPFILE) == O_TMPFILE) {
    errno = EOPNOTSUPP;
    return -1;
  }
  int (*next)(const char*, int, ...) = 0;
  *(void**)&next = dlsym(RTLD_NEXT, symbol);
  return next(path, flags, mode);
}

#define DEFINE_OPEN(name)                       \
  int name(const char* path, int flags, ...) {  \
    unsigned mode = 0;                          \
    if ((flags & O_CREAT) != 0) {               \
      va_list rest;                             \
      va_start(rest, flags);                    \
      mode = va_arg(rest, unsigned);            \
      va_end(rest);                             \
    }                                           \
    return open_next(#name, path, flags, mode); \
  }

DEFINE_OPEN(open)
DEFINE_OPEN(open64)
