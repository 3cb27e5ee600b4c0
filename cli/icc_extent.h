/**
 * @file icc_extent.h
 * @brief How much work a colour profile makes.
 */
#ifndef VANTREL_CLI_ICC_EXTENT_H
#define VANTREL_CLI_ICC_EXTENT_H

#include "metadata.h"

namespace tool {

/**
 * Whether the tables of a profile lie in it, and its steps are as few as real ones have. Steps in floating point name
 * their parts by places, and nothing keeps thousands from naming the same one; each of them is computed for each
 * colour.
 */
bool is_modest_profile(const Bytes& icc);

}  // namespace tool

#endif
