// Painting: the whole control in one pass, from nothing, every time. Only the
// visible lines are tokenized; the parser is restarted at the top visible line
// with the state stored in that line's slot, and fed one line at a time.
#include "codeedit/uSxCodeEdit.h"

#include "codeedit/uSxCodeEditFolding.h"
#include "codeedit/uSxPaintHelpers.h"

#include <algorithm>
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

bool IsPrintableAscii(const String& text)
{
    return std::all_of(text.begin(), text.end(), [](Char ch) { return ch >= 0x20 && ch < 0x7F; });
}

}  // namespace

class TSxCodeEdit::PaintPass {
public:
    explicit PaintPass(TSxCodeEdit& edit) : E(edit) {}

    void Run()
    {
        CreateBitmaps();
        MeasureFont();
        SizeGutter();
        FillBackground();
        SortSelection();
        if (Gutter)
            PaintGutter();
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
            PaintTokens();
        }
        PaintBrackets();
        PaintRightMargin();
        PaintPreEdit();
        CopyToScreen();
        PaintCorners();
        PaintFrame();
        UpdatePageSizes();
    }

private:
    void CreateBitmaps()
    {
        // The bitmaps have the screen's density, so that text and rules
        // drawn on them stay sharp where the screen has more device pixels.
        const double ratio = E.Canvas().DevicePixelRatio();
        Main = std::make_unique<TBitmap>();
        Main->SetDevicePixelRatio(ratio);
        Main->SetSize(E.ClientWidth(), E.ClientHeight());
        if (E.GetShowGuttor()) {
            Gutter = std::make_unique<TBitmap>();
            Gutter->SetDevicePixelRatio(ratio);
        }
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

    void FillBackground()
    {
        BackColor = E.FColor;
        DarkenColor(BackColor, E.GetReadOnly(), DarkenPercent);
        TCanvas& c = Main->Canvas();
        c.Brush().Color = BackColor;
        Area = E.TextArea();
        c.FillRect(Rect(Area.Left, 0, E.ClientWidth(), E.ClientHeight()));
        if (ShowCurrentLine && Area.Shows(Area.FirstColumn, E.FLinePos)) {
            TColor current = E.FCurrentLineColor;
            DarkenColor(current, E.GetReadOnly(), DarkenPercent);
            const Integer top = Integer(Area.CellY(E.FLinePos));
            c.Brush().Color = current;
            c.FillRect(Rect(Area.Left, top, E.ClientWidth(), top + Area.LineHeight));
            c.Brush().Color = BackColor;
        }
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

    void PaintTokens()
    {
        TCanvas& c = Main->Canvas();
        String token;
        while (PenY < E.Height()) {
            if (!P->GetNextToken(token, BackColor, TextColor, TokenStyle, LineBreak))
                break;
            if (LastParserLine != E.FParserLineNr)
                BeginLine(c);
            LastParserLine = E.FParserLineNr;
            // A row's clWindow is the control's ground, and the caret's line
            // shows through the ground.
            if (BackColor == clWindow)
                BackColor = E.FColor;
            if (ShowCurrentLine && BackColor == E.FColor && E.FParserLineNr - 1 == E.FLinePos)
                BackColor = E.FCurrentLineColor;
            DarkenColor(BackColor, E.FReadOnly, DarkenPercent);
            if (E.ParserLineCollapse && Gutter)
                SxPaintTreeButton(Gutter->Canvas(), Rect(4, PenY, 20, PenY + 15), !E.ParserLineCollapsed);
            if (LineBreak) {
                const Integer line = E.FParserLineNr - 1;
                const bool folded = Folds && Folds->IsFolded(line);
                if (folded)
                    SxPaintFoldMarker(c, PenX + E.GetCharWidth(), PenY, E.GetLineWidth(), clGrayText);
                PenY += E.GetLineWidth();
                StartLine();
                if (folded)
                    SkipFoldedRegion(line);
                continue;
            }
            if (PenX >= DrawLimit) {
                // Nothing of this token or of those behind it on the line can show.
                Column += Integer(token.size());
                continue;
            }
            if (CutLeft && LeftOfView(token)) {
                PenX += Integer(token.size()) * E.GetCharWidth();
                Column += Integer(token.size());
                continue;
            }
            DrawToken(c, token);
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

    /// The first token of a line: its number goes into the gutter, and the
    /// line may take colours of its own.
    void BeginLine(TCanvas& c)
    {
        if (ShowNumbers)
            PaintLineNumber(E.FParserLineNr);
        if (Gutter && std::binary_search(ButtonLines.begin(), ButtonLines.end(), E.FParserLineNr - 1))
            SxPaintFoldButton(Gutter->Canvas(), Rect(4, PenY, 20, PenY + 15), Folds->IsFolded(E.FParserLineNr - 1));
        c.Brush().Style = TBrushStyle::bsSolid;
        LineBack = BackColor;
        LineFont = TextColor;
        LineColored = false;
        if (E.FOnParserLineChange && E.FOnParserLineChange(E.FParserLineNr, LineBack, LineFont)) {
            LineColored = true;
            c.Pen().Color = LineBack;
            c.Brush().Color = LineBack;
            c.Font().SetColor(LineFont);
            c.Rectangle(PenX, PenY, Main->Width(), PenY + E.GetLineWidth());
        }
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
        const Integer line = E.FParserLineNr - 1;
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

    /// The bracket next to the caret and its partner on a ground of their
    /// own, or the bracket alone on the ground of a missing partner.
    void PaintBrackets()
    {
        TPoint bracket, partner;
        if (!E.MatchingBracket(bracket, partner))
            return;
        TColor ground = partner.X >= 0 ? E.FBracketMatchColor : E.FBracketMismatchColor;
        DarkenColor(ground, E.FReadOnly, DarkenPercent);
        for (const TPoint& cell : {bracket, partner})
            if (cell.X >= 0 && Area.Shows(cell.X, cell.Y))
                PaintBracket(cell, ground);
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
            c.MoveTo(x, 0);
            c.LineTo(x, E.ClientHeight());
        }
    }

    /// The text an input method is composing, over everything else at the
    /// caret: in the control's font, in the caret's colour on the ground,
    /// with a line under it that marks it as not yet typed.
    void PaintPreEdit()
    {
        TPoint cell;
        if (E.FImePreEdit.empty() || !E.CaretCell(cell))
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

    void CopyToScreen()
    {
        TCanvas& screen = E.Canvas();
        screen.SetClipRect(Rect(0, 0, E.ClientWidth() - E.FVScrollBar->Width() - 1,
                                E.ClientHeight() - E.FHScrollBar->Height() - 1));
        try {
            if (Gutter)
                Main->Canvas().Draw(0, 0, *Gutter);
            screen.Draw(0, 0, *Main);
        } catch (...) {
            screen.ResetClip();
            throw;
        }
        screen.ResetClip();
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
    TColor LineBack = clWindow;
    TColor LineFont = clWindowText;
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
    InPaint = true;
    struct EndOfPaint {
        bool& flag;
        ~EndOfPaint() { flag = false; }
    } endOfPaint{InPaint};
    PaintPass(*this).Run();
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
