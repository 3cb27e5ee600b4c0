/**
 * @file tiff_pages.h
 * @brief What must be known of a TIFF file before Leptonica decodes a page of it.
 *
 * Leptonica fills what a truncated file lacks with whatever it has, so completeness is judged here.
 */
#ifndef VANTREL_CLI_TIFF_PAGES_H
#define VANTREL_CLI_TIFF_PAGES_H

#include <vector>

namespace tool {

/** The number of pages whose directories can be read; 0 when the file is damaged. */
int tiff_page_count(const std::vector<unsigned char>& file);

/** Whether every strip or tile of a page (from 1) lies within the file. */
bool tiff_page_is_complete(const std::vector<unsigned char>& file, int page);

/** Whether a page (from 1) has only gray samples, with or without transparency. */
bool tiff_page_is_gray(const std::vector<unsigned char>& file, int page);

}  // namespace tool

#endif
