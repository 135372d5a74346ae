// TSxCodeEdit: the custom-drawn code editor control. It holds the lines, shows
// them through a language parser, keeps a caret that may stand beyond the end
// of a line, a selection, an undo stack, and two scroll bars of its own.
#pragma once

#include "codeedit/uSxCodeEditCaret.h"
#include "codeedit/uSxCodeEditLines.h"
#include "codeedit/uSxCodeEditTextArea.h"
#include "codeedit/uSxCodeEditTheme.h"
#include "codeedit/uSxCodeEditUndo.h"
#include "codeedit/uSxCodeParser.h"
#include "platform/Controls.h"
#include "platform/Menus.h"
#include "platform/ScrollBar.h"
#include "platform/StringList.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace sx {

class TSxAccessibleTextModel;
class TSxCodeEditFolding;
struct TSxFoldRegion;
class TSxFoldStructure;
class TSxLineLengths;
class TSxPaintCache;
struct TSxRowMove;
class TFrmCodeEditSearchReplaceDlg;
class TRegExpr;
class TSxStringStream;

namespace uSxCodeEdit {

enum class TSxCodeOption { coCanCollapse, coShowGuttor, coShowRightMargin };
/// A set in one byte: bit 0 coCanCollapse, 1 coShowGuttor, 2 coShowRightMargin.
using TSxCodeOptions = TSet<TSxCodeOption, 8>;

/// Behaviour beyond the classic control, each off by default, in a set of its
/// own so that Options keeps its one byte. A control whose ExtOptions are
/// empty behaves, paints and answers as the classic control does.
enum class TSxCodeExtOption {
    coLineNumbers,   ///< line numbers in a gutter that widens to fit them
    coCurrentLine,   ///< the caret's line painted in a colour of its own
    coBracketMatch,  ///< the bracket at the caret and its partner highlighted
    coRedo,          ///< undone steps can be redone
    coGroupUndo,     ///< a run of typing or of Backspaces undoes as one step
    coRegExpSearch,  ///< the search dialog offers "Regular expression": the text to find as a PCRE2 pattern
    coFolding,       ///< regions of code fold and unfold from buttons in the gutter and by keys
    coExactColors,   ///< a paint that starts anywhere colours as one that came down from the first line
    coLongLines,     ///< the horizontal scroll range and the caret reach the end of the longest line
    coPartialPaint,  ///< a paint draws again only the rows that changed since the last one
};
using TSxCodeExtOptions = TSet<TSxCodeExtOption, 32>;

/// Line numbers stand this many pixels from the left edge of the gutter at
/// the least, and this many from its right edge, where its rules stand.
constexpr Integer LineNumberLeftMargin = 4;
constexpr Integer LineNumberRightMargin = 6;
/// With coFolding the gutter holds a fold button left of the line numbers,
/// in this many pixels from its left edge.
constexpr Integer FoldButtonRoom = 20;

/// Bracket matching looks for a partner this many lines from the caret at
/// the most, and tokenizes this many characters of lines with brackets, so
/// that a lone bracket costs no more than one paint.
constexpr Integer BracketSearchLines = 10000;
constexpr std::size_t BracketSearchChars = 100000;

/// Declared for the folding of lines; no operation uses its values.
enum TSxLineKind { lkNotSet, lkNormal, lkMainOpen, lkMainClose, lkHidden };

enum TSxSearchOrigin { SearchFromCursor, SearchEntireScope };

/// The longest line an edit may make, in characters (512 MiB of text). The
/// caret may stand at any column, but typing there pads the line up to it:
/// an edit that would grow a line beyond this raises EOutOfMemory before it
/// changes anything, where the allocation would fail or exhaust the machine.
constexpr Integer MaxLineLength = 1 << 28;

/// Messages of the control's own.
constexpr Cardinal WM_SX_SELECTWORD = WM_USER + 1;
constexpr Cardinal WM_SX_SEARCHREPLACEDLG = WM_USER + 2;
constexpr Cardinal WM_SX_SEARCHREPLACE = WM_USER + 3;
/// WParam of WM_SX_SEARCHREPLACEDLG that asks for the replace dialog; any
/// other asks for the find dialog.
constexpr NativeUInt ReplaceDialogRequest = 1;
/// Extension (coRedo): plays the step undone last forward again.
constexpr Cardinal WM_SX_REDO = WM_USER + 4;
/// Extension (coExactColors): scans the next slice of line states, posted by
/// the control itself until every line's state is known.
constexpr Cardinal WM_SX_SCANLINES = WM_USER + 5;
/// A slice of that scan takes about this many milliseconds at most.
constexpr Integer LineScanSliceMs = 3;
/// Extension (coPartialPaint): draws the changes of the handlers that ran
/// before it on the kept bitmaps, posted by the control itself.
constexpr Cardinal WM_SX_PAINTAHEAD = WM_USER + 6;

/// Makes a colour APercent darker when ADarken is True: each byte of its RGB
/// value scaled by (100 - APercent) / 100, rounded down.
void DarkenColor(TColor& AColor, bool ADarken, Integer APercent);

}  // namespace uSxCodeEdit

using uSxCodeEdit::TSxCodeExtOption;
using uSxCodeEdit::TSxCodeExtOptions;
using uSxCodeEdit::TSxCodeOption;
using uSxCodeEdit::TSxCodeOptions;

/// Gives a painted line colours of its own: answer True and leave the two colours in the arguments.
using TSxParserLineChangeEvent =
    std::function<bool(Integer aLineNr, TColor& aBackGroundColor, TColor& aFontColor)>;

/// The options of the search and the replace, filled in from the dialog.
struct TSxSearchReplaceOptions {
    String SearchString;
    bool CaseSensitive = false;
    bool WholeWordsOnly = false;
    bool SearchForward = false;
    uSxCodeEdit::TSxSearchOrigin Origin = uSxCodeEdit::SearchFromCursor;
    Integer StartLine = 0;
    Integer StartPos = 0;
    Integer EndLine = 0;
    Integer EndPos = 0;
    TStringSearchOptions Options;
    bool Replace = false;
    String ReplaceWith;
    bool PromptOnReplace = false;
    bool ReplaceAll = false;
    /// The text to find is a regular expression (coRegExpSearch, the box ticked).
    bool RegExp = false;
};

/// Extension: a search that TSxCodeEdit::FindText makes without the dialog.
struct TSxFindRequest {
    String Text;
    bool CaseSensitive = false;
    bool WholeWordsOnly = false;
    bool Backward = false;
    /// Text is a regular expression (PCRE2), as with coRegExpSearch.
    bool RegExp = false;
    /// What FindText gives as the hit's replacement: with RegExp its group
    /// references and escapes expanded.
    String ReplaceWith;
};

/// Declared for clients of the library; no operation of the system makes one.
class TSxCodeList : public TPersistent {
public:
    String GetStrings(Integer) const { return String(); }
    void SetStrings(Integer, const String&) {}
};

class TSxCodeEdit : public TCustomControl {
    SX_DECLARE_CLASS
public:
    explicit TSxCodeEdit(TComponent* AOwner);
    ~TSxCodeEdit() override;

    // Framework virtuals the control overrides.
    void Loaded() override;
    void Notification(TComponent* AComponent, TOperation Operation) override;
    void SetParent(TWinControl* AParent) override;
    void SetBounds(Integer ALeft, Integer ATop, Integer AWidth, Integer AHeight) override;
    void Dispatch(TMessage& Message) override;

    // Published properties.
    TBevelEdges BevelEdges() const { return FBevelEdges; }
    void SetBevelEdges(TBevelEdges v) { FBevelEdges = v; }
    TBevelCut BevelInner() const { return FBevelInner; }
    void SetBevelInner(TBevelCut v) { FBevelInner = v; }
    TBevelCut BevelOuter() const { return FBevelOuter; }
    void SetBevelOuter(TBevelCut v) { FBevelOuter = v; }
    TBevelKind BevelKind() const { return FBevelKind; }
    void SetBevelKind(TBevelKind v) { FBevelKind = v; }
    TBevelWidth BevelWidth() const { return FBevelWidth; }
    void SetBevelWidth(TBevelWidth v) { FBevelWidth = v; }
    TBorderStyle BorderStyle() const { return FBorderStyle; }
    void SetBorderStyle(TBorderStyle Value);
    TStrings& Lines() { return GetLines(); }
    void SetLines(const TStrings& Value);
    TSxLangParser* Parser() { return GetParser(); }
    void SetParser(TSxLangParser* Value);
    TPopupMenu* PopupMenu() const { return FPopupMenu; }
    void SetPopupMenu(TPopupMenu* Value);
    Integer GuttorWidth() const { return FGuttorWidth; }
    void SetGuttorWidth(Integer Value);
    Integer RightMargin() const { return FRightMargin; }
    void SetRightMargin(Integer Value);
    TColor RightMarginColor() const { return FRightMarginColor; }
    void SetRightMarginColor(TColor Value) { SetPaintColor(FRightMarginColor, Value); }
    TSxCodeOptions Options() const { return FOptions; }
    void SetOptions(TSxCodeOptions Value);
    /// Extensions: see TSxCodeExtOption.
    TSxCodeExtOptions ExtOptions() const { return FExtOptions; }
    void SetExtOptions(TSxCodeExtOptions Value);
    bool HasExtOption(TSxCodeExtOption Option) const { return FExtOptions.Contains(Option); }
    /// The colour of the line numbers (coLineNumbers).
    TColor LineNumberColor() const { return FLineNumberColor; }
    void SetLineNumberColor(TColor Value) { SetPaintColor(FLineNumberColor, Value); }
    /// The background of the caret's line (coCurrentLine).
    TColor CurrentLineColor() const { return FCurrentLineColor; }
    void SetCurrentLineColor(TColor Value) { SetPaintColor(FCurrentLineColor, Value); }
    /// The text area's ground; a row of a colour table in clWindow stands for it.
    TColor Color() const { return FColor; }
    void SetColor(TColor Value) { SetPaintColor(FColor, Value); }
    TColor GutterColor() const { return FGutterColor; }
    void SetGutterColor(TColor Value) { SetPaintColor(FGutterColor, Value); }
    /// The selected text is drawn in SelectionTextColor on SelectionColor.
    TColor SelectionColor() const { return FSelectionColor; }
    void SetSelectionColor(TColor Value) { SetPaintColor(FSelectionColor, Value); }
    TColor SelectionTextColor() const { return FSelectionTextColor; }
    void SetSelectionTextColor(TColor Value) { SetPaintColor(FSelectionTextColor, Value); }
    /// The caret block, and the text an input method is composing at it.
    TColor CaretColor() const { return FCaret->Color(); }
    void SetCaretColor(TColor Value);
    /// The ground of the bracket next to the caret and of its partner
    /// (coBracketMatch), and of a bracket that has none.
    TColor BracketMatchColor() const { return FBracketMatchColor; }
    void SetBracketMatchColor(TColor Value) { SetPaintColor(FBracketMatchColor, Value); }
    TColor BracketMismatchColor() const { return FBracketMismatchColor; }
    void SetBracketMismatchColor(TColor Value) { SetPaintColor(FBracketMismatchColor, Value); }
    /// All the control's colours at once, as a theme holds them (uSxCodeEditTheme.h).
    TSxCodeEditColors Colors() const;
    void SetColors(const TSxCodeEditColors& Value);
    /// With coBracketMatch, the bracket next to the caret (the one before it
    /// first) and its partner, (-1, -1) when the text has none; False when
    /// no bracket of code stands next to the caret or the search ran out of
    /// reach before the end of the text.
    bool MatchingBracket(TPoint& ABracket, TPoint& APartner);
    /// Moves the caret to the partner of the bracket next to it (Ctrl+]),
    /// on the same side of the partner as it stood of the bracket.
    void GotoMatchingBracket();
    const TNotifyEvent& OnCursorChange() const { return FOnCursorChange; }
    void SetOnCursorChange(TNotifyEvent Value);
    const TNotifyEvent& OnChange() const { return FOnChange; }
    void SetOnChange(TNotifyEvent Value);
    bool ReadOnly() { return GetReadOnly(); }
    const TSxParserLineChangeEvent& OnParserLineChange() const { return FOnParserLineChange; }
    void SetOnParserLineChange(TSxParserLineChangeEvent Value);
    Integer TabIndentSize() const { return FTabIndentSize; }
    void SetTabIndentSize(Integer Value) { FTabIndentSize = Value; }

    // Public properties.
    Integer LinePos() const { return FLinePos; }
    void SetLinePos(Integer Value);
    Integer CharPos() const { return FCharPos; }
    void SetCharPos(Integer Value);
    bool ShowGuttor() const { return GetShowGuttor(); }
    void SetShowGuttor(bool Value);
    bool ShowRightMargin() const { return GetShowRightMargin(); }
    void SetShowRightMargin(bool Value);
    TPoint SelStart() const { return FSelStart; }
    void SetSelStart(TPoint Value);
    TPoint SelEnd() const { return FSelEnd; }
    void SetSelEnd(TPoint Value);
    /// False when either end is cleared (-1), ran off the last line, lies on a
    /// line before the first, or both are equal.
    bool HasSelection() const;
    /// Extension: the line store itself, to read lines without copying them
    /// and to count its changes.
    const TSxCodeEditLines& LineStore() const { return *FLines; }
    String Text() { return GetText(); }
    void SetText(const String& Value);
    /// Extension: SetText of a text held elsewhere, read in place; a line
    /// break ends a line, the last one too, so n line breaks make n + 1 lines.
    void SetTextView(std::u16string_view Value);
    Integer ParserLineNr() const { return FParserLineNr; }
    void SetParserLineNr(Integer Value);
    bool Modified() const { return FModified; }
    void SetModified(bool Value) { FModified = Value; }
    bool CanUndo() { return GetCanUndo(); }
    /// Extension: whether WM_SX_REDO has a step to play (never without coRedo).
    bool CanRedo() const { return HasExtOption(TSxCodeExtOption::coRedo) && FUndoList->RedoCount() > 0; }
    /// Extension: the most undo records kept, 0 for all that memory holds;
    /// the records that can be redone count against it too.
    Integer UndoLimit() const { return FUndoList->Limit(); }
    void SetUndoLimit(Integer Value) { FUndoList->SetLimit(Value); }
    /// Extension (coGroupUndo): the longest pause in milliseconds between two
    /// typed characters, or two Backspaces, of one undo step.
    Integer UndoGroupPause() const { return FUndoList->GroupPause(); }
    void SetUndoGroupPause(Integer Value) { FUndoList->SetGroupPause(Value); }
    bool CanPaste() { return GetCanPaste(); }

    /// Extension: the next hit from the caret to the end of the text in the
    /// search's direction, found by the engine of the search dialog for a
    /// host without the dialog; the dialog's own search (F3) stays as it was.
    /// Answers whether there is one, with its start and end and, when asked
    /// for, its replacement. Raises ERegExprError for a pattern that does not
    /// compile and ERegExprLimit for a runaway match.
    bool FindText(const TSxFindRequest& ARequest, TPoint& AStart, TPoint& AEnd, String* AReplacement = nullptr);

    /// Extension (coFolding): folding of regions of code. Fold folds the
    /// region that starts at ALine, or else the innermost one that holds it;
    /// Unfold unfolds the folded region that starts at or hides ALine. Each
    /// answers whether it changed anything.
    bool Fold(Integer ALine);
    bool Unfold(Integer ALine);
    bool ToggleFold(Integer ALine);
    void FoldAll();
    void UnfoldAll();
    /// Whether ALine shows: True for every line without coFolding.
    bool IsLineVisible(Integer ALine);
    /// The regions of the text that can fold, and those folded now, in order
    /// of their first line; First stays shown, the lines after it up to Last hide.
    std::vector<TSxFoldRegion> FoldRegions();
    /// The region that starts at ALine, if one does and can fold.
    std::optional<TSxFoldRegion> FoldRegionAt(Integer ALine);
    std::vector<TSxFoldRegion> FoldedRegions();
    /// Fires after regions fold or unfold, by the user, the application or an edit.
    const TNotifyEvent& OnFoldChange() const { return FOnFoldChange; }
    void SetOnFoldChange(TNotifyEvent Value) { FOnFoldChange = std::move(Value); }

    // Public operations.
    void CalcCursor(Integer& X, Integer& Y);
    void InsertCode(Integer ALinePos, Integer ACharPos, const String& ATxt);
    void DeleteSelected(TSxChangeType AChangeType, String& Deleted);
    void GetSelected(String& Selected);
    Integer SelLength();

    // Virtual operations the class adds, in the order of their slots.
    virtual void SetReadOnly(bool Value);
    virtual bool GetReadOnly();
    virtual void KeyCommand(Word& Key, TShiftState Shift);
    virtual void ClearSelection();
    virtual void Changed();
    virtual void InsertText(TSxChangeType AChangeType, const String& aTxt);
    virtual void AddTxt(const String& aTxt);
    virtual void AddCode(const String& aTxt);
    virtual void LoadFromFile(const String& aFileName);
    /// Extension: LoadFromFile's second half, for a caller that read the file
    /// itself: the stream's lines become the text and the stream is left empty.
    void LoadFromStream(TSxStringStream& aStream);
    /// Ctrl+A: the caret to the end of the last line, the anchor at (0, 0).
    void SelectAll();

    /// OnChanging of the line store: marks the control modified and repaints it.
    virtual void LinesChanged(TObject* Sender);

    // Metrics: one character cell and one line, in pixels.
    Integer GetCharWidth();
    Integer GetLineWidth();
    Integer RealGuttorWidth() const;
    /// The text area's geometry as the control stands now.
    TSxTextArea TextArea();

    TScrollBar& HScrollBar() { return *FHScrollBar; }
    TScrollBar& VScrollBar() { return *FVScrollBar; }
    TSxUndoList& UndoList() { return *FUndoList; }

    /// The text as screen readers read it (uSxCodeEditAccessible.cpp): made
    /// when one first asks, so that nothing is tracked before.
    TAccessibleText* AccessibleText() override;

    /// With coPartialPaint, a change is drawn on the kept bitmaps when the
    /// screen is next updated, and only its rows are asked to show.
    void Invalidate() override;

protected:
    void Paint() override;
    /// Sets a colour the paint uses and repaints.
    void SetPaintColor(TColor& AField, TColor AValue)
    {
        AField = AValue;
        Invalidate();
    }

    // The framework's key and mouse events.
    void KeyDown(Word& Key, TShiftState Shift) override;
    void MouseDown(TMouseButton Button, TShiftState Shift, Integer X, Integer Y) override;
    void MouseMove(TShiftState Shift, Integer X, Integer Y) override;
    void MouseUp(TMouseButton Button, TShiftState Shift, Integer X, Integer Y) override;
    void DblClick() override;

    // Message handlers.
    virtual void WMSselectWord(TMessage& Message);
    virtual void WMSearchReplaceDlg(TMessage& Message);
    virtual void WMSearchReplace(TMessage& Message);
    virtual void WMCut(TMessage& Message);
    virtual void WMCopy(TMessage& Message);
    virtual void WMPaste(TMessage& Message);
    virtual void WMUndo(TMessage& Message);
    virtual void WMRedo(TMessage& Message);
    /// One slice of the line-state scan (coExactColors).
    void WMScanLines(TMessage& Message);
    void WMPaintAhead(TMessage& Message);
    virtual void WMEraseBkgnd(TMessage& Message);
    virtual void WMGetDlgCode(TMessage& Message);
    void WMChar(TMessage& Message) override;
    virtual void WMMouseWheel(TMessage& Message);
    virtual void CMWantSpecialKey(TMessage& Message);
    void CMEnter(TMessage& Message) override;
    void CMExit(TMessage& Message) override;
    void ParentWindowChanged() override;

    // Input methods (uSxCodeEditInputMethod.cpp): a commit is typed, the
    // text still being composed shows at the caret.
    void ImeComposition(const TImeComposition& Composition) override;
    bool ImeRequest(TImeQuery Query, TImeAnswer& Answer) override;

    /// Clears the selection and puts the caret at (0, 0).
    void InitSelectionAndPosition();
    /// A load's first step: the caret and both scroll bars to the top.
    void CaretToTop();
    /// A load's last step: the stream's lines become the text.
    void TakeStreamLines(TSxStringStream& aStream);
    void SetSelection(bool IgnoreShift);
    /// The moving end lies after the anchor: the normal state after selecting forwards.
    bool SelectionReversed() const;
    /// Exchanges the two ends and puts the caret on the new moving end, with no event.
    void SwapSelectionEnds();
    /// An anchor beyond the last line moves onto a line added at the end and
    /// reads as running off it; answers whether it did.
    bool RepairSelectionEnd();
    /// After the repair step: the earlier end lies beyond the last line too,
    /// so both ran off the text and nothing is selected. No line may be
    /// asked for there, so the three readers of the selection stop.
    bool StartRanOff() const;
    /// Up to ACount characters of a line from column AFrom: only what the line holds.
    String LinePart(Integer ALine, Integer AFrom, Integer ACount) const;
    /// ATo - AFrom, saturated to the Integer range: an application may set
    /// the ends of a selection to any column, negative ones included.
    static Integer ColumnSpan(Integer AFrom, Integer ATo);
    void BackSpaceSelected();
    /// Adds empty lines until line ALine exists.
    void EnsureLine(Integer ALine);
    /// Raises EOutOfMemory when AAdded characters put in at column AColumn of
    /// line ALine would make it longer than MaxLineLength.
    void CheckLineRoom(Integer ALine, Integer AColumn, std::size_t AAdded) const;
    /// Enter in AddTxt: the line breaks at the caret, both halves trimmed, and
    /// the caret goes to the new line with the indent of the nearest text above.
    void BreakLineAtCaret(const String& S);
    void IndentNewLine();
    /// InsertText's split at FSelStart: the tail goes to a new line below and
    /// the caret to its start.
    void SplitLineAtSelStart();
    /// Backspace inside leading white space: back to the nearest smaller
    /// indent of this line or of one above; answers whether it moved.
    bool BackToIndent(const String& S);
    /// Backspace at column 0: this line is joined to the end of the one above.
    void JoinWithLineAbove(const String& S);
    /// Backspace within a line: the character left of the caret goes.
    void RemoveCharLeftOfCaret(String S);
    void GotoNextChar(bool AForward);
    /// What KeyDown does last, after the application saw the key: the caret keys and the Delete key.
    void ActOnKey(Word Key, TShiftState Shift);
    /// The Delete key: the selection, or one character or line break at the caret.
    void DeleteKey(TShiftState Shift);
    /// A press or drag at (X, Y) puts the caret on the cell under the point.
    void MoveCaretToPoint(Integer X, Integer Y);
    /// With line numbers shown, whether (X, Y) lies on them.
    bool OnLineNumbers(Integer X) const;
    /// The line of the text shown at the pixel row Y, within the text.
    Integer LineAtPixel(Integer Y);
    /// A drag over the line numbers selects whole lines, from the line
    /// first pressed (FLineSelectAnchor) to ALine.
    void SelectWholeLines(Integer ALine);
    /// A bracket of code, at a column of a line (uSxCodeEditBrackets.cpp).
    struct TBracketAt {
        Integer Column;
        Char Bracket;
        TColor TextColor;  ///< of its token, as the parser gave it
        TFontStyles Style;
    };
    /// The brackets in the code tokens of ALine, left to right; the line's
    /// length is taken from ABudget, and nothing is read once it is spent.
    std::vector<TBracketAt> CodeBrackets(Integer ALine, std::size_t& ABudget);
    bool BracketAtCaret(TBracketAt& ABracket);
    /// None when the search ran out of reach.
    std::optional<TPoint> FindPartner(const TBracketAt& ABracket);
    /// The gutter's width that fits the number of the last line (uSxCodeEditGutter.cpp).
    Integer LineNumberGutterWidth() const;
    /// Folding, when coFolding is on (uSxCodeEditFold.cpp): brought in line
    /// with the text, or null.
    TSxCodeEditFolding* ActiveFolding();
    /// Makes or drops the folding as coFolding and coExactColors say.
    void ApplyFoldingOption();
    /// With coExactColors, the state of every line start as a scan from the
    /// first line finds it; null without.
    TSxFoldStructure* LineStates();
    /// With coExactColors, posts the next slice of the line-state scan unless
    /// one is on its way or every state is known.
    void ScheduleLineScan();
    /// The line ASteps shown lines below ALine (above for a negative count).
    Integer ShownLineFrom(Integer ALine, Integer ASteps);
    /// The row of ALine and the line of ARow: equal without folding.
    Integer RowOfLine(Integer ALine);
    Integer LineOfRow(Integer ARow);
    /// A press on a fold button toggles its region; answers whether it was one.
    bool ClickFoldButton(Integer X, Integer Y);
    /// The fold keys: Ctrl+Shift+[ and ], Ctrl+Alt+[ and ]; answers whether Key was one.
    bool FoldKey(Word Key, TShiftState Shift);
    /// After folding: the caret leaves the hidden lines for the region's first line.
    void CaretOutOfFolds();
    void ResetCaret();
    void PositionScollBars();
    void ScrollChange(TObject* Sender);
    void CodeChange(TObject* Sender);
    void SetCharWidth(Integer Value);
    void SetLineWidth(Integer Value);
    TSxLangParser* GetParser();
    TStrings& GetLines() { return *FLines; }
    String GetText();
    bool GetShowGuttor() const;
    bool GetShowRightMargin() const;
    bool GetCanUndo();
    bool GetCanPaste();
    /// The parser's feed during a paint: hands over one line at a time with CR LF.
    bool ParserGetNewBuffer(bool AReset, String& S);
    /// Folding is declared and not active: no line is ever collapsed.
    bool IsLineCollapse(Integer ALineNr, bool& ACollapsed);

    // Search and replace.
    /// Before the dialog opens: a one-line selection without a blank becomes
    /// the text to find; any other selection chooses the scope "Selected text".
    void PrepareSearchDialog();
    /// Fills FSearchOptions from the confirmed dialog.
    void TakeSearchOptions(bool AReplaceAll);
    /// The search region becomes the whole text.
    void WidenSearchRegion();
    /// Scans line by line from the first line of the pass; answers whether
    /// there is a hit and where it starts. AResume, when set, keeps a pass of
    /// a backward replace-all in front of the text that the last one put in.
    bool FindSearchHit(TPoint AResume, TPoint& AHit);
    /// The column of the hit in the range of columns that line ALine lends to
    /// the pass, or -1; AOrigin stands for the caret.
    Integer SearchLine(Integer ALine, TPoint AOrigin);
    /// SearchBuf on the part of a line from column AFrom on, ABufLen long,
    /// starting at ASelStart in that part; the column of the hit in the line, or -1.
    Integer SearchInLine(TLineView AText, Integer AFrom, Integer ABufLen, Integer ASelStart);
    void SelectSearchHit(TPoint AHit);
    /// The replace step: asks when told to, replaces, and posts the next
    /// pass of a replace-all.
    void ReplaceSearchHit(TPoint AHit);
    void ReplaceSelectionBy(const String& AText);
    /// The length of a line, 0 for a line the store does not hold.
    Integer LineLength(Integer ALine) const;

    TBorderStyle FBorderStyle = TBorderStyle::bsSingle;
    bool FModified = false;
    TSxUndoList* FUndoList = nullptr;
    TSxCodeEditLines* FLines = nullptr;
    Integer FCharPos = 0;
    Integer FLinePos = 0;
    Integer FGuttorWidth = 20;
    TSxLangParser* FParser = nullptr;
    Integer FParserLineNr = 0;
    TSxCaret* FCaret = nullptr;
    Integer FCharWidth = 0;
    Integer FLineWidth = 0;
    TScrollBar* FHScrollBar = nullptr;
    TScrollBar* FVScrollBar = nullptr;
    bool InPaint = false;
    bool InMouseDown = false;
    bool inMouseMove = false;
    Integer FRightMargin = 80;
    TColor FRightMarginColor = ClassicEditColors.RightMarginColor;
    TSxCodeOptions FOptions;
    TPoint FSelStart{-1, -1};
    TPoint FSelEnd{-1, -1};
    TNotifyEvent FOnCursorChange;
    Integer FScollLines = 3;
    TObjectList* Collapse = nullptr;
    bool FInMouseSetSelection = false;
    bool ParserLineCollapse = false;
    bool ParserLineCollapsed = false;
    TNotifyEvent FOnChange;
    bool FReadOnly = false;
    TPopupMenu* FPopupMenu = nullptr;
    TSxParserLineChangeEvent FOnParserLineChange;
    Integer FTabIndentSize = 2;
    TFrmCodeEditSearchReplaceDlg* FSearchDlg = nullptr;
    TSxSearchReplaceOptions FSearchOptions;

private:
    /// The screen reader support reads the text model and installs itself here.
    friend class TSxAccessibleTextModel;
    /// Tells the screen reader support, if there is one, that the caret, the
    /// selection or ReadOnly may have changed; costs one test without it.
    void AccessibleStateChanged()
    {
        if (FAccessibility)
            NotifyAccessibility();
    }
    void NotifyAccessibility();
    std::unique_ptr<TSxAccessibleTextModel> FAccessibility;
    /// True from the end of construction to the start of destruction: the
    /// only time screen reader support may be made for the control.
    bool FAccessibilityAllowed = false;

    // Regular-expression search (coRegExpSearch, uSxCodeEditRegExpSearch.cpp).
    /// Compiles the dialog's pattern when the box is ticked and keeps it for
    /// the passes; a pattern that does not compile shows PCRE2's message,
    /// keeps the last search as it was and answers False.
    bool CompileSearchPattern();
    /// SearchInLine with the pattern: the hit's length goes to FSearchHitLength.
    Integer SearchInLineRegExp(TLineView AText, Integer AFrom, Integer ABufLen, Integer ASelStart);
    /// A pattern that may span lines, over the lines joined with "\n", from
    /// AOrigin (the caret, or the resume point); the hit's end goes to FSearchHitEnd.
    bool FindSpanningHit(TPoint AOrigin, TPoint& AHit);
    bool FindSpanningForward(TPoint AFrom, TPoint& AHit);
    bool FindSpanningBackward(TPoint ALimit, TPoint& AHit);
    /// The end of the hit that starts at AHit.
    TPoint SearchHitEnd(TPoint AHit) const;
    /// Before a hit over lines is replaced: the caret to its start, where the
    /// deletion of a selection over lines wants it, the hit still selected.
    void CaretToSpanningHitStart(TPoint AHit);
    /// The replacement of the hit just found, in replace mode, with CR LF for each line feed.
    void ExpandReplacement();
    /// The text of the pass's replacement: the expanded one for a pattern.
    const String& SearchReplacement() const;

    /// The compiled pattern of the last confirmed dialog, or none for a plain search.
    std::unique_ptr<TRegExpr> FSearchRegExp;
    Integer FSearchHitLength = 0;
    TPoint FSearchHitEnd{-1, -1};
    String FSearchReplacement;
    /// A stored line of one byte per character, widened for PCRE2.
    String FSearchLineBuffer;

    /// After a replacement in a backward replace-all, for the next pass: a
    /// hit must end at or before this point, so none starts at or behind the
    /// replaced hit's start, inside its replacement. For a hit of length L at
    /// column c of line n it is (c + L - 1, n); (-1, -1) when no pass is due.
    TPoint FSearchResumeBefore{-1, -1};
    /// The first half of a character outside the basic plane, typed as two
    /// WM_CHAR messages; it goes into the text together with the second half.
    Char FPendingHighSurrogate = 0;
    /// The text an input method is composing: shown at the caret, underlined,
    /// and held in no line and no undo record. FImeCursor is the
    /// composition's own cursor in it, where the caret block stands meanwhile.
    String FImePreEdit;
    Integer FImeCursor = 0;
    /// A commit's replacement range, columns from the caret within its line:
    /// those characters go first, as one deletion record.
    void ImeReplace(Integer AStart, Integer ALength);
    /// The caret's column as an input method counts it: in its line's text,
    /// so a caret in virtual space stands at the line's end.
    Integer ImeColumn(Integer AColumn) const;
    /// The top left pixel of the caret's cell, in client pixels (clamped far
    /// out); False when the cell lies outside the text area.
    bool CaretCell(TPoint& ACell);
    /// The caret's rectangle in client pixels, at the composition's cursor
    /// while a composition shows.
    TRect ImeCaretRect();
    /// Puts the caret block at the composition's cursor, if it shows.
    void PlaceCaretInComposition();
    /// The parser's feed while this control paints; a type of its own so that
    /// the control can tell its feed from another control's.
    struct ParserFeed {
        TSxCodeEdit* Control;
        bool operator()(bool AReset, String& S) const { return Control->ParserGetNewBuffer(AReset, S); }
    };
    void ReleaseParserFeed(TSxLangParser* parser);
    /// Message number to handler, for Dispatch.
    static const TMessageHandler<TSxCodeEdit> MessageTable[17];
    /// The values that live for one paint, and the steps of the paint.
    class PaintPass;
    struct PaintRow;
    /// The bitmaps of the last paint, and with coPartialPaint its row keys.
    std::unique_ptr<TSxPaintCache> FPaintCache;
    /// Draws the changes on the kept bitmaps and asks for their rows to show.
    void PaintAhead();
    bool FPaintAheadPosted = false;
    /// Asks for the rows between the band's top and bottom pixel to show.
    void ShowRows(std::pair<Integer, Integer> ABand);
    /// The pixels from the top to the bottom of the rows a move covers.
    std::pair<Integer, Integer> RowsBand(const TSxRowMove& AMove);
    /// The part of the rows from ATop to ABottom that the paint shows.
    TRect ShownArea(Integer ATop, Integer ABottom);

    TBevelEdges FBevelEdges{TBevelEdge::beLeft, TBevelEdge::beTop, TBevelEdge::beRight, TBevelEdge::beBottom};
    TBevelCut FBevelInner = TBevelCut::bvRaised;
    TBevelCut FBevelOuter = TBevelCut::bvLowered;
    TBevelKind FBevelKind = TBevelKind::bkNone;
    TBevelWidth FBevelWidth = 1;
    TSxCodeExtOptions FExtOptions;
    TColor FLineNumberColor = ClassicEditColors.LineNumberColor;
    TColor FCurrentLineColor = ClassicEditColors.CurrentLineColor;
    TColor FColor = ClassicEditColors.Color;
    TColor FGutterColor = ClassicEditColors.GutterColor;
    TColor FSelectionColor = ClassicEditColors.SelectionColor;
    TColor FSelectionTextColor = ClassicEditColors.SelectionTextColor;
    TColor FBracketMatchColor = ClassicEditColors.BracketMatchColor;
    TColor FBracketMismatchColor = ClassicEditColors.BracketMismatchColor;
    /// A drag that began on the line numbers, and the line it began on.
    bool FSelectingLines = false;
    Integer FLineSelectAnchor = 0;
    std::unique_ptr<TSxCodeEditFolding> FFolding;
    TNotifyEvent FOnFoldChange;
    bool FLineScanPosted = false;
    /// With coLongLines, the count of line lengths; null without.
    std::unique_ptr<TSxLineLengths> FLineLengths;
    /// The columns the horizontal scroll bar reaches and Right goes to.
    Integer ColumnRange();
    /// Makes or drops the count of line lengths as coLongLines says.
    void ApplyLongLinesOption();
    /// Makes or drops the kept bitmaps as coPartialPaint says.
    void ApplyPartialPaintOption();
};

}  // namespace sx
