// Photographs in the folder that GREYCARD_PHOTOS names, with their truth, and what can be made of
// them.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <opencv2/imgproc.hpp>

#include "scene_drawing.h"

namespace greycard {
namespace {

constexpr double kSmallestPhotoPitch = 8.5;

// The case with every pixel where the 3 x 3 transform of the image takes it.
CorpusCase moved(const CorpusCase& photo, const cv::Mat& transform, cv::Size size) {
  CorpusCase result = photo;
  cv::Mat image;
  cv::warpPerspective(toBgr(photo.picture), image, transform, size, cv::INTER_AREA,
                      cv::BORDER_CONSTANT, cv::Scalar(90, 90, 90));
  result.picture = fromBgr(image);
  for (auto& chart : result.charts)
    for (auto& p : chart) {
      std::vector<cv::Point2d> at{{p.x, p.y}};
      cv::perspectiveTransform(at, at, transform);
      p = {at[0].x, at[0].y};
    }
  result.pitch = pitchOf(result.charts[0]);
  return result;
}

CorpusCase turned(const CorpusCase& photo, double degrees) {
  const int side = static_cast<int>(std::hypot(photo.picture.width, photo.picture.height)) + 1;
  cv::Mat turn = cv::Mat::eye(3, 3, CV_64F);
  cv::getRotationMatrix2D({0.5F * static_cast<float>(photo.picture.width - 1),
                           0.5F * static_cast<float>(photo.picture.height - 1)},
                          degrees, 1.0)
      .copyTo(turn.rowRange(0, 2));
  turn.at<double>(0, 2) += 0.5 * (side - photo.picture.width);
  turn.at<double>(1, 2) += 0.5 * (side - photo.picture.height);
  return moved(photo, turn, {side, side});
}

// Seen from the side: one end of the picture half as high as the other.
CorpusCase leaning(const CorpusCase& photo) {
  const auto w = static_cast<float>(photo.picture.width),
             h = static_cast<float>(photo.picture.height);
  const cv::Point2f from[] = {{0, 0}, {w, 0}, {w, h}, {0, h}};
  const cv::Point2f to[] = {{0, 0}, {0.6F * w, 0.2F * h}, {0.6F * w, 0.8F * h}, {0, h}};
  return moved(photo, cv::getPerspectiveTransform(from, to),
               {photo.picture.width, photo.picture.height});
}

CorpusCase scaledTo(const CorpusCase& photo, double longerSide) {
  const double longer = std::max(photo.picture.width, photo.picture.height);
  const double scale = std::max(longerSide / longer, kSmallestPhotoPitch / photo.pitch);
  if (scale >= 1.0) return photo;
  CorpusCase result = photo;
  cv::Mat image;
  cv::resize(toBgr(photo.picture), image, {}, scale, scale, cv::INTER_AREA);
  result.picture = fromBgr(image);
  for (auto& chart : result.charts)
    for (auto& p : chart) p = {(p.x + 0.5) * scale - 0.5, (p.y + 0.5) * scale - 0.5};
  result.pitch = pitchOf(result.charts[0]);
  return result;
}

template <typename Change>
CorpusCase changed(const CorpusCase& photo, Change change) {
  CorpusCase result = photo;
  auto image = toBgr(photo.picture);
  change(image, result);
  result.picture = fromBgr(image);
  return result;
}

void multiply(cv::Mat& image, double b, double g, double r) {
  cv::multiply(image, cv::Scalar(b, g, r), image);
}

void coverPatch(cv::Mat& image, const Centres& chart, double pitch, int patch) {
  const auto& p = chart[static_cast<std::size_t>(patch)];
  cv::circle(image, cv::Point(cvRound(p.x), cvRound(p.y)), cvRound(0.55 * pitch),
             cv::Scalar(120, 150, 200), cv::FILLED, cv::LINE_AA);
}

CorpusCase greyOf(const CorpusCase& photo) {
  CorpusCase result = photo;
  cv::Mat image;
  cv::cvtColor(toBgr(photo.picture), image, cv::COLOR_BGR2GRAY);
  result.picture = fromBgr(image);
  return result;
}

// As 16-bit linear values from 0 to 65535, which nobody tells the search.
CorpusCase linear16(const CorpusCase& photo) {
  CorpusCase result = photo;
  result.picture.bits = 16;
  for (auto& sample : result.picture.samples)
    sample = static_cast<std::uint16_t>(std::lround(65535.0 * std::pow(sample / 255.0, 2.2)));
  return result;
}

std::uint32_t seedOf(const std::string& name) {
  std::uint32_t seed = 17;
  for (const char c : name) seed = seed * 31 + static_cast<unsigned char>(c);
  return seed;
}

// The quadrilateral round a chart, `beyond` pitches outside its outer centres.
std::vector<cv::Point> outlineOf(const Centres& chart, double beyond) {
  std::vector<cv::Point> points;
  const std::size_t corners[4] = {0, 5, 23, 18}, opposite[4] = {23, 18, 0, 5};
  for (std::size_t k = 0; k < 4; ++k) {
    const auto &p = chart[corners[k]], &q = chart[opposite[k]];
    const double share = beyond / 2.9;  // half the diagonal in pitches
    points.emplace_back(cvRound(p.x + share * 0.5 * (p.x - q.x)),
                        cvRound(p.y + share * 0.5 * (p.y - q.y)));
  }
  return points;
}

// A grey sheet over part of every chart: the half plane beyond the line between two pairs of
// patches.
void coverPart(cv::Mat& image, const CorpusCase& photo, std::size_t a, std::size_t b, std::size_t c,
               std::size_t d) {
  for (const auto& chart : photo.charts) {
    const auto between = [&](std::size_t i, std::size_t j, double share) {
      return cv::Point(cvRound(chart[i].x + share * (chart[j].x - chart[i].x)),
                       cvRound(chart[i].y + share * (chart[j].y - chart[i].y)));
    };
    const std::vector<cv::Point> sheet{between(a, b, -0.3), between(a, b, 0.5), between(c, d, 0.5),
                                       between(c, d, -0.3)};
    cv::fillConvexPoly(image, sheet, cv::Scalar(205, 210, 215), cv::LINE_AA);
  }
}

constexpr std::array<const char*, kVariantCount> kVariants{"as taken",
                                                           "turned by 30 degrees",
                                                           "1200 px, turned by -77 degrees",
                                                           "leaning",
                                                           "640 px",
                                                           "320 px",
                                                           "noise",
                                                           "blur of 0.1 pitch",
                                                           "a fifth of the light",
                                                           "reddish cast",
                                                           "bluish cast",
                                                           "uneven light",
                                                           "a patch covered",
                                                           "grey",
                                                           "16-bit linear"};
constexpr std::array<const char*, kPhotoChartlessCount> kPhotosWithout{
    "painted over",       "scenery instead",    "upper half covered", "left half covered",
    "right half covered", "lower half covered", "mirrored",           "cut"};

}  // namespace

CorpusCase photoVariant(const CorpusCase& photo, int variant) {
  Dice dice(seedOf(photo.name) + static_cast<std::uint32_t>(variant));
  const auto make = [&]() -> CorpusCase {
    switch (variant) {
      case 1:
        return turned(photo, 30.0);
      case 2:
        return turned(scaledTo(photo, 1200), -77.0);
      case 3:
        return leaning(photo);
      case 4:
        return scaledTo(photo, 640);
      case 5:
        return scaledTo(photo, 320);
      case 6:
        return changed(photo, [&](cv::Mat& m, CorpusCase&) { addNoise(m, dice, 14.0); });
      case 7:
        return changed(
            photo, [&](cv::Mat& m, CorpusCase& c) { cv::GaussianBlur(m, m, {}, 0.1 * c.pitch); });
      case 8:
        return changed(photo, [&](cv::Mat& m, CorpusCase&) { multiply(m, 0.2, 0.2, 0.2); });
      case 9:
        return changed(photo, [&](cv::Mat& m, CorpusCase&) { multiply(m, 0.45, 0.8, 1.1); });
      case 10:
        return changed(photo, [&](cv::Mat& m, CorpusCase&) { multiply(m, 1.2, 0.9, 0.5); });
      case 11:
        return changed(photo, [&](cv::Mat& m, CorpusCase&) { shade(m, 0.3, dice.below(4)); });
      case 12:
        return changed(photo, [&](cv::Mat& m, CorpusCase& c) {
          for (const auto& chart : c.charts)
            coverPatch(m, chart, pitchOf(chart), dice.below(kPatchCount));
        });
      case 13:
        return greyOf(photo);
      case 14:
        return linear16(scaledTo(photo, 1200));
      default:
        return photo;
    }
  };
  auto result = make();
  result.group = kVariants[static_cast<std::size_t>(variant)];
  return result;
}

CorpusCase photoWithoutChart(const CorpusCase& photo, int number) {
  auto result = changed(photo, [&](cv::Mat& image, CorpusCase& c) {
    const int w = image.cols, h = image.rows;
    switch (number) {
      case 0:  // the chart painted over in a colour of the scene
        for (const auto& chart : c.charts)
          cv::fillConvexPoly(image, outlineOf(chart, 1.2), image.at<cv::Vec3b>(h / 40, w / 40));
        break;
      case 1:  // the parts beside the chart, mirrored into its place
        for (const auto& chart : c.charts) {
          cv::Mat mask = cv::Mat::zeros(image.size(), CV_8UC1), flipped;
          cv::fillConvexPoly(mask, outlineOf(chart, 1.2), cv::Scalar(255));
          cv::flip(image, flipped, -1);
          flipped.copyTo(image, mask);
          cv::fillConvexPoly(image, outlineOf(chart, 0.0), cv::Scalar::all(128));
        }
        break;
      case 2:
        coverPart(image, c, 0, 18, 5, 23);
        break;  // upper two rows under paper
      case 3:
        coverPart(image, c, 0, 5, 18, 23);
        break;  // left half
      case 4:
        coverPart(image, c, 5, 0, 23, 18);
        break;  // right half
      case 5:
        coverPart(image, c, 18, 0, 23, 5);
        break;  // lower two rows
      case 6:
        cv::flip(image, image, 1);
        break;    // mirrored
      default: {  // cut through the first chart's third column
        const auto& p = c.charts[0][2];
        const auto& q = c.charts[0][14];
        const bool upright = std::fabs(q.y - p.y) > std::fabs(q.x - p.x);
        const bool forward = upright ? c.charts[0][5].x > p.x : c.charts[0][5].y > p.y;
        const int cut = cvRound(upright ? p.x : p.y);
        image = upright ? image.colRange(forward ? cut : 0, forward ? w : cut).clone()
                        : image.rowRange(forward ? cut : 0, forward ? h : cut).clone();
        // A second chart in the rest is painted over.
        if (c.charts.size() > 1)
          image = image.colRange(0, std::min(image.cols, w / 2 - cut)).clone();
      }
    }
  });
  result.group = kPhotosWithout[static_cast<std::size_t>(number)];
  result.charts.clear();
  return result;
}

std::vector<CorpusCase> corpusPhotos() {
  std::vector<CorpusCase> photos;
  const char* folder = std::getenv("GREYCARD_PHOTOS");
  if (!folder || !*folder) return photos;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".json") continue;
    const auto truth = nlohmann::json::parse(std::ifstream(entry.path()));
    CorpusCase photo;
    photo.name = entry.path().stem().string();
    photo.picture = readPicture(entry.path().parent_path() / truth.at("file").get<std::string>());
    for (const char* key : {"centres", "other_centres"}) {
      if (!truth.contains(key)) continue;
      auto& chart = photo.charts.emplace_back();
      for (std::size_t i = 0; i < chart.size(); ++i)
        chart[i] = {truth[key][i][0].get<double>(), truth[key][i][1].get<double>()};
    }
    photo.pitch = pitchOf(photo.charts[0]);
    photos.push_back(std::move(photo));
  }
  std::sort(photos.begin(), photos.end(),
            [](const auto& a, const auto& b) { return a.name < b.name; });
  return photos;
}

}  // namespace greycard
