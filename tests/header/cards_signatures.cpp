// The signatures of vantrel_cards.h, which no symbol name holds, and the layout of the records that never change.
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "vantrel_cards.h"

template <class Function, class Signature>
constexpr bool has_signature = std::is_same_v<Function, Signature>;

static_assert(has_signature<decltype(vantrel_version), const char*()>);
static_assert(has_signature<decltype(vantrel_version_number), std::int32_t()>);
static_assert(has_signature<decltype(vantrel_status_text), const char*(vantrel_status)>);
static_assert(has_signature<decltype(vantrel_reason_text), const char*(vantrel_reason)>);
static_assert(has_signature<decltype(vantrel_method_name), const char*(vantrel_method)>);
static_assert(has_signature<decltype(vantrel_format_bits), std::int32_t(vantrel_format)>);
static_assert(has_signature<decltype(vantrel_limit_value), std::int32_t(vantrel_limit)>);
static_assert(has_signature<decltype(vantrel_image_check), vantrel_status(const vantrel_image*)>);
static_assert(has_signature<decltype(vantrel_picture_release), void(vantrel_picture*)>);
static_assert(has_signature<decltype(vantrel_quad_scale), vantrel_status(const vantrel_quad*, double, vantrel_quad*)>);
static_assert(has_signature<decltype(vantrel_find),
                            vantrel_status(const vantrel_image*, const vantrel_find_options*, vantrel_cards**)>);
static_assert(has_signature<decltype(vantrel_cards_release), void(vantrel_cards*)>);
static_assert(has_signature<decltype(vantrel_cards_count), std::size_t(const vantrel_cards*)>);
static_assert(
    has_signature<decltype(vantrel_cards_get), vantrel_status(const vantrel_cards*, std::size_t, vantrel_card*)>);
static_assert(has_signature<decltype(vantrel_cards_alternative),
                            vantrel_status(const vantrel_cards*, std::size_t, std::size_t, vantrel_card*)>);
static_assert(has_signature<decltype(vantrel_cards_reason), vantrel_reason(const vantrel_cards*, vantrel_method)>);
static_assert(
    has_signature<decltype(vantrel_cards_dark_glass), vantrel_status(const vantrel_cards*, vantrel_dark_glass*)>);
static_assert(
    has_signature<decltype(vantrel_cards_flat_light), vantrel_status(const vantrel_cards*, vantrel_flat_light*)>);
static_assert(has_signature<decltype(vantrel_cards_sheet), vantrel_status(const vantrel_cards*, vantrel_sheet*)>);
static_assert(has_signature<decltype(vantrel_cut_size),
                            vantrel_status(const vantrel_quad*, double, std::int32_t*, std::int32_t*)>);
static_assert(has_signature<decltype(vantrel_cut),
                            vantrel_status(const vantrel_image*, const vantrel_quad*, double, vantrel_picture*)>);
static_assert(
    has_signature<decltype(vantrel_crop), vantrel_status(const vantrel_image*, const vantrel_rect*, vantrel_picture*)>);
static_assert(has_signature<decltype(vantrel_enlarge),
                            vantrel_status(const vantrel_image*, vantrel_enlargement, vantrel_picture*)>);
static_assert(
    has_signature<decltype(vantrel_reduce), vantrel_status(const vantrel_image*, std::int32_t, vantrel_picture*)>);
static_assert(has_signature<decltype(vantrel_convert), vantrel_status(const vantrel_image*, vantrel_picture*)>);

static_assert(std::is_trivial_v<vantrel_image> && std::is_trivial_v<vantrel_picture> &&
              std::is_trivial_v<vantrel_card>);
static_assert(sizeof(vantrel_format) == 4 && sizeof(vantrel_method) == 4 && sizeof(vantrel_status) == 4);
static_assert(sizeof(vantrel_quad) == 64 && offsetof(vantrel_quad, bottom_right) == 32);
static_assert(sizeof(vantrel_rect) == 16 && offsetof(vantrel_rect, bottom) == 12);
static_assert(sizeof(vantrel_line) == 24);
static_assert(sizeof(void*) != 8 || (sizeof(vantrel_image) == 40 && offsetof(vantrel_image, height) == 12 &&
                                     offsetof(vantrel_image, stride) == 16 && offsetof(vantrel_image, dpi) == 32));
static_assert(sizeof(void*) != 8 || (sizeof(vantrel_picture) == 40 && offsetof(vantrel_picture, format) == 24));
static_assert(sizeof(void*) != 8 || (sizeof(vantrel_find_options) == 40 && sizeof(vantrel_card) == 160));
static_assert(offsetof(vantrel_dark_glass, size) == 0 && offsetof(vantrel_flat_light, size) == 0);
static_assert(offsetof(vantrel_sheet, size) == 0 && offsetof(vantrel_find_options, size) == 0);
static_assert(sizeof(vantrel_sheet_card) == 40 && sizeof(vantrel_sheet::cards) == 400);
