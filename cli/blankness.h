/**
 * @file blankness.h
 * @brief Whether there is nothing at all on a scan.
 */
#ifndef VANTREL_CLI_BLANKNESS_H
#define VANTREL_CLI_BLANKNESS_H

#include "bitmap.h"

namespace tool {

/** Whether a scan shows one level all over, but for noise and specks. @throws std::bad_alloc */
bool is_blank(const Bitmap& scan);

}  // namespace tool

#endif
