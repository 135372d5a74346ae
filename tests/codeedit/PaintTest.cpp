// Painting judged on pixels: gutter, margin, token colours, line bands,
// selection, read-only darkening and the line state of a paint that starts
// in the middle of the text. The shortcuts of painting give the pixels of the
// plain path: text drawn from kept shapes or left out when scrolled off
// against text shaped and drawn anew, tokens behind the right edge skipped or
// cut against a control wide enough to draw them, and screen updates that
// wait for posted messages against the state they show. Colour themes: the
// bundled themes are readable, a theme survives its file, a faulty file names
// its line and changes nothing, Classic restores the start values, and the
// control's colours show in its paint.
#include "codeedit/EditorFixture.h"
#include "codeedit/uSxCodeEditTheme.h"
#include "codeedit/uSxCodePascalParser.h"
#include "platform/Caret.h"
#include "platform/Dialogs.h"
#include "platform/KeptScrollBar.h"
#include "platform/Keys.h"
#include "support/ModalAnswers.h"
#include "support/TempFolder.h"

#include <QApplication>
#include <QCoreApplication>
#include <QPainter>
#include <QScrollBar>

#include <cmath>
#include <functional>
#include <random>
#include <vector>

using namespace sx;
using namespace sx::test;

namespace {

/// A small language for the painting tests: words on yellow in bold, other
/// signs on aqua, blanks on the window colour, and comments in braces on lime
/// that may span lines through LineKind.
class WordParser : public TSxLangParser {
public:
    using TSxLangParser::TSxLangParser;

    bool GetNextToken(String& Token, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                      bool& LineBreak) override
    {
        Token.clear();
        FontStyle = TFontStyles{};
        TextColor = clBlack;
        BackGround = clWindow;
        Char c = ReadChar();
        if (c == 10)
            c = ReadChar();
        LineBreak = c == 0 || c == 13;
        if (LineBreak)
            return c == 13;
        const bool comment = LineKind() == 1 || c == u'{';
        // A token runs on while its characters are of the kind of its first.
        const auto sameKind = [&](Char next) {
            return comment ? next != 13 && next != 0 && Token.back() != u'}'
                           : (IsWordChar(c) && IsWordChar(next)) || (c == u' ' && next == u' ');
        };
        Token += c;
        while (sameKind(PeekChar()))
            Token += ReadChar();
        if (comment) {
            BackGround = clLime;
            SetLineKind(Token.back() == u'}' ? 0 : 1);
        } else if (IsWordChar(c)) {
            BackGround = clYellow;
            FontStyle = TFontStyles{TFontStyle::fsBold};
        } else if (c != u' ') {
            BackGround = clAqua;
        }
        return true;
    }

private:
    static bool IsWordChar(Char c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9'); }
};

class PaintTest : public EditorTest {
protected:
    void SetUp() override
    {
        EditorTest::SetUp();
        edit->SetParser(new WordParser(edit));
        Render(*edit);  // the first paint measures the font
        gw = edit->GuttorWidth();
    }

    /// The colours behind the glyphs of the cells of a row of the view, one
    /// letter a cell: y yellow, a aqua, l lime, w window, f fuchsia, h
    /// highlight, d the window darkened, D yellow darkened, ? another. A cell
    /// shows a colour when a third of its pixels at least have it (the ink of
    /// a bold glyph covers much of the rest).
    std::string Row(const QImage& image, int row, int columns = 8)
    {
        TColor darkWindow = clWindow, darkYellow = clYellow;
        uSxCodeEdit::DarkenColor(darkWindow, true, 10);
        uSxCodeEdit::DarkenColor(darkYellow, true, 10);
        const std::pair<char, TColor> colours[] = {{'y', Drawn(clYellow)}, {'a', Drawn(clAqua)},  {'l', Drawn(clLime)},
                                                   {'w', Drawn(clWindow)}, {'f', Drawn(clFuchsia)}, {'h', Drawn(clHighlight)},
                                                   {'d', darkWindow},     {'D', darkYellow}};
        std::string out;
        for (int column = 0; column < columns; ++column) {
            TRect c = CellRect(*edit, edit->HScrollBar().Position() + column, edit->VScrollBar().Position() + row);
            char seen = '?';
            for (const auto& [letter, colour] : colours)
                seen = seen == '?' && CountPixels(image, c, colour) * 3 > c.Width() * c.Height() ? letter : seen;
            out += seen;
        }
        return out;
    }

    int gw = 0;
};

TEST_F(PaintTest, GutterShowsFaceWithTwoRulesAtItsRightEdgeOrTheTextStartsAtTheLeft)
{
    const QImage image = Render(*edit);
    EXPECT_EQ(PixelAt(image, 0, 10), Drawn(clBtnFace));
    EXPECT_EQ(PixelAt(image, gw - 3, 10), Drawn(clBtnFace));  // the two rules right of it: the high-density test
    EXPECT_EQ(PixelAt(image, gw, 10), Drawn(clWindow));

    edit->SetShowGuttor(false);
    edit->Lines().SetText(u"ab");
    const QImage without = Render(*edit);
    EXPECT_EQ(PixelAt(without, 0, 10), Drawn(clWindow));
    EXPECT_EQ(Row(without, 0, 3), "yyw");
}

TEST_F(PaintTest, RightMarginFrameAndCornerAreDrawnWhereTheyBelong)
{
    edit->SetRightMargin(10);
    edit->SetRightMarginColor(clRed);
    QImage image = Render(*edit);
    const int x = CellRect(*edit, 10, 0).Left;
    EXPECT_EQ(PixelAt(image, x, 100), Drawn(clRed));
    EXPECT_EQ(CountPixels(image, Rect(0, 0, x, 100), Drawn(clRed)), 0);

    edit->HScrollBar().SetPosition(10);  // the margin's column is the first: still inside the text area
    image = Render(*edit);
    EXPECT_EQ(PixelAt(image, gw + 2, 100), Drawn(clRed));
    edit->HScrollBar().SetPosition(11);
    image = Render(*edit);
    EXPECT_EQ(CountPixels(image, Rect(0, 0, 400, 300), Drawn(clRed)), 0);
    // the frame is drawn only without the 3D look, and the corner between the bars is face
    EXPECT_NE(PixelAt(image, 30, 0), Drawn(clBlack));
    EXPECT_EQ(PixelAt(image, 399, 299), Drawn(clBtnFace));
    edit->SetCtl3D(false);
    image = Render(*edit);
    EXPECT_EQ(PixelAt(image, 30, 0), Drawn(clBlack));
    EXPECT_EQ(PixelAt(image, 0, 30), Drawn(clBlack));
}

TEST_F(PaintTest, TokensTakeTheColoursTheParserGives)
{
    edit->Lines().SetText(u"ab +{c");
    EXPECT_EQ(Row(Render(*edit), 0), "yywallww");  // behind the line end stays the fill

    edit->SetParser(nullptr);  // the default parser paints whole lines in window colours
    edit->Lines().SetText(u"x+y");
    EXPECT_EQ(Row(Render(*edit), 0, 3), "www");  // the ink the high-density test checks
}

TEST_F(PaintTest, LineChangeEventBandsItsLineFromTheFirstTokenToTheRightEdge)
{
    edit->Lines().SetText(u"one\r\ntwo\r\n\r\nfour");
    std::vector<std::pair<int, TColor>> calls;
    edit->SetOnParserLineChange([&](Integer line, TColor& back, TColor& font) {
        calls.emplace_back(line, back);
        if (line != 2 && line != 3)
            return false;
        back = clFuchsia;
        font = clWhite;
        return true;
    });
    const QImage image = Render(*edit);
    ASSERT_GE(calls.size(), 4u);
    EXPECT_EQ(calls[0], std::make_pair(1, clYellow));  // the first token's colours come in
    EXPECT_EQ(calls[2], std::make_pair(3, clWindow));  // an empty line is called too
    EXPECT_EQ(Row(image, 0, 4), "yyyw");
    EXPECT_EQ(Row(image, 1, 40), std::string(40, 'f'));
    EXPECT_EQ(Row(image, 2, 1), "f");
    EXPECT_EQ(Row(image, 3, 40), "yyyy" + std::string(36, 'w'));
}

TEST_F(PaintTest, SelectionLooksTheSameInBothDirectionsAndAnEmptyOneShowsNothing)
{
    edit->Lines().SetText(u"abc\r\nde\r\nfgh");
    const QImage plain = Render(*edit);
    edit->SetSelStart(Point(1, 0));
    edit->SetSelEnd(Point(1, 0));
    EXPECT_EQ(Render(*edit), plain);

    edit->SetSelEnd(Point(2, 2));
    const QImage forward = Render(*edit);
    edit->SetSelStart(Point(2, 2));
    edit->SetSelEnd(Point(1, 0));
    EXPECT_EQ(Render(*edit), forward);
    EXPECT_EQ(Row(forward, 0, 4), "yhhw");  // no highlight behind a line end
    EXPECT_EQ(Row(forward, 1, 1), "h");
    EXPECT_EQ(Row(forward, 2, 3), "hhy");
}

TEST_F(PaintTest, ReadOnlyDarkensFillAndTokenBackgroundsButNotTheSelection)
{
    edit->Lines().SetText(u"ab cd");
    Select(Point(3, 0), Point(5, 0));
    edit->SetReadOnly(true);
    EXPECT_EQ(Row(Render(*edit), 0, 7), "DDdhhdd");
}

TEST_F(PaintTest, PaintThatStartsInsideACommentTakesTheStoredLineKind)
{
    edit->Lines().SetText(u"{ one\r\ntwo\r\nthree }\r\nfour\r\n" + LinesOf(40, [](int) { return u"line"; }));
    Render(*edit);  // a paint from the top stores the state of each line
    EXPECT_EQ(edit->Lines().Objects(1), 1);
    EXPECT_EQ(edit->Lines().Objects(3), 0);
    edit->VScrollBar().SetPosition(1);
    const QImage image = Render(*edit);
    EXPECT_EQ(Row(image, 0, 1), "l");  // "two" is inside the comment
    EXPECT_EQ(Row(image, 2, 1), "y");  // "four" is not

    // a jump to text that was never painted knows no comment from above
    edit->Lines().SetText(u"{\r\n" + LinesOf(100, [](int) { return u"x"; }));
    edit->VScrollBar().SetPosition(90);
    EXPECT_EQ(Row(Render(*edit), 0, 1), "y");

    int calls = 0;  // a view past the end paints no line and calls no handler
    edit->SetOnParserLineChange([&](Integer, TColor&, TColor&) { return ++calls, false; });
    edit->VScrollBar().SetPosition(150);
    EXPECT_EQ(Row(Render(*edit), 0, 1), "w");
    EXPECT_EQ(calls, 0);
}

TEST_F(PaintTest, WithExactColoursAJumpPaintsAsAPaintFromTheTop)
{
    TurnOn(TSxCodeExtOption::coExactColors);
    edit->Lines().SetText(u"{\r\n" + LinesOf(100, [](int) { return u"x"; }));
    edit->VScrollBar().SetPosition(90);
    EXPECT_EQ(Row(Render(*edit), 0, 1), "l");  // inside the comment opened on line 0
    edit->Lines().Put(0, u"{ }");
    EXPECT_EQ(Row(Render(*edit), 0, 1), "y");  // the edit closed it
}

TEST_F(PaintTest, WithLongLinesTheEndOfAMillionCharacterLineShowsAsItsTailWould)
{
    TurnOn(TSxCodeExtOption::coLongLines);
    edit->SetShowRightMargin(false);
    String line;
    for (int i = 0; i < 142'858; ++i)
        line += u"ab+cd; ";
    const Integer column = 7 * 142'715;  // a token boundary near the end
    const auto firstRow = [this](Integer firstColumn) {
        const TRect cell = CellRect(*edit, firstColumn, 0);
        return Render(*edit).copy(cell.Left, cell.Top, 300, cell.Bottom - cell.Top);
    };
    Start(line.substr(std::size_t(column)));
    const QImage tail = firstRow(0);
    Start(line, Point(column, 0));
    EXPECT_EQ(edit->HScrollBar().Max(), Integer(line.size()) + 1);
    edit->HScrollBar().SetPosition(column);
    EXPECT_EQ(firstRow(column), tail);
}

TEST_F(PaintTest, TextEndingAboveTheBottomLeavesTheRestBlank)
{
    edit->SetParser(nullptr);
    Start(u"ab\r\n");
    std::vector<int> lines;
    edit->SetOnParserLineChange([&](Integer line, TColor&, TColor&) {
        lines.push_back(line);
        return false;
    });
    const QImage image = Render(*edit);
    EXPECT_EQ(lines, std::vector<int>{1});
    EXPECT_EQ(edit->ParserLineNr(), 1);
    const int lh = edit->GetLineWidth();
    EXPECT_EQ(CountPixels(image, Rect(gw, lh, 350, 250), Drawn(clWindow)), (350 - gw) * (250 - lh));
    EXPECT_FALSE(edit->Modified());  // painting does not mark the text modified
}

/// Pascal with every kind of token, text outside ASCII, tabs and long lines.
const String Sample = u"unit Shapes; { a comment }\r\n"
                      u"  S := 'Größe – text' + #13 + 'fi fl ->';\r\n"
                      u"\tX := $FF + 1.5e10; // done\r\n"
                      u"  (* two\r\n   lines *) Y := Z^.Next;\r\n"
                      u"  LongIdentifierThatRunsOnAndOnAndOnAndOn := 'end';\r\n"
                      u"  #1#2#3#4#5#6#7#8#9#10#11#12 := Wide;\r\n"
                      u"end.";

class PaintShortcut : public ::testing::Test {
protected:
    TSxCodeEdit* Make(int width, const String& text)
    {
        auto* edit = host.Add<TSxCodeEdit>(width, 200);
        edit->SetParser(new TSxCodePascalParser(edit));
        edit->SetText(text);
        return edit;
    }
    Host host;
};

TEST_F(PaintShortcut, TextShortcutsDrawWhatThePlainPathDraws)
{
    TSxCodeEdit* edit = Make(400, Sample);
    edit->SetSelStart(Point(4, 1));
    edit->SetSelEnd(Point(9, 4));
    auto& rows = uSxCodePascalParser::DrawInfo;
    const auto saved = rows;
    for (const bool lined : {false, true}) {
        if (lined) {  // identifiers underlined, numbers struck out
            rows[4].Style = TFontStyles{TFontStyle::fsUnderline};
            rows[6].Style = TFontStyles{TFontStyle::fsStrikeOut, TFontStyle::fsItalic};
        }
        for (const char* face : {"Courier New", "Liberation Sans"}) {
            edit->Font().SetName(StrFromLatin1(face));
            for (const Integer scroll : {0, 3, 9, 12}) {
                edit->HScrollBar().SetPosition(scroll);
                Render(*edit);  // fills the kept shapes
                const QImage kept = Render(*edit);
                SetTextShortcuts(false);
                const QImage plain = Render(*edit);
                SetTextShortcuts(true);
                EXPECT_TRUE(kept == plain) << face << ", scrolled " << scroll << (lined ? ", lined" : "");
            }
        }
    }
    rows = saved;
}

TEST_F(PaintShortcut, TokensPastTheRightEdgeShowAsInAWideControl)
{
    // Long tokens that the narrow control cuts and a wide one draws whole,
    // and many short ones behind the narrow control's edge.
    String text = u"{ " + String(700, u'w') + u" }\r\n  S := '" + String(650, u'f') + u"i';\r\n";
    for (int i = 0; i < 300; ++i)
        text += u"Item" + IntToStr(i) + u", ";
    text += u"\r\n  T := '" + String(300, u'a') + u"\u05d0" + String(300, u'b') + u"';";
    TSxCodeEdit* narrow = Make(300, text);
    TSxCodeEdit* wide = Make(7000, text);
    for (const Integer scroll : {0, 7}) {
        for (TSxCodeEdit* edit : {narrow, wide}) {
            edit->HScrollBar().SetPosition(scroll);
            edit->SetSelStart(Point(40, 0));
            edit->SetSelEnd(Point(600, 1));
        }
        const QImage a = Render(*narrow);
        const QImage b = Render(*wide);
        // What the narrow control copies to the screen: left of and above its scroll bars.
        const QRect area(0, 0, 300 - narrow->VScrollBar().Width() - 1, 200 - narrow->HScrollBar().Height() - 1);
        EXPECT_TRUE(a.copy(area) == b.copy(area)) << "scroll " << scroll;
    }
}

TEST_F(PaintShortcut, RepaintsWaitForTheEndOfAChainOfPostedPasses)
{
    TSxCodeEdit* edit = Make(400, LinesOf(200, [](int i) { return i % 4 ? u"  Value := 1;" : u"  Value := Old;"; }));
    int paints = 0;  // a paint calls the handler once for the top line
    edit->SetOnParserLineChange([&](Integer nr, TColor&, TColor&) {
        paints += nr == edit->VScrollBar().Position() + 1 ? 1 : 0;
        return false;
    });
    ModalScript script;
    script.OnForm = [](TForm& form) { FillSearchDialog(form, {.Find = u"Old", .Result = mrYesToAll}); };
    QCoreApplication::processEvents();
    paints = 0;
    PostMessage(edit, uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, uSxCodeEdit::ReplaceDialogRequest);
    for (int i = 0; i < 1000 && script.Boxes.empty(); ++i)  // the chain ends with the message box
        QCoreApplication::processEvents();
    ASSERT_EQ(script.Boxes.size(), 1u) << "the replace-all chain did not end";
    EXPECT_EQ(script.Boxes[0].Text, u"Search string 'Old' not found.");
    QCoreApplication::processEvents();
    EXPECT_GE(paints, 1);
    EXPECT_LT(paints, 10);  // not one for each of the 50 passes
}

TEST_F(PaintShortcut, TheCaretShowsWhereQueuedKeysLeftIt)
{
    TSxCodeEdit* edit = Make(400, Sample);
    Focus(*edit);
    for (const Char c : String(u"abc\rdef\rgh"))
        PostMessage(edit, WM_CHAR, c);  // queued keys, the screen caret updated once behind them
    ProcessPostedMessages();
    const TCaretInfo caret = GetCaretInfo();
    ASSERT_EQ(caret.Window, edit);
    EXPECT_EQ(edit->LinePos(), 2);
    const QWidget* block = nullptr;  // the caret's block: the one child that is no scroll bar
    for (const QWidget* child : edit->Widget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        block = qobject_cast<const QScrollBar*>(child) ? block : child;
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->geometry(), QRect(caret.Pos.X, caret.Pos.Y, caret.Width, caret.Height));
}

TEST_F(PaintShortcut, AMessageBoxShowsTheControlAsItStands)
{
    TSxCodeEdit* edit = Make(400, LinesOf(200, [](int i) { return i == 150 ? u"  Hit := 1;" : u"  Value := 1;"; }));
    int paints = 0;
    edit->SetOnParserLineChange([&](Integer, TColor&, TColor&) {
        ++paints;
        return false;
    });
    QCoreApplication::processEvents();
    ModalScript script;
    script.OnForm = [](TForm& form) { FillSearchDialog(form, {.Find = u"Hit", .ReplaceWith = u"Pin", .Prompt = true}); };
    bool asked = false;
    SetMsgBoxHook([&](TMsgBoxKind, const String&, const String&) {  // the script puts its own back
        // The user looks at the hit while the box asks: scrolled to and painted.
        asked = true;
        paints = 0;
        QCoreApplication::processEvents();
        EXPECT_GT(paints, 0);
        auto* bar = static_cast<QScrollBar*>(edit->VScrollBar().Widget());
        EXPECT_EQ(bar->value(), edit->VScrollBar().Position());
        return idYes;
    });
    PostMessage(edit, uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, uSxCodeEdit::ReplaceDialogRequest);
    for (int i = 0; i < 5 && !asked; ++i)
        QCoreApplication::processEvents();
    EXPECT_TRUE(asked);
    EXPECT_EQ(edit->Lines().Get(150), u"  Pin := 1;");
}

TEST(ScreenUpdates, WaitForPostedMessagesAndRunOncePerKey)
{
    Host host;
    auto* edit = host.Add<TSxCodeEdit>(100, 100);
    int runs = 0;
    PostMessage(edit, WM_USER);
    UpdateScreen(&runs, [&] { ++runs; });
    UpdateScreen(&runs, [&] { ++runs; });
    EXPECT_EQ(runs, 0);
    ProcessPostedMessages();
    EXPECT_EQ(runs, 1);
    PostMessage(edit, WM_USER);
    UpdateScreen(&runs, [&] { ++runs; });
    CancelScreenUpdate(&runs);
    ProcessPostedMessages();
    EXPECT_EQ(runs, 1);
}

constexpr TSxThemeLanguage Languages[] = {TSxThemeLanguage::tlPascal, TSxThemeLanguage::tlVB,
                                          TSxThemeLanguage::tlJS, TSxThemeLanguage::tlXml,
                                          TSxThemeLanguage::tlSql};

/// WCAG 2 relative luminance of a plain colour.
double Luminance(TColor c)
{
    const auto channel = [](Byte b) {
        const double v = b / 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(GetRValue(c)) + 0.7152 * channel(GetGValue(c)) + 0.0722 * channel(GetBValue(c));
}

double Contrast(TColor a, TColor b)
{
    const double la = Luminance(a), lb = Luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

class Theme : public EditorTest {
protected:
    void TearDown() override { ApplyTheme(TSxCodeEditTheme::Classic()); }
};

TEST(ThemeColors, LightAndDarkAreReadableOnOneGround)
{
    for (const TSxCodeEditTheme& theme : {TSxCodeEditTheme::Light(), TSxCodeEditTheme::Dark()}) {
        const TSxCodeEditColors& e = theme.Editor;
        EXPECT_GE(Contrast(e.LineNumberColor, e.GutterColor), 4.5) << StrToUtf8(theme.Name);
        EXPECT_GE(Contrast(e.SelectionTextColor, e.SelectionColor), 4.5) << StrToUtf8(theme.Name);
        for (const TSxThemeLanguage language : Languages)
            for (const TSxThemeRow& row : theme.Rows(language)) {
                const std::string where = StrToUtf8(theme.Name + u" " + row.Name);
                EXPECT_EQ(row.BckColor, e.Color) << where;  // no token on a ground of its own
                EXPECT_GE(Contrast(row.TextColor, row.BckColor), 4.5) << where;
                EXPECT_GE(Contrast(row.TextColor, e.CurrentLineColor), 4.5) << where;
            }
    }
}

TEST(ThemeColors, SaveAndLoadGiveTheSameTheme)
{
    const TempFolder folder;
    const String file = StrFromUtf8(folder.Path("theme.ini").string());
    for (const TSxCodeEditTheme& theme :
         {TSxCodeEditTheme::Classic(), TSxCodeEditTheme::Light(), TSxCodeEditTheme::Dark()}) {
        theme.SaveToFile(file);
        TSxCodeEditTheme read = TSxCodeEditTheme::Light();
        read.Editor = TSxCodeEditColors{.Color = clRed};
        read.LoadFromFile(file);
        EXPECT_EQ(read, theme) << StrToUtf8(theme.SaveToText());
    }
}

TEST(ThemeColors, AFaultNamesItsLineAndChangesNothing)
{
    const struct {
        const char16_t* Text;
        const char* Message;
    } cases[] = {
        {u"[Editor]\nColor = #000000\nGutterColor = blu", "line 3: unknown colour 'blu'"},
        {u"[Pascal]\nComment = #000000 #12345G", "line 2: unknown colour '#12345G'"},
        {u"; a theme\n\n[Pascal]\nComment = #000000", "line 4: expected a text colour and a background colour, got '#000000'"},
        {u"[SQL]\nComment = #000000 #FFFFFF bold, bld", "line 2: unknown style 'bld'"},
        {u"[Theme]\nName = x\n[Colours]", "line 3: unknown section 'Colours'"},
        {u"[VB]\nSymbol 3 = #000000 #FFFFFF", "line 2: unknown key 'Symbol 3'"},
        {u"Color = #FFFFFF", "line 1: key 'Color' outside a section"},
        {u"[Editor]\nColor #FFFFFF", "line 2: expected [section] or key = value"},
    };
    for (const auto& c : cases) {
        TSxCodeEditTheme theme = TSxCodeEditTheme::Dark();
        try {
            theme.LoadFromText(c.Text);
            ADD_FAILURE() << "no fault in " << c.Message;
        } catch (const ESxTheme& e) {
            EXPECT_EQ(StrToUtf8(e.Message()), c.Message);
        }
        EXPECT_EQ(theme, TSxCodeEditTheme::Dark()) << c.Message;
    }
}

TEST_F(Theme, ClassicAfterDarkRestoresTheStartValues)
{
    const TSxCodeEditTheme dark = TSxCodeEditTheme::Dark();
    ApplyTheme(dark);
    dark.ApplyTo(*edit);
    EXPECT_EQ(uSxCodePascalParser::DrawInfo[7].BckColor, dark.Editor.Color);
    EXPECT_EQ(TSxCodeEditTheme::Current(edit).Editor, dark.Editor);

    const TSxCodeEditTheme classic = TSxCodeEditTheme::Classic();
    ApplyTheme(classic);
    classic.ApplyTo(*edit);
    TSxCodeEditTheme current = TSxCodeEditTheme::Current(edit);
    current.Name = classic.Name;
    // A theme sets colours and styles; the names are the tables' own, which a
    // package stop earlier in the process may have released.
    for (const TSxThemeLanguage language : Languages)
        for (std::size_t i = 0; i < classic.Rows(language).size(); ++i)
            current.Rows(language)[i].Name = classic.Rows(language)[i].Name;
    EXPECT_EQ(current, classic);
    EXPECT_EQ(edit->Colors(), ClassicEditColors);
    EXPECT_EQ(uSxCodePascalParser::DrawInfo[7].BckColor, clRed);  // the Symbol row's start value
}

TEST_F(Theme, AChangedControlColourShows)
{
    Start(u"abc");
    const TColor probe = RGB(0x12, 0x34, 0x56);
    // Column: the cell of the first line looked at, -1 for the gutter. A ground
    // shows in the probe colour itself; glyphs are smoothed, so ink only changes the area.
    const struct { const char* Name; std::function<void()> Set; Integer Column; bool Ground; } cases[] = {
        {"Color", [&] { edit->SetColor(probe); }, 10, true},
        {"GutterColor", [&] { edit->SetGutterColor(probe); }, -1, true},
        {"SelectionColor", [&] { edit->SetSelectionColor(probe); }, 1, true},
        {"SelectionTextColor", [&] { edit->SetSelectionTextColor(probe); }, 1, false},
        {"CaretColor", [&] { edit->SetCaretColor(probe); }, 2, true},
    };
    for (const auto& c : cases) {
        edit->SetColors(ClassicEditColors);
        Select(Point(0, 0), Point(2, 0));
        const TRect area = c.Column < 0 ? Rect(0, 0, 10, 10) : CellRect(*edit, c.Column, 0);
        const QRect rect(area.Left, area.Top, area.Width(), area.Height());
        const QImage before = Render(*edit);
        c.Set();
        const QImage after = Render(*edit);
        EXPECT_NE(before.copy(rect), after.copy(rect)) << c.Name;
        EXPECT_EQ(CountPixels(before, area, probe), 0) << c.Name;
        EXPECT_TRUE(!c.Ground || CountPixels(after, area, probe) > 0) << c.Name;
    }
}

}  // namespace

/// What the screen shows of the control: its window's backing store.
QImage OnScreen(TWinControl& control)
{
    QWidget* widget = control.Widget();
    const QPoint at = widget->mapTo(widget->window(), QPoint(0, 0));
    return widget->screen()
        ->grabWindow(widget->window()->winId(), at.x(), at.y(), widget->width(), widget->height())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

/// The image with the caret's cell blanked: the caret is a widget of its
/// own over the control, shown as its own timer says.
QImage WithoutCaret(QImage image)
{
    const TCaretInfo caret = GetCaretInfo();
    QPainter(&image).fillRect(caret.Pos.X, caret.Pos.Y, caret.Width, caret.Height, Qt::magenta);
    return image;
}

/// Two controls given the same steps: one with coPartialPaint, shown through
/// the event loop, and one that paints whole.
TEST(PartialPaint, SeededStepsShowWhatAWholePaintShows)
{
    Host partialHost, wholeHost;
    const TSxCodeExtOptions options{TSxCodeExtOption::coLineNumbers, TSxCodeExtOption::coCurrentLine,
                                    TSxCodeExtOption::coBracketMatch};
    const String text = LinesOf(120, [](int i) {
        return i % 7 == 0 ? u"{ note " + IntToStr(i) + u" (" : u"  V" + IntToStr(i) + u" := F(" + IntToStr(i) + u");";
    });
    std::vector<TSxCodeEdit*> edits;
    for (Host* host : {&partialHost, &wholeHost}) {
        auto* edit = host->Add<TSxCodeEdit>(420, 300);
        edit->SetParser(new TSxCodePascalParser(edit));
        edit->SetText(text);
        edit->SetShowRightMargin(true);
        edits.push_back(edit);
    }
    edits[0]->SetExtOptions(TSxCodeExtOptions(options).Include(TSxCodeExtOption::coPartialPaint));
    edits[1]->SetExtOptions(options);
    std::mt19937 random(20261125);
    const auto pick = [&](int n) { return int(random() % unsigned(n)); };
    const Word keys[] = {VK_DOWN, VK_UP, VK_LEFT, VK_RIGHT, VK_NEXT, VK_PRIOR, VK_RETURN, VK_BACK, VK_DELETE};
    for (int step = 0; step < 300; ++step) {
        const int kind = pick(10), key = pick(9), ch = pick(5), row = pick(130), column = pick(20);
        for (TSxCodeEdit* edit : edits) {
            if (kind < 3)
                SendMessage(edit, WM_CHAR, Char(u"x ({}"[ch]));
            else if (kind < 6)
                SendMessage(edit, WM_KEYDOWN, keys[key]);
            else if (kind < 8)
                edit->VScrollBar().SetPosition(edit->VScrollBar().Position() + (kind == 6 ? 1 : -1));
            else if (kind == 8)
                edit->VScrollBar().SetPosition(row);
            else {
                edit->SetSelStart(Point(column, row));
                edit->SetSelEnd(Point(column / 2, row + column % 3));
            }
        }
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        ASSERT_TRUE(WithoutCaret(OnScreen(*edits[0])) == WithoutCaret(Render(*edits[1])))
            << "step " << step << ", kind " << kind;
    }
}

/// A scroll bar shown from its kept picture against a plain one in the same
/// state, over a table of states; the kept bar is shown twice, the second
/// time from its picture.
TEST(KeptScrollBar, ShowsWhatAPlainBarShows)
{
    struct State {
        Qt::Orientation orientation;
        int maximum, value, page;
        bool enabled;
    };
    const State states[] = {
        {Qt::Vertical, 100, 0, 10, true},          {Qt::Vertical, 100, 57, 10, true},
        {Qt::Vertical, 1'000'000, 999'990, 40, true}, {Qt::Vertical, 1'000'000, 500'000, 40, true},
        {Qt::Vertical, 1'000'001, 500'001, 40, true}, {Qt::Horizontal, 500, 250, 80, true},
        {Qt::Horizontal, 0, 0, 1, true},           {Qt::Vertical, 100, 30, 10, false},
    };
    QWidget window;
    window.resize(400, 300);
    KeptScrollBar kept(&window);
    QScrollBar plain(&window);
    window.show();
    for (const State& s : states) {
        for (QScrollBar* bar : {static_cast<QScrollBar*>(&kept), &plain}) {
            bar->setOrientation(s.orientation);
            bar->setGeometry(s.orientation == Qt::Vertical ? QRect(0, 0, 17, 280) : QRect(0, 0, 380, 17));
            bar->setRange(0, s.maximum);
            bar->setPageStep(s.page);
            bar->setValue(s.value);
            bar->setEnabled(s.enabled);
        }
        kept.grab();
        EXPECT_TRUE(kept.grab().toImage() == plain.grab().toImage()) << s.maximum << " " << s.value;
    }
}
