// Search and replace. The dialog message takes the options over from the
// dialog; one pass of the search message scans line by line from the caret
// or from the region's far end, selects the first hit and, in replace mode,
// replaces it. A replace-all is a chain of posted passes, one per hit, so
// the control paints and the user can answer between two of them.
#include "codeedit/uSxCodeEdit.h"

#include "codeedit/fSxCodeEditSearchReplaceDlg.h"

#include "platform/Dialogs.h"
#include "platform/RegExpr.h"
#include "platform/StrUtils.h"

#include <algorithm>
#include <cstdlib>

namespace sx {

using namespace uSxCodeEdit;
using namespace fSxCodeEditSearchReplaceDlg;

namespace {

/// The dialog's answer for "Replace All".
constexpr TModalResult ReplaceAllResult = mrYesToAll;

// Item indexes of the dialog's radio groups.
constexpr Integer ScopeGlobal = 0;
constexpr Integer ScopeSelectedText = 1;
constexpr Integer OriginFromCursor = 0;
constexpr Integer OriginEntireScope = 1;
constexpr Integer DirectionForward = 0;

constexpr TPoint NoPosition{-1, -1};

/// Text order: the smaller line first, on one line the smaller column.
bool Before(TPoint a, TPoint b) { return a.Y < b.Y || (a.Y == b.Y && a.X < b.X); }

/// The options of SearchBuf for a search's case, whole words and direction.
TStringSearchOptions SearchBufOptions(const TSxSearchReplaceOptions& o)
{
    TStringSearchOptions options;
    if (o.CaseSensitive)
        options.Include(TStringSearchOption::soMatchCase);
    if (o.WholeWordsOnly)
        options.Include(TStringSearchOption::soWholeWord);
    if (o.SearchForward)
        options.Include(TStringSearchOption::soDown);
    return options;
}

}  // namespace

Integer TSxCodeEdit::LineLength(Integer ALine) const
{
    return ALine >= 0 && ALine < FLines->Count() ? Integer(FLines->Line(ALine).size()) : 0;
}

void TSxCodeEdit::WMSearchReplaceDlg(TMessage& Message)
{
    if (!FSearchDlg) {
        FSearchDlg = new TFrmCodeEditSearchReplaceDlg(this);
        FSearchDlg->SetCtl3D(Ctl3D());
    }
    FSearchDlg->SetDlgType(Message.WParam == ReplaceDialogRequest ? replace : search);
    FSearchDlg->GetRgScope()->SetItemIndex(ScopeGlobal);
    FSearchDlg->GetRgOrigin()->SetItemIndex(OriginFromCursor);
    FSearchDlg->SetRegExpShown(HasExtOption(TSxCodeExtOption::coRegExpSearch));
    PrepareSearchDialog();
    const TModalResult result = FSearchDlg->ShowModal();
    if (result != mrOk && result != ReplaceAllResult)
        return;
    if (!CompileSearchPattern())
        return;
    TakeSearchOptions(result == ReplaceAllResult);
    PostMessage(this, WM_SX_SEARCHREPLACE);
}

void TSxCodeEdit::PrepareSearchDialog()
{
    if (SelLength() <= 0)
        return;
    if (FSelStart.Y != FSelEnd.Y) {
        FSearchDlg->GetRgScope()->SetItemIndex(ScopeSelectedText);
        FSearchDlg->GetRgOrigin()->SetItemIndex(OriginEntireScope);
        return;
    }
    const Integer first = std::min(FSelStart.X, FSelEnd.X), last = std::max(FSelStart.X, FSelEnd.X);
    String selected = LinePart(FSelStart.Y, first, ColumnSpan(first, last));
    if (selected.find(u' ') != String::npos)
        selected.clear();
    if (selected.empty())
        FSearchDlg->GetRgScope()->SetItemIndex(ScopeSelectedText);
    else
        FSearchDlg->GetEdtTextToFind()->SetText(selected);
}

void TSxCodeEdit::TakeSearchOptions(bool AReplaceAll)
{
    TSxSearchReplaceOptions& o = FSearchOptions;
    // A pattern is taken as typed: its blanks count.
    const String typed = FSearchDlg->GetEdtTextToFind()->Text();
    o.SearchString = FSearchRegExp ? typed : Trim(typed);
    o.CaseSensitive = FSearchDlg->GetChkBxCaseSensitive()->Checked();
    o.WholeWordsOnly = FSearchDlg->GetChkBxWholeWordsOnly()->Checked();
    if (FSearchDlg->GetRgScope()->ItemIndex() == ScopeGlobal) {
        WidenSearchRegion();
    } else {
        const bool endFirst = Before(FSelEnd, FSelStart);
        const TPoint first = endFirst ? FSelEnd : FSelStart;
        const TPoint last = endFirst ? FSelStart : FSelEnd;
        o.StartLine = first.Y;
        o.StartPos = first.X;
        o.EndLine = last.Y;
        o.EndPos = last.X;
    }
    o.SearchForward = FSearchDlg->GetRgDirection()->ItemIndex() == DirectionForward;
    o.Origin = FSearchDlg->GetRgOrigin()->ItemIndex() == OriginFromCursor ? SearchFromCursor : SearchEntireScope;
    o.Options = SearchBufOptions(o);
    o.Replace = FSearchDlg->DlgType() == replace;
    o.ReplaceWith = FSearchDlg->edtReplaceWith->Text();
    o.PromptOnReplace = FSearchDlg->chkBxPromptOnReplace->Checked();
    o.ReplaceAll = AReplaceAll;
    o.RegExp = FSearchRegExp != nullptr;
    FSearchResumeBefore = NoPosition;
}

void TSxCodeEdit::WidenSearchRegion()
{
    FSearchOptions.StartLine = 0;
    FSearchOptions.StartPos = 0;
    FSearchOptions.EndLine = FLines->Count() - 1;
    FSearchOptions.EndPos = LineLength(FSearchOptions.EndLine);
}

void TSxCodeEdit::WMSearchReplace(TMessage&)
{
    if (!FSearchDlg)
        return;
    const TPoint resume = std::exchange(FSearchResumeBefore, NoPosition);
    TPoint hit;
    bool found = false;
    try {
        found = FindSearchHit(resume, hit);
    } catch (const ERegExprLimit& e) {
        // A runaway pattern ends the pass, and with it a replace-all's chain.
        SxMsgBoxInfo(u"The regular expression '" + FSearchOptions.SearchString +
                         u"' took too many steps at one place of the text (" + e.Message() + u"); the search stops.",
                     String());
        return;
    }
    if (!found) {
        SxMsgBoxInfo(u"Search string '" + FSearchOptions.SearchString + u"' not found.", String());
        return;
    }
    SelectSearchHit(hit);
    WidenSearchRegion();
    FSearchOptions.Origin = SearchFromCursor;
    if (FSearchOptions.Replace)
        ReplaceSearchHit(hit);
}

bool TSxCodeEdit::FindText(const TSxFindRequest& ARequest, TPoint& AStart, TPoint& AEnd, String* AReplacement)
{
    // The dialog's search is put aside for this one and back after it, however it ends.
    struct SearchPutAside {
        TSxCodeEdit& Edit;
        TSxSearchReplaceOptions Options;
        std::unique_ptr<TRegExpr> RegExp;
        ~SearchPutAside()
        {
            Edit.FSearchOptions = std::move(Options);
            Edit.FSearchRegExp = std::move(RegExp);
        }
    } const putAside{*this, std::exchange(FSearchOptions, {}), std::move(FSearchRegExp)};
    TSxSearchReplaceOptions& o = FSearchOptions;
    o.SearchString = ARequest.Text;
    o.CaseSensitive = ARequest.CaseSensitive;
    o.WholeWordsOnly = ARequest.WholeWordsOnly;
    o.SearchForward = !ARequest.Backward;
    o.Options = SearchBufOptions(o);
    o.Replace = AReplacement != nullptr;
    o.ReplaceWith = ARequest.ReplaceWith;
    o.RegExp = ARequest.RegExp;
    WidenSearchRegion();
    if (ARequest.RegExp && !ARequest.Text.empty())
        FSearchRegExp = std::make_unique<TRegExpr>(
            ARequest.Text, TRegExprOptions{.CaseSensitive = o.CaseSensitive, .WholeWord = o.WholeWordsOnly});
    TPoint hit;
    if (!FindSearchHit(NoPosition, hit))
        return false;
    AStart = hit;
    AEnd = SearchHitEnd(hit);
    if (AReplacement)
        *AReplacement = SearchReplacement();
    return true;
}

bool TSxCodeEdit::FindSearchHit(TPoint AResume, TPoint& AHit)
{
    const TSxSearchReplaceOptions& o = FSearchOptions;
    // An empty text would match everywhere or nowhere; the pass ends as one without a hit.
    if (o.SearchString.empty())
        return false;
    TPoint origin = Point(FCharPos, FLinePos);
    if (!o.SearchForward && AResume != NoPosition && Before(AResume, origin))
        origin = AResume;
    if (FSearchRegExp && FSearchRegExp->SpansLines())
        return FindSpanningHit(origin, AHit);
    Integer line = o.Origin == SearchFromCursor ? origin.Y : (o.SearchForward ? o.StartLine : o.EndLine);
    const Integer step = o.SearchForward ? 1 : -1;
    // The range test comes behind the scan: the first line is scanned whatever its number.
    do {
        if (line < 0 || line >= FLines->Count())
            return false;
        const Integer column = SearchLine(line, origin);
        if (column >= 0) {
            AHit = Point(column, line);
            return true;
        }
        line += step;
    } while (line >= o.StartLine && line <= o.EndLine);
    return false;
}

Integer TSxCodeEdit::SearchLine(Integer ALine, TPoint AOrigin)
{
    const TSxSearchReplaceOptions& o = FSearchOptions;
    const TLineView text = FLines->Line(ALine);
    const auto length = Integer(text.size());
    const bool atOrigin = o.Origin == SearchFromCursor && ALine == AOrigin.Y;
    if (o.SearchForward) {
        const Integer lower = atOrigin ? AOrigin.X : (ALine == o.StartLine ? o.StartPos : 0);
        const Integer upper = std::min(ALine == o.EndLine ? o.EndPos : length, length);
        return SearchInLine(text, 0, upper, lower);
    }
    const Integer upper = std::min(atOrigin ? AOrigin.X : (ALine == o.EndLine ? o.EndPos : length), length);
    const Integer lower = std::max(ALine == o.StartLine ? o.StartPos : 0, 0);
    if (lower >= upper)
        return -1;
    return SearchInLine(text, lower, upper - lower, upper - lower);
}

Integer TSxCodeEdit::SearchInLine(TLineView AText, Integer AFrom, Integer ABufLen, Integer ASelStart)
{
    if (FSearchRegExp)
        return SearchInLineRegExp(AText, AFrom, ABufLen, ASelStart);
    return SearchLineText(AText, AFrom, ABufLen, ASelStart, FSearchOptions.SearchString, FSearchOptions.Options);
}

void TSxCodeEdit::SelectSearchHit(TPoint AHit)
{
    const TPoint front = AHit;
    const TPoint back = SearchHitEnd(AHit);
    // Each move collapses the selection, so its ends are written behind them.
    if (FSearchOptions.SearchForward) {
        SetLinePos(back.Y);
        SetCharPos(back.X);
        FSelStart = front;
        FSelEnd = back;
    } else {
        SetLinePos(front.Y);
        SetCharPos(front.X);
        FSelStart = back;
        FSelEnd = front;
    }
    Invalidate();
}

void TSxCodeEdit::ReplaceSearchHit(TPoint AHit)
{
    const TSxSearchReplaceOptions& o = FSearchOptions;
    Integer answer = idYes;
    if (o.PromptOnReplace) {
        const String question = u"Do you want to replace this occurrence of '" + o.SearchString + u"'?";
        answer = o.ReplaceAll ? SxMsgBoxYesNoCancel(question, String()) : SxMsgBoxYesNo(question, String());
    }
    if (answer == idYes) {
        CaretToSpanningHitStart(AHit);
        ReplaceSelectionBy(SearchReplacement());
    }
    if (!o.ReplaceAll || answer == idCancel)
        return;
    // A pattern's hits vary in length: the next one must end before this one started.
    if (answer == idYes && !o.SearchForward)
        FSearchResumeBefore = FSearchRegExp ? AHit : Point(AHit.X + Integer(o.SearchString.size()) - 1, AHit.Y);
    PostMessage(this, WM_SX_SEARCHREPLACE);
}

void TSxCodeEdit::ReplaceSelectionBy(const String& AText)
{
    String deleted;
    DeleteSelected(ctDelete, deleted);
    InsertText(ctPaste, AText);
    SetSelection(true);
    FSearchOptions.EndLine = FLines->Count() - 1;
    FSearchOptions.EndPos = LineLength(FSearchOptions.EndLine);
}

}  // namespace sx
