#pragma once

#include <string>

#include "greycard/gamma_curve.h"
#include "greycard/gamma_import.h"
#include "job_files.h"
#include "transition.h"

namespace greycard::cli {

/// A curve of the catalogue by its name, or else the curve of a curve file; what an import left out
/// of that goes to standard error.
/// \throws JobError when it is neither, or the file gives no curve
GammaCurvePtr curveByNameOrFile(const std::string& nameOrFile);

/// Names the file as an input of the job, if it is one.
void nameCurveFile(JobFiles& files, const std::string& option, const std::string& nameOrFile);

/// The note with its file, line and word, as one line.
std::string noteText(const std::string& file, const GammaImportNote& note);

/// Name, bits, tables and control points; green and blue only of a per-channel curve.
Json curveJson(const GammaCurve& curve);

}  // namespace greycard::cli
