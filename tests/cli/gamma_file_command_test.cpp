#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>

#include "run_command.h"

namespace greycard {
namespace {

using nlohmann::json;
using testing::HasSubstr;

TEST_F(CommandTest, CurveFilesGoOutAndComeBack) {
  ASSERT_EQ(run({"gamma", "export", "VOutdoor", "--size", "256", "--bits", "12", "-o", "a.txt",
                 "--plot", "a.svg", "--against", "VNormal"})
                .status,
            0);
  EXPECT_THAT(read("a.txt"), testing::StartsWith("GammaTableV2:\r\n"));
  EXPECT_THAT(read("a.svg"),
              testing::AllOf(HasSubstr(">VOutdoor</text>"), HasSubstr(">VNormal</text>")));
  const auto outcome = run({"gamma", "import", "a.txt", "--export", "b.txt", "--size", "256",
                            "--bits", "12", "--json", "-"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(read("a.txt"), read("b.txt"));
  const auto curve = json::parse(outcome.out)["curves"][0];
  EXPECT_EQ(curve["name"], "a");
  EXPECT_EQ(curve["table"].size(), 1024u);
  EXPECT_EQ(curve["file_tables"][0]["bits"], 12);
}

TEST_F(CommandTest, CurveFileErrorsNameFileLineAndWord) {
  std::ofstream(folder / "bad.txt") << "\nGammaTableV2: junk 1 2 3";
  const auto outcome = run({"gamma", "import", "bad.txt"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("\"bad.txt\", line 2, \"GammaTableV2:\": the red table holds "
                                     "3 numbers where 64, 256, 512 or 1024 are accepted"));
  EXPECT_THAT(outcome.err, HasSubstr("line 2, \"junk\""));
  EXPECT_EQ(run({"gamma", "export", "VNormal", "-o", "none/x.txt"}).status, 1);
  EXPECT_EQ(run({"gamma", "import", "bad.txt", "--export", "bad.txt"}).status, 2);
  EXPECT_EQ(run({"gamma", "hlg", "--against", "VNormal"}).status, 2);
  EXPECT_EQ(run({"gamma", "hdr10", "--nits", "0"}).status, 2);
}

TEST_F(CommandTest, StandardCurvesAsTables) {
  const auto pq = json::parse(run({"gamma", "hdr10", "--nits", "1000", "--json", "-"}).out);
  const auto hlg = json::parse(run({"gamma", "hlg", "--json", "-", "--plot", "p.svg"}).out);
  EXPECT_EQ(pq["table"][256], 769);  // ST 2084 gives 1000 cd/m2 75.18 % of the signal
  EXPECT_EQ(hlg["table"][256], 1023);
  EXPECT_EQ(hlg["inputs"][256], 4095);
  EXPECT_THAT(read("p.svg"), HasSubstr("Scene light"));
}

TEST_F(CommandTest, PointsAndTheirDeviation) {
  const auto report = json::parse(run({"gamma", "points", "VNormal", "--json", "-"}).out);
  const auto table = report["table"].get<std::vector<int>>();
  const auto through = report["table_through_points"].get<std::vector<int>>();
  int worst = 0;
  for (std::size_t i = 0; i < table.size(); ++i)
    worst = std::max(worst, std::abs(through[i] - table[i]));
  EXPECT_EQ(std::abs(report["largest_deviation"].get<int>()), worst);
  for (const auto& point : report["points"])  // the curve passes through them
    EXPECT_NEAR(through[4 * point[0].get<std::size_t>()], 64 * point[1].get<int>(), 1);
}

TEST_F(CommandTest, DegammaFindsTheEntries) {
  std::ofstream file(folder / "line.txt");
  for (int i = 0; i < 256; ++i) file << i << ' ';
  file.close();
  const auto outcome = run({"gamma", "degamma", "line.txt", "0", "128", "255", "--json", "-"});
  EXPECT_EQ(json::parse(outcome.out)["positions"], (std::vector<double>{1, 129, 256}));
}

}  // namespace
}  // namespace greycard
