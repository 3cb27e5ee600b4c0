// The kernels of this room in one form; see kernels/bodies.h. No guard.
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace vantrel::segment::form {
namespace {

void mark_dark(unsigned char* __restrict row, const int* sums, const int* before, int count) {
  for (int c = 0; c < count; ++c) {
    const int limit = (27 * (sums[c] + before[c])) >> 14;
    row[c] = static_cast<unsigned char>(row[c] < limit ? 0 : 255);
  }
}

constexpr Kernels kKernels{mark_dark};

}  // namespace
}  // namespace vantrel::segment::form
// NOLINTEND(misc-definitions-in-headers)
