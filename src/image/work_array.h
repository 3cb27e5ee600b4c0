/**
 * @file work_array.h
 * @brief Work memory that may be missing.
 */
#ifndef VANTREL_IMAGE_WORK_ARRAY_H
#define VANTREL_IMAGE_WORK_ARRAY_H

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <span>
#include <type_traits>
#include <utility>

namespace vantrel::image {

/** How fresh work memory comes: as the allocator has it, or every byte 0 (which costs nothing until it is touched). */
enum class Fill { kNone, kZero };

/**
 * An array of plain values, released at the end of its scope; check `ready` before use. Every piece of work memory of
 * the library is one, and every type that holds some says `ready` for all of it. An empty array is ready.
 */
template <class T>
class WorkArray {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

 public:
  /** None yet, and not ready: where one is put later, or there was no memory. */
  WorkArray() : size_(0), data_(nullptr) {}
  explicit WorkArray(std::size_t size, Fill fill = Fill::kNone) : size_(size), data_(allocate(size, fill)) {}
  WorkArray(WorkArray&& other) noexcept
      : size_(std::exchange(other.size_, 0)), data_(std::exchange(other.data_, nullptr)) {}
  WorkArray& operator=(WorkArray&& other) noexcept {
    std::swap(size_, other.size_);
    std::swap(data_, other.data_);
    return *this;
  }
  ~WorkArray() { std::free(data_); }

  bool ready() const { return data_ != nullptr; }
  std::size_t size() const { return size_; }
  T* get() { return data_; }
  const T* get() const { return data_; }
  std::span<T> all() { return {data_, size_}; }
  std::span<const T> all() const { return {data_, size_}; }
  T& operator[](std::size_t i) { return data_[i]; }
  const T& operator[](std::size_t i) const { return data_[i]; }

 private:
  static T* allocate(std::size_t size, Fill fill) {
    if (size > static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()) / sizeof(T)) return nullptr;
    // One byte for an empty array: an allocator may answer a request for none with a null pointer.
    const std::size_t bytes = size == 0 ? 1 : size * sizeof(T);
    return static_cast<T*>(fill == Fill::kZero ? std::calloc(bytes, 1) : std::malloc(bytes));
  }

  std::size_t size_;
  T* data_;
};

}  // namespace vantrel::image

#endif
