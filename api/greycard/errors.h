#pragma once
/// \file
/// \ingroup contract own

#include <stdexcept>

#include "greycard/export.h"

namespace greycard {

/// \ingroup contract
/// Failure of a numerical kernel (no convergence, singular matrix, zero-width interval, not a
/// number). Its three-line banner has gone to the error channel before it is thrown.
class GREYCARD_EXPORT NumericError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// \ingroup contract
/// A matrix or vector of the wrong shape.
class GREYCARD_EXPORT ShapeError : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

/// \ingroup contract
/// An input that a calibration can't work with.
class GREYCARD_EXPORT CalibrationError : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

/// \ingroup own
/// A file that can't be read, understood or written. what() is one sentence that names the file.
class GREYCARD_EXPORT FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// \ingroup own
/// A job that can't be done with what it was given. what() is one sentence: what went wrong, with
/// which file, what to try.
class GREYCARD_EXPORT JobError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// \ingroup own
/// A name that nothing known has; what() tells the nearest one (unknownName).
class GREYCARD_EXPORT UnknownName : public JobError {
 public:
  using JobError::JobError;
};

}  // namespace greycard
