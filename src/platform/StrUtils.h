// Searching in a buffer of UTF-16 code units, with the options of the find
// and replace dialog: direction, case and whole words.
#pragma once

#include "platform/LineText.h"
#include "platform/SysUtils.h"

namespace sx {

/// Finds SearchString in the BufLen characters at Buf and answers a pointer to
/// the first character of the hit, or none. SelStart and SelLength mark a
/// selection in the buffer where the search starts:
/// - with soDown the offsets from SelStart + SelLength upwards are tried, and
///   the hit must lie wholly inside the buffer;
/// - without it the offsets from SelStart - Length(SearchString) down to 0,
///   so the hit ends at or before SelStart.
/// Without soMatchCase both sides are compared in upper case, code unit by
/// code unit (the simple Unicode mapping). With soWholeWord a hit counts only
/// at a word start with a delimiter (or the buffer's end) behind it; every
/// character but the ASCII letters and digits is a delimiter, and the first
/// offset tried counts as a word start without a look at the one before it.
/// A BufLen of 0 or less, an empty SearchString and a SelStart outside the
/// buffer find nothing.
const Char* SearchBuf(const Char* Buf, Integer BufLen, Integer SelStart, Integer SelLength,
                      const String& SearchString,
                      TStringSearchOptions Options = TStringSearchOptions{TStringSearchOption::soDown});

/// SearchBuf in a buffer of Latin-1 characters, one byte each: every byte is
/// the character of its value.
const Byte* SearchBufLatin1(const Byte* Buf, Integer BufLen, Integer SelStart, Integer SelLength,
                            const String& SearchString,
                            TStringSearchOptions Options = TStringSearchOptions{TStringSearchOption::soDown});

/// SearchBuf over ABufLen characters of a stored line from column AFrom, in
/// the line's own characters (one byte or two each) without a copy; the
/// search starts at ASelStart within them. Answers the column of the hit in
/// the line, or -1.
Integer SearchLineText(TLineView ALine, Integer AFrom, Integer ABufLen, Integer ASelStart, const String& SearchString,
                       TStringSearchOptions Options);

}  // namespace sx
