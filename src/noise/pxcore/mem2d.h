#pragma once

#include <cstdint>
#include <memory>

#include "exception.h"
#include "plane_view.h"
#include "sizes.h"

namespace greycard::pxcore {

/// A block of rows of T: `Width` columns of `Channels` elements each, `Stride` bytes from one row's
/// start to the next. Sizes are unsigned 64-bit throughout. Copies share the elements, which live
/// until the last of them is released.
template <typename T>
class TMem2D {
 public:
  TMem2D() = default;
  // A copy in place of a move: nothing is ever left pointing to memory that it no longer shares.
  TMem2D(const TMem2D&) = default;
  TMem2D& operator=(const TMem2D&) = default;
  ~TMem2D() = default;

  /// Allocates; the elements are not set. A stride of 0 stands for defaultMemStride.
  /// \throws ExceptionCheck for a size of 0, a stride shorter than a row or not a multiple of T's
  ///         size; ExceptionRuntime when it exceeds memory
  void Create(std::uint64_t nCols, std::uint64_t nRows, std::uint64_t nChannels = 1,
              std::uint64_t nStride = 0) {
    PXCORE_CHECK(ValidSize(nCols) && ValidSize(nRows) && ValidSize(nChannels));
    if (nStride == 0) nStride = defaultMemStride(nCols, nChannels);
    PXCORE_CHECK(nStride >= minStride(nCols, nChannels) && nStride % sizeof(T) == 0);
    requireMemory(nStride, nRows, 0, 1);
    m_memory = std::make_shared_for_overwrite<T[]>(nStride / sizeof(T) * nRows);
    describe(m_memory.get(), nCols, nRows, nChannels, nStride);
  }
  /// Lets go of the memory; the block is no longer valid.
  void Release() {
    m_memory.reset();
    describe(nullptr, 0, 0, 0, 0);
  }

  std::uint64_t Width() const { return m_nCols; }
  std::uint64_t Height() const { return m_nRows; }
  std::uint64_t Channels() const { return m_nChannels; }
  std::uint64_t Stride() const { return m_nStride; }
  T* RowPtr(std::uint64_t i) { return View().row(i).data(); }
  const T* RowPtr(std::uint64_t i) const { return View().row(i).data(); }
  /// All elements, those of a column's channels side by side.
  PlaneView<T> View() { return viewOf(m_pData); }
  PlaneView<const T> View() const { return viewOf<const T>(m_pData); }
  bool IsValid() const { return m_pData != nullptr; }
  template <typename U>
  bool IsSameSize(const TMem2D<U>& other) const {
    return m_nCols == other.Width() && m_nRows == other.Height() && m_nChannels == other.Channels();
  }

  static std::uint64_t minStride(std::uint64_t nCols, std::uint64_t nChannels) {
    PXCORE_CHECK(ValidMultipliers(nChannels, sizeof(T)));
    const std::uint64_t nByte = nChannels * sizeof(T);
    PXCORE_CHECK(ValidMultipliers(nByte, nCols));
    return nByte * nCols;
  }
  static std::uint64_t defaultMemStride(std::uint64_t nCols, std::uint64_t nChannels) {
    const std::uint64_t nMinStride = minStride(nCols, nChannels);
    PXCORE_CHECK((nMinStride + 15) > nMinStride);
    return roundedUp(nMinStride, 16);
  }

 protected:
  void describe(T* pData, std::uint64_t nCols, std::uint64_t nRows, std::uint64_t nChannels,
                std::uint64_t nStride) {
    m_pData = pData;
    m_nCols = nCols;
    m_nRows = nRows;
    m_nChannels = nChannels;
    m_nStride = nStride;
  }

 private:
  template <typename U>
  PlaneView<U> viewOf(U* data) const {
    return {data, m_nCols * m_nChannels, m_nRows, m_nStride / sizeof(T)};
  }

  std::shared_ptr<T[]> m_memory;
  T* m_pData = nullptr;
  std::uint64_t m_nCols = 0, m_nRows = 0, m_nChannels = 0, m_nStride = 0;
};

}  // namespace greycard::pxcore
