// Basic value types shared by the framework layer and the system: strings of
// UTF-16 code units, points, rectangles and the integer widths the system uses.
#pragma once

#include <cstdint>
#include <string>

namespace sx {

/// The system's string: UTF-16 code units, never decoded into code points.
using String = std::u16string;
using Char = char16_t;

using Integer = std::int32_t;
using Cardinal = std::uint32_t;
using Word = std::uint16_t;
using Byte = std::uint8_t;
using NativeInt = std::intptr_t;

/// Largest Integer; marks a selection end that ran off the last line.
constexpr Integer MaxInt = 2147483647;

/// A position: X is the column (or pixel x), Y the line (or pixel y), both from 0.
struct TPoint {
    Integer X = 0;
    Integer Y = 0;
    friend bool operator==(const TPoint&, const TPoint&) = default;
};

inline TPoint Point(Integer x, Integer y) { return TPoint{x, y}; }

/// A rectangle whose Right and Bottom edges are exclusive, as in the classic framework.
struct TRect {
    Integer Left = 0;
    Integer Top = 0;
    Integer Right = 0;
    Integer Bottom = 0;
    Integer Width() const { return Right - Left; }
    Integer Height() const { return Bottom - Top; }
    bool IsEmpty() const { return Right <= Left || Bottom <= Top; }
    friend bool operator==(const TRect&, const TRect&) = default;
};

inline TRect Rect(Integer left, Integer top, Integer right, Integer bottom)
{
    return TRect{left, top, right, bottom};
}

/// The two halves of a character beyond U+FFFF in UTF-16.
inline bool IsHighSurrogate(Char c) { return c >= 0xD800 && c <= 0xDBFF; }
inline bool IsLowSurrogate(Char c) { return c >= 0xDC00 && c <= 0xDFFF; }

/// Converts ASCII or Latin-1 text into a String; for literals and messages.
String StrFromLatin1(const char* text);
/// Converts UTF-8 text into a String.
String StrFromUtf8(const std::string& text);
/// Converts a String into UTF-8 (lone surrogates become U+FFFD).
std::string StrToUtf8(const String& text);

}  // namespace sx
