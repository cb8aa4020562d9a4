#pragma once

#include <opencv2/core.hpp>

#include "greycard/patch_quads.h"

namespace greycard::present {

/// Width in pixels of strokes round something with sides of so many pixels.
int strokeWidth(double side);

/// A number in white on a black rim, its middle at the centre; `side` is that of what it stands in.
void drawNumber(cv::Mat& image, cv::Point centre, double side, int number);

/// The outline in `colour` on a black rim. What is far outside the image or not finite is left out.
void drawQuad(cv::Mat& image, const PatchQuad& quad, const cv::Scalar& colour, int stroke);

/// Both diagonals, likewise.
void crossOut(cv::Mat& image, const PatchQuad& quad, const cv::Scalar& colour, int stroke);

}  // namespace greycard::present
