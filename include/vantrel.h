/**
 * @file vantrel.h
 * @brief The public interface of vantrel, image pre-processing for scanned business cards.
 *
 * Compiles alone as C11 and as C++20. A C program sees the plain entries and the exported data; a C++ program
 * also sees the detectors that are exported under their C++ names.
 *
 * ## Images
 *
 * Every image is a device-independent bitmap in one heap block: the 40-byte BITMAPINFOHEADER, directly followed by
 * the palette (2^biBitCount entries of 4 bytes up to 8 bits, none above), directly followed by the pixel rows.
 *
 * - Row order: bottom-up. The first row in memory is the bottom row of the picture; "memory row r" counts from it.
 * - Stride: ((biWidth * biBitCount + 31) / 32) * 4 bytes.
 * - 1 bit: most significant bit first, 0 black, 1 white. 8 bits: gray levels. 24 bits: blue, green, red.
 *
 * The entries take an input image as a *packed handle*: the address of a pointer to such a block. They adopt it in
 * place, which rewrites biClrUsed in the caller's header to the full palette of the depth (2, 16, 256, or 0 above
 * 8 bits), so the block must hold that full palette. They never free or resize it, and never change its pixels.
 *
 * Result images are blocks from malloc that belong to the caller: release them with FreeCardImg.
 *
 * ## Limits
 *
 * An image whose sides are negative, or whose row or pixel block does not fit in 2^31 - 1 bytes, cannot be made: it
 * is a failed allocation.
 *
 * ## Work and memory
 *
 * Both are bounded by the size of an image, whatever it shows: every entry ends. For each pixel of its input an entry
 * takes at most so many steps (basic blocks of the code without vectors, which take about a nanosecond each) and holds
 * at most so many bytes, its result included:
 *
 * | entry                                                        | steps | bytes |
 * | ------------------------------------------------------------ | ----- | ----- |
 * | AutoClipRedundantImg, vantrel_auto_clip                      | 500   | 5     |
 * | vantrel_find_corners                                         | 180   | 5     |
 * | AutoDetectCorner, vantrel_find_gradient_corners              | 800   | 12    |
 * | AutoClipRedundantImg_ORVA, AutoClipImg_Rect_ORVA             | 35    | 4     |
 * | BiLinear, BiCubic                                            | 30    | 12    |
 * | CutRectImage, for each pixel of the rectangle                | 5     | 4     |
 * | CardSeg                                                      | 20    | 2     |
 * | ClipImg                                                      | 2     | 2     |
 *
 * Besides, the first three hold up to 600 bytes for each pixel of the longer side, the fourth up to 40, and each up to
 * a megabyte, that an image is searched at all. Images of a few columns need the first's 500, for it maps stretches of
 * a row at once; others need 180. The gradient search needs its 800 only where a side is above 32767; else it needs
 * 180. Where a second, larger image is cut, its pixels count.
 *
 * ## Threads
 *
 * The library keeps no state between calls, starts no threads and takes no locks. All functions may be called from
 * several threads at once on distinct images. Because adoption writes biClrUsed, do not hand the same block to two
 * concurrent calls.
 */
#ifndef VANTREL_H
#define VANTREL_H

#include <stdint.h>

#if defined(_WIN32)
#define VANTREL_API
#else
#define VANTREL_API __attribute__((visibility("default")))
#endif

/*
 * BITMAPINFOHEADER and RGBQUAD, with their published member names. A host that already has them (Windows does) keeps
 * its own: elsewhere define VANTREL_HOST_HAS_BITMAP_TYPES before including this header.
 */
#if defined(_WIN32)
#include <windows.h>
#elif !defined(VANTREL_HOST_HAS_BITMAP_TYPES)

/** The header at the start of every image block; 40 bytes, little-endian. */
typedef struct tagBITMAPINFOHEADER {
  uint32_t biSize;         /**< 40 */
  int32_t biWidth;         /**< pixels in a row */
  int32_t biHeight;        /**< rows; positive, the rows are bottom-up */
  uint16_t biPlanes;       /**< 1 */
  uint16_t biBitCount;     /**< bits in a pixel: 1, 8 or 24 */
  uint32_t biCompression;  /**< 0, uncompressed */
  uint32_t biSizeImage;    /**< stride * biHeight, in bytes */
  int32_t biXPelsPerMeter; /**< horizontal resolution in pixels per metre */
  int32_t biYPelsPerMeter; /**< vertical resolution in pixels per metre */
  uint32_t biClrUsed;      /**< palette entries in the block */
  uint32_t biClrImportant; /**< 0 */
} BITMAPINFOHEADER;

/** A palette entry. */
typedef struct tagRGBQUAD {
  uint8_t rgbBlue;
  uint8_t rgbGreen;
  uint8_t rgbRed;
  uint8_t rgbReserved;
} RGBQUAD;

#endif

/** An image: three pointers into one block. It owns nothing by itself; `pInfo` is the only pointer ever freed. */
typedef struct BITMAPPTR {
  BITMAPINFOHEADER* pInfo; /**< start of the block, or null when the record is empty */
  RGBQUAD* pPalette;       /**< block + 40 bytes */
  unsigned char* pBits;    /**< first pixel row in memory, behind the palette */
} BITMAPPTR;

/** A rectangle of pixel columns and memory rows; all four bounds are inclusive. Passed by value. */
typedef struct MYRECT {
  int16_t left;     /**< first column */
  int16_t top;      /**< last memory row, the highest in the picture */
  int16_t right;    /**< last column */
  int16_t bottom;   /**< first memory row, the lowest in the picture */
  int16_t reserved; /**< carried along, without a meaning */
} MYRECT;

/** Why vantrel_find_corners ended as it did. */
typedef enum vantrel_verdict {
  VANTREL_CORNERS_FOUND = 0, /**< four corners, judged to be a card */
  VANTREL_CORNERS_TOO_SMALL, /**< four corners, but their box covers less than half of the image */
  VANTREL_LINES_DEGENERATE,  /**< two border lines have no single intersection */
  VANTREL_NO_EDGES,          /**< no edge pixel in the border bands: a blank image */
  VANTREL_SIDE_TOO_LONG,     /**< a side is longer than 32767 pixels, or negative */
  VANTREL_OUT_OF_MEMORY,     /**< a work allocation failed */
  VANTREL_NOT_GRAY           /**< the image is empty or not 8 bits deep */
} vantrel_verdict;

/** The border line of one side: a * x + b * y = c, x a column and y a memory row. */
typedef struct vantrel_border {
  double a;
  double b;
  double c;
  int found; /**< 1 when a line was found and accepted; 0 when the frame of the image stands in for it */
} vantrel_border;

/**
 * What the corner finder found.
 *
 * `side` is ordered top, bottom, left, right of the picture; it is filled for VANTREL_CORNERS_FOUND,
 * VANTREL_CORNERS_TOO_SMALL and VANTREL_LINES_DEGENERATE. `corners` and `box` are filled for the first two of these:
 * four (x, y) pairs, x a column and y a row counted from the top of the picture. Everything else is zero.
 */
typedef struct vantrel_corner_search {
  vantrel_verdict verdict;
  vantrel_border side[4];
  float corners[8]; /**< top-left, top-right, bottom-left, bottom-right */
  float box[8];     /**< the bounding box in whole pixels, its corners in the same order */
} vantrel_corner_search;

/** The cards found on a sheet. Rectangles beyond the counts, and every fifth member, are left as they were. */
typedef struct RectRegions {
  int32_t firstCount;     /**< cards in the first (or only) column, 0 to 5 */
  int32_t secondCount;    /**< cards in the second column, 0 to 5 */
  MYRECT firstColumn[5];  /**< from the bottom of the picture upwards */
  MYRECT secondColumn[5]; /**< from the bottom of the picture upwards */
} RectRegions;

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Finds the card on a scan and maps it onto the whole frame of a new image, upright and without background.
 *
 * @param analyseImage packed handle of the scan in which the corners are looked for; 8 or 24 bits.
 * @param cutImage     packed handle of the scan that is cut, `scale` times larger in both directions and of the same
 *                     depth. Not read when `scale` is 1: the first image is cut. It is sampled as it is; a wrong size
 *                     gives a wrong picture, never a read outside it.
 * @param out          receives the result; overwritten, not freed. Untouched by failures before its creation.
 * @param scale        factor from the first image to the second.
 * @return 1: `out` holds the card in the size and resolution of the image to cut; its two rightmost columns and two
 *         top rows stay white. 0: nothing to correct, `out` holds a copy (of the image to cut when the first image
 *         has 1 bit, otherwise of the first image). -1: a null image, another depth, differing depths, or no memory.
 *
 * The corners are the intersections of four lines found by a Hough transform (R. O. Duda and P. E. Hart, "Use of the
 * Hough Transformation to Detect Lines and Curves in Pictures", CACM 15, 1972) over Sobel edges; the mapping is a
 * plane projective one, sampled bilinearly.
 */
VANTREL_API int AutoClipRedundantImg(void** analyseImage, void** cutImage, BITMAPPTR* out, int scale);

/**
 * Finds the upright rectangle of a card on a flat background and crops it.
 *
 * @param image        packed handle of the scan to analyse; 8 or 24 bits, the latter at least 128 x 128.
 * @param highResImage packed handle of the scan to cut, or null. Used only when `scale` is above 1.
 * @param result       receives the crop; overwritten, not freed.
 * @param scale        factor by which the rectangle is multiplied, also when the first image is cut itself.
 *                     The products keep their low 16 bits.
 * @return 1, or -1: a null image, another depth, an image too small, or no memory. When the scan to cut is neither 1,
 *         8 nor 24 bits deep, -1 leaves a white image in `result`.
 */
VANTREL_API int AutoClipRedundantImg_ORVA(void** image, void** highResImage, BITMAPPTR* result, int scale);

/**
 * Tells whether AutoClipRedundantImg_ORVA would find a rectangle. The four middle arguments are neither read nor
 * written.
 *
 * @return 1 when a rectangle was determined, -1 otherwise.
 */
VANTREL_API int AutoClipImg_Rect_ORVA(void** image, void** highResImage, int unused1, int unused2, int unused3,
                                      int unused4, int scale);

/**
 * Enlarges an image to twice its width and height by rounded means of neighbouring pixels.
 *
 * @param image packed handle; 1, 8 or 24 bits.
 * @param out   receives the result; overwritten, not freed. Its width is rounded up to a multiple of 4, its
 *              resolution is doubled.
 * @return 1: enlarged. 0: `out` is a copy at unchanged size, because the image has 1 bit or a side above 2000 pixels
 *         (of a 24-bit image, that copy is its 8-bit gray version). -1: a null image, another depth, or no memory.
 */
VANTREL_API int BiLinear(void** image, BITMAPPTR* out);

/**
 * Enlarges an image to twice its width and height with the four-tap kernel (-1, 9, 9, -1) / 16.
 *
 * As BiLinear, except that the copy of a 24-bit image over the size limit keeps its colours.
 */
VANTREL_API int BiCubic(void** image, BITMAPPTR* out);

/**
 * Crops a rectangle into a new image of the same depth and resolution.
 *
 * @param src  the image; 1, 8 or 24 bits.
 * @param dst  receives the crop; overwritten, not freed.
 * @param rect the rectangle. Its height is |top - bottom| + 1 and its width right - left + 1, both kept in 16 bits;
 *             the first row copied is `bottom`. What lies outside `src` stays white.
 * @return 1, or -1: no memory (`dst->pInfo` is null), or another depth (`dst` then holds a white image).
 */
VANTREL_API int CutRectImage(BITMAPPTR* src, BITMAPPTR* dst, MYRECT rect);

/**
 * Releases a result image.
 *
 * @param handle address of the image's `pInfo`; null, or the address of a null pointer, is fine. The pointer itself
 *               is not cleared.
 * @return always 1.
 */
VANTREL_API int FreeCardImg(void** handle);

/**
 * Finds the corners of a card on a gray scan: the search behind AutoClipRedundantImg, with all it saw.
 *
 * @param gray   an 8-bit image; only read. Use Color2Gray for a colour scan.
 * @param result receives the record; every member is written.
 * @return 1 when the verdict is VANTREL_CORNERS_FOUND, otherwise 0. With all four sides defaulted the verdict can
 *         still be VANTREL_CORNERS_FOUND: the corners are then those of the image's frame.
 */
VANTREL_API int vantrel_find_corners(const BITMAPPTR* gray, vantrel_corner_search* result);

/**
 * As AutoClipRedundantImg, but memory that is missing anywhere is a failure. There a search without memory shows as
 * nothing found, and the picture is another one.
 *
 * @return as AutoClipRedundantImg; -1 leaves `out` untouched or its `pInfo` null.
 */
VANTREL_API int vantrel_auto_clip(void** analyseImage, void** cutImage, BITMAPPTR* out, int scale);

/**
 * As AutoDetectCorner, but tells missing memory from corners that are not found.
 *
 * @param gray an 8-bit image; only read.
 * @return 1: found; 0: not found; -1: no memory, nothing is written.
 */
VANTREL_API int vantrel_find_gradient_corners(const BITMAPPTR* gray, float* corners, float* box);

/** The folder from which the library was loaded, with its final separator; empty when it is not known. */
extern VANTREL_API char szPath[256];

/** SQUARE_TABLE[i] = i * i. */
extern VANTREL_API const uint32_t SQUARE_TABLE[256];

#ifdef __cplusplus
}

/**
 * Finds the four corners of a card by gradient direction alone, in a frame of 1/15 of the rows and 1/25 of the
 * columns along the image's edges. The frame's inner bounds are kept in 16 bits: with a side above 32767 some or all of
 * the image counts as frame, which takes up to six times as long.
 *
 * @param image   an 8-bit image; only read. A null pointer or an empty record returns false.
 * @param corners eight floats, four (x, y) pairs as in vantrel_corner_search.
 * @param box     eight floats, the bounding box.
 * @return true when four corners were found and cover at least half of the image. On false, `corners` and `box` may be
 *         partly written. Any depth other than 8 returns false.
 */
VANTREL_API bool AutoDetectCorner(BITMAPPTR* image, float* corners, float* box);

/**
 * Finds up to ten business cards (3.55 x 2.2 inches, lying) on one scanned sheet, in one or two columns of up to five.
 *
 * @param image   a scan of 1, 8 or 24 bits with at least 250 dots per inch in its header; only read.
 * @param regions receives the counts and, up to them, the rectangles in pixels of `image`.
 * @return 1: done, the counts may be 0. -1: no memory. -2: another depth. -3: a lower resolution (judged first).
 */
VANTREL_API int CardSeg(BITMAPPTR* image, RectRegions& regions);

/**
 * Finds two horizontal border rows: one in memory rows 5 to 1/8 of the height, one between 75 % and 90 % of it.
 *
 * @param image     an 8-bit image; only read.
 * @param firstRow  receives the near row, 0 when there is none.
 * @param secondRow receives the far row, height - 1 when there is none.
 * @return true when done; false, outputs untouched, when there is no memory or the image is not 8 bits deep.
 */
VANTREL_API bool ClipImg(BITMAPPTR* image, int& firstRow, int& secondRow);

/**
 * Adds to `histogram[i]` the number of bytes equal to 0 in row i of `height` rows of `width` bytes without padding.
 * Trusts its arguments.
 */
VANTREL_API void HProjection(unsigned char* pixels, short width, short height, unsigned short* histogram);

/**
 * Adds to `histogram[j]` the number of bytes equal to 255 in column j of `height` rows of `width` bytes without
 * padding. Trusts its arguments.
 */
VANTREL_API void VProjection(unsigned char* pixels, short width, short height, unsigned short* histogram);

/** The half-pixel cubic kernel: (9 * (b + c) - a - d + 8) >> 4, not clamped. */
VANTREL_API int BiCubicDir(int a, int b, int c, int d);

#endif

#endif
