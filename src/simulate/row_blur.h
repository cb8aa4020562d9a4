#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace greycard {

/// Gaussian blur of a picture that comes row by row: each row is blurred across once, kept while it
/// is needed, and the kept rows are weighted. Beyond its edges the picture goes on as at the edge.
class RowBlur {
 public:
  using Source = std::function<void(int y, std::span<double> rgb)>;

  /// \param sigma  in pixels; 0 passes the rows through
  /// \param source  paints any row of the sharp picture
  RowBlur(double sigma, int width, int height, Source source);

  /// Row y; to be called for 0, 1, 2, ... in order.
  void next(int y, std::span<double> rgb);

 private:
  void load(int y);
  std::span<double> kept(int y);

  int m_radius, m_width, m_height;
  Source m_source;
  std::vector<double> m_weights;  // of the distances 0..radius
  std::vector<double> m_padded;   // one sharp row, its ends repeated radius times
  std::vector<double> m_kept;     // the last 2 * radius + 1 rows, row y in slot y mod that
  int m_loaded = 0;               // rows so far
};

}  // namespace greycard
