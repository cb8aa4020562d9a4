#pragma once

#include <array>
#include <filesystem>
#include <opencv2/core.hpp>
#include <optional>
#include <span>
#include <vector>

#include "colorchecker.h"
#include "greycard/mcc_detector.h"

namespace greycard {

/// What the search of one image gave.
struct MacbethSearch {
  ChartStage stage = ChartStage::Contours;  ///< the stage that found nothing, or Done
  int quads = 0, quadsUsed = 0;
  std::optional<ColorChecker> checker;  ///< present from one quad on
};

/// Whether a cluster that spans no area, a stray quad, may win over one that does: where it stands
/// the colours may fit better by chance, and the contract has it so.
enum class StrayClusters { MayWin, Passed };

/// The whole search in an 8-bit B, G, R image of at least one pixel.
MacbethSearch search_macbeth(const cv::Mat& image, StrayClusters stray = StrayClusters::MayWin);

/// Two groups of boxes by their centres, each in the order given. The clustering starts from the
/// same random state on every call and leaves the library's generator as it was.
std::array<std::vector<cv::RotatedRect>, 2> split_in_two(std::span<const cv::RotatedRect> boxes);

/// Loads a picture, searches it, writes the region file and returns the picture with the detection
/// drawn on it. Without any quad nothing is drawn or written; without a picture the result is
/// empty.
cv::Mat find_macbeth(const std::filesystem::path& img, const std::filesystem::path& savePath);

}  // namespace greycard
