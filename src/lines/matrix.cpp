#include "lines/matrix.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>

double** MakeMatrix(int rows, int cols) {
  const std::int64_t cells = std::int64_t{rows} * cols;
  if (rows < 0 || cols < 0 || cells > std::numeric_limits<std::int32_t>::max()) return nullptr;
  auto* block = new (std::nothrow) double[static_cast<std::size_t>(cells)]();
  if (block == nullptr) return nullptr;
  // The block is owned through the first row pointer, so even a matrix without rows has one.
  auto** matrix = new (std::nothrow) double*[static_cast<std::size_t>(rows > 0 ? rows : 1)];
  if (matrix == nullptr) {
    delete[] block;
    return nullptr;
  }
  matrix[0] = block;
  for (int k = 1; k < rows; ++k) matrix[k] = block + std::ptrdiff_t{k} * cols;
  return matrix;
}

void FreeMatrix(double** m) {
  delete[] m[0];
  m[0] = nullptr;
  delete[] m;
}
