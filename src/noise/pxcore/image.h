#pragma once

#include <algorithm>

#include "mem2d.h"
#include "mirror.h"
#include "rect2d.h"

namespace greycard::pxcore {

/// A rectangular view on an image of one channel. Copying a view copies the description, not the
/// pixels.
template <typename T>
class TImageRoi : public TMem2D<T> {
 public:
  /// The part of this view inside `rect`. \throws ExceptionCheck when the rectangle reaches outside
  TImageRoi GetRectRoi(const Rect& rect) const {
    PXCORE_CHECK(contains(rect));
    TImageRoi roi(*this);
    roi.describe(roi.RowPtr(rect.y) + rect.x, rect.width, rect.height, 1, this->Stride());
    return roi;
  }

  /// Fills everything outside the inner rectangle with the rectangle's pixels, mirrored at its
  /// border again and again as far as needed.
  void MirrorRoi(const Rect& inner) {
    PXCORE_CHECK(contains(inner));
    const auto source = [](std::uint64_t i, std::uint64_t start, std::uint64_t length) {
      return start + mirrored(static_cast<std::int64_t>(i - start), length);
    };
    for (std::uint64_t y = inner.y; y < inner.y + inner.height; ++y) {
      T* row = this->RowPtr(y);
      for (std::uint64_t x = 0; x < this->Width(); ++x)
        row[x] = row[source(x, inner.x, inner.width)];
    }
    for (std::uint64_t y = 0; y < this->Height(); ++y) {
      const std::uint64_t from = source(y, inner.y, inner.height);
      if (from != y) std::copy_n(this->RowPtr(from), this->Width(), this->RowPtr(y));
    }
  }

  /// Takes over another image's pixels value for value; sizes must match.
  template <typename U>
  void convertFrom(const TImageRoi<U>& source) {
    PXCORE_CHECK(this->IsSameSize(source));
    for (std::uint64_t y = 0; y < this->Height(); ++y)
      std::transform(source.RowPtr(y), source.RowPtr(y) + this->Width(), this->RowPtr(y),
                     [](U value) { return static_cast<T>(value); });
  }

  /// this = op(src), pixel by pixel; sizes must match, src may be this view.
  template <typename Op>
  void ApplyPixelOp(const TImageRoi& src, Op op) {
    PXCORE_CHECK(this->IsSameSize(src));
    for (std::uint64_t y = 0; y < this->Height(); ++y)
      std::transform(src.RowPtr(y), src.RowPtr(y) + this->Width(), this->RowPtr(y), op);
  }
  /// this = op(src1, src2), likewise.
  template <typename Op>
  void ApplyPixelOp(const TImageRoi& src1, const TImageRoi& src2, Op op) {
    PXCORE_CHECK(this->IsSameSize(src1) && this->IsSameSize(src2));
    for (std::uint64_t y = 0; y < this->Height(); ++y)
      std::transform(src1.RowPtr(y), src1.RowPtr(y) + this->Width(), src2.RowPtr(y),
                     this->RowPtr(y), op);
  }

 private:
  bool contains(const Rect& rect) const {
    return ValidSize(rect.width) && ValidSize(rect.height) && rect.x <= this->Width() &&
           rect.width <= this->Width() - rect.x && rect.y <= this->Height() &&
           rect.height <= this->Height() - rect.y;
  }
};

class Uncopyable {
 public:
  Uncopyable(const Uncopyable&) = delete;
  Uncopyable& operator=(const Uncopyable&) = delete;

 protected:
  Uncopyable() = default;
  ~Uncopyable() = default;
};

/// An image of one channel that owns its pixels.
template <typename T>
class TImage : public TImageRoi<T>, private Uncopyable {
 public:
  TImage() = default;
  TImage(std::uint64_t width, std::uint64_t height) { Create(width, height); }

  /// Allocates; the pixels are not set. A stride of 0 stands for defaultImageStride.
  void Create(std::uint64_t width, std::uint64_t height, std::uint64_t stride = 0) {
    TMem2D<T>::Create(width, height, 1, stride == 0 ? defaultImageStride(width) : stride);
  }
  /// An image of the source's size and values. The source, here and below, may be this image: it
  /// comes as a view of its own.
  template <typename U>
  void ConvertFrom(TImageRoi<U> source) {
    Create(source.Width(), source.Height());
    this->convertFrom(source);
  }
  /// Becomes the source with nPad more pixels on every side, mirrored at the border.
  /// \return the rectangle of the source's pixels
  Rect ClonePadded(TImageRoi<T> srcImg, std::uint64_t nPad) {
    PXCORE_CHECK(ValidSize(nPad, 0));
    PXCORE_CHECK(srcImg.IsValid());
    requireMemory(srcImg.Width(), srcImg.Height(), nPad, sizeof(T));
    Create(srcImg.Width() + 2 * nPad, srcImg.Height() + 2 * nPad);
    const Rect centre{nPad, nPad, srcImg.Width(), srcImg.Height()};
    this->GetRectRoi(centre).convertFrom(srcImg);
    this->MirrorRoi(centre);
    return centre;
  }

  static std::uint64_t defaultImageStride(std::uint64_t nCols) {
    const std::uint64_t nMinStride = TMem2D<T>::minStride(nCols, 1);
    PXCORE_CHECK((nMinStride + 3) > nMinStride);
    return roundedUp(nMinStride, 4);
  }
};

}  // namespace greycard::pxcore
