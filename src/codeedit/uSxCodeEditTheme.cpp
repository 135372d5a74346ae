// Colour themes: the bundled themes, taking them from and putting them into
// the five parsers' colour tables, and the INI text of a theme.
#include "codeedit/uSxCodeEditTheme.h"

#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodePascalParser.h"
#include "codeedit/uSxCodeSqlParser.h"
#include "codeedit/uSxCodeVBParser.h"
#include "codeedit/uSxCodeXmlParser.h"
#include "platform/StringList.h"
#include "platform/SxStringStream.h"

namespace sx {

namespace {

using TRows = std::vector<TSxThemeRow>;

template <class TToken, std::size_t N>
TRows RowsOf(const std::array<TSxTokenInfo<TToken>, N>& ATable)
{
    TRows rows;
    for (const TSxTokenInfo<TToken>& info : ATable)
        rows.push_back({info.Name, info.TextColor, info.BckColor, info.Style});
    return rows;
}

/// Colours and styles only: the names and token sets of the table stay.
template <class TToken, std::size_t N>
void PutRows(const TRows& ARows, std::array<TSxTokenInfo<TToken>, N>& ATable)
{
    for (std::size_t row = 0; row < N && row < ARows.size(); ++row) {
        ATable[row].TextColor = ARows[row].TextColor;
        ATable[row].BckColor = ARows[row].BckColor;
        ATable[row].Style = ARows[row].Style;
    }
}

/// How a theme reaches one language's colour table.
struct TTableAccess {
    const char16_t* Section;
    TRows (*Stock)();
    TRows (*Live)();
    void (*Put)(const TRows&);
};

template <auto& Table, auto StockTable>
TTableAccess Access(const char16_t* ASection)
{
    return {ASection, [] { return RowsOf(StockTable()); }, [] { return RowsOf(Table); },
            [](const TRows& ARows) { PutRows(ARows, Table); }};
}

/// In the order of TSxThemeLanguage.
const TTableAccess Tables[SxThemeLanguageCount] = {
    Access<uSxCodePascalParser::DrawInfo, uSxCodePascalParser::StockDrawInfo>(u"Pascal"),
    Access<uSxCodeVBParser::DrawInfo, uSxCodeVBParser::StockDrawInfo>(u"VB"),
    Access<uSxCodeJSParser::DrawInfo, uSxCodeJSParser::StockDrawInfo>(u"JS"),
    Access<uSxCodeXmlParser::DrawInfo, uSxCodeXmlParser::StockDrawInfo>(u"XML"),
    Access<uSxCodeSqlParser::DrawInfo, uSxCodeSqlParser::StockDrawInfo>(u"SQL"),
};

// The bundled themes beside Classic colour each row by the part of the
// language it shows, on one ground for every row.

enum TRole { rPlain, rKeyword, rString, rComment, rNumber, rSymbol, rName, RoleCount };

/// The role of each row of a table, in the order of TSxThemeLanguage.
const std::vector<TRole> RowRoles[SxThemeLanguageCount] = {
    // WhiteSpace, Reserved word, string, Comment, Identifier, Character, Number, Symbol
    {rPlain, rKeyword, rString, rComment, rPlain, rString, rNumber, rSymbol},
    // WhiteSpace, Reserved word, string, Comment, Identifier, Symbol (numbers), Symbol
    {rPlain, rKeyword, rString, rComment, rPlain, rNumber, rSymbol},
    {rPlain, rKeyword, rString, rComment, rPlain, rNumber, rSymbol},
    // WhiteSpace, AttributeName, AttributeValue, ElementName, ElemenValue, XMLChar, CDATA, Comment
    {rPlain, rName, rString, rKeyword, rPlain, rSymbol, rString, rComment},
    // WhiteSpace, Text, KeyWords, QuotedValues, Numbers, Parameters, Fieldnames, Comment
    {rPlain, rPlain, rKeyword, rString, rNumber, rName, rPlain, rComment},
};

TFontStyles RoleStyle(TRole ARole)
{
    if (ARole == rKeyword)
        return {TFontStyle::fsBold};
    if (ARole == rComment)
        return {TFontStyle::fsItalic};
    return {};
}

/// A colour written as 0xRRGGBB.
constexpr TColor Hex(std::uint32_t ARgb)
{
    return TColor(((ARgb >> 16) & 0xFF) | (ARgb & 0xFF00) | ((ARgb & 0xFF) << 16));
}

struct TPalette {
    const char16_t* Name;
    TSxCodeEditColors Editor;  ///< in the order of its fields
    std::array<TColor, RoleCount> Ink;  ///< by TRole
};

const TPalette LightPalette{
    u"Light",
    {Hex(0xFFFFFF), Hex(0xF3F3F3), Hex(0x5E6670), Hex(0xE0E0E0), Hex(0xADD6FF), Hex(0x000000), Hex(0xF2F6FC),
     Hex(0xC8E6C9), Hex(0xFFCDD2), Hex(0x000000)},
    {Hex(0x1F2328), Hex(0x0033B3), Hex(0x067D17), Hex(0x57606A), Hex(0x1750EB), Hex(0x5A3E00), Hex(0x871094)},
};

const TPalette DarkPalette{
    u"Dark",
    {Hex(0x1E1E1E), Hex(0x252526), Hex(0x9A9A9A), Hex(0x3C3C3C), Hex(0x264F78), Hex(0xFFFFFF), Hex(0x2A2D2E),
     Hex(0x2F5A3A), Hex(0x6B2B2B), Hex(0xAEAFAD)},
    {Hex(0xD4D4D4), Hex(0x569CD6), Hex(0xCE9178), Hex(0x7CA668), Hex(0xB5CEA8), Hex(0xDCDCAA), Hex(0x9CDCFE)},
};

TSxCodeEditTheme FromPalette(const TPalette& APalette)
{
    TSxCodeEditTheme theme = TSxCodeEditTheme::Classic();
    theme.Name = APalette.Name;
    theme.Editor = APalette.Editor;
    for (std::size_t language = 0; language < SxThemeLanguageCount; ++language) {
        TRows& rows = theme.Rows(TSxThemeLanguage(language));
        for (std::size_t row = 0; row < rows.size(); ++row) {
            const TRole role = RowRoles[language][row];
            rows[row].TextColor = APalette.Ink[role];
            rows[row].BckColor = APalette.Editor.Color;
            rows[row].Style = RoleStyle(role);
        }
    }
    return theme;
}

// The INI text.

struct TEditorKey {
    const char16_t* Name;
    TColor TSxCodeEditColors::*Field;
};

constexpr TEditorKey EditorKeys[] = {
    {u"Color", &TSxCodeEditColors::Color},
    {u"GutterColor", &TSxCodeEditColors::GutterColor},
    {u"LineNumberColor", &TSxCodeEditColors::LineNumberColor},
    {u"RightMarginColor", &TSxCodeEditColors::RightMarginColor},
    {u"SelectionColor", &TSxCodeEditColors::SelectionColor},
    {u"SelectionTextColor", &TSxCodeEditColors::SelectionTextColor},
    {u"CurrentLineColor", &TSxCodeEditColors::CurrentLineColor},
    {u"BracketMatchColor", &TSxCodeEditColors::BracketMatchColor},
    {u"BracketMismatchColor", &TSxCodeEditColors::BracketMismatchColor},
    {u"CaretColor", &TSxCodeEditColors::CaretColor},
};

constexpr const char16_t* StyleNames[] = {u"bold", u"italic", u"underline", u"strikeout"};  // by TFontStyle

const String ThemeSection = u"Theme";
const String EditorSection = u"Editor";

bool SameName(const String& A, const String& B) { return CompareText(A, B) == 0; }

/// A row's key: its name, and for a name that an earlier row has too, its
/// count among them ("Symbol 2").
String RowKey(const TRows& ARows, std::size_t ARow)
{
    Integer same = 1;
    for (std::size_t row = 0; row < ARow; ++row)
        same += ARows[row].Name == ARows[ARow].Name ? 1 : 0;
    return same == 1 ? ARows[ARow].Name : ARows[ARow].Name + u" " + IntToStr(same);
}

String ColorText(TColor AColor)
{
    String ident;
    if (ColorToIdent(AColor, ident))
        return ident;
    constexpr char16_t Digits[] = u"0123456789ABCDEF";
    const Byte parts[] = {GetRValue(AColor), GetGValue(AColor), GetBValue(AColor)};
    String text = u"#";
    for (const Byte part : parts) {
        text += Digits[part >> 4];
        text += Digits[part & 0xF];
    }
    return text;
}

String StyleText(TFontStyles AStyle)
{
    String text;
    for (std::size_t style = 0; style < std::size(StyleNames); ++style)
        if (AStyle.Contains(TFontStyle(style)))
            text += (text.empty() ? u"" : u",") + String(StyleNames[style]);
    return text;
}

String RowText(const TSxThemeRow& ARow)
{
    String text = ColorText(ARow.TextColor) + u" " + ColorText(ARow.BckColor);
    const String style = StyleText(ARow.Style);
    return style.empty() ? text : text + u" " + style;
}

/// The words of a text between blanks.
std::vector<String> Words(const String& AText)
{
    std::vector<String> words;
    String word;
    for (const Char c : AText + u" ") {
        if (c > u' ') {
            word += c;
        } else if (!word.empty()) {
            words.push_back(word);
            word.clear();
        }
    }
    return words;
}

/// Reads a theme's text, line by line, into a theme.
class TThemeReader {
public:
    explicit TThemeReader(TSxCodeEditTheme& ATheme) : FTheme(ATheme) {}

    void Read(const String& AText)
    {
        TStringList lines;
        lines.SetText(AText);
        for (Integer line = 0; line < lines.Count(); ++line) {
            FLineNr = line + 1;
            ReadLine(Trim(lines.Strings(line)));
        }
    }

private:
    enum TSection { sNone, sTheme, sEditor, sLanguage };

    void ReadLine(const String& ALine)
    {
        if (ALine.empty() || ALine[0] == u';')
            return;
        if (ALine[0] == u'[' && ALine.back() == u']')
            return EnterSection(Trim(ALine.substr(1, ALine.size() - 2)));
        const std::size_t equals = ALine.find(u'=');
        if (equals == String::npos)
            Fail(u"expected [section] or key = value");
        const String key = Trim(ALine.substr(0, equals));
        const String value = Trim(ALine.substr(equals + 1));
        switch (FSection) {
        case sNone:
            Fail(u"key '" + key + u"' outside a section");
        case sTheme:
            return ReadThemeKey(key, value);
        case sEditor:
            return ReadEditorKey(key, value);
        case sLanguage:
            return ReadRowKey(key, value);
        }
    }

    void EnterSection(const String& AName)
    {
        if (SameName(AName, ThemeSection)) {
            FSection = sTheme;
            return;
        }
        if (SameName(AName, EditorSection)) {
            FSection = sEditor;
            return;
        }
        for (std::size_t language = 0; language < SxThemeLanguageCount; ++language)
            if (SameName(AName, Tables[language].Section)) {
                FSection = sLanguage;
                FLanguage = TSxThemeLanguage(language);
                return;
            }
        Fail(u"unknown section '" + AName + u"'");
    }

    void ReadThemeKey(const String& AKey, const String& AValue)
    {
        if (!SameName(AKey, u"Name"))
            UnknownKey(AKey);
        FTheme.Name = AValue;
    }

    void ReadEditorKey(const String& AKey, const String& AValue)
    {
        for (const TEditorKey& key : EditorKeys)
            if (SameName(AKey, key.Name)) {
                FTheme.Editor.*key.Field = ParseColor(AValue);
                return;
            }
        UnknownKey(AKey);
    }

    /// "text background [style,style...]"
    void ReadRowKey(const String& AKey, const String& AValue)
    {
        TRows& rows = FTheme.Rows(FLanguage);
        for (std::size_t row = 0; row < rows.size(); ++row)
            if (SameName(AKey, RowKey(rows, row)))
                return ReadRow(AValue, rows[row]);
        UnknownKey(AKey);
    }

    void ReadRow(const String& AValue, TSxThemeRow& ARow)
    {
        const std::vector<String> words = Words(AValue);
        if (words.size() < 2)
            Fail(u"expected a text colour and a background colour, got '" + AValue + u"'");
        ARow.TextColor = ParseColor(words[0]);
        ARow.BckColor = ParseColor(words[1]);
        String styles;
        for (std::size_t word = 2; word < words.size(); ++word)
            styles += words[word];
        ARow.Style = ParseStyles(styles);
    }

    TColor ParseColor(const String& AText) const
    {
        TColor color = 0;
        if (IdentToColor(AText, color) || ParseHexColor(AText, color))
            return color;
        Fail(u"unknown colour '" + AText + u"'");
    }

    static bool ParseHexColor(const String& AText, TColor& AColor)
    {
        if (AText.size() != 7 || AText[0] != u'#')
            return false;
        std::uint32_t rgb = 0;
        for (std::size_t i = 1; i < AText.size(); ++i) {
            const Char c = UpCase(AText[i]);
            const bool digit = c >= u'0' && c <= u'9', letter = c >= u'A' && c <= u'F';
            if (!digit && !letter)
                return false;
            rgb = rgb * 16 + (digit ? c - u'0' : c - u'A' + 10);
        }
        AColor = Hex(rgb);
        return true;
    }

    /// Names between commas; blanks around them do not count.
    TFontStyles ParseStyles(const String& AText) const
    {
        TFontStyles styles;
        std::size_t start = 0;
        while (start < AText.size()) {
            const std::size_t end = std::min(AText.find(u',', start), AText.size());
            styles.Include(ParseStyle(AText.substr(start, end - start)));
            start = end + 1;
        }
        return styles;
    }

    TFontStyle ParseStyle(const String& AName) const
    {
        for (std::size_t style = 0; style < std::size(StyleNames); ++style)
            if (SameName(AName, StyleNames[style]))
                return TFontStyle(style);
        Fail(u"unknown style '" + AName + u"'");
    }

    [[noreturn]] void UnknownKey(const String& AKey) const { Fail(u"unknown key '" + AKey + u"'"); }

    [[noreturn]] void Fail(const String& AWhat) const
    {
        throw ESxTheme(u"line " + IntToStr(FLineNr) + u": " + AWhat);
    }

    TSxCodeEditTheme& FTheme;
    Integer FLineNr = 0;
    TSection FSection = sNone;
    TSxThemeLanguage FLanguage = TSxThemeLanguage::tlPascal;
};

}  // namespace

TSxCodeEditTheme TSxCodeEditTheme::Classic()
{
    TSxCodeEditTheme theme;
    theme.Name = u"Classic";
    for (std::size_t language = 0; language < SxThemeLanguageCount; ++language)
        theme.FRows[language] = Tables[language].Stock();
    return theme;
}

TSxCodeEditTheme TSxCodeEditTheme::Light() { return FromPalette(LightPalette); }

TSxCodeEditTheme TSxCodeEditTheme::Dark() { return FromPalette(DarkPalette); }

TSxCodeEditTheme TSxCodeEditTheme::Current(const TSxCodeEdit* AEdit)
{
    TSxCodeEditTheme theme;
    theme.Name = u"Current";
    for (std::size_t language = 0; language < SxThemeLanguageCount; ++language)
        theme.FRows[language] = Tables[language].Live();
    if (AEdit)
        theme.Editor = AEdit->Colors();
    return theme;
}

String TSxCodeEditTheme::LanguageName(TSxThemeLanguage ALanguage) { return Tables[std::size_t(ALanguage)].Section; }

void TSxCodeEditTheme::ApplyTo(TSxCodeEdit& AEdit) const { AEdit.SetColors(Editor); }

void ApplyTheme(const TSxCodeEditTheme& ATheme)
{
    for (std::size_t language = 0; language < SxThemeLanguageCount; ++language)
        Tables[language].Put(ATheme.Rows(TSxThemeLanguage(language)));
}

String TSxCodeEditTheme::SaveToText() const
{
    String text = u"[" + ThemeSection + u"]\nName = " + Name + u"\n\n[" + EditorSection + u"]\n";
    for (const TEditorKey& key : EditorKeys)
        text += String(key.Name) + u" = " + ColorText(Editor.*key.Field) + u"\n";
    for (std::size_t language = 0; language < SxThemeLanguageCount; ++language) {
        text += u"\n[" + String(Tables[language].Section) + u"]\n";
        const TRows& rows = FRows[language];
        for (std::size_t row = 0; row < rows.size(); ++row)
            text += RowKey(rows, row) + u" = " + RowText(rows[row]) + u"\n";
    }
    return text;
}

void TSxCodeEditTheme::LoadFromText(const String& AText)
{
    TSxCodeEditTheme read = *this;
    TThemeReader(read).Read(AText);
    *this = std::move(read);
}

void TSxCodeEditTheme::SaveToFile(const String& AFileName) const
{
    const std::string bytes = StrToUtf8(SaveToText());
    TSxStringStream stream(CodePages::Utf8, 0);
    stream.WriteBuffer(bytes.data(), Integer(bytes.size()));
    stream.SaveToFile(AFileName);
}

void TSxCodeEditTheme::LoadFromFile(const String& AFileName)
{
    TSxStringStream stream(CodePages::Utf8, 0);
    stream.LoadFromFile(AFileName, CodePages::Detect);
    LoadFromText(stream.GetWString());
}

}  // namespace sx
