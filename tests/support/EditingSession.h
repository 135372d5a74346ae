// A driver of the editing engine for randomized tests: bytes become a
// starting text and a sequence of operations on a fresh control, as a user
// and an application drive it, with the control's invariants checked after
// every step and an undo round trip at the end, then a redo one. The fuzz target feeds it the
// fuzzer's bytes, the ordinary suite bytes from a seeded generator.
#pragma once

#include "support/ByteReader.h"
#include "support/RenderHelpers.h"

#include <functional>
#include <string>

namespace sx::test {

/// Reads a starting text, then up to AMaxSteps operations until the bytes run
/// out. AOnFailure receives a description of the first broken invariant and
/// the steps so far. Answers whether the run ended with the undo round trip
/// checked. The control runs with the extended options AOptions.
bool RunEditingSession(Host& AHost, ByteReader& AIn, int AMaxSteps,
                       const std::function<void(const std::string&)>& AOnFailure, TSxCodeExtOptions AOptions = {});

}  // namespace sx::test
