// Upper-case mapping of single UTF-16 code units beyond ASCII, for the
// case-blind comparisons of the search.
#pragma once

#include "Types.h"

namespace sx {

/// The simple upper-case mapping of every code unit of the Basic Multilingual
/// Plane: 65,536 entries, built once on first use. Surrogates map to themselves,
/// so characters outside the plane compare as they stand.
const Char* WideUpperTable();

/// Upper case of any code unit: ASCII by arithmetic, the rest through the table.
inline Char WideUpCase(Char c)
{
    if (c < 0x80)
        return (c >= u'a' && c <= u'z') ? Char(c - 32) : c;
    return WideUpperTable()[c];
}

}  // namespace sx
