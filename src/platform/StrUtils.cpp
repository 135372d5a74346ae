// SearchBuf: a scan over the offsets of one direction, with the character
// comparison chosen once per call so that the case-sensitive path folds nothing.
#include "platform/StrUtils.h"

#include "platform/CaseMap.h"

namespace sx {

namespace {

/// Word characters of the whole-word rule: the ASCII letters and digits.
bool IsWordChar(Char c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

struct ExactFold {
    Char operator()(Char c) const { return c; }
};

/// Upper case with the table fetched once per search.
struct UpperFold {
    const Char* Table = WideUpperTable();
    Char operator()(Char c) const
    {
        if (c < 0x80)
            return (c >= u'a' && c <= u'z') ? Char(c - 32) : c;
        return Table[c];
    }
};

/// The offsets a search tries, from First to Last inclusive in steps of Step.
struct OffsetRange {
    Integer First;
    Integer Last;
    Integer Step;
    bool Holds(Integer offset) const { return Step > 0 ? offset <= Last : offset >= Last; }
};

struct Needle {
    const Char* Text;
    Integer Length;
};

template <class C>
bool StandsAsWord(const C* buf, Integer bufLen, Integer offset, Integer length, bool firstTried)
{
    const bool startsWord = firstTried || offset == 0 || !IsWordChar(buf[offset - 1]);
    const bool endsWord = offset + length >= bufLen || !IsWordChar(buf[offset + length]);
    return startsWord && endsWord;
}

template <class C, class Fold>
const C* Scan(const C* buf, Integer bufLen, Needle needle, OffsetRange range, bool wholeWord, Fold fold)
{
    const Char head = fold(needle.Text[0]);
    for (Integer offset = range.First; range.Holds(offset); offset += range.Step) {
        if (fold(Char(buf[offset])) != head)
            continue;
        Integer k = 1;
        while (k < needle.Length && fold(Char(buf[offset + k])) == fold(needle.Text[k]))
            ++k;
        if (k < needle.Length)
            continue;
        if (wholeWord && !StandsAsWord(buf, bufLen, offset, needle.Length, offset == range.First))
            continue;
        return buf + offset;
    }
    return nullptr;
}

template <class C>
const C* SearchIn(const C* Buf, Integer BufLen, Integer SelStart, Integer SelLength, const String& SearchString,
                  TStringSearchOptions Options)
{
    const auto length = Integer(SearchString.size());
    if (!Buf || BufLen <= 0 || length == 0 || SelStart < 0 || SelStart > BufLen)
        return nullptr;
    OffsetRange range{SelStart - length, 0, -1};
    if (Options.Contains(TStringSearchOption::soDown))
        range = OffsetRange{SelStart + SelLength, BufLen - length, 1};
    if (range.First < 0 || range.First > BufLen - length)
        return nullptr;
    const Needle needle{SearchString.data(), length};
    const bool wholeWord = Options.Contains(TStringSearchOption::soWholeWord);
    if (Options.Contains(TStringSearchOption::soMatchCase))
        return Scan(Buf, BufLen, needle, range, wholeWord, ExactFold{});
    return Scan(Buf, BufLen, needle, range, wholeWord, UpperFold{});
}

}  // namespace

const Char* SearchBuf(const Char* Buf, Integer BufLen, Integer SelStart, Integer SelLength,
                      const String& SearchString, TStringSearchOptions Options)
{
    return SearchIn(Buf, BufLen, SelStart, SelLength, SearchString, Options);
}

const Byte* SearchBufLatin1(const Byte* Buf, Integer BufLen, Integer SelStart, Integer SelLength,
                            const String& SearchString, TStringSearchOptions Options)
{
    return SearchIn(Buf, BufLen, SelStart, SelLength, SearchString, Options);
}

Integer SearchLineText(TLineView ALine, Integer AFrom, Integer ABufLen, Integer ASelStart, const String& SearchString,
                       TStringSearchOptions Options)
{
    if (ALine.empty())
        return -1;
    if (const Byte* narrow = ALine.NarrowData()) {
        const Byte* hit = SearchBufLatin1(narrow + AFrom, ABufLen, ASelStart, 0, SearchString, Options);
        return hit ? Integer(hit - narrow) : -1;
    }
    const Char* wide = ALine.WideData();
    const Char* hit = SearchBuf(wide + AFrom, ABufLen, ASelStart, 0, SearchString, Options);
    return hit ? Integer(hit - wide) : -1;
}

}  // namespace sx
