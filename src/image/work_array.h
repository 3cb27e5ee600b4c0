/**
 * @file work_array.h
 * @brief Work memory that may be missing.
 */
#ifndef VANTREL_IMAGE_WORK_ARRAY_H
#define VANTREL_IMAGE_WORK_ARRAY_H

#include <cstddef>
#include <new>
#include <span>

namespace vantrel {

/** An uninitialised array of plain values, released at the end of its scope; check `ready` before use. */
template <class T>
class WorkArray {
 public:
  explicit WorkArray(std::size_t size) : size_(size), data_(new (std::nothrow) T[size]) {}
  WorkArray(const WorkArray&) = delete;
  WorkArray& operator=(const WorkArray&) = delete;
  ~WorkArray() { delete[] data_; }

  bool ready() const { return data_ != nullptr; }
  T* get() const { return data_; }
  std::span<T> all() const { return {data_, size_}; }
  T& operator[](std::size_t i) const { return data_[i]; }

 private:
  std::size_t size_;
  T* data_;
};

}  // namespace vantrel

#endif
