/**
 * @file vantrel_cards.h
 * @brief Finds cards on a scan and cuts them out: the interface for people who write programs.
 *
 * Plain C11, also for C++. It stands beside vantrel.h, needs nothing of it, and both may be included together.
 *
 *     vantrel_image scan = {pixels, width, height, bytes_per_row, VANTREL_FORMAT_RGB, 300.0};
 *     vantrel_cards* cards = NULL;
 *     if (vantrel_find(&scan, NULL, &cards) == VANTREL_OK) {
 *       vantrel_card card = VANTREL_CARD_INIT;
 *       for (size_t i = 0; vantrel_cards_get(cards, i, &card) == VANTREL_OK; ++i) {
 *         vantrel_picture picture = VANTREL_PICTURE_INIT;
 *         if (vantrel_cut(&scan, &card.corners, VANTREL_MARGIN_TIGHT, &picture) == VANTREL_OK) save(&picture);
 *         vantrel_picture_release(&picture);
 *       }
 *     }
 *     vantrel_cards_release(cards);
 *
 * ## Coordinates
 *
 * There is one system for everything: x runs to the right and y down, from the outer corner of the scan's top left
 * pixel. Pixel i reaches from i to i + 1, and its middle lies at i + 0.5. A position times n is therefore the same
 * place on a scan of n times the resolution, and a card's width is the difference of its right and left positions.
 *
 * ## Margins and the half pixel
 *
 * vantrel_cut lays the corners of a quadrilateral on the corners of the target, moved outward or inward by a margin in
 * target pixels: with a margin of 0 they are the target's own outer corners, with 10 there are 10 pixels of background
 * on every side, with -0.5 the outermost half pixel of the card is left out. A border that was found lies in the middle
 * of a step in brightness that is about two pixels wide, so with a margin of 0 a rim half a pixel wide may show the
 * background; VANTREL_MARGIN_TIGHT keeps it out, and is what the command-line tool uses.
 *
 * ## Memory
 *
 * Images are read where they lie and never written to. Pictures go into memory of the caller, which must not overlap
 * the image's, or into a block of the library's that vantrel_picture_release gives back: see vantrel_picture. Of the
 * caller's memory nothing but the picture's pixels is written. The library keeps nothing between calls.
 *
 * ## Work and memory
 *
 * Both are bounded by the size of a scan, whatever it shows. For each pixel, dark glass takes at most 180 steps (basic
 * blocks of the code without vectors, about a nanosecond each) and 5 bytes, flat light 35 steps and 4 bytes, the sheet
 * 20 steps and 2 bytes, and each up to a megabyte besides; dark glass holds up to 600 bytes more for each pixel of the
 * longer side. Anywhere reads every pixel in at most 50 steps, and judges a bounded number of candidates on a reduced
 * copy in at most 1,200 million steps and 20 megabytes. Cutting, cropping, reducing, converting and enlarging take at
 * most 30 steps for each pixel of the larger of image and picture, and a megabyte beside the picture.
 *
 * ## Errors
 *
 * A function that can fail returns a vantrel_status, and VANTREL_OK is 0. On any other status nothing was written,
 * but for a handle that becomes null, and nothing is left to release. That there is no card on a scan is an answer and
 * not an error. Every missing piece of memory is reported as VANTREL_ERROR_MEMORY, never as a different answer.
 *
 * ## Threads
 *
 * No state is shared and no thread is started. Any functions may run at the same time on distinct pictures and handles;
 * images and handles that are only read may be shared. Looking anywhere takes up to 180 KB of the caller's stack, so a
 * thread for it wants 256 KB.
 *
 * ## Versions
 *
 * Records that may grow begin with their size and are set up by an initializer (VANTREL_CARD_INIT) or by writing the
 * size: a program built against an older header receives the members that it knows, and one built against a newer
 * header those that the library knows. Options of a size that the library does not know are refused, for one of them
 * might ask for what it cannot do. vantrel_image, vantrel_picture, vantrel_quad, vantrel_rect and vantrel_line never
 * change.
 */
#ifndef VANTREL_CARDS_H
#define VANTREL_CARDS_H

#include <stddef.h>
#include <stdint.h>

#ifndef VANTREL_API
#if defined(_WIN32)
#define VANTREL_API
#else
#define VANTREL_API __attribute__((visibility("default")))
#endif
#endif

/* A caller in C may give any number where an enumerator is wanted; this lets C++ take it. */
#ifdef __cplusplus
#define VANTREL_ENUM_BASE : int32_t
#else
#define VANTREL_ENUM_BASE
#endif

/** The version of this header. Within one major version 0, a new minor version may change this interface. */
#define VANTREL_VERSION_MAJOR 0
#define VANTREL_VERSION_MINOR 1
#define VANTREL_VERSION_PATCH 0

/** 10000 * major + 100 * minor + patch. */
#define VANTREL_VERSION_NUMBER (10000 * VANTREL_VERSION_MAJOR + 100 * VANTREL_VERSION_MINOR + VANTREL_VERSION_PATCH)

#ifdef __cplusplus
extern "C" {
#endif

/** The version of the library that is running: "0.1.0", and as VANTREL_VERSION_NUMBER. */
VANTREL_API const char* vantrel_version(void);
VANTREL_API int32_t vantrel_version_number(void);

/** How a call ended. */
typedef enum vantrel_status VANTREL_ENUM_BASE {
  VANTREL_OK = 0,
  VANTREL_ERROR_NULL = 1,       /**< a pointer is null that must not be, or a handle was not made by the library */
  VANTREL_ERROR_SIZE = 2,       /**< a width or height is below 1, or the rows need more than 2^31 - 1 bytes */
  VANTREL_ERROR_STRIDE = 3,     /**< the rows overlap: the stride's magnitude is below the bytes of a row */
  VANTREL_ERROR_FORMAT = 4,     /**< no such format, or one that this function does not take */
  VANTREL_ERROR_RESOLUTION = 5, /**< dots per inch that are negative, infinite or no number */
  VANTREL_ERROR_OPTION = 6,     /**< an option, factor or margin, or a record's size member, is none that there is */
  VANTREL_ERROR_GEOMETRY = 7,   /**< corners that enclose nothing, or a rectangle that is empty or outside the image */
  VANTREL_ERROR_TARGET = 8,     /**< the target's size or format does not fit, or it holds a block already */
  VANTREL_ERROR_ABSENT = 9,     /**< no card of that index, or a method that was not tried */
  VANTREL_ERROR_MEMORY = 10     /**< not enough memory */
} vantrel_status;

/** A sentence for people about a status; never null, valid for ever. */
VANTREL_API const char* vantrel_status_text(vantrel_status status);

/* ---- Images ---------------------------------------------------------------------------------------------------- */

/** How the pixels of a row lie in memory. */
typedef enum vantrel_format VANTREL_ENUM_BASE {
  VANTREL_FORMAT_GRAY = 1,   /**< 1 byte: 0 black to 255 white */
  VANTREL_FORMAT_BGR = 2,    /**< 3 bytes: blue, green, red */
  VANTREL_FORMAT_RGB = 3,    /**< 3 bytes: red, green, blue */
  VANTREL_FORMAT_BGRA = 4,   /**< 4 bytes: blue, green, red, opacity; opacity is copied and sampled, never applied */
  VANTREL_FORMAT_RGBA = 5,   /**< 4 bytes: red, green, blue, opacity */
  VANTREL_FORMAT_BILEVEL = 6 /**< 1 bit, the leftmost pixel in the highest bit of a byte: 0 black, 1 white */
} vantrel_format;

/** The bits of a pixel: 1, 8, 24 or 32; 0 when there is no such format. */
VANTREL_API int32_t vantrel_format_bits(vantrel_format format);

/**
 * An image that is read: `height` rows of `width` pixels.
 *
 * `data` points at the first pixel of the picture's top row, and `stride` bytes further lies the next lower row. A
 * picture whose rows are stored from the bottom up has a negative stride.
 */
typedef struct vantrel_image {
  const void* data;
  int32_t width;
  int32_t height;
  ptrdiff_t stride;
  vantrel_format format;
  double dpi; /**< dots per inch, the coarser ones when the two directions differ; 0 when not known */
} vantrel_image;

/** Whether an image can be taken: VANTREL_OK, or the status with which every function refuses it. */
VANTREL_API vantrel_status vantrel_image_check(const vantrel_image* image);

/**
 * A picture that is written.
 *
 * To receive it in memory of your own, set all members (laid out as in vantrel_image) and leave `block` null; the
 * functions that write a picture say which sizes fit, and vantrel_cut_size tells those that are not plain to see.
 * To receive it in a block of the library's, leave `data` and `block` null: the function makes a block, with rows from
 * the top and no gaps between them, and sets all members. A width, height or format of 0 then stands for the natural
 * one, and others ask for those. Release it before the record is used for another picture.
 */
typedef struct vantrel_picture {
  void* data;
  int32_t width;
  int32_t height;
  ptrdiff_t stride;
  vantrel_format format;
  void* block; /**< the library's block behind `data`, or null */
} vantrel_picture;

/** A picture that is to come in a block of the library's, in its natural shape. */
#define VANTREL_PICTURE_INIT \
  { NULL, 0, 0, 0, (vantrel_format)0, NULL }

/** Gives a block of the library's back and clears the record. Null is fine, and a record without a block stays. */
VANTREL_API void vantrel_picture_release(vantrel_picture* picture);

/* ---- Geometry -------------------------------------------------------------------------------------------------- */

typedef struct vantrel_point {
  double x;
  double y;
} vantrel_point;

/** Four corners. */
typedef struct vantrel_quad {
  vantrel_point top_left;
  vantrel_point top_right;
  vantrel_point bottom_right;
  vantrel_point bottom_left;
} vantrel_quad;

/** The pixels in columns `left` to before `right` and rows `top` to before `bottom`. */
typedef struct vantrel_rect {
  int32_t left;
  int32_t top;
  int32_t right;
  int32_t bottom;
} vantrel_rect;

/** The line a * x + b * y = c. */
typedef struct vantrel_line {
  double a;
  double b;
  double c;
} vantrel_line;

/** The same quadrilateral on a scan `factor` (above 0) times as large or small in both directions. */
VANTREL_API vantrel_status vantrel_quad_scale(const vantrel_quad* quad, double factor, vantrel_quad* result);

/* ---- Finding --------------------------------------------------------------------------------------------------- */

/** How a card is looked for. */
typedef enum vantrel_method VANTREL_ENUM_BASE {
  VANTREL_METHOD_DARK_GLASS = 1, /**< one light card on dark glass that it nearly fills, also askew: four lines voted by
                                    edge pixels in bands along the scan's sides */
  VANTREL_METHOD_FLAT_LIGHT = 2, /**< one upright card on a flat, light background: its upright rectangle */
  VANTREL_METHOD_SHEET = 3,   /**< up to ten cards of 3.55 x 2.2 inches on a sheet, in one or two columns, by the marks
                                 on them; needs the scan's dots per inch */
  VANTREL_METHOD_ANYWHERE = 4 /**< any number of cards up to 64, anywhere on the scan, of any size and tilt, on any
                                 ground, in any format: the quadrilaterals that lines and regions give, judged by
                                 their borders */
} vantrel_method;

/** A method's name, "dark-glass" for example; null when there is no such method. */
VANTREL_API const char* vantrel_method_name(vantrel_method method);

/** What to find, and how. Set up with VANTREL_FIND_OPTIONS_INIT, all of whose values are defaults. */
typedef struct vantrel_find_options {
  size_t size;
  const vantrel_method* methods; /**< tried in this order until one finds a card, however sure; null: what is surest,
                                    see vantrel_find */
  size_t method_count;
  double analysis_dpi; /**< dots per inch at which borders are looked for, by a reduction of the scan by the nearest
                          whole number; without effect when the scan's are not known or nothing would be left. 0: what
                          the scan has; on dark glass also about 150 to 200, where that shows more sides. Cuts keep the
                          scan's */
  int32_t most_cards;  /**< no more cards than this, on a sheet the first ones, anywhere the surest; 0: as many as
                          there are */
  int32_t straighten;  /**< 1: on a sheet, look for each card's own borders around its place; 0: do not */
} vantrel_find_options;

#define VANTREL_FIND_OPTIONS_INIT \
  { sizeof(vantrel_find_options), NULL, 0, 0.0, 0, 0 }

/** The sides of a card, as indices. */
typedef enum vantrel_side_index VANTREL_ENUM_BASE {
  VANTREL_SIDE_TOP = 0,
  VANTREL_SIDE_BOTTOM = 1,
  VANTREL_SIDE_LEFT = 2,
  VANTREL_SIDE_RIGHT = 3
} vantrel_side_index;

/** What is known of one side. */
typedef struct vantrel_side {
  int32_t found;     /**< 1: a border was seen there; 0: something stands in for it, as the method says */
  double confidence; /**< 0 to 1: the share of the side that lies on border pixels; 0 when it was not found, but
                        anywhere: there a side is found from 0.8 on, weak from 0.5 on, and else a guess */
} vantrel_side;

/** A card on a scan; the same for every method. Set up with VANTREL_CARD_INIT. */
typedef struct vantrel_card {
  size_t size;
  vantrel_quad corners;  /**< in the coordinates of the scan; may reach a little beyond it */
  vantrel_side sides[4]; /**< by vantrel_side_index. A side not found lies on the frame of the scan (dark glass), at the
                            method's narrow default margin (flat light), where a card of its size ends (sheet), or
                            where what little there is of a border suggests it (anywhere) */
  double tilt;           /**< degrees by which the card is turned, clockwise positive */
  double confidence; /**< 0 to 1: the mean over the sides; on a sheet without own borders, the share of the marks there
                        that the card's place takes in; anywhere, how likely the corners are a card's, where less than
                        0.5 is a guess. An order of how sure, not yet a probability */
  vantrel_method method;
} vantrel_card;

#define VANTREL_CARD_INIT \
  { sizeof(vantrel_card), {{0, 0}, {0, 0}, {0, 0}, {0, 0}}, {{0, 0}, {0, 0}, {0, 0}, {0, 0}}, 0, 0, (vantrel_method)0 }

/** Why a method found no card. */
typedef enum vantrel_reason VANTREL_ENUM_BASE {
  VANTREL_REASON_FOUND = 0,      /**< it found one, even if a surer one of another method was taken */
  VANTREL_REASON_NOT_TRIED = 1,  /**< it was not asked for, or an earlier method found a card */
  VANTREL_REASON_BLANK = 2,      /**< there is no edge near the scan's border */
  VANTREL_REASON_NO_SIDE = 3,    /**< no side of a card was found */
  VANTREL_REASON_TOO_SMALL = 4,  /**< the corners found span less than half of the scan */
  VANTREL_REASON_DEGENERATE = 5, /**< the border lines found do not meet in four corners */
  VANTREL_REASON_NO_MARKS = 6,   /**< no marks of a card are on the sheet */
  VANTREL_REASON_BILEVEL = 7,    /**< a bilevel scan has no levels to search */
  VANTREL_REASON_SCAN_TOO_SMALL = 8,
  VANTREL_REASON_SCAN_TOO_LARGE = 9,
  VANTREL_REASON_RESOLUTION_UNKNOWN = 10,
  VANTREL_REASON_RESOLUTION_TOO_LOW = 11,
  VANTREL_REASON_NOTHING_LIKE_A_CARD = 12 /**< nothing anywhere on the scan has the borders of a card */
} vantrel_reason;

/** A sentence for people about a reason; never null, valid for ever. */
VANTREL_API const char* vantrel_reason_text(vantrel_reason reason);

/** What was found on one scan, or that nothing was. */
typedef struct vantrel_cards vantrel_cards;

/**
 * Looks for cards on a scan.
 *
 * @param scan    of any format; opacity plays no part.
 * @param options null for the defaults.
 * @param cards   receives a handle, to be released with vantrel_cards_release; null unless VANTREL_OK is returned.
 * @return VANTREL_OK also when there is no card: vantrel_cards_reason tells why.
 *
 * Unless the options name methods, the surest answer is taken: what is found anywhere, if one of its cards has a
 * confidence of 0.9 or more; else the card on dark glass, if all its four sides were seen; else what is found anywhere,
 * if one of its cards has 0.5 or more; else what dark glass, flat light (with all sides, and where anywhere has a
 * guess), the sheet or anywhere finds, in this order.
 *
 * Looking anywhere takes 60 to 130 ms a scan, dark glass alone about 7 ms: a caller whose scans are all of one kind
 * names the method for them.
 *
 * Dark glass: a Hough transform (R. O. Duda and P. E. Hart, CACM 15, 1972) over Sobel edges. Flat light: a Hough
 * transform and the corner measure of C. Harris and M. Stephens (1988). Sheet: P. D. Wellner's running threshold
 * (1993). Anywhere: a Hough transform for lines and the minimum barrier distance (J. Zhang et al., ICCV 2015) for
 * regions; borders are fitted with J. W. Tukey's biweight.
 */
VANTREL_API vantrel_status vantrel_find(const vantrel_image* scan, const vantrel_find_options* options,
                                        vantrel_cards** cards);

/** Releases what vantrel_find made; null is fine. */
VANTREL_API void vantrel_cards_release(vantrel_cards* cards);

/** How many cards were found: 0 to VANTREL_LIMIT_CARDS. 0 for null. */
VANTREL_API size_t vantrel_cards_count(const vantrel_cards* cards);

/**
 * Tells of one card, in reading order: from the top down, and from the left to the right of those side by side.
 *
 * A card found anywhere comes as it lies: its first corner is the one at the top left after the least turn that makes
 * it upright. That is not where its text begins, which may stand on its head.
 *
 * @param card its `size` says which members are written.
 * @return VANTREL_ERROR_ABSENT when there is no card of that index.
 */
VANTREL_API vantrel_status vantrel_cards_get(const vantrel_cards* cards, size_t index, vantrel_card* card);

/**
 * Tells of a quadrilateral that a card was preferred to: one nested in it or around it, or a rival for its place.
 *
 * @param card        the index of a card, as for vantrel_cards_get.
 * @param index       from 0 on, the likeliest first; at most five there are.
 * @param alternative its `size` says which members are written.
 * @return VANTREL_ERROR_ABSENT when there is none of that index. Only a card found anywhere has any.
 */
VANTREL_API vantrel_status vantrel_cards_alternative(const vantrel_cards* cards, size_t card, size_t index,
                                                     vantrel_card* alternative);

/** Why a method found no card. */
VANTREL_API vantrel_reason vantrel_cards_reason(const vantrel_cards* cards, vantrel_method method);

/* ---- What only one method knows, for those who draw or debug ----------------------------------------------------- */

/** One side as the method for dark glass saw it. */
typedef struct vantrel_dark_side {
  vantrel_line line; /**< the border, or the frame of the scan that stands in for it */
  vantrel_rect band; /**< where it was looked for */
  int32_t found;     /**< 1: a line was found and accepted */
  double votes;      /**< edge pixels that voted for the line, in pixels of the analysed copy; 0 when not found */
} vantrel_dark_side;

/** What the method for dark glass saw, in the coordinates of the scan. Set `size` to its sizeof. */
typedef struct vantrel_dark_glass {
  size_t size;
  int32_t reduction; /**< the analysed copy was so many times smaller than the scan */
  int32_t width;     /**< of the analysed copy */
  int32_t height;
  int32_t has_lines;          /**< whether `sides` tells more than the bands */
  int32_t has_corners;        /**< whether what follows `sides` is filled; it was refused unless there is a card */
  vantrel_dark_side sides[4]; /**< by vantrel_side_index */
  vantrel_quad corners;
  vantrel_rect box; /**< the corners' bounding box; its bounds are pixels that it includes */
  double tilt;      /**< of the corners, as in vantrel_card */
} vantrel_dark_glass;

/** What the method for a flat, light background saw. Set `size` to its sizeof. */
typedef struct vantrel_flat_light {
  size_t size;
  int32_t reduction;
  vantrel_rect rectangle; /**< the card, with defaults for the sides that were not found */
  vantrel_side sides[4];  /**< by vantrel_side_index */
} vantrel_flat_light;

/** One card as the segmentation of a sheet saw it. */
typedef struct vantrel_sheet_card {
  vantrel_rect place;    /**< where a card of its size lies best around its marks; may reach beyond the scan */
  vantrel_rect searched; /**< the part of the scan in which its own borders were looked for; empty when they were not */
  int32_t column;        /**< 1 or 2 */
  int32_t straightened;  /**< 1: its own borders were found, on three sides or more */
} vantrel_sheet_card;

/** What the segmentation of a sheet saw. Set `size` to its sizeof. */
typedef struct vantrel_sheet {
  size_t size;
  int32_t reduction;            /**< the sheet was decided upon a copy so many times smaller */
  int32_t columns;              /**< 1 or 2 */
  vantrel_sheet_card cards[10]; /**< as many as vantrel_cards_count says, in its order, where the sheet's are taken */
} vantrel_sheet;

/** These return VANTREL_ERROR_ABSENT when the method was not tried, or could not look at such a scan at all. */
VANTREL_API vantrel_status vantrel_cards_dark_glass(const vantrel_cards* cards, vantrel_dark_glass* details);
VANTREL_API vantrel_status vantrel_cards_flat_light(const vantrel_cards* cards, vantrel_flat_light* details);
VANTREL_API vantrel_status vantrel_cards_sheet(const vantrel_cards* cards, vantrel_sheet* details);

/** The numbers that bound what is taken. */
typedef enum vantrel_limit VANTREL_ENUM_BASE {
  VANTREL_LIMIT_FINDER_SIDE =
      1, /**< the longest side, in pixels after reduction, that dark glass and flat light take */
  VANTREL_LIMIT_COLOUR_SIDE = 2,   /**< the shortest side of a coloured scan that flat light takes */
  VANTREL_LIMIT_SHEET_DPI = 3,     /**< the least dots per inch of a sheet */
  VANTREL_LIMIT_SHEET_CARDS = 4,   /**< the most cards on a sheet */
  VANTREL_LIMIT_ENLARGED_SIDE = 5, /**< the longest side of an image that is enlarged */
  VANTREL_LIMIT_CARDS = 6          /**< the most cards on a scan, by any method */
} vantrel_limit;

/** The value of a limit; 0 when there is no such limit. */
VANTREL_API int32_t vantrel_limit_value(vantrel_limit limit);

/* ---- Cutting --------------------------------------------------------------------------------------------------- */

/** Keeps the background out of a cut along found borders; see above. */
#define VANTREL_MARGIN_TIGHT (-0.5)

/** The most and the least margin, in pixels. */
#define VANTREL_MARGIN_MOST 10000.0

/**
 * The natural size of a cut: the mean lengths of opposite edges, rounded, and twice a positive margin, rounded up.
 *
 * @param corners in single precision, as they are cut.
 */
VANTREL_API vantrel_status vantrel_cut_size(const vantrel_quad* corners, double margin, int32_t* width,
                                            int32_t* height);

/**
 * Straightens a quadrilateral of a scan into an upright picture.
 *
 * @param scan    any format but bilevel. It need not be the scan on which the card was found: scale the corners with
 *                vantrel_quad_scale for a scan of the same scene in another resolution.
 * @param corners may reach beyond the scan, whose outermost pixels are repeated there. Single precision is made of
 * them.
 * @param margin  in pixels of the target; see above.
 * @param target  of any size above twice the margin, in the scan's format. The natural size is that of
 *                vantrel_cut_size.
 *
 * The mapping is plane projective (G. Wolberg, "Digital Image Warping", 1990), sampled bilinearly.
 */
VANTREL_API vantrel_status vantrel_cut(const vantrel_image* scan, const vantrel_quad* corners, double margin,
                                       vantrel_picture* target);

/**
 * Copies a rectangle that lies within an image of any format.
 *
 * @param target of the rectangle's size, in the image's format.
 */
VANTREL_API vantrel_status vantrel_crop(const vantrel_image* image, const vantrel_rect* rectangle,
                                        vantrel_picture* target);

/** How an image is enlarged. */
typedef enum vantrel_enlargement VANTREL_ENUM_BASE {
  VANTREL_ENLARGE_LINEAR = 1, /**< rounded means of two or four neighbours */
  VANTREL_ENLARGE_CUBIC = 2   /**< the four-tap kernel (-1, 9, 9, -1) / 16; repeats pixels near the edge */
} vantrel_enlargement;

/**
 * Enlarges an image to twice its width and height.
 *
 * @param image  any format but bilevel; no side longer than VANTREL_LIMIT_ENLARGED_SIDE.
 * @param target twice as high; twice as wide, or wider, and then the last pixels are repeated. In the image's format.
 */
VANTREL_API vantrel_status vantrel_enlarge(const vantrel_image* image, vantrel_enlargement method,
                                           vantrel_picture* target);

/**
 * Reduces an image: every pixel of the target is the mean of `times` x `times` pixels, truncated. What is left over at
 * the right and the bottom is dropped, so that a position times `times` is the position in the image.
 *
 * @param image  any format but bilevel, no side shorter than `times`.
 * @param times  1 to 4096.
 * @param target of width / times by height / times pixels, in the image's format.
 */
VANTREL_API vantrel_status vantrel_reduce(const vantrel_image* image, int32_t times, vantrel_picture* target);

/**
 * Copies an image into another format, for example to gray: (2 blue + 9 green + 5 red) / 16, truncated. Gray becomes
 * colour with three equal channels, opacity is 255 where the image has none and is dropped where the target has none,
 * bilevel pixels become 0 or 255. To bilevel only bilevel images are copied.
 *
 * @param target of the image's size. The natural format is gray.
 */
VANTREL_API vantrel_status vantrel_convert(const vantrel_image* image, vantrel_picture* target);

#ifdef __cplusplus
}
#endif

#endif
