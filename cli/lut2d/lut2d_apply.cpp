// greycard lut2d apply: a picture through a hue/saturation table.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <memory>

#include "command.h"
#include "greycard/files.h"
#include "greycard/picture.h"
#include "job_files.h"
#include "lut2d_commands.h"
#include "lut2d_file.h"
#include "lut2d_planes.h"
#include "transition.h"

namespace greycard::cli {
namespace {

struct ApplyOptions : CommonOptions {
  std::filesystem::path photo, lut, output, compare;
  int bits = 0;  // of the samples; 0: those of the file
};

constexpr int kTenBitWhite = 1023;

int whiteOf(const ApplyOptions& options, const Picture& picture) {
  if (options.bits > picture.bits)
    throw JobError(quoted(options.photo) + " has " + std::to_string(picture.bits) +
                   "-bit samples; leave out --bits");
  if (options.bits == 8 && picture.bits == 16)
    throw JobError(quoted(options.photo) + " has 16-bit samples; --bits must be 10 or 16");
  if (options.bits != 10) return picture.ceiling();
  if (std::ranges::max(picture.samples) > kTenBitWhite)
    throw JobError(quoted(options.photo) +
                   " has samples above 1023, which 10 bits can't hold; leave out --bits");
  return kTenBitWhite;
}

// With a gap of white between them.
Picture sideBySide(const Picture& left, const Picture& right) {
  const int gap = std::max(4, left.width / 50);
  Picture both(left.width + gap + right.width, left.height, 3, left.bits);
  std::fill(both.samples.begin(), both.samples.end(), static_cast<std::uint16_t>(both.ceiling()));
  for (int y = 0; y < left.height; ++y) {
    std::copy_n(left.pixel(0, y), 3 * left.width, both.pixel(0, y));
    std::copy_n(right.pixel(0, y), 3 * right.width, both.pixel(left.width + gap, y));
  }
  return both;
}

void run(const ApplyOptions& options) {
  JobFiles files;
  files.input("PHOTO", options.photo);
  files.input("--lut", options.lut);
  files.pictureOutput("--output", options.output);
  files.pictureOutput("--compare", options.compare);
  files.textOutput("--json", options.json);
  const Lut2DConfig config = readLut2d(options.lut);
  const Picture picture = readPicture(options.photo);
  const int white = whiteOf(options, picture);

  TwoDLutHelper helper;
  helper.SetConfig(config);
  const TenBitPlanes before(picture, white);
  TenBitPlanes after = before;
  after.apply(helper);

  std::size_t changed = 0;
  for (std::size_t i = 0; i < after.r.size(); ++i)
    if (after.r[i] != before.r[i] || after.g[i] != before.g[i] || after.b[i] != before.b[i])
      ++changed;
  const double share = static_cast<double>(changed) / static_cast<double>(after.r.size());
  writePicture(options.output, after.picture(white, picture.bits));
  if (!options.compare.empty())
    writePicture(options.compare, sideBySide(before.picture(255, 8), after.picture(255, 8)));
  writeJson(options.json, {{"photo", options.photo.string()},
                           {"lut", options.lut.string()},
                           {"white_level", white},
                           {"pixels", after.r.size()},
                           {"changed_pixels", changed}});
  if (options.printsText())
    std::cout << "Wrote " << quoted(options.output) << ": " << std::lround(100.0 * share)
              << " % of the pixels moved by the table\n";
}

}  // namespace

void addLut2dApply(CLI::App& lut2d) {
  const auto options = std::make_shared<ApplyOptions>();
  CLI::App& app = addSubCommand(
      lut2d, "apply",
      "Move the colours of a picture. The table works on 10 bits: samples of 8 or 16 bits are\n"
      "scaled to that and back.",
      "greycard lut2d apply photo.png --lut warmer.json -o warmer.png --compare both.png",
      *options);
  app.add_option("photo", options->photo, "Picture with 8 or 16 bits a sample")
      ->required()
      ->type_name("PHOTO");
  app.add_option("--lut", options->lut, "Table")->required()->type_name("FILE");
  app.add_option("-o,--output", options->output, "Picture to write, with the same bits")
      ->required()
      ->type_name("FILE");
  app.add_option("--compare", options->compare, "Picture of before and after, side by side")
      ->type_name("FILE");
  app.add_option("--bits", options->bits,
                 "10 for samples of 0..1023 in a 16-bit picture (default: all bits of the file)")
      ->check(CLI::IsMember({8, 10, 16}))
      ->type_name("N");
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
