// Colour values and font styles as the system stores them, with no drawing:
// parsers use these in their colour tables without any GUI library.
#pragma once

#include "platform/Sets.h"
#include "platform/Types.h"

namespace sx {

/// 0x00BBGGRR for a plain colour; 0xFF0000nn for system colour nn.
using TColor = Cardinal;

constexpr TColor clBlack = 0x000000;
constexpr TColor clMaroon = 0x000080;
constexpr TColor clGreen = 0x008000;
constexpr TColor clOlive = 0x008080;
constexpr TColor clNavy = 0x800000;
constexpr TColor clPurple = 0x800080;
constexpr TColor clTeal = 0x808000;
constexpr TColor clGray = 0x808080;
constexpr TColor clSilver = 0xC0C0C0;
constexpr TColor clRed = 0x0000FF;
constexpr TColor clLime = 0x00FF00;
constexpr TColor clYellow = 0x00FFFF;
constexpr TColor clBlue = 0xFF0000;
constexpr TColor clFuchsia = 0xFF00FF;
constexpr TColor clAqua = 0xFFFF00;
constexpr TColor clWhite = 0xFFFFFF;

constexpr TColor clMoneyGreen = 0xC0DCC0;
constexpr TColor clSkyBlue = 0xF0CAA6;
constexpr TColor clCream = 0xF0FBFF;
constexpr TColor clMedGray = 0xA4A0A0;

constexpr TColor clNone = 0x1FFFFFFF;
constexpr TColor clDefault = 0x20000000;

constexpr TColor clSystemColor = 0xFF000000;
constexpr TColor clScrollBar = clSystemColor | 0;
constexpr TColor clBackground = clSystemColor | 1;
constexpr TColor clActiveCaption = clSystemColor | 2;
constexpr TColor clInactiveCaption = clSystemColor | 3;
constexpr TColor clMenu = clSystemColor | 4;
constexpr TColor clWindow = clSystemColor | 5;
constexpr TColor clWindowFrame = clSystemColor | 6;
constexpr TColor clMenuText = clSystemColor | 7;
constexpr TColor clWindowText = clSystemColor | 8;
constexpr TColor clCaptionText = clSystemColor | 9;
constexpr TColor clActiveBorder = clSystemColor | 10;
constexpr TColor clInactiveBorder = clSystemColor | 11;
constexpr TColor clAppWorkSpace = clSystemColor | 12;
constexpr TColor clHighlight = clSystemColor | 13;
constexpr TColor clHighlightText = clSystemColor | 14;
constexpr TColor clBtnFace = clSystemColor | 15;
constexpr TColor clBtnShadow = clSystemColor | 16;
constexpr TColor clGrayText = clSystemColor | 17;
constexpr TColor clBtnText = clSystemColor | 18;
constexpr TColor clInactiveCaptionText = clSystemColor | 19;
constexpr TColor clBtnHighlight = clSystemColor | 20;
constexpr TColor cl3DDkShadow = clSystemColor | 21;
constexpr TColor cl3DLight = clSystemColor | 22;
constexpr TColor clInfoText = clSystemColor | 23;
constexpr TColor clInfoBk = clSystemColor | 24;
constexpr TColor clHotLight = clSystemColor | 26;
constexpr TColor clGradientActiveCaption = clSystemColor | 27;
constexpr TColor clGradientInactiveCaption = clSystemColor | 28;
constexpr TColor clMenuHighlight = clSystemColor | 29;
constexpr TColor clMenuBar = clSystemColor | 30;

inline bool IsSystemColor(TColor c) { return (c & 0xFF000000u) == clSystemColor; }

/// Red, green and blue parts of a plain colour.
inline Byte GetRValue(TColor c) { return Byte(c & 0xFF); }
inline Byte GetGValue(TColor c) { return Byte((c >> 8) & 0xFF); }
inline Byte GetBValue(TColor c) { return Byte((c >> 16) & 0xFF); }
inline TColor RGB(Byte r, Byte g, Byte b) { return TColor(r) | (TColor(g) << 8) | (TColor(b) << 16); }

/// The colour of a framework colour identifier ("clRed", "clBtnFace", ...,
/// compared case-blind) is stored in Color; an unknown word leaves Color alone
/// and answers False. Raises nothing.
bool IdentToColor(const String& Ident, TColor& Color) noexcept;
/// The identifier of a colour that has one ("clWindow") goes into Ident;
/// any other colour leaves Ident alone and answers False.
bool ColorToIdent(TColor Color, String& Ident);

enum class TFontStyle { fsBold, fsItalic, fsUnderline, fsStrikeOut };
/// A set in one byte: bit 0 bold, 1 italic, 2 underline, 3 strike-out.
using TFontStyles = TSet<TFontStyle, 8>;

}  // namespace sx
