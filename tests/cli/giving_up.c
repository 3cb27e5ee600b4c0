/* To be preloaded: a library of a format that contradicts itself, in the tool's thread or in one of its own. */
#include <pthread.h>
#include <stdlib.h>

static void* give_up(void* unused) {
  (void)unused;
  abort();
}

int WebPDecode(const void* data, size_t size, void* config) {
  (void)data;
  (void)size;
  (void)config;
  if (getenv("GIVING_UP_IN_A_THREAD")) {
    pthread_t thread;
    if (pthread_create(&thread, 0, give_up, 0) == 0) pthread_join(thread, 0);
  }
  give_up(0);
  return 0;
}
