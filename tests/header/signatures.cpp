// The signatures of the plain entries, which no symbol name holds, and the layouts that hosts were compiled against.
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "vantrel.h"

static_assert(std::is_same_v<decltype(AutoClipRedundantImg), int(void**, void**, BITMAPPTR*, int)>);
static_assert(std::is_same_v<decltype(AutoClipRedundantImg_ORVA), int(void**, void**, BITMAPPTR*, int)>);
static_assert(std::is_same_v<decltype(AutoClipImg_Rect_ORVA), int(void**, void**, int, int, int, int, int)>);
static_assert(std::is_same_v<decltype(BiLinear), int(void**, BITMAPPTR*)>);
static_assert(std::is_same_v<decltype(BiCubic), int(void**, BITMAPPTR*)>);
static_assert(std::is_same_v<decltype(CutRectImage), int(BITMAPPTR*, BITMAPPTR*, MYRECT)>);
static_assert(std::is_same_v<decltype(FreeCardImg), int(void**)>);
static_assert(std::is_same_v<decltype(vantrel_auto_clip), int(void**, void**, BITMAPPTR*, int)>);
static_assert(std::is_same_v<decltype(vantrel_find_gradient_corners), int(const BITMAPPTR*, float*, float*)>);
static_assert(std::is_same_v<decltype(szPath), char[256]>);
static_assert(std::is_same_v<decltype(SQUARE_TABLE), const std::uint32_t[256]>);

// Results, which no symbol name holds either.
static_assert(std::is_same_v<decltype(AutoDetectCorner), bool(BITMAPPTR*, float*, float*)>);
static_assert(std::is_same_v<decltype(CardSeg), int(BITMAPPTR*, RectRegions&)>);
static_assert(std::is_same_v<decltype(ClipImg), bool(BITMAPPTR*, int&, int&)>);
static_assert(std::is_same_v<decltype(HProjection), void(unsigned char*, short, short, unsigned short*)>);
static_assert(std::is_same_v<decltype(VProjection), void(unsigned char*, short, short, unsigned short*)>);
static_assert(std::is_same_v<decltype(BiCubicDir), int(int, int, int, int)>);

static_assert(std::is_trivial_v<BITMAPPTR> && std::is_standard_layout_v<BITMAPPTR>);
static_assert(std::is_trivial_v<MYRECT> && std::is_trivial_v<RectRegions>);
static_assert(offsetof(BITMAPINFOHEADER, biWidth) == 4 && offsetof(BITMAPINFOHEADER, biHeight) == 8);
static_assert(offsetof(BITMAPINFOHEADER, biPlanes) == 12 && offsetof(BITMAPINFOHEADER, biBitCount) == 14);
static_assert(offsetof(BITMAPINFOHEADER, biCompression) == 16 && offsetof(BITMAPINFOHEADER, biSizeImage) == 20);
static_assert(offsetof(BITMAPINFOHEADER, biXPelsPerMeter) == 24 && offsetof(BITMAPINFOHEADER, biYPelsPerMeter) == 28);
static_assert(offsetof(BITMAPINFOHEADER, biClrUsed) == 32 && offsetof(BITMAPINFOHEADER, biClrImportant) == 36);
static_assert(offsetof(RGBQUAD, rgbBlue) == 0 && offsetof(RGBQUAD, rgbGreen) == 1);
static_assert(offsetof(RGBQUAD, rgbRed) == 2 && offsetof(RGBQUAD, rgbReserved) == 3);
static_assert(offsetof(MYRECT, left) == 0 && offsetof(MYRECT, top) == 2 && offsetof(MYRECT, right) == 4);
