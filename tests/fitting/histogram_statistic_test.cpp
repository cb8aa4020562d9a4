#include "histogram_statistic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace greycard {
namespace {

TEST(HistPercentile, BinAndShareByHand) {
  const double data[] = {0.2, 0.2, 0.6, 1.0};
  const double empty[] = {0.0, 0.5, 0.5, 1.0}, steep[] = {0.4, 0.6, 0.8, 1.0};
  const struct {
    const char* what;
    const double* data;
    double pct;
    int bin;
    double partial;
  } cases[] = {
      // What, table, percentile, bin, share of the bin.
      {"below zero", data, -1.0, 0, 0.0},        {"in the first bin", data, 0.05, 0, 0.25},
      {"at the first entry", data, 0.2, 1, 0.0},  // an empty bin
      {"in the third bin", data, 0.3, 2, 0.25},  {"the end", data, 1.0, 3, 1.0},
      {"above one", data, 1.5, 3, 1.0},          {"zero, first bin empty", empty, 0.0, 1, 0.0},
      {"on a flat stretch", empty, 0.5, 1, 1.0}, {"in a first bin of 0.4", steep, 0.1, 0, 0.25},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    int bin = -1;
    double partial = -1.0;
    GetHistPercentileInDetail(c.pct, c.data, 4, bin, partial);
    EXPECT_EQ(bin, c.bin);
    EXPECT_NEAR(partial, c.partial, 1e-15);
  }
}

TEST(PercentileGuide, FindsWhatTheWholeSearchFinds) {
  std::mt19937 random(11);
  for (int round = 0; round < 200; ++round) {
    std::array<double, 256> data;
    const bool coarse = round % 2 > 0, decreasing = round % 4 > 1;
    for (double& value : data)  // many of them equal, or none; some below 0 or above 1
      value =
          static_cast<double>(random() % (coarse ? 20 : 65536)) / (coarse ? 18.0 : 60000.0) - 0.02;
    if (!decreasing) std::sort(data.begin(), data.end());
    const PercentileGuide guide(data);
    for (int step = -3; step <= 1030; ++step) {
      const double pct = step / 1024.0;
      int bin = -1, wholeBin = -1;
      double partial = -1, wholePartial = -1;
      GetHistPercentileInDetail(pct, data.data(), 256, wholeBin, wholePartial);
      GetHistPercentileInDetail(pct, data.data(), 256, bin, partial, guide.around(pct));
      ASSERT_EQ(bin, wholeBin) << round << ' ' << pct;
      ASSERT_EQ(partial, wholePartial) << round << ' ' << pct;
    }
  }
}

}  // namespace
}  // namespace greycard
