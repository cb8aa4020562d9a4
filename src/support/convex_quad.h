#pragma once

#include <cstddef>

#include "greycard/patch_quads.h"

namespace greycard {

/// Whether the corners are finite and go round a convex area, one way or the other.
bool isConvex(const PatchQuad& quad);

/// \throws std::invalid_argument that names the first patch whose corners are not
void requireConvex(const PatchQuads& patches);

}  // namespace greycard
