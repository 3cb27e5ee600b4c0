/* A host in C: the structures have the published layout, and the plain entries link and run. */
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "vantrel.h"

_Static_assert(sizeof(BITMAPINFOHEADER) == 40, "the header is 40 bytes");
_Static_assert(sizeof(RGBQUAD) == 4, "a palette entry is 4 bytes");
_Static_assert(sizeof(MYRECT) == 10, "a rectangle is five 16-bit members");
_Static_assert(offsetof(MYRECT, bottom) == 6, "left, top, right, bottom");
_Static_assert(offsetof(BITMAPPTR, pBits) == 2 * sizeof(void*), "header, palette, pixels");
_Static_assert(sizeof(RectRegions) == 108, "two counts and ten rectangles");
_Static_assert(offsetof(RectRegions, secondColumn) == 58, "the second column");

#define CHECK(condition)                                     \
  do {                                                       \
    if (!(condition)) {                                      \
      printf("line %d: not so: %s\n", __LINE__, #condition); \
      return 1;                                              \
    }                                                        \
  } while (0)

int main(void) {
  enum { kSide = 8, kBlock = 40 + 4 * 256 + kSide * kSide };
  unsigned char* block = calloc(1, kBlock);
  CHECK(block != NULL);
  const BITMAPINFOHEADER header = {40, kSide, kSide, 1, 8, 0, kSide * kSide, 11811, 11811, 256, 0};
  memcpy(block, &header, sizeof header);
  BITMAPPTR image = {(BITMAPINFOHEADER*)block, (RGBQUAD*)(block + 40), block + 40 + 4 * 256};
  image.pBits[3 * kSide + 2] = 200;

  BITMAPPTR crop = {0};
  const MYRECT rect = {2, 4, 5, 3, 0};
  CHECK(CutRectImage(&image, &crop, rect) == 1);
  CHECK(crop.pInfo->biWidth == 4 && crop.pInfo->biHeight == 2 && crop.pInfo->biXPelsPerMeter == 11811);
  CHECK(crop.pBits[0] == 200 && crop.pBits[1] == 0);
  void* result = crop.pInfo;
  CHECK(FreeCardImg(&result) == 1);

  vantrel_corner_search found;
  /* A single speck makes no border: the frame of the image stands in for all four. */
  CHECK(vantrel_find_corners(&image, &found) == 1 && found.verdict == VANTREL_CORNERS_FOUND);
  for (int side = 0; side < 4; ++side) CHECK(found.side[side].found == 0);
  CHECK(SQUARE_TABLE[255] == 65025u);
  CHECK(strlen(szPath) > 0 && szPath[strlen(szPath) - 1] == '/');

  void* nothing = NULL;
  BITMAPPTR out = {0};
  CHECK(AutoClipRedundantImg(&nothing, NULL, &out, 1) == -1 && out.pInfo == NULL);
  CHECK(BiLinear(&nothing, &out) == -1 && BiCubic(&nothing, &out) == -1);
  /* A missing record is refused. */
  void* handle = block;
  CHECK(AutoClipRedundantImg(&handle, NULL, NULL, 1) == -1 && AutoClipRedundantImg(NULL, NULL, &out, 1) == -1);
  CHECK(BiLinear(&handle, NULL) == -1 && BiCubic(&handle, NULL) == -1);
  CHECK(CutRectImage(NULL, &out, rect) == -1 && CutRectImage(&image, NULL, rect) == -1);
  CHECK(vantrel_find_corners(&image, NULL) == 0 && vantrel_find_corners(NULL, &found) == 0);
  CHECK(found.verdict == VANTREL_NOT_GRAY);
  free(block);
  puts("ok");
  return 0;
}
