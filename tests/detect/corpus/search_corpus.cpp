// Runs the richer chart search over pictures whose charts are known, and says how it did:
//
//   search_corpus [EVERY]     every EVERYth picture only, from 1 (all, the default)
//
// Rendered charts, pictures without a whole chart and, where GREYCARD_PHOTOS names a folder, its
// photographs, their variants, and the photographs with their charts cut, covered and mirrored.
// One line for each picture that went wrong, a table, and exit status 1 when a chart was missed or
// misplaced, a chart was seen where none is, or centres are off by more than is allowed on average.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "corpus_case.h"
#include "greycard/diagnostics.h"
#include "greycard/mcc_detector.h"

namespace {

using greycard::CorpusCase;

constexpr double kPlaced = 0.35;     // pitches that no centre of a placed chart is off by
constexpr double kMeanError = 0.02;  // pitches, over a table's charts

struct Tally {
  int pictures = 0, placed = 0, missed = 0, wrong = 0;
  double error = 0.0;  // sum of the mean errors of placed charts, pitches
  double worst = 0.0;

  double meanError() const { return placed > 0 ? error / placed : 0.0; }

  void add(const Tally& other) {
    pictures += other.pictures;
    placed += other.placed;
    missed += other.missed;
    wrong += other.wrong;
    error += other.error;
    worst = std::max(worst, other.worst);
  }
};

class Corpus {
 public:
  explicit Corpus(int every) : every_(std::max(1, every)) {}

  /// Whether the next picture is among those to look at.
  bool wanted() { return count_++ % every_ == 0; }

  void run(const std::string& table, const CorpusCase& picture) {
    const auto detection = greycard::MCCDetector().detect(picture.picture);
    Tally tally{.pictures = 1};
    const auto& centres = detection.placement.centres;
    const bool known = !picture.charts.empty();
    if (!detection.found())
      tally.missed = known ? 1 : 0;
    else if (known && worstError(picture, centres) < kPlaced)
      tally = {1, 1, 0, 0, meanError(picture, centres), worstError(picture, centres)};
    else
      tally.wrong = 1;
    if (tally.missed + tally.wrong > 0)
      std::printf("%s: %s, %s: %s %s\n", tally.missed > 0 ? "MISSED" : "WRONG",
                  picture.name.c_str(), picture.group.c_str(), chartMethodName(detection.method),
                  detection.reason.c_str());
    tables_[table][picture.group].add(tally);
  }

  /// Prints the tables. \return whether all is as it should be
  bool report() const {
    bool good = true;
    for (const auto& [table, groups] : tables_) {
      Tally all;
      std::printf("\n%s\n%-40s %8s %7s %7s %6s %8s %8s\n", table.c_str(), "", "pictures", "placed",
                  "missed", "wrong", "mean", "worst");
      for (const auto& [group, tally] : groups) {
        print(group, tally);
        all.add(tally);
      }
      print("all", all);
      good = good && all.missed + all.wrong == 0 && all.meanError() < kMeanError;
    }
    return good;
  }

 private:
  static void print(const std::string& group, const Tally& tally) {
    std::printf("%-40s %8d %7d %7d %6d %8.4f %8.4f\n", group.c_str(), tally.pictures, tally.placed,
                tally.missed, tally.wrong, tally.meanError(), tally.worst);
  }

  int every_, count_ = 0;
  std::map<std::string, std::map<std::string, Tally>> tables_;
};

}  // namespace

int main(int argc, char** argv) {
  using namespace greycard;
  setErrorChannel({});
  Corpus corpus(argc > 1 ? std::atoi(argv[1]) : 1);
  for (int i = 0; i < kRenderedCount; ++i)
    if (corpus.wanted()) corpus.run("rendered charts", renderedCase(i));
  for (int i = 0; i < kChartlessCount; ++i)
    if (corpus.wanted()) corpus.run("no whole chart", chartlessCase(i));
  for (const auto& photo : corpusPhotos()) {
    for (int i = 0; i < kVariantCount; ++i)
      if (corpus.wanted()) corpus.run("photographs and their variants", photoVariant(photo, i));
    for (int i = 0; i < kPhotoChartlessCount; ++i)
      if (corpus.wanted())
        corpus.run("photographs without a whole chart", photoWithoutChart(photo, i));
  }
  return corpus.report() ? EXIT_SUCCESS : EXIT_FAILURE;
}
