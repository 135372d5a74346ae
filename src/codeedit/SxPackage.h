// Start and stop of the library: the units' start-up and shut-down in the
// order the package gives them.
#pragma once

#include "platform/Types.h"

#include <span>

namespace sx {

/// One unit of the package with its start-up and shut-down (none when it has nothing to do).
struct TPackageUnit {
    const char16_t* Name;
    void (*Initialization)();
    void (*Finalization)();
};

/// The units in the order of start-up.
std::span<const TPackageUnit> GetPackageInfoTable();

/// The library's version as "major.minor.patch".
const char* LibraryVersion();

/// Runs the units' start-up in order; a second call does nothing.
void Initialize();
/// Runs the units' shut-down in the reverse order; does nothing unless started.
void Finalize();

}  // namespace sx
