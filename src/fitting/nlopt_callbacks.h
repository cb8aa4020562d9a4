#pragma once

// The objectives and constraints handed to NLopt, all with its signature. The search used needs no
// gradient; only utility and constraint give one.

#include "greycard/types.h"

namespace greycard {

/// data: a LumaTargetRun.
double GA_Utility(unsigned n, const double* x, double* gradient, void* data);
/// At most 0 where the ranges of percentiles and the pair of dark numerators are wide enough.
double GAinconstraint1(unsigned n, const double* x, double* gradient, void* data);
double GAinconstraint2(unsigned n, const double* x, double* gradient, void* data);
double GAinconstraint3(unsigned n, const double* x, double* gradient, void* data);
double GAinconstraint4(unsigned n, const double* x, double* gradient, void* data);

/// The colours of one findMinSearch, 0..255.
struct MinSearchRun {
  Vector3 m_testRGB{}, m_targetRGB{};
};

/// L* of an encoded sRGB colour, nominally 0..255.
double lightness(const Vector3& rgb255);

/// Squared difference in L* between x[0] times the test colour and the target. data: a
/// MinSearchRun.
double minSearch_Utility(unsigned n, const double* x, double* gradient, void* data);

/// (x^2 + 3 y^2 + z - 100)^2, x >= y + 5 and z >= x + 10: the problem of NLoptHelper::test.
double utility1(unsigned n, const double* x, double* gradient, void* data);
double inconstraint(unsigned n, const double* x, double* gradient, void* data);
double inconstraint1(unsigned n, const double* x, double* gradient, void* data);

/// ln x + ln y under a budget of 5: data of constraint is the prices of x and y.
double utility(unsigned n, const double* x, double* gradient, void* data);
double constraint(unsigned n, const double* x, double* gradient, void* data);

/// printf to the debugger log, cut off at 511 characters. Nothing is formatted when nobody listens.
#if defined(__GNUC__)
[[gnu::format(printf, 1, 2)]]
#endif
void debugPrint(const char* format, ...);

}  // namespace greycard
