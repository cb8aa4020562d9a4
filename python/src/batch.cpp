// greycard.core.batch: jobs on many photographs.

#include <span>

#include "greycard/batch/files.h"
#include "greycard/batch/folder.h"
#include "greycard/batch/result.h"
#include "greycard/batch/settings.h"
#include "greycard/batch/summary.h"
#include "jobs.h"

namespace greycard::python {
namespace {

using Path = std::filesystem::path;

void bindBatchFiles(py::module_& m) {
  Struct<batch::File>(m, "File", "A photograph of many.")
      .field("photo", &batch::File::photo, "From the working folder, or absolute.")
      .field("name", &batch::File::name,
             "Its file name; where an earlier photograph has that already, with ~2, ~3, ... "
             "behind it.");
  Struct<batch::FileList>(m, "FileList", "The photographs that are meant.")
      .field("files", &batch::FileList::files, "In the order of the inputs, each once.")
      .field("passedOver", &batch::FileList::passedOver,
             "Files of folders whose names are no photographs'.");
  m.def("photographsOf", unlocked(&batch::photographsOf), py::arg("inputs"),
        "The photographs of folders, lists (.txt or .lst) and single names. Raises FileError, and "
        "JobError for a folder without photographs and an empty list.");
}

void bindBatchSettings(py::module_& m) {
  Enum<batch::Job>(m, "Job", "What is done with every photograph.")
      .value("chart", batch::Job::chart)
      .value("ccm", batch::Job::ccm)
      .value("evaluate", batch::Job::evaluate);
  m.attr("kJobNames") = py::tuple(py::cast(batch::kJobNames));
  m.def(
      "jobFromName", [](const std::string& name) { return batch::jobFromName(name); },
      py::arg("name"), "The job of that name; None for any other text.");
  Struct<batch::Override>(m, "Override", "Options of the photographs whose name a pattern fits.")
      .field("pattern", &batch::Override::pattern, "As in \"*_D65_*\".")
      .field("options", &batch::Override::options, "A JSON object as Settings.options.");
  Struct<batch::OutlierRule>(m, "OutlierRule",
                             "Which fits count as outside the others of their light.")
      .field("factor", &batch::OutlierRule::factor, "Above 0.")
      .field("floor", &batch::OutlierRule::floor, "0 or more, in units of the matrix.");
  Struct<batch::Settings>(m, "Settings", "What is to be done with many photographs.")
      .field("job", &batch::Settings::job, "What is done.")
      .field("options", &batch::Settings::options, "Of the job, a JSON object.")
      .field("overrides", &batch::Settings::overrides, "Merged into the options in their order.")
      .field("outliers", &batch::Settings::outliers, "Which fits lie outside.");
  m.def(
      "readSettings",
      [](const Path& file, const batch::Settings& settings) {
        return batch::readSettings(file, settings);
      },
      py::arg("file"), defaulted<batch::Settings>("settings", "Settings()"),
      "The settings of a file over those given. Raises FileError and JobError.");
  m.def("resolved", &batch::resolved, py::arg("settings"), py::arg("photo"),
        "The options of one photograph, all fields, as JSON. Raises ValueError.");
  m.def(
      "checkSettings",
      [](const batch::Settings& settings, const std::vector<batch::File>& files) {
        withoutLock([&] { batch::checkSettings(settings, files); });
      },
      py::arg("settings"), py::arg("files"),
      "Refuses options that no photograph could be done with, before any is. Raises JobError that "
      "names the first of the photographs that they are for.");
  m.def("settingsHash", unlocked(&batch::settingsHash), py::arg("settings"), py::arg("photo"),
        "Of all that bears on the photograph's result but its content.");
}

void bindBatchResults(py::module_& m) {
  Struct<batch::Figures>(m, "Figures", "What tables and pages tell of a job's result.")
      .field("light", &batch::Figures::light, "Of the chart.")
      .field("meanError", &batch::Figures::meanError, "CIEDE2000.")
      .field("worstError", &batch::Figures::worstError, "CIEDE2000.")
      .field("worstPatch", &batch::Figures::worstPatch, "From 0.")
      .field("whiteBalance", &batch::Figures::whiteBalance, "R, G, B.")
      .field("exposure", &batch::Figures::exposure, "Exposure gain.")
      .field("matrix", &batch::Figures::matrix, "3 x 3.")
      .field("warnings", &batch::Figures::warnings, "A sentence each.");
  Struct<batch::Result> result(m, "Result", "What became of one photograph.");
  result.field("photo", &batch::Result::photo, "Its file.")
      .field("job", &batch::Result::job, "What was done.")
      .field("version", &batch::Result::version, "Of the library.")
      .field("contentHash", &batch::Result::contentHash, "Of the file.")
      .field("settingsHash", &batch::Result::settingsHash, "See settingsHash.")
      .field("options", &batch::Result::options, "See resolved.")
      .field("reason", &batch::Result::reason, "Why the job could not be done; empty when it was.")
      .field("result", &batch::Result::result, "Of the job, as present.toJson writes it.")
      .field("figures", &batch::Result::figures, "Those of the result.")
      .field("thumbnail", &batch::Result::thumbnail, "An address data:image/jpeg;...")
      .def("failed", &batch::Result::failed, "Whether there is a reason.");
  m.def(
      "doPhotograph",
      [](const batch::File& file, const batch::Settings& settings, const ProgressArg& progress) {
        return cancellable(progress, [file, settings](const ProgressCallback& callback) {
          return batch::doPhotograph(file, settings, callback);
        });
      },
      py::arg("file"), py::arg("settings"), py::arg("progress") = ProgressArg(),
      "Does the job; None when the callable cancelled. Raises ValueError for settings that can't "
      "be. What the photograph or its job is guilty of is the result's reason.");
  m.def("failedResult", &batch::failedResult, py::arg("file"), py::arg("settings"),
        py::arg("reason"), "The result of a photograph whose job ended in another way.");
  m.def("writeResult", unlocked(&batch::writeResult), py::arg("file"), py::arg("result"),
        "Writes it whole or not at all. Raises FileError.");
  m.def("readResult", unlocked(&batch::readResult), py::arg("file"),
        "Raises FileError, and JobError that names the file.");
  m.def("isDone", unlocked(&batch::isDone), py::arg("resultFile"), py::arg("file"),
        py::arg("settings"), "Whether the file holds the result that doPhotograph would give.");
  m.def("doneResult", unlocked(&batch::doneResult), py::arg("resultFile"), py::arg("file"),
        py::arg("settings"), "That result, or None.");
  m.def("resultFile", &batch::resultFile, py::arg("folder"), py::arg("file"),
        "Where the result of a photograph stands.");
}

void bindBatchSummary(py::module_& m) {
  Struct<batch::OutsideFit>(m, "OutsideFit", "A fit that lies outside the others of its light.")
      .field("photo", &batch::OutsideFit::photo, "Its file.")
      .field("row", &batch::OutsideFit::row, "Of the entry, from 0.")
      .field("column", &batch::OutsideFit::column, "Of the entry, from 0.")
      .field("value", &batch::OutsideFit::value, "Of the entry.")
      .field("distance", &batch::OutsideFit::distance,
             "From the median, in units of what OutlierRule.factor multiplies.");
  Struct<batch::LightSummary>(m, "LightSummary", "The fits under one light, three or more.")
      .field("light", &batch::LightSummary::light, "Of the fits.")
      .field("fits", &batch::LightSummary::fits, "How many.")
      .field("mean", &batch::LightSummary::mean, "3 x 3.")
      .field("spread", &batch::LightSummary::spread, "Standard deviation of each entry.")
      .field("median", &batch::LightSummary::median, "3 x 3.")
      .field("medianDeviation", &batch::LightSummary::medianDeviation, "MAD of each entry.")
      .field("outside", &batch::LightSummary::outside, "Furthest first.");
  Struct<batch::Failure>(m, "Failure", "A photograph whose job could not be done.")
      .field("photo", &batch::Failure::photo, "Its file.")
      .field("reason", &batch::Failure::reason, "Why.");
  Struct<batch::Summary>(m, "Summary", "What many results say together.")
      .field("job", &batch::Summary::job, "What was done.")
      .field("version", &batch::Summary::version, "Of the library.")
      .field("photographs", &batch::Summary::photographs, "How many.")
      .field("failures", &batch::Summary::failures, "In the order of the results.")
      .field("outliers", &batch::Summary::outliers, "Which fits count as outside.")
      .field("lights", &batch::Summary::lights, "Empty for jobs without a matrix.");
  m.def(
      "summaryOf",
      [](const std::vector<batch::Result>& results, const batch::Settings& settings) {
        return batch::summaryOf(results, settings);
      },
      py::arg("results"), py::arg("settings"), "Of the results of a job.");
  m.def(
      "resultsCsv",
      [](const std::vector<batch::Result>& results) { return batch::resultsCsv(results); },
      py::arg("results"), "One row a result, in their order.");
  m.def(
      "indexPage",
      [](const std::vector<batch::Result>& results, const batch::Summary& summary) {
        return batch::indexPage(results, summary);
      },
      py::arg("results"), py::arg("summary"), "The page for people.");
}

void bindBatchFolder(py::module_& m) {
  Struct<batch::Overview>(m, "Overview", "All that a run of many photographs gave.")
      .field("results", &batch::Overview::results, "In the order of the photographs.")
      .field("summary", &batch::Overview::summary, "What they say together.");
  py::class_<batch::Folder> folder(m, "Folder",
                                   "A folder of results while a run writes into it, which no other "
                                   "run can do then.");
  Enum<batch::Folder::Start>(folder, "Start", "What may stand in the folder.")
      .value("fresh", batch::Folder::Start::fresh)
      .value("resume", batch::Folder::Start::resume);
  folder
      .def(py::init<const Path&, batch::Folder::Start>(), py::arg("folder"), py::arg("start"),
           "Makes the folder where it isn't there. Raises JobError for one that holds anything, "
           "unless it is resumed, and one that another run writes into; FileError.")
      .def(
          "finish",
          [](const batch::Folder& self, const std::vector<batch::File>& files,
             const batch::Settings& settings) {
            return withoutLock([&self, &files, settings] { return self.finish(files, settings); });
          },
          py::arg("files"), py::arg("settings"),
          "Reads the results of all photographs and writes results.csv, summary.json and "
          "index.html. Raises FileError and JobError for a result that isn't there.")
      .def(
          "finish",
          [](const batch::Folder& self, const std::vector<batch::Result>& results,
             const batch::Settings& settings) {
            return withoutLock([&self, &results, settings] {
              return self.finish(std::vector<batch::Result>(results), settings);
            });
          },
          py::arg("results"), py::arg("settings"),
          "Likewise from the results as readResult or doneResult gave them.");
}

template <typename T>
void bindBatchJson(py::module_& m) {
  m.def(
      "toJson", [](const T& value) { return batch::toJson(value); }, py::arg("value"),
      "The value as JSON.");
  m.def(
      "fromJson",
      [](const std::string& text, T& value) {
        T read = value;
        batch::fromJson(text, read);
        value = std::move(read);
      },
      py::arg("text"), py::arg("value"),
      "Takes over what JSON holds. Raises ValueError with a sentence that begins with the field.");
}

}  // namespace

void bindBatch(py::module_& m) {
  bindBatchFiles(m);
  bindBatchSettings(m);
  bindBatchResults(m);
  bindBatchSummary(m);
  bindBatchFolder(m);
  bindBatchJson<batch::Settings>(m);
  bindBatchJson<batch::Result>(m);
  bindBatchJson<batch::Summary>(m);
}

}  // namespace greycard::python
