/**
 * @file shown.h
 * @brief What is shown to people of one input: on the page of a review, and on a contact sheet.
 */
#ifndef VANTREL_CLI_SHOWN_H
#define VANTREL_CLI_SHOWN_H

#include <string>

#include "batch.h"
#include "report.h"

namespace tool {

/** The scan with what was seen drawn on it, less than twice as long as `side`. @throws Failure, std::bad_alloc */
Bitmap small_overlay(const Scan& scan, const Finding& finding, int side);

/** The input's name, with its page where it has several. */
std::string title_of(const Report& report);

}  // namespace tool

#endif
