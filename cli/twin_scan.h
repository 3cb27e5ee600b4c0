/**
 * @file twin_scan.h
 * @brief A second scan of the same scene in another resolution.
 */
#ifndef VANTREL_CLI_TWIN_SCAN_H
#define VANTREL_CLI_TWIN_SCAN_H

#include <string>

#include "bitmap.h"
#include "options.h"

namespace tool {

/** Which of the two scans the twin is. */
enum class TwinRole { kReduced, kEnlarged };

/**
 * Reads the first page of the twin of a scan.
 *
 * @param scale by how many times the larger of the two is larger; scanners round, so sizes may differ by 2 %.
 * @throws Failure the file cannot be read or has another size; the message names it.
 */
Bitmap read_twin(const Options& options, const std::string& path, const Bitmap& scan, TwinRole role, int scale);

/** @throws WrongUsage the twin named by an option cannot go with the other options. */
void check_twin(const Options& options, const std::string& path, const std::string& option, int scale);

}  // namespace tool

#endif
