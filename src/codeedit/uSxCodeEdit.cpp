// The frame of the code edit control: construction and destruction, the line
// store and its events, the parser ownership rules, options and messages.
#include "codeedit/uSxCodeEdit.h"

#include "codeedit/fSxCodeEditSearchReplaceDlg.h"
#include "codeedit/uSxCodeEditAccessible.h"
#include "codeedit/uSxCodeEditFolding.h"
#include "codeedit/uSxCodeEditPaintCache.h"
#include "platform/PostedMessages.h"
#include "codeedit/uSxCodeEditLineLengths.h"

#include "platform/RegExpr.h"

namespace sx {

using namespace uSxCodeEdit;

SX_DEFINE_CLASS(TSxCodeEdit, TCustomControl)

const TMessageHandler<TSxCodeEdit> TSxCodeEdit::MessageTable[17] = {
    {WM_SX_SELECTWORD, &TSxCodeEdit::WMSselectWord},
    {WM_SX_SEARCHREPLACEDLG, &TSxCodeEdit::WMSearchReplaceDlg},
    {WM_SX_SEARCHREPLACE, &TSxCodeEdit::WMSearchReplace},
    {WM_CUT, &TSxCodeEdit::WMCut},
    {WM_COPY, &TSxCodeEdit::WMCopy},
    {WM_PASTE, &TSxCodeEdit::WMPaste},
    {WM_UNDO, &TSxCodeEdit::WMUndo},
    {WM_SX_REDO, &TSxCodeEdit::WMRedo},
    {WM_SX_SCANLINES, &TSxCodeEdit::WMScanLines},
    {WM_SX_PAINTAHEAD, &TSxCodeEdit::WMPaintAhead},
    {WM_ERASEBKGND, &TSxCodeEdit::WMEraseBkgnd},
    {WM_GETDLGCODE, &TSxCodeEdit::WMGetDlgCode},
    {WM_CHAR, &TSxCodeEdit::WMChar},
    {WM_MOUSEWHEEL, &TSxCodeEdit::WMMouseWheel},
    {CM_WANTSPECIALKEY, &TSxCodeEdit::CMWantSpecialKey},
    {CM_ENTER, &TSxCodeEdit::CMEnter},
    {CM_EXIT, &TSxCodeEdit::CMExit},
};

TSxCodeEdit::TSxCodeEdit(TComponent* AOwner) : TCustomControl(AOwner), FPaintCache(std::make_unique<TSxPaintCache>())
{
    FSearchDlg = nullptr;
    FBorderStyle = TBorderStyle::bsSingle;
    FTabIndentSize = 2;
    SetBounds(Left(), Top(), 100, 100);
    Integer wheelLines = 0;
    SystemParametersInfo(SPI_GETWHEELSCROLLLINES, 0, &wheelLines, 0);
    FScollLines = wheelLines < 1 ? 3 : wheelLines;
    Collapse = new TObjectList(true);
    FRightMarginColor = clBtnFace;
    SetShowRightMargin(true);
    FRightMargin = 80;
    SetTabStop(true);
    FCaret = new TSxCaret(this);
    FLines = new TSxCodeEditLines();
    FLines->OnChange = [this](TObject* sender) { LinesChanged(sender); };
    FLines->OnChanging = [this](TObject* sender) { LinesChanged(sender); };
    FLines->Add(String());
    FGuttorWidth = 20;
    SetShowGuttor(true);
    Font().SetName(u"Courier new");
    Font().SetSize(10);
    FHScrollBar = new TScrollBar(this);
    FHScrollBar->SetParent(this);
    FHScrollBar->OnChange = [this](TObject* sender) { ScrollChange(sender); };
    FVScrollBar = new TScrollBar(this);
    FVScrollBar->SetParent(this);
    FVScrollBar->OnChange = [this](TObject* sender) { ScrollChange(sender); };
    FLines->OnChange = [this](TObject* sender) { CodeChange(sender); };
    FLineWidth = 0;
    FCharWidth = 0;
    ClearSelection();
    FUndoList = new TSxUndoList(this);
    FModified = false;
    FAccessibilityAllowed = true;
}

TSxCodeEdit::~TSxCodeEdit()
{
    CancelScreenUpdate(this);
    FAccessibilityAllowed = false;
    FAccessibility.reset();
    FLines->SetFoldListener(nullptr);
    FFolding.reset();
    FreeAndNil(FSearchDlg);
    FreeAndNil(FUndoList);
    if (FParser && FParser->Owner() == this) {
        FreeAndNil(FParser);
    } else if (FParser) {
        // A parser of somebody else's outlives the control: it must not call back.
        ReleaseParserFeed(FParser);
        FParser->RemoveFreeNotification(this);
        FParser = nullptr;
    }
    FreeAndNil(Collapse);
    FreeAndNil(FCaret);
    FLines->OnChange = nullptr;
    FLines->OnChanging = nullptr;
    FreeAndNil(FLines);
}

void TSxCodeEdit::Dispatch(TMessage& Message)
{
    const std::uint64_t added = FUndoList->AddedCount();
    if (!DispatchToHandler(*this, MessageTable, Message))
        TCustomControl::Dispatch(Message);
    // An edit is over when its message is: a redo puts back what it left.
    if (FUndoList->AddedCount() != added)
        FUndoList->NoteStateAfter();
}

void TSxCodeEdit::Loaded()
{
    TCustomControl::Loaded();
    FModified = false;
}

void TSxCodeEdit::Notification(TComponent* AComponent, TOperation Operation)
{
    TCustomControl::Notification(AComponent, Operation);
    if (Operation != TOperation::opRemove)
        return;
    if (AComponent == FParser) {
        FParser = nullptr;
        if (FFolding)
            FFolding->SetParser(nullptr);
    }
    else if (AComponent == FPopupMenu)
        FPopupMenu = nullptr;
}

void TSxCodeEdit::SetParent(TWinControl* AParent)
{
    TCustomControl::SetParent(AParent);
    ParentWindowChanged();
}

void TSxCodeEdit::ParentWindowChanged()
{
    if (HasParentWindow() && !IsLoading()) {
        PositionScollBars();
        FCaret->SetParent(this);
    }
}

void TSxCodeEdit::SetBounds(Integer ALeft, Integer ATop, Integer AWidth, Integer AHeight)
{
    TCustomControl::SetBounds(ALeft, ATop, AWidth, AHeight);
    PositionScollBars();
}

void TSxCodeEdit::ReleaseParserFeed(TSxLangParser* parser)
{
    const auto* feed = parser->OnGetNewBuffer().target<ParserFeed>();
    if (feed && feed->Control == this)
        parser->SetOnGetNewBuffer(nullptr);
}

TSxLangParser* TSxCodeEdit::GetParser()
{
    if (!FParser)
        FParser = new TSxLangParser(this);
    return FParser;
}

void TSxCodeEdit::SetParser(TSxLangParser* Value)
{
    if (Value == FParser)
        return;
    if (FParser && FParser->Owner() == this) {
        FreeAndNil(FParser);
    } else if (FParser) {
        ReleaseParserFeed(FParser);
        FParser->RemoveFreeNotification(this);
    }
    FParser = Value;
    if (FParser)
        FParser->FreeNotification(this);
    else
        GetParser();
    if (FFolding)
        FFolding->SetParser(FParser);
    ScheduleLineScan();
    Invalidate();
}

void TSxCodeEdit::SetPopupMenu(TPopupMenu* Value)
{
    if (FPopupMenu)
        FPopupMenu->RemoveFreeNotification(this);
    FPopupMenu = Value;
    if (FPopupMenu)
        FPopupMenu->FreeNotification(this);
}

void TSxCodeEdit::LinesChanged(TObject*)
{
    if (InPaint)
        return;
    FModified = true;
    Invalidate();
    ScheduleLineScan();
}

void TSxCodeEdit::CodeChange(TObject*) { PositionScollBars(); }

void TSxCodeEdit::Changed()
{
    if (FOnChange)
        FOnChange(this);
}

void TSxCodeEdit::SetLines(const TStrings& Value)
{
    FLines->Assign(Value);
    FModified = false;
    Invalidate();
}

String TSxCodeEdit::GetText() { return FLines->Text(); }

void TSxCodeEdit::SetText(const String& Value)
{
    FLines->SetText(Value);
    InitSelectionAndPosition();
}

void TSxCodeEdit::SetTextView(std::u16string_view Value)
{
    FLines->LoadText(Value, true);
    InitSelectionAndPosition();
}

Integer TSxCodeEdit::GetCharWidth()
{
    if (FCharWidth < 1)
        FCharWidth = Canvas().TextWidth(u"X");
    return FCharWidth;
}

Integer TSxCodeEdit::GetLineWidth()
{
    if (FLineWidth < 1)
        SetLineWidth(Canvas().TextHeight(u"XygpPQIiJ"));
    return FLineWidth;
}

void TSxCodeEdit::SetCharWidth(Integer Value)
{
    if (Value != FCharWidth) {
        FCharWidth = Value;
        PositionScollBars();
    }
}

void TSxCodeEdit::SetLineWidth(Integer Value)
{
    if (Value != FLineWidth) {
        FLineWidth = Value;
        PositionScollBars();
    }
}

Integer TSxCodeEdit::RealGuttorWidth() const
{
    if (!GetShowGuttor())
        return 0;
    return HasExtOption(TSxCodeExtOption::coLineNumbers) ? LineNumberGutterWidth() : FGuttorWidth;
}

TSxTextArea TSxCodeEdit::TextArea()
{
    TSxTextArea area;
    area.Left = RealGuttorWidth();
    area.Width = ClientWidth() - area.Left - FVScrollBar->Width();
    area.Height = ClientHeight() - FHScrollBar->Height();
    area.CharWidth = GetCharWidth();
    area.LineHeight = GetLineWidth();
    area.FirstColumn = FHScrollBar->Position();
    area.FirstLine = FVScrollBar->Position();
    area.Rows = ActiveFolding();
    return area;
}

void TSxCodeEdit::SetGuttorWidth(Integer Value) { FGuttorWidth = Value; }

void TSxCodeEdit::SetBorderStyle(TBorderStyle Value) { FBorderStyle = Value; }

void TSxCodeEdit::SetParserLineNr(Integer Value) { FParserLineNr = Value; }

void TSxCodeEdit::SetOnChange(TNotifyEvent Value) { FOnChange = std::move(Value); }

void TSxCodeEdit::SetOnCursorChange(TNotifyEvent Value) { FOnCursorChange = std::move(Value); }

void TSxCodeEdit::SetOnParserLineChange(TSxParserLineChangeEvent Value) { FOnParserLineChange = std::move(Value); }

void TSxCodeEdit::SetRightMargin(Integer Value)
{
    FRightMargin = Value;
    Invalidate();
}

void TSxCodeEdit::SetReadOnly(bool Value)
{
    FReadOnly = Value;
    Invalidate();
    AccessibleStateChanged();
}

bool TSxCodeEdit::GetReadOnly() { return FReadOnly; }

void TSxCodeEdit::SetOptions(TSxCodeOptions Value)
{
    FOptions = Value;
    PositionScollBars();
    Invalidate();
}

void TSxCodeEdit::SetExtOptions(TSxCodeExtOptions Value)
{
    FExtOptions = Value;
    ApplyFoldingOption();
    ApplyLongLinesOption();
    ApplyPartialPaintOption();
    FUndoList->Listen(HasExtOption(TSxCodeExtOption::coRedo) ? FLines : nullptr);
    PositionScollBars();
    Invalidate();
}

void TSxCodeEdit::ApplyPartialPaintOption()
{
    const bool partial = HasExtOption(TSxCodeExtOption::coPartialPaint);
    if (partial == FPaintCache->Partial())
        return;
    SetOpaquePaint(partial);
    FPaintCache->SetPartial(partial);
}

void TSxCodeEdit::SetShowGuttor(bool Value)
{
    TSxCodeOptions options = FOptions;
    Value ? options.Include(TSxCodeOption::coShowGuttor) : options.Exclude(TSxCodeOption::coShowGuttor);
    SetOptions(options);
    PositionScollBars();
}

void TSxCodeEdit::SetShowRightMargin(bool Value)
{
    TSxCodeOptions options = FOptions;
    Value ? options.Include(TSxCodeOption::coShowRightMargin) : options.Exclude(TSxCodeOption::coShowRightMargin);
    SetOptions(options);
}

bool TSxCodeEdit::GetShowGuttor() const { return FOptions.Contains(TSxCodeOption::coShowGuttor); }

bool TSxCodeEdit::GetShowRightMargin() const { return FOptions.Contains(TSxCodeOption::coShowRightMargin); }

bool TSxCodeEdit::IsLineCollapse(Integer, bool&) { return false; }

void TSxCodeEdit::WMEraseBkgnd(TMessage& Message) { Message.Result = 1; }

}  // namespace sx
