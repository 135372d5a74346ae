// Upper-case mapping of single UTF-16 code units beyond ASCII, for the
// case-blind comparisons of the search.
#pragma once

#include "platform/Types.h"

namespace sx {

/// The simple upper-case mapping of every code unit of the Basic Multilingual
/// Plane: 65,536 entries, built once on first use. Surrogates map to themselves,
/// so characters outside the plane compare as they stand.
const Char* WideUpperTable();

}  // namespace sx
