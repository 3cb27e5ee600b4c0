/**
 * @file matrix.h
 * @brief A dense matrix of doubles: row pointers over one zero-filled block.
 */
#ifndef VANTREL_LINES_MATRIX_H
#define VANTREL_LINES_MATRIX_H

#include "vantrel.h"

/** Makes a zero-filled matrix; row k starts k * cols doubles into the block. Null: no memory, or negative sizes. */
VANTREL_API double** MakeMatrix(int rows, int cols);

/** Releases a matrix from MakeMatrix; not null. */
VANTREL_API void FreeMatrix(double** m);

#endif
