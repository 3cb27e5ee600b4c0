/*
 * To be preloaded: of the program's requests for memory, the one with the number in FAILING_REQUEST fails, and with
 * FAILING_EVER in the environment all that follow. Only requests of FAILING_LEAST bytes or more count. Whether one has
 * failed, or else how many there were, is written to the descriptor in FAILING_REPORT.
 */
#define _GNU_SOURCE
#include <errno.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

void* __libc_malloc(size_t bytes);
void* __libc_calloc(size_t count, size_t bytes);
void* __libc_realloc(void* block, size_t bytes);
void* __libc_memalign(size_t alignment, size_t bytes);

static atomic_long requests;
static int started;
static long failing;
static int ever;
static size_t least;
static int report;

static long number_of(const char* name, long otherwise) {
  const char* text = getenv(name);
  return text != NULL ? atol(text) : otherwise;
}

__attribute__((constructor)) static void start(void) {
  failing = number_of("FAILING_REQUEST", -1);
  ever = getenv("FAILING_EVER") != NULL;
  least = (size_t)number_of("FAILING_LEAST", 0);
  report = (int)number_of("FAILING_REPORT", -1);
  started = 1;
}

static void say(const char* text, size_t length) {
  if (write(report, text, length) < 0) started = 0;
}

__attribute__((destructor)) static void end(void) {
  char text[32];
  if (failing < 0) say(text, (size_t)snprintf(text, sizeof text, "%ld", atomic_load(&requests)));
}

static int fails(size_t bytes) {
  if (!started || bytes < least) return 0;
  const long number = atomic_fetch_add(&requests, 1);
  if (failing < 0 || number < failing || (number > failing && !ever)) return 0;
  if (number == failing) say("failed", 6);
  errno = ENOMEM;
  return 1;
}

void* malloc(size_t bytes) { return fails(bytes) ? NULL : __libc_malloc(bytes); }
void* calloc(size_t count, size_t bytes) { return fails(count * bytes) ? NULL : __libc_calloc(count, bytes); }
void* realloc(void* block, size_t bytes) { return fails(bytes) ? NULL : __libc_realloc(block, bytes); }
void* memalign(size_t alignment, size_t bytes) { return fails(bytes) ? NULL : __libc_memalign(alignment, bytes); }
void* aligned_alloc(size_t alignment, size_t bytes) { return memalign(alignment, bytes); }

int posix_memalign(void** block, size_t alignment, size_t bytes) {
  void* const given = memalign(alignment, bytes);
  if (given == NULL) return ENOMEM;
  *block = given;
  return 0;
}
