// Regular-expression search (coRegExpSearch). The pattern is compiled when the
// dialog closes. A pattern that cannot match a line break is searched on the
// stored lines one by one, in the passes of the plain search; one that may is
// searched over the lines joined with "\n": forward in windows of lines that
// grow while a hit might run past their end, backward over the lines from the
// region's start to the limit. The replacement is expanded from the hit's groups.
#include "codeedit/uSxCodeEdit.h"

#include "codeedit/fSxCodeEditSearchReplaceDlg.h"

#include "platform/Dialogs.h"
#include "platform/RegExpr.h"

#include <algorithm>
#include <vector>

namespace sx {

namespace {

/// Lines joined per window of a forward search that may span lines; a window
/// grows fourfold while a hit might run past its end.
constexpr Integer SpanWindowLines = 64;

bool Before(TPoint a, TPoint b) { return a.Y < b.Y || (a.Y == b.Y && a.X < b.X); }

/// Lines First..Last of a store joined with "\n", the last one cut at
/// LastLength characters; Starts holds each line's offset in Text.
class JoinedLines {
public:
    JoinedLines(const TStringList& lines, Integer first, Integer last, Integer lastLength) : FFirst(first)
    {
        for (Integer line = first; line <= last; ++line) {
            if (line > first)
                Text += u'\n';
            FStarts.push_back(Integer(Text.size()));
            const TLineView view = lines.Line(line);
            view.AppendTo(Text);
            if (line == last)
                Text.resize(std::min(Text.size(), std::size_t(FStarts.back() + std::max(lastLength, 0))));
        }
    }
    /// The offset of a point, its column held within its line.
    Integer Offset(TPoint p) const
    {
        const std::size_t i = std::size_t(std::clamp(p.Y - FFirst, 0, Integer(FStarts.size()) - 1));
        const Integer end = i + 1 < FStarts.size() ? FStarts[i + 1] - 1 : Integer(Text.size());
        return std::clamp(FStarts[i] + p.X, FStarts[i], end);
    }
    TPoint At(Integer offset) const
    {
        const auto i = std::upper_bound(FStarts.begin(), FStarts.end(), offset) - FStarts.begin() - 1;
        return Point(offset - FStarts[std::size_t(i)], FFirst + Integer(i));
    }
    Integer Length() const { return Integer(Text.size()); }

    String Text;

private:
    Integer FFirst;
    std::vector<Integer> FStarts;
};

}  // namespace

bool TSxCodeEdit::CompileSearchPattern()
{
    const String pattern = FSearchDlg->GetEdtTextToFind()->Text();
    std::unique_ptr<TRegExpr> compiled;
    if (HasExtOption(TSxCodeExtOption::coRegExpSearch) && FSearchDlg->GetChkBxRegExp()->Checked() &&
        !pattern.empty()) {
        try {
            compiled = std::make_unique<TRegExpr>(
                pattern, TRegExprOptions{.CaseSensitive = FSearchDlg->GetChkBxCaseSensitive()->Checked(),
                                         .WholeWord = FSearchDlg->GetChkBxWholeWordsOnly()->Checked()});
        } catch (const ERegExprError& e) {
            SxMsgBoxInfo(u"The regular expression '" + pattern + u"' is not valid at position " +
                             IntToStr(e.Offset() + 1) + u": " + e.Message() + u".",
                         String());
            return false;
        }
    }
    FSearchRegExp = std::move(compiled);
    return true;
}

Integer TSxCodeEdit::SearchInLineRegExp(TLineView AText, Integer AFrom, Integer ABufLen, Integer ASelStart)
{
    const Char* chars = AText.WideData();
    if (!chars) {
        FSearchLineBuffer.clear();
        AText.AppendTo(FSearchLineBuffer);
        chars = FSearchLineBuffer.data();
    }
    // Forward the part ends the subject; backward the whole line is the
    // subject, so that $ does not match at the caret.
    const TRegExprHit hit = FSearchOptions.SearchForward
                                ? FSearchRegExp->Find(chars, AFrom + ABufLen, AFrom + ASelStart)
                                : FSearchRegExp->FindLast(chars, Integer(AText.size()), AFrom, AFrom + ASelStart);
    if (!hit.Found())
        return -1;
    FSearchHitLength = hit.Length;
    ExpandReplacement();
    return hit.Start;
}

bool TSxCodeEdit::FindSpanningHit(TPoint AOrigin, TPoint& AHit)
{
    const TSxSearchReplaceOptions& o = FSearchOptions;
    const bool fromCursor = o.Origin == uSxCodeEdit::SearchFromCursor;
    if (o.SearchForward) {
        const TPoint start = Point(o.StartPos, o.StartLine);
        const TPoint from = fromCursor ? AOrigin : start;
        return FindSpanningForward(Before(from, start) ? start : from, AHit);
    }
    const TPoint end = Point(o.EndPos, o.EndLine);
    const TPoint limit = fromCursor ? AOrigin : end;
    return FindSpanningBackward(Before(end, limit) ? end : limit, AHit);
}

bool TSxCodeEdit::FindSpanningForward(TPoint AFrom, TPoint& AHit)
{
    const TSxSearchReplaceOptions& o = FSearchOptions;
    TPoint from = AFrom;
    Integer size = SpanWindowLines;
    while (from.Y <= o.EndLine && from.Y < FLines->Count()) {
        // One line before the window lets a lookbehind see the line break.
        const Integer context = std::max(from.Y - 1, 0);
        const Integer last = std::min({from.Y + size - 1, o.EndLine, FLines->Count() - 1});
        const bool more = last < o.EndLine && last < FLines->Count() - 1;
        const JoinedLines joined(*FLines, context, last, last == o.EndLine ? o.EndPos : LineLength(last));
        const TRegExprHit hit = FSearchRegExp->Find(joined.Text.data(), joined.Length(), joined.Offset(from), more);
        if (hit.Found()) {
            AHit = joined.At(hit.Start);
            FSearchHitEnd = joined.At(hit.End());
            ExpandReplacement();
            return true;
        }
        if (!more)
            return false;
        // A hit may need more lines; otherwise none starts before the window's last line.
        if (hit.NeedsMore)
            size *= 4;
        else
            from = Point(0, last);
    }
    return false;
}

bool TSxCodeEdit::FindSpanningBackward(TPoint ALimit, TPoint& AHit)
{
    const TSxSearchReplaceOptions& o = FSearchOptions;
    const Integer first = std::max(o.StartLine, 0);
    const Integer last = std::min(ALimit.Y, FLines->Count() - 1);
    if (last < first)
        return false;
    const JoinedLines joined(*FLines, first, last, last == o.EndLine ? o.EndPos : LineLength(last));
    const TRegExprHit hit = FSearchRegExp->FindLast(joined.Text.data(), joined.Length(),
                                                    joined.Offset(Point(o.StartPos, first)), joined.Offset(ALimit));
    if (!hit.Found())
        return false;
    AHit = joined.At(hit.Start);
    FSearchHitEnd = joined.At(hit.End());
    ExpandReplacement();
    return true;
}

TPoint TSxCodeEdit::SearchHitEnd(TPoint AHit) const
{
    if (!FSearchRegExp)
        return Point(AHit.X + Integer(FSearchOptions.SearchString.size()), AHit.Y);
    return FSearchRegExp->SpansLines() ? FSearchHitEnd : Point(AHit.X + FSearchHitLength, AHit.Y);
}

void TSxCodeEdit::CaretToSpanningHitStart(TPoint AHit)
{
    const TPoint end = SearchHitEnd(AHit);
    if (end.Y == AHit.Y)
        return;
    SetLinePos(AHit.Y);
    SetCharPos(AHit.X);
    FSelStart = AHit;
    FSelEnd = end;
}

void TSxCodeEdit::ExpandReplacement()
{
    if (!FSearchOptions.Replace)
        return;
    const String expanded = FSearchRegExp->Expand(FSearchOptions.ReplaceWith);
    FSearchReplacement.clear();
    for (const Char c : expanded) {
        // The line store makes one break of any two neighbouring break characters: each feed goes in as CR LF.
        if (c == u'\n')
            FSearchReplacement += u'\r';
        FSearchReplacement += c;
    }
}

const String& TSxCodeEdit::SearchReplacement() const
{
    return FSearchRegExp ? FSearchReplacement : FSearchOptions.ReplaceWith;
}

}  // namespace sx
