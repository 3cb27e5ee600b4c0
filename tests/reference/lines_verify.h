/**
 * @file lines_verify.h
 * @brief The tests of a candidate border line, plainly.
 */
#ifndef VANTREL_TESTS_REFERENCE_LINES_VERIFY_H
#define VANTREL_TESTS_REFERENCE_LINES_VERIFY_H

#include <vector>

#include "reference/components_flood.h"

namespace reference::lines {

using components::Character;
using support::Picture;
using Characters = std::vector<Character>;

bool verify_v0(const Picture& edge, int first, int second, int side);
/** `edge` has rows of `row_bytes` bytes without gaps. */
bool verify_v1(const std::vector<unsigned char>& edge, int at, int rows, int row_bytes, int side);
bool verify_v2(const Characters& characters, int at, int rows, int cols, int side);
bool verify_v3(const Characters& characters, int at, int rows, int cols);
bool verify_v3_orva(const Characters& characters, int at, int rows, int cols);
bool verify_h0(const Characters& characters, int at, int rows, int cols, int side);

}  // namespace reference::lines

#endif
