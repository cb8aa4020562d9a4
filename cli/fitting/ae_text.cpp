#include "ae_text.h"

#include <vector>

#include "greycard/names.h"
#include "greycard/number_text.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct Named {
  std::string title;
  const ExposureEvaluation& evaluation;
};

// The evaluations worth a column: the last one only when it is not the best.
std::vector<Named> columnsOf(const ExposureFit& fit) {
  std::vector<Named> columns{{"start", fit.start}, {"best", fit.best}};
  if (!fit.returnsBest()) columns.push_back({"last", fit.returned});
  return columns;
}

std::string parameterTable(const ExposureJob& job, const std::vector<Named>& columns) {
  std::vector<TextTable::Column> titles{{"x"}, {"parameter", TextTable::Align::Left}};
  for (const Named& column : columns) titles.push_back({column.title});
  titles.push_back({"", TextTable::Align::Left});
  TextTable table(titles);
  for (std::size_t k = 0; k < kGaParameters; ++k) {
    std::vector<std::string> row{std::to_string(k), kExposureParameterNames[k]};
    for (const Named& column : columns) row.push_back(fixed(column.evaluation.parameters[k], 4));
    row.push_back(job.fits(k) ? "" : "not fitted");
    table.addRow(row);
  }
  return table.text();
}

std::string imageTable(const std::vector<ExposureFigures>& images,
                       const std::vector<Named>& columns) {
  std::vector<TextTable::Column> titles{
      {"image", TextTable::Align::Left}, {"weight"}, {"luma"}, {"current"}, {"wanted"}};
  for (const Named& column : columns) titles.push_back({column.title});
  TextTable table(titles);
  for (std::size_t i = 0; i < images.size(); ++i) {
    std::vector<std::string> row{printable(images[i].name), fixed(images[i].Weight, 2),
                                 fixed(images[i].curr_luma, 2), fixed(images[i].cur_target, 2),
                                 fixed(images[i].newTarget, 2)};
    for (const Named& column : columns) row.push_back(fixed(column.evaluation.target[i], 2));
    table.addRow(row);
  }
  return "Luma targets\n" + table.text();
}

std::string errorTable(const std::vector<Named>& columns) {
  TextTable table({{"", TextTable::Align::Left}, {"weighted mean square"}, {"mean |error|"}});
  for (const auto& [title, evaluation] : columns)
    table.addRow({title, fixed(evaluation.error, 4), fixed(evaluation.meanError, 3)});
  return table.text();
}

std::string tables(const ExposureJob& job, const std::vector<ExposureFigures>& images,
                   const std::vector<Named>& columns) {
  return parameterTable(job, columns) + "\n" + imageTable(images, columns) + "\n" +
         errorTable(columns);
}

}  // namespace

std::string aeText(const ExposureJob& job, const ExposureFit& fit) {
  std::string text =
      std::to_string(fit.images.size()) + (fit.images.size() == 1 ? " image: " : " images: ");
  if (!job.fitsAny())
    return text + "no group is enabled, so nothing was fitted\n\n" +
           tables(job, fit.images, {{"value", fit.best}});
  text += std::string(stopReason(fit.resultCode)) + " after " + std::to_string(fit.evaluations) +
          " evaluations";
  if (fit.seconds > 0.0)
    text += " in " + fixed(fit.seconds, 2) + " s (" + fixed(fit.evaluationsPerSecond(), 0) +
            " a second, seed " + std::to_string(fit.seed) + ")";
  text += "\n\n" + tables(job, fit.images, columnsOf(fit));
  if (!fit.returnsBest())
    text +=
        "\nThe time ran out: \"last\" are the parameters that NLoptHelper::GA returns then, those "
        "of\nthe last evaluation; \"best\" are the best that the search met.\n";
  if (!fit.bestKeepsConstraints)
    text +=
        "\nNo point was found that keeps the constraints ([4] - [8] and [5] - [9] 0.005, [2] - [3] "
        "40,\n[11] - [10] 0.08 or more); \"best\" breaks them least. Look at the bounds.\n";
  return text;
}

std::string aeText(const ExposureJob& job, const ExposureTrial& trial) {
  return "Evaluated as it stands\n\n" + tables(job, trial.images, {{"value", trial.manual}});
}

}  // namespace greycard::cli
