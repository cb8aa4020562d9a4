#pragma once

// What corpus pictures are put together from, as 8-bit B, G, R matrices.

#include <opencv2/core.hpp>
#include <vector>

#include "corpus_case.h"

namespace greycard {

cv::Mat toBgr(const Picture& picture);
Picture fromBgr(const cv::Mat& image);

/// Boxes, discs, strokes and letters in any colour all over the image.
void drawClutter(cv::Mat& image, Dice& dice, int count);

/// columns x rows squares of the given colours on a plane of another colour; `quad` holds the
/// plane's corners. Colours are used one after the other, from the first again.
void drawGrid(cv::Mat& image, const std::array<cv::Point2f, 4>& quad, int columns, int rows,
              double gap, const std::vector<cv::Scalar>& colours, const cv::Scalar& plane);

std::vector<cv::Scalar> randomColours(Dice& dice, int count);
std::vector<cv::Scalar> chartColours();

/// An upright rectangle's corners turned about its centre.
std::array<cv::Point2f, 4> turnedBox(cv::Point2d centre, double width, double height,
                                     double degrees);

/// Every pixel from the place where a lens with this radial term shows it: r (1 + radial r^2), r as
/// a share of half the diagonal. Moves the centres along.
cv::Mat distort(const cv::Mat& image, double radial, std::vector<Centres>& charts);

void addNoise(cv::Mat& image, Dice& dice, double sigma);

/// The light falls to `lowest` from one corner to the opposite one.
void shade(cv::Mat& image, double lowest, int corner);

}  // namespace greycard
