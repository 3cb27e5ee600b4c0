/* A host in C: crops a rectangle out of a packed 8-bit bitmap. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <vantrel.h>

int main(void) {
  enum { kWidth = 8, kHeight = 4, kBlock = 40 + 4 * 256 + kWidth * kHeight };
  unsigned char* block = calloc(1, kBlock);
  BITMAPINFOHEADER header = {40, kWidth, kHeight, 1, 8, 0, kWidth * kHeight, 11811, 11811, 256, 0};
  memcpy(block, &header, sizeof header);
  BITMAPPTR image = {(BITMAPINFOHEADER*)block, (RGBQUAD*)(block + 40), block + 40 + 4 * 256};
  image.pBits[1 * kWidth + 2] = 77;

  BITMAPPTR crop = {0};
  MYRECT rect = {2, 2, 4, 1, 0};
  if (CutRectImage(&image, &crop, rect) != 1) return 1;
  printf("%d x %d, first pixel %d\n", crop.pInfo->biWidth, crop.pInfo->biHeight, crop.pBits[0]);
  const int right = crop.pInfo->biWidth == 3 && crop.pInfo->biHeight == 2 && crop.pBits[0] == 77;
  FreeCardImg((void**)&crop.pInfo);
  free(block);
  return right ? 0 : 1;
}
