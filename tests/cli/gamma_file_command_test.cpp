#include <gmock/gmock.h>

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
  EXPECT_EQ(curve["file_tables"][0]["bits"], 12);

  // Control bytes would play with the terminal, and no XML reader takes them.
  std::filesystem::copy(folder / "a.txt", folder / "esc\x1b[31m.txt");
  const auto shown = run({"gamma", "import", "esc\x1b[31m.txt", "--plot", "esc.svg"});
  EXPECT_EQ(shown.status, 0) << shown.err;
  EXPECT_THAT(shown.out + read("esc.svg"), testing::Not(HasSubstr("\x1b")));
}

TEST_F(CommandTest, CurveFileErrorsNameFileLineAndWord) {
  std::ofstream(folder / "bad.txt") << "\nGammaTableV2: junk 1 2 3";
  std::ofstream(folder / "points.csv") << "0,0\n99,200\n255,255\n";
  const auto mixed = run({"gamma", "import", "bad.txt", "points.csv", "no.txt", "--export", "a.txt",
                          "b.txt", "c.txt", "--json", "r.json", "--from-points"});
  EXPECT_EQ(mixed.status, 1);
  EXPECT_THAT(mixed.err, testing::AllOf(HasSubstr("2 of 3 files gave no curve"),
                                        HasSubstr("\"bad.txt\", line 2, \"GammaTableV2:\": the")));
  EXPECT_EQ(json::parse(read("r.json"))["refused"].size(), 2u);
  EXPECT_FALSE(std::filesystem::exists(folder / "a.txt"));
  EXPECT_EQ(run({"gamma", "merge", "VHDR", "b.txt", "HLG", "-o", "m.txt"}).status, 0);
  EXPECT_EQ(run({"gamma", "export", "VNormal", "-o", "none/x.txt"}).status, 1);
  EXPECT_EQ(run({"gamma", "import", "bad.txt", "--export", "bad.txt"}).status, 2);
  EXPECT_EQ(run({"gamma", "hlg", "--against", "VNormal"}).status, 2);
  EXPECT_EQ(run({"gamma", "hdr10", "--nits", "0"}).status, 2);
}

}  // namespace
}  // namespace greycard
