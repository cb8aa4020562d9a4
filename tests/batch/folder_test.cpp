#include "greycard/batch/folder.h"

#include <gmock/gmock.h>

#include "greycard/errors.h"
#include "greycard/present/chart.h"
#include "scratch_folder.h"

namespace greycard::batch {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Files : public ScratchFolder {};

TEST_F(Files, AreThoseOfFoldersAndListsEachOnceUnderANameOfItsOwn) {
  for (const char* name : {"b.PNG", "a.jpg", "notes.md", ".hidden.png", "deeper/c.png", "x/a.jpg"})
    write("in/" + std::string(name), "");
  write("q", "");
  const auto list = write("in/list.txt", "# a list\r\nx/a.jpg\r\n\nb.PNG\nabsent.dng");
  const FileList found = photographsOf({folder / "in", list, folder / "in/./a.jpg", folder / "q"});
  std::vector<std::string> photos, names;
  for (const File& file : found.files) {
    photos.push_back(file.photo.lexically_relative(folder).string());
    names.push_back(file.name);
  }
  EXPECT_THAT(photos, ElementsAre("in/a.jpg", "in/b.PNG", "in/x/a.jpg", "in/absent.dng", "q"));
  EXPECT_THAT(names, ElementsAre("a.jpg", "b.PNG", "a.jpg~2", "absent.dng", "q"));
  EXPECT_EQ(found.passedOver, 2U);

  std::filesystem::create_directory_symlink(folder / "in", folder / "alias");
  EXPECT_EQ(photographsOf({folder / "in/a.jpg", folder / "alias/a.jpg"}).files.size(), 1U);

  const auto empty = write("empty.lst", "\n# nothing\n");
  std::filesystem::create_directory(folder / "none");
  EXPECT_THROW(photographsOf({empty}), JobError);
  EXPECT_THROW(photographsOf({folder / "none"}), JobError);
  EXPECT_THROW(photographsOf({folder / "absent.txt"}), FileError);
  EXPECT_THROW(photographsOf({folder / "absent.png"}), FileError);
  EXPECT_THROW(photographsOf({}), JobError);
  EXPECT_THROW(photographsOf({write("bytes.txt", std::string("a\0b", 3))}), JobError);
  const FileList longName = photographsOf({write("long.txt", std::string(250, 'n') + ".png")});
  EXPECT_LE(resultFile("", longName.files.at(0)).filename().string().size(), 255U);
}

class Folders : public ScratchFolder {
 protected:
  std::string refusalOf(Folder::Start start) const {
    try {
      Folder(folder, start);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return {};
  }
};

TEST_F(Folders, HoldNothingThatAnotherPutThere) {
  EXPECT_EQ(refusalOf(Folder::Start::fresh), "");
  EXPECT_EQ(refusalOf(Folder::Start::fresh), "") << "nothing was done yet";
  write(".greycard-host-1-1", "half");
  write("photographs/.greycard-host-1-2", "half");
  write("photographs/a.png.json", "kept");
  EXPECT_THAT(refusalOf(Folder::Start::fresh), HasSubstr("isn't empty"));
  write("index.html", "of an earlier run");
  EXPECT_EQ(refusalOf(Folder::Start::resume), "");
  EXPECT_FALSE(std::filesystem::exists(folder / ".greycard-host-1-1"));
  EXPECT_FALSE(std::filesystem::exists(folder / "photographs/.greycard-host-1-2"));
  EXPECT_FALSE(std::filesystem::exists(folder / "index.html"));
  EXPECT_EQ(readWholeFile(folder / "photographs/a.png.json"), "kept");

  for (const char* foreign : {"notes.txt", "photographs/holiday.jpg"}) {
    write("index.html", "somebody's");
    const auto place = write(foreign, "");
    EXPECT_THAT(refusalOf(Folder::Start::resume), HasSubstr(foreign));
    EXPECT_TRUE(std::filesystem::exists(folder / "index.html"));
    std::filesystem::remove(place);
  }
  const Folder first(folder, Folder::Start::resume);
  EXPECT_THAT(refusalOf(Folder::Start::resume), HasSubstr("another run"));
}

TEST_F(Folders, AreFinishedFromTheResultsOfThePhotographsAlone) {
  write("a.png", "junk");
  const std::vector<File> files{{folder / "a.png", "a.png"}, {folder / "b.png", "b.png"}};
  const Settings settings;
  const Folder out(folder / "out", Folder::Start::fresh);
  write("out/photographs/stale.png.json", "not looked at");
  EXPECT_THROW(out.finish(files, settings), FileError) << "nothing is done";
  for (const File& file : files)
    writeResult(resultFile(folder / "out", file), *doPhotograph(file, settings));
  Result second = *doPhotograph(files[1], settings);
  second.result = present::toJson(ChartFit());
  second.reason.clear();
  writeResult(resultFile(folder / "out", files[1]), second);
  const Overview overview = out.finish(files, settings);
  for (const Result& result : overview.results)
    EXPECT_EQ(result.options + result.result, "") << "long texts stay in their files";
  ASSERT_EQ(overview.results.size(), 2U);
  EXPECT_EQ(overview.results[1].photo, files[1].photo);
  EXPECT_EQ(overview.summary.failures.size(), 1U);
  EXPECT_EQ(readWholeFile(folder / "out/results.csv"), resultsCsv(overview.results));
  EXPECT_EQ(readWholeFile(folder / "out/summary.json"), toJson(overview.summary));
  EXPECT_EQ(readWholeFile(folder / "out/index.html"),
            indexPage(overview.results, overview.summary));
}

}  // namespace
}  // namespace greycard::batch
