/**
 * @file print_evidence.h
 * @brief Whether print lies on a place of a scan, as on a card without borders: paper printed upon, on a white lid.
 */
#ifndef VANTREL_CLI_PRINT_EVIDENCE_H
#define VANTREL_CLI_PRINT_EVIDENCE_H

#include "gray_copy.h"

namespace tool {

/** The side of the copy on which print is looked for: a line of text stays a few pixels high on a sheet. */
inline constexpr int kPrintCopySide = 1200;

/**
 * Whether a place holds print as a card does: marks that spread over it, and hardly any where its edges are. Empty
 * paper has none, and the lines of a page of text run across the edges.
 *
 * @param place in the scan that the copy was made of; may reach beyond it.
 */
bool has_print(const GrayCopy& copy, const vantrel_rect& place);

}  // namespace tool

#endif
