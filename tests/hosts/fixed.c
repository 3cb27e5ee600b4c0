/* A host that is not position independent: it holds the library's exported data itself, as the linker copied it. */
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "vantrel.h"

extern char __executable_start;
extern char end;

int main(void) {
  const uintptr_t at = (uintptr_t)szPath;
  const int held_by_the_host = at >= (uintptr_t)&__executable_start && at < (uintptr_t)&end;
  printf("szPath \"%s\" at %#zx, %s the host; SQUARE_TABLE[255] = %u\n", szPath, (size_t)at,
         held_by_the_host ? "in" : "not in", (unsigned)SQUARE_TABLE[255]);
  const size_t length = strlen(szPath);
  return held_by_the_host && length > 0 && szPath[length - 1] == '/' && SQUARE_TABLE[255] == 65025 ? 0 : 1;
}
