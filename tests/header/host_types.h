/* A host that has the bitmap structures already. */
#include <stdint.h>
typedef struct tagBITMAPINFOHEADER {
  uint32_t biSize;
  int32_t biWidth, biHeight;
  uint16_t biPlanes, biBitCount;
  uint32_t biCompression, biSizeImage;
  int32_t biXPelsPerMeter, biYPelsPerMeter;
  uint32_t biClrUsed, biClrImportant;
} BITMAPINFOHEADER;
typedef struct tagRGBQUAD {
  uint8_t rgbBlue, rgbGreen, rgbRed, rgbReserved;
} RGBQUAD;
