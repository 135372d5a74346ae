// Painting: the whole control in one pass, from nothing, every time. Only the
// visible lines are tokenized; the parser is restarted at the top visible line
// with the state stored in that line's slot, and fed one line at a time.
#include "codeedit/uSxCodeEdit.h"

#include "codeedit/uSxCodeEditFolding.h"
#include "codeedit/uSxCodeEditPaintCache.h"
#include "platform/PostedMessages.h"
#include "codeedit/uSxPaintHelpers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace sx {

namespace uSxCodeEdit {

void DarkenColor(TColor& AColor, bool ADarken, Integer APercent)
{
    if (!ADarken)
        return;
    const TColor rgb = ColorToRGB(AColor);
    TColor result = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const TColor b = (rgb >> shift) & 0xFF;
        result |= (b * TColor(100 - APercent) / 100) << shift;
    }
    AColor = result;
}

}  // namespace uSxCodeEdit

using uSxCodeEdit::DarkenColor;
using uSxCodeEdit::LineNumberRightMargin;

namespace {

/// Every darkening of the paint is by this much.
constexpr Integer DarkenPercent = 10;
/// A token longer than this that runs past the right edge is drawn only up
/// to where it has passed it.
constexpr std::size_t LongTokenChars = 512;
/// Characters kept beyond the edge when such a token is cut, so that the
/// glyphs that can show are shaped with all that follows them on screen.
constexpr std::size_t CutSlackChars = 16;

/// Marks a paint in progress while it lives.
class PaintInProgress {
public:
    explicit PaintInProgress(bool& AFlag) : FFlag(AFlag) { FFlag = true; }
    ~PaintInProgress() { FFlag = false; }
    PaintInProgress(const PaintInProgress&) = delete;
    PaintInProgress& operator=(const PaintInProgress&) = delete;

private:
    bool& FFlag;
};

bool IsPrintableAscii(const String& text)
{
    return std::all_of(text.begin(), text.end(), [](Char ch) { return ch >= 0x20 && ch < 0x7F; });
}

}  // namespace

/// What one row of the view shows, laid out before anything is drawn.
struct TSxCodeEdit::PaintRow {
    /// A token's text lies in the pass's TokenChars, from Offset on.
    struct Token {
        std::size_t Offset = 0;
        std::size_t Length = 0;
        TColor Back = clWindow;
        TColor Font = clWindowText;
        TFontStyles Style;
        /// The classic collapse button, drawn with each token of its line.
        bool Collapse = false;
        bool Collapsed = false;
        /// The end of the line.
        bool Break = false;
    };
    Integer Line = 0;
    Integer Y = 0;
    /// The line's own colours, from OnParserLineChange.
    bool Colored = false;
    TColor Back = clWindow;
    TColor Font = clWindowText;
    bool Folded = false;
    bool FoldButton = false;
    /// The row's tokens: the pass's Tokens from FirstToken up to EndToken.
    std::size_t FirstToken = 0;
    std::size_t EndToken = 0;
};

class TSxCodeEdit::PaintPass {
public:
    PaintPass(TSxCodeEdit& edit, TSxPaintCache* cache) : E(edit), Cache(cache) {}

    /// Paints the control; to the screen unless AToScreen is false, when
    /// only the kept bitmaps are brought up to date.
    void Run(bool AToScreen = true)
    {
        TakeBitmaps();
        MeasureFont();
        SizeGutter();
        Area = E.TextArea();
        Ground = E.FColor;
        DarkenColor(Ground, E.GetReadOnly(), DarkenPercent);
        SortSelection();
        PenY = 0;
        // Ink may reach left of a glyph's origin, by less than a line's height.
        DrawLimit = Main->Width() + E.GetLineWidth();
        TopLine = E.LineOfRow(E.FVScrollBar->Position());
        Folds = E.ActiveFolding();
        States = Folds ? &Folds->Structure() : E.LineStates();
        if (Folds)
            FindFoldButtons();
        // Exact colours: the state of the top line, scanned now if the
        // background scan has not reached it yet.
        if (States)
            States->EnsureScanned(TopLine - 1);
        if (TopLine < E.FLines->Count()) {
            P = E.GetParser();
            P->SetOnGetNewBuffer(ParserFeed{&E});
            RestartParserAt(TopLine);
            StartLine();
            LayOutRows();
        }
        FindBrackets();
        ChooseRows();
        if (AllRows) {
            FillBackground();
            if (Gutter)
                PaintGutter();
        }
        ClearEmptyRows();
        for (const PaintRow& row : Rows)
            if (Drawn(RowOfY(row.Y)))
                DrawRow(row);
        PaintBrackets();
        PaintRightMargin();
        PaintPreEdit();
        MergeGutter();
        if (AToScreen) {
            CopyToScreen();
            PaintStrips();
            PaintCorners();
            PaintFrame();
        }
        UpdatePageSizes();
        KeepBitmaps();
    }

    /// Shows the kept bitmaps, as a paint ahead of this one left them.
    void CopyKept()
    {
        Main = std::make_unique<TBitmap>();
        Main->SwapPicture(Cache->Main());
        Area = E.TextArea();
        CopyToScreen();
        PaintStrips();
        PaintCorners();
        PaintFrame();
        KeepBitmaps();
    }

    /// The rows of the view this paint drew, in client pixels (top, bottom).
    std::pair<Integer, Integer> DrawnBand() const
    {
        if (AllRows)
            return {0, E.ClientHeight()};
        if (Cache->FirstDrawn() > Cache->LastDrawn())
            return {0, 0};
        return {Cache->FirstDrawn() * RowHeight(), (Cache->LastDrawn() + 1) * RowHeight()};
    }

    /// The rows whose pixels this paint moved on the bitmaps.
    const TSxRowMove& MovedRows() const { return RowsMoved; }

private:
    /// New bitmaps, or with a cache the pictures of the last paint on
    /// bitmaps whose tools are fresh, as on new ones.
    void TakeBitmaps()
    {
        // The bitmaps have the screen's density, so that text and rules
        // drawn on them stay sharp where the screen has more device pixels.
        const double ratio = E.Canvas().DevicePixelRatio();
        Main = std::make_unique<TBitmap>();
        Main->SwapPicture(Cache->Main());
        Main->SetDevicePixelRatio(ratio);
        Main->SetSize(E.ClientWidth(), E.ClientHeight());
        if (E.GetShowGuttor()) {
            Gutter = std::make_unique<TBitmap>();
            Gutter->SwapPicture(Cache->Gutter());
            Gutter->SetDevicePixelRatio(ratio);
        }
    }

    void KeepBitmaps()
    {
        Cache->Main().SwapPicture(*Main);
        if (Gutter)
            Cache->Gutter().SwapPicture(*Gutter);
    }

    /// The gutter's size once the font is known: line numbers widen it.
    void SizeGutter()
    {
        if (Gutter)
            Gutter->SetSize(E.RealGuttorWidth(), E.ClientHeight());
        ShowNumbers = Gutter && E.HasExtOption(TSxCodeExtOption::coLineNumbers);
        ShowCurrentLine = E.HasExtOption(TSxCodeExtOption::coCurrentLine);
        CutLeft = E.HasExtOption(TSxCodeExtOption::coLongLines);
    }

    void MeasureFont()
    {
        TCanvas& c = Main->Canvas();
        c.Font().Assign(E.Font());
        E.SetCharWidth(c.TextWidth(u"X"));
        E.SetLineWidth(c.TextHeight(u"XygpPQIiJ"));
    }

    Integer RowHeight() const { return std::max(E.GetLineWidth(), 1); }
    Integer RowOfY(Integer y) const { return y / RowHeight(); }
    Integer RowCount() const { return (E.ClientHeight() + RowHeight() - 1) / RowHeight(); }
    bool Drawn(Integer ARow) const
    {
        return AllRows || (ARow >= 0 && ARow < Integer(DrawnRows.size()) && DrawnRows[std::size_t(ARow)]);
    }

    /// The row the caret's line takes its own colour on, or -1.
    Integer CurrentLineRow() const
    {
        if (!ShowCurrentLine || !Area.Shows(Area.FirstColumn, E.FLinePos))
            return -1;
        return RowOfY(Integer(Area.CellY(E.FLinePos)));
    }

    void FillBackground()
    {
        TCanvas& c = Main->Canvas();
        c.Brush().Color = Ground;
        c.FillRect(Rect(Area.Left, 0, E.ClientWidth(), E.ClientHeight()));
        if (CurrentLineRow() >= 0)
            FillCurrentLine(Integer(Area.CellY(E.FLinePos)));
    }

    void FillCurrentLine(Integer ATop)
    {
        TCanvas& c = Main->Canvas();
        TColor current = E.FCurrentLineColor;
        DarkenColor(current, E.GetReadOnly(), DarkenPercent);
        c.Brush().Color = current;
        c.FillRect(Rect(Area.Left, ATop, E.ClientWidth(), ATop + Area.LineHeight));
        c.Brush().Color = Ground;
    }

    /// A row drawn again on the kept bitmaps starts from the ground a whole
    /// paint lays under it.
    void ClearRow(Integer ARow)
    {
        const Integer top = ARow * RowHeight();
        TCanvas& c = Main->Canvas();
        c.Brush().Style = TBrushStyle::bsSolid;
        c.Brush().Color = Ground;
        c.FillRect(Rect(Area.Left, top, E.ClientWidth(), top + RowHeight()));
        if (ARow == CurrentLineRow())
            FillCurrentLine(top);
        if (Gutter) {
            TCanvas& g = Gutter->Canvas();
            g.Brush().Style = TBrushStyle::bsSolid;
            g.Brush().Color = E.FGutterColor;
            g.FillRect(Rect(0, top, Gutter->Width() - 2, top + RowHeight()));
        }
    }

    /// Rows below the text drawn again on the kept bitmaps show the ground.
    void ClearEmptyRows()
    {
        if (AllRows)
            return;
        const Integer firstEmpty = Rows.empty() ? 0 : RowOfY(Rows.back().Y) + 1;
        for (Integer row = std::max(firstEmpty, 0); row < RowCount(); ++row)
            if (Drawn(row))
                ClearRow(row);
    }

    void SortSelection()
    {
        const TPoint s = E.FSelStart, e = E.FSelEnd;
        const bool reversed = s.Y > e.Y || (s.Y == e.Y && s.X > e.X);
        SelFirst = reversed ? e : s;
        SelLast = reversed ? s : e;
    }

    void PaintGutter()
    {
        TCanvas& c = Gutter->Canvas();
        const Integer w = Gutter->Width(), h = E.ClientHeight();
        c.Pen().Color = E.FGutterColor;
        c.Brush().Color = E.FGutterColor;
        c.Rectangle(0, 0, w, h);
        c.Pen().Color = clBtnHighlight;
        c.MoveTo(w - 2, 0);
        c.LineTo(w - 2, h);
        c.Pen().Color = clBtnShadow;
        c.MoveTo(w - 1, 0);
        c.LineTo(w - 1, h);
    }

    /// The parser starts afresh at ALine, the top line or, with folding, the
    /// first line behind a folded region: with the line kind an earlier
    /// paint stored for it, or with folding or exact colours in the state
    /// the scan of line states found there.
    void RestartParserAt(Integer ALine)
    {
        P->ResetBuffer();
        P->SetRemarkEnd(String());
        P->SetEndLines(true);
        if (States)
            P->SetScanState(States->ScanStateAt(ALine));
        else
            P->SetLineKind(Integer(E.FLines->Objects(ALine)));
        E.SetParserLineNr(ALine);
    }

    void StartLine()
    {
        PenX = Integer(Area.TextX(0));
        Column = 0;
    }

    /// Runs the parser down the view and keeps what each row shows, with
    /// its colours as they will be drawn.
    void LayOutRows()
    {
        String token;
        while (PenY < E.Height()) {
            if (!P->GetNextToken(token, BackColor, TextColor, TokenStyle, LineBreak))
                break;
            if (LastParserLine != E.FParserLineNr)
                StartRow();
            LastParserLine = E.FParserLineNr;
            // A row's clWindow is the control's ground, and the caret's line
            // shows through the ground.
            if (BackColor == clWindow)
                BackColor = E.FColor;
            if (ShowCurrentLine && BackColor == E.FColor && E.FParserLineNr - 1 == E.FLinePos)
                BackColor = E.FCurrentLineColor;
            DarkenColor(BackColor, E.FReadOnly, DarkenPercent);
            PaintRow& row = Rows.back();
            const std::size_t length = LineBreak ? 0 : token.size();
            Tokens.push_back({TokenChars.size(), length, BackColor, TextColor, TokenStyle, E.ParserLineCollapse,
                              E.ParserLineCollapsed, LineBreak});
            TokenChars.append(token, 0, length);
            row.EndToken = Tokens.size();
            if (LineBreak) {
                const Integer line = E.FParserLineNr - 1;
                row.Folded = Folds && Folds->IsFolded(line);
                PenY += E.GetLineWidth();
                if (row.Folded)
                    SkipFoldedRegion(line);
            }
        }
    }

    /// The first token of a line: the line may take colours of its own.
    void StartRow()
    {
        PaintRow row;
        row.Line = E.FParserLineNr - 1;
        row.Y = PenY;
        row.FoldButton = Gutter && std::binary_search(ButtonLines.begin(), ButtonLines.end(), row.Line);
        row.Back = BackColor;
        row.Font = TextColor;
        row.Colored = E.FOnParserLineChange && E.FOnParserLineChange(E.FParserLineNr, row.Back, row.Font);
        row.FirstToken = row.EndToken = Tokens.size();
        Rows.push_back(row);
    }

    /// Draws a row: its number and button in the gutter, then its tokens.
    void DrawRow(const PaintRow& row)
    {
        TCanvas& c = Main->Canvas();
        if (!AllRows)
            ClearRow(RowOfY(row.Y));
        PenY = row.Y;
        RowLine = row.Line;
        StartLine();
        if (ShowNumbers)
            PaintLineNumber(row.Line + 1);
        if (row.FoldButton)
            SxPaintFoldButton(Gutter->Canvas(), Rect(4, PenY, 20, PenY + 15), Folds->IsFolded(row.Line));
        c.Brush().Style = TBrushStyle::bsSolid;
        LineColored = row.Colored;
        if (LineColored) {
            c.Pen().Color = row.Back;
            c.Brush().Color = row.Back;
            c.Font().SetColor(row.Font);
            c.Rectangle(PenX, PenY, Main->Width(), PenY + E.GetLineWidth());
        }
        for (std::size_t i = row.FirstToken; i < row.EndToken; ++i) {
            const PaintRow::Token& t = Tokens[i];
            BackColor = t.Back;
            TextColor = t.Font;
            TokenStyle = t.Style;
            if (t.Collapse && Gutter)
                SxPaintTreeButton(Gutter->Canvas(), Rect(4, PenY, 20, PenY + 15), !t.Collapsed);
            if (t.Break) {
                if (row.Folded)
                    SxPaintFoldMarker(c, PenX + E.GetCharWidth(), PenY, E.GetLineWidth(), clGrayText);
                break;
            }
            if (PenX >= DrawLimit) {
                // Nothing of this token or of those behind it on the line can show.
                Column += Integer(t.Length);
                continue;
            }
            const String text = TokenChars.substr(t.Offset, t.Length);
            if (CutLeft && LeftOfView(text)) {
                PenX += Integer(t.Length) * E.GetCharWidth();
                Column += Integer(t.Length);
                continue;
            }
            DrawToken(c, text);
        }
    }

    /// Behind the first line of a folded region the scan goes on at the
    /// first line that shows after the region.
    void SkipFoldedRegion(Integer AFirst)
    {
        const Integer next = Folds->LineOfRow(Folds->RowOf(AFirst) + 1);
        if (next < E.FLines->Count())
            RestartParserAt(next);
    }

    /// Without a cache every row is drawn; with one, the rows whose key
    /// changed since the last paint.
    void ChooseRows()
    {
        if (!Cache->Partial()) {
            AllRows = true;
            return;
        }
        const Integer count = RowCount();
        AllRows = Cache->Begin(FrameKey(), E.FVScrollBar->Position(), count);
        std::vector<const PaintRow*> rowAt(std::size_t(count), nullptr);
        for (const PaintRow& row : Rows)
            if (RowOfY(row.Y) < count)
                rowAt[std::size_t(RowOfY(row.Y))] = &row;
        std::vector<std::uint64_t> keys(static_cast<std::size_t>(count));
        for (Integer row = 0; row < count; ++row)
            keys[std::size_t(row)] = RowKey(row, rowAt[std::size_t(row)]);
        if (!AllRows && WholeDevicePixelRows())
            MoveRows(Cache->PlanMove(keys, E.ClientHeight() / RowHeight()));
        DrawnRows.assign(std::size_t(count), false);
        for (Integer row = 0; row < count; ++row)
            DrawnRows[std::size_t(row)] = Cache->RowChanged(row, keys[std::size_t(row)]);
    }

    /// Whether a row is a whole number of device pixels high, so that the
    /// pixels of rows can move by rows.
    bool WholeDevicePixelRows() const
    {
        const double pixels = RowHeight() * Main->DevicePixelRatio();
        return pixels == std::floor(pixels);
    }

    /// Moves the rows' pixels on both bitmaps, and their keys.
    void MoveRows(const TSxRowMove& AMove)
    {
        if (AMove.Empty())
            return;
        RowsMoved = AMove;
        const auto device = [this](Integer rows) { return Integer(rows * RowHeight() * Main->DevicePixelRatio()); };
        const Integer count = device(AMove.Last - AMove.First + 1);
        for (TBitmap* bitmap : {Main.get(), Gutter.get()})
            if (bitmap)
                bitmap->MovePixelRows(device(AMove.First - AMove.By), device(AMove.First), count);
        Cache->Move(AMove);
    }

    /// What the whole view shares: a change of it draws every row.
    std::uint64_t FrameKey() const
    {
        TSxPaintKey key;
        key.Add(E.ClientWidth()).Add(E.ClientHeight()).Add(Main->DevicePixelRatio());
        key.Add(Gutter ? Gutter->Width() : -1).Add(Area.Left).Add(Area.FirstColumn);
        key.Add(E.GetCharWidth()).Add(E.GetLineWidth()).Add(Ground).Add(E.FReadOnly).Add(CutLeft);
        key.Add(ShowCurrentLine).Add(E.FCurrentLineColor).Add(ShowNumbers).Add(E.FGutterColor).Add(E.FLineNumberColor);
        key.Add(E.FSelectionColor).Add(E.FSelectionTextColor);
        key.Add(E.GetShowRightMargin()).Add(E.FRightMargin).Add(E.FRightMarginColor);
        key.Add(E.Font().Name()).Add(E.Font().Size()).Add(E.Font().Style()).Add(E.Font().Color());
        // The system's colours, which a change of the palette moves.
        for (const TColor color : {clWindow, clWindowText, clHighlight, clHighlightText, clBtnFace, clBtnHighlight,
                                   clBtnShadow, clGrayText})
            key.Add(ColorToRGB(color));
        return key.Value();
    }

    /// Everything row ARow shows: the ground, a bracket or a composition on
    /// it, and the line laid out there with its tokens, selection, number
    /// and buttons.
    std::uint64_t RowKey(Integer ARow, const PaintRow* ALaidOut) const
    {
        TSxPaintKey key;
        key.Add(ARow == CurrentLineRow());
        for (const TPoint& cell : BracketCells)
            if (RowOfY(Integer(Area.CellY(cell.Y))) == ARow)
                key.Add(cell.X).Add(BracketGround);
        TPoint caret;
        if (!E.FImePreEdit.empty() && E.CaretCell(caret) && RowOfY(caret.Y) == ARow)
            key.Add(caret.X).Add(E.FImePreEdit);
        if (!ALaidOut)
            return key.Value();
        const PaintRow& row = *ALaidOut;
        const auto [selFrom, selTo] = SelectedColumns(row.Line);
        key.Add(selFrom).Add(selTo).Add(ShowNumbers ? row.Line : -1);
        key.Add(row.Colored).Add(row.Back).Add(row.Font).Add(row.Folded);
        key.Add(row.FoldButton && Folds->IsFolded(row.Line));
        key.Add(row.FoldButton);
        if (row.FirstToken < row.EndToken) {
            const std::size_t from = Tokens[row.FirstToken].Offset;
            const PaintRow::Token& last = Tokens[row.EndToken - 1];
            key.AddChars(TokenChars.data() + from, last.Offset + last.Length - from);
        }
        for (std::size_t i = row.FirstToken; i < row.EndToken; ++i) {
            const PaintRow::Token& t = Tokens[i];
            const int flags = int(t.Collapse) | int(t.Collapsed) << 1 | int(t.Break) << 2;
            key.Add(t.Length).Add(t.Back).Add(t.Font).Add(t.Style).Add(flags);
        }
        return key.Value();
    }

    /// The columns of the line that the selection covers, or (0, 0).
    std::pair<Integer, Integer> SelectedColumns(Integer ALine) const
    {
        if (ALine < SelFirst.Y || ALine > SelLast.Y)
            return {0, 0};
        const Integer from = ALine == SelFirst.Y ? SelFirst.X : 0;
        const Integer to = ALine == SelLast.Y ? SelLast.X : std::numeric_limits<Integer>::max();
        return from < to ? std::pair{from, to} : std::pair{0, 0};
    }

    /// The lines of the view that start a region, before the parser is
    /// busy painting: finding them may scan the text with it.
    void FindFoldButtons()
    {
        const Integer rows = E.ClientHeight() / std::max(E.GetLineWidth(), 1) + 1;
        const Integer firstRow = E.FVScrollBar->Position();
        for (Integer row = firstRow; row <= firstRow + rows; ++row) {
            const Integer line = Folds->LineOfRow(row);
            if (line >= E.FLines->Count())
                break;
            if (Folds->IsFolded(line) || Folds->Structure().RegionAt(line))
                ButtonLines.push_back(line);
        }
        Folds->Structure().EnsureScanned(Folds->LineOfRow(firstRow + rows + 1));
    }

    /// The line's number, from 1, right-aligned in front of the gutter's rules.
    void PaintLineNumber(Integer number)
    {
        TCanvas& g = Gutter->Canvas();
        const String text = IntToStr(number);
        g.Font().Assign(E.Font());
        g.Font().SetColor(E.FLineNumberColor);
        g.Brush().Style = TBrushStyle::bsClear;
        g.TextOut(Gutter->Width() - LineNumberRightMargin - g.TextWidth(text), PenY, text);
    }

    /// Draws a token, split where it crosses an edge of the selection.
    void DrawToken(TCanvas& c, String text)
    {
        const Integer line = RowLine;
        auto n = Integer(text.size());
        const bool outside = line < SelFirst.Y || line > SelLast.Y ||
                             (line == SelFirst.Y && Column + n <= SelFirst.X) ||
                             (line == SelLast.Y && Column >= SelLast.X);
        if (outside) {
            DrawPart(c, text, TextColor, BackColor);
            Column += n;
            return;
        }
        if (line == SelFirst.Y && Column < SelFirst.X) {
            const auto left = std::size_t(SelFirst.X - Column);
            DrawPart(c, text.substr(0, left), TextColor, BackColor);
            Column += Integer(left);
            text.erase(0, left);
            n = Integer(text.size());
        }
        String tail;
        const bool hasTail = line == SelLast.Y && Column + n > SelLast.X;
        if (hasTail) {
            const auto keep = std::size_t(n - (Column + n - SelLast.X));
            tail = text.substr(keep);
            text.resize(keep);
            Column += Integer(text.size());
            n = Integer(text.size());
        }
        DrawPart(c, text, E.FSelectionTextColor, E.FSelectionColor);
        if (hasTail) {
            n = Integer(tail.size());
            DrawPart(c, tail, TextColor, BackColor);
        }
        Column += n;
    }

    void DrawPart(TCanvas& c, const String& text, TColor font, TColor back)
    {
        // Right of the view nothing of this part shows, nor of what follows
        // on the line: a line of millions of characters costs one screen.
        if (PenX >= Main->Width())
            return;
        if (!LineColored) {
            c.Font().SetColor(font);
            c.Brush().Color = back;
        }
        c.Font().SetStyle(TokenStyle);
        const bool cutHead = CutLeft && PenX < 0 && text.size() > LongTokenChars && IsPrintableAscii(text);
        const String shown = cutHead ? WithoutHiddenHead(text) : String();
        const String& drawn = cutHead ? shown : text;
        if (drawn.size() > LongTokenChars)
            c.TextOut(PenX, PenY, VisiblePart(c, drawn));
        else
            c.TextOut(PenX, PenY, drawn);
        PenX = c.PenPos().X;
    }

    /// A long text of printable ASCII that runs past the right edge, cut
    /// some characters behind the point where it has passed it: glyphs
    /// behind that could not show, and those before it are laid out the
    /// same, left to right with nothing that reaches back. Other texts stand.
    String VisiblePart(TCanvas& c, const String& text) const
    {
        if (!IsPrintableAscii(text))
            return text;
        for (std::size_t keep = LongTokenChars; keep + CutSlackChars < text.size(); keep *= 2)
            if (PenX + c.TextWidth(text.substr(0, keep)) >= DrawLimit)
                return text.substr(0, keep + CutSlackChars);
        return text;
    }

    /// With coLongLines, a token of printable ASCII that ends left of the
    /// text area, by more than a line's height: its ink cannot show, and its
    /// cells advance the pen by the grid.
    bool LeftOfView(const String& text) const
    {
        const std::int64_t end = std::int64_t(PenX) + std::int64_t(text.size()) * E.GetCharWidth();
        return end < Area.Left - E.GetLineWidth() && IsPrintableAscii(text);
    }

    /// A long text of printable ASCII that starts far left of the bitmap,
    /// less the characters that end before it (keeping some, so that the
    /// glyphs that show are shaped as in the whole text); the pen moves on
    /// by their cells.
    String WithoutHiddenHead(const String& text)
    {
        const std::size_t hidden = std::size_t(-std::int64_t(PenX) / E.GetCharWidth());
        const std::size_t cut = std::min(hidden > CutSlackChars ? hidden - CutSlackChars : 0, text.size());
        PenX += Integer(cut) * E.GetCharWidth();
        return text.substr(cut);
    }

    /// The bracket next to the caret and its partner, and the ground they
    /// stand on: a ground of their own, or the bracket alone on the ground
    /// of a missing partner.
    void FindBrackets()
    {
        TPoint bracket, partner;
        if (!E.MatchingBracket(bracket, partner))
            return;
        BracketGround = partner.X >= 0 ? E.FBracketMatchColor : E.FBracketMismatchColor;
        DarkenColor(BracketGround, E.FReadOnly, DarkenPercent);
        for (const TPoint& cell : {bracket, partner})
            if (cell.X >= 0 && Area.Shows(cell.X, cell.Y))
                BracketCells.push_back(cell);
    }

    void PaintBrackets()
    {
        for (const TPoint& cell : BracketCells)
            if (Drawn(RowOfY(Integer(Area.CellY(cell.Y)))))
                PaintBracket(cell, BracketGround);
    }

    /// The bracket at ACell again, in its token's colour and style on AGround.
    void PaintBracket(TPoint ACell, TColor AGround)
    {
        std::size_t budget = uSxCodeEdit::BracketSearchChars;
        for (const TSxCodeEdit::TBracketAt& glyph : E.CodeBrackets(ACell.Y, budget))
            if (glyph.Column == ACell.X) {
                TCanvas& c = Main->Canvas();
                c.Brush().Style = TBrushStyle::bsSolid;
                c.Brush().Color = AGround;
                c.Font().SetColor(glyph.TextColor);
                c.Font().SetStyle(glyph.Style);
                c.TextOut(ClampedPixel(Area.TextX(ACell.X)), ClampedPixel(Area.CellY(ACell.Y)),
                          String(1, glyph.Bracket));
            }
    }

    void PaintRightMargin()
    {
        if (!E.GetShowRightMargin())
            return;
        const std::int64_t m = Area.TextX(E.FRightMargin) - Area.Left;
        if (m > 0 && m < E.ClientWidth() - Area.Left) {
            TCanvas& c = Main->Canvas();
            const Integer x = Area.Left + Integer(m);
            c.Pen().Color = E.FRightMarginColor;
            if (AllRows) {
                c.MoveTo(x, 0);
                c.LineTo(x, E.ClientHeight());
                return;
            }
            for (Integer row = 0; row < RowCount(); ++row)
                if (Drawn(row)) {
                    c.MoveTo(x, row * RowHeight());
                    c.LineTo(x, std::min((row + 1) * RowHeight(), E.ClientHeight()));
                }
        }
    }

    /// The text an input method is composing, over everything else at the
    /// caret: in the control's font, in the caret's colour on the ground,
    /// with a line under it that marks it as not yet typed.
    void PaintPreEdit()
    {
        TPoint cell;
        if (E.FImePreEdit.empty() || !E.CaretCell(cell) || !Drawn(RowOfY(cell.Y)))
            return;
        TCanvas& c = Main->Canvas();
        TColor back = E.FColor;
        DarkenColor(back, E.GetReadOnly(), DarkenPercent);
        c.Font().SetStyle(E.Font().Style());
        c.Font().SetColor(E.CaretColor());
        c.Brush().Style = TBrushStyle::bsSolid;
        c.Brush().Color = back;
        const Integer x = cell.X + TSxTextArea::InnerMargin;
        c.TextOut(x, cell.Y, E.FImePreEdit);
        const Integer right = c.PenPos().X;
        const Integer underline = cell.Y + E.GetLineWidth() - 1;
        c.Pen().Color = E.CaretColor();
        c.MoveTo(x, underline);
        c.LineTo(right, underline);
    }

    /// The gutter's rows drawn by this paint onto the text area's bitmap.
    void MergeGutter()
    {
        if (!Gutter)
            return;
        TCanvas& c = Main->Canvas();
        const auto [top, bottom] = DrawnBand();
        if (top >= bottom)
            return;
        if (!AllRows)
            c.SetClipRect(Rect(0, top, Gutter->Width(), bottom));
        c.Draw(0, 0, *Gutter);
        c.ResetClip();
    }

    void CopyToScreen()
    {
        TCanvas& screen = E.Canvas();
        screen.SetClipRect(Rect(0, 0, E.ClientWidth() - E.FVScrollBar->Width() - 1,
                                E.ClientHeight() - E.FHScrollBar->Height() - 1));
        try {
            screen.Draw(0, 0, *Main);
        } catch (...) {
            screen.ResetClip();
            throw;
        }
        screen.ResetClip();
    }

    /// With coPartialPaint the control paints all of itself, so nothing is
    /// painted under it: the strips between the copied bitmap and the scroll
    /// bars take the face colour a window's ground has.
    void PaintStrips()
    {
        if (!Cache->Partial())
            return;
        TCanvas& screen = E.Canvas();
        screen.Brush().Style = TBrushStyle::bsSolid;
        screen.Brush().Color = clBtnFace;
        const Integer right = E.ClientWidth() - E.FVScrollBar->Width();
        const Integer barTop = E.ClientHeight() - E.FHScrollBar->Height() - 1;
        screen.FillRect(Rect(right - 1, 0, right, barTop + 1));
        screen.FillRect(Rect(0, barTop, right, barTop + 1));
    }

    void PaintCorners()
    {
        TCanvas& screen = E.Canvas();
        screen.Pen().Color = E.FGutterColor;
        screen.Brush().Color = E.FGutterColor;
        screen.Brush().Style = TBrushStyle::bsSolid;
        const Integer barTop = E.ClientHeight() - E.FHScrollBar->Height() - 1;
        screen.Rectangle(0, barTop, Area.Left, E.ClientHeight());
        screen.Pen().Color = clBtnFace;
        screen.Brush().Color = clBtnFace;
        screen.Rectangle(E.ClientWidth() - E.FVScrollBar->Width(), barTop, E.ClientWidth(), E.ClientHeight());
    }

    void PaintFrame()
    {
        if (E.FBorderStyle != TBorderStyle::bsSingle || E.Ctl3D())
            return;
        TRect r = E.GetClientRect();
        if (E.FVScrollBar->Visible())
            r.Right -= E.FVScrollBar->Width();
        if (E.FHScrollBar->Visible())
            r.Bottom -= E.FHScrollBar->Height();
        TCanvas& screen = E.Canvas();
        screen.Brush().Color = clBlack;
        screen.Brush().Style = TBrushStyle::bsSolid;
        screen.FrameRect(r);
    }

    void UpdatePageSizes()
    {
        const Integer lineHeight = E.GetLineWidth(), charWidth = E.GetCharWidth();
        if (lineHeight <= 0 || charWidth <= 0)
            return;
        const Integer v = (E.Height() - E.FHScrollBar->Height() - lineHeight) / lineHeight;
        if (E.FVScrollBar->PageSize() != v)
            E.FVScrollBar->SetPageSize(v);
        const Integer h = (E.Width() - E.FVScrollBar->Width() - Area.Left) / charWidth - 1;
        if (E.FHScrollBar->PageSize() != h)
            E.FHScrollBar->SetPageSize(h);
    }

    TSxCodeEdit& E;
    /// The bitmaps of the last paint, and with coPartialPaint its row keys.
    TSxPaintCache* Cache = nullptr;
    std::vector<PaintRow> Rows;
    std::vector<PaintRow::Token> Tokens;
    /// The text of every token laid out, one behind the other.
    String TokenChars;
    /// Every row is drawn (no cache, or the frame changed); else those marked.
    bool AllRows = true;
    std::vector<bool> DrawnRows;
    TSxRowMove RowsMoved;
    /// The matching brackets that show, and their ground.
    std::vector<TPoint> BracketCells;
    TColor BracketGround = clWindow;
    /// The ground of the text area.
    TColor Ground = clWindow;
    /// The line of the row being drawn.
    Integer RowLine = 0;
    TSxLangParser* P = nullptr;
    /// The folding with coFolding, and the lines of the view with a fold button.
    TSxCodeEditFolding* Folds = nullptr;
    /// The line states the parser restarts from, with folding or exact colours.
    TSxFoldStructure* States = nullptr;
    std::vector<Integer> ButtonLines;
    std::unique_ptr<TBitmap> Main;
    std::unique_ptr<TBitmap> Gutter;
    TSxTextArea Area;
    bool ShowNumbers = false;
    bool ShowCurrentLine = false;
    /// With coLongLines: what lies left of the view is skipped, not drawn.
    bool CutLeft = false;
    /// Where a token begins whose ink cannot reach into the bitmap.
    Integer DrawLimit = 0;
    Integer TopLine = 0;
    Integer PenX = 0;
    Integer PenY = 0;
    Integer Column = 0;
    Integer LastParserLine = -1;
    bool LineColored = false;
    TColor BackColor = clWindow;
    TColor TextColor = clWindowText;
    TFontStyles TokenStyle;
    bool LineBreak = false;
    TPoint SelFirst;
    TPoint SelLast;
};

void TSxCodeEdit::Paint()
{
    if (InPaint)
        return;
    const PaintInProgress inPaint(InPaint);
    PaintPass pass(*this, FPaintCache.get());
    if (!FPaintCache->Partial()) {
        pass.Run();
        return;
    }
    const bool prepared = FPaintCache->Prepared && FPaintCache->Main().Width() == ClientWidth() &&
                          FPaintCache->Main().Height() == ClientHeight();
    FPaintCache->Prepared = false;
    FPaintCache->ScreenBehind = false;
    if (prepared) {
        pass.CopyKept();
        return;
    }
    // The screen may have asked for less than the rows this paint drew or
    // moved: they are asked to show too, else they would wait for a change.
    pass.Run();
    ShowRows(RowsBand(pass.MovedRows()));
    ShowRows(pass.DrawnBand());
}

void TSxCodeEdit::Invalidate()
{
    if (!FPaintCache || !FPaintCache->Partial()) {
        TCustomControl::Invalidate();
        return;
    }
    FPaintCache->Prepared = false;
    // Posted, so that it draws what the running handler leaves, not a step
    // on its way; through the screen updates, so that a chain of posted
    // messages runs through first.
    UpdateScreen(this, [this] {
        if (!FPaintAheadPosted)
            FPaintAheadPosted = PostMessage(this, uSxCodeEdit::WM_SX_PAINTAHEAD);
    });
}

void TSxCodeEdit::WMPaintAhead(TMessage&)
{
    FPaintAheadPosted = false;
    PaintAhead();
}

void TSxCodeEdit::PaintAhead()
{
    if (InPaint || !FPaintCache->Partial())
        return;
    const PaintInProgress inPaint(InPaint);
    PaintPass pass(*this, FPaintCache.get());
    pass.Run(false);
    FPaintCache->Prepared = true;
    const TSxRowMove& move = pass.MovedRows();
    if (!move.Empty()) {
        // Rows that moved on the bitmaps move on the screen too, unless the
        // screen has yet to show an earlier change.
        const auto [top, bottom] = RowsBand(move);
        if (FPaintCache->ScreenBehind)
            ShowRows({top, bottom});
        else
            ScrollRect(ShownArea(top, bottom), move.By * GetLineWidth());
        FPaintCache->ScreenBehind = true;
    }
    ShowRows(pass.DrawnBand());
}

std::pair<Integer, Integer> TSxCodeEdit::RowsBand(const TSxRowMove& AMove)
{
    if (AMove.Empty())
        return {0, 0};
    const Integer first = std::min(AMove.First, AMove.First - AMove.By);
    const Integer last = std::max(AMove.Last, AMove.Last - AMove.By);
    return {first * GetLineWidth(), (last + 1) * GetLineWidth()};
}

TRect TSxCodeEdit::ShownArea(Integer ATop, Integer ABottom)
{
    // Inside the strips at the scroll bars, as the paint copies it.
    return Rect(0, ATop, ClientWidth() - FVScrollBar->Width() - 1,
                std::min(ABottom, ClientHeight() - FHScrollBar->Height() - 1));
}

void TSxCodeEdit::ShowRows(std::pair<Integer, Integer> ABand)
{
    const auto [top, bottom] = ABand;
    if (top >= bottom)
        return;
    UpdateRect(ShownArea(top, bottom));
    FPaintCache->ScreenBehind = true;
}

bool TSxCodeEdit::ParserGetNewBuffer(bool AReset, String& S)
{
    if (AReset) {
        FParserLineNr = 0;
        return true;
    }
    if (FParserLineNr >= FLines->Count())
        return false;
    FLines->PutObject(FParserLineNr, GetParser()->LineKind());
    const TLineView line = FLines->Line(FParserLineNr);
    S.reserve(line.size() + 2);
    S.clear();
    line.AppendTo(S);
    S += u"\r\n";
    ParserLineCollapse = IsLineCollapse(FParserLineNr, ParserLineCollapsed);
    ++FParserLineNr;
    return true;
}

}  // namespace sx
