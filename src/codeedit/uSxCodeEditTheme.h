// Colour themes: the colours and styles of every row of the five parsers'
// colour tables and the control's own colours in one object, the bundled
// themes, and a small INI text to save a theme in and load it from.
#pragma once

#include "platform/Colors.h"
#include "platform/SysUtils.h"

#include <array>
#include <vector>

namespace sx {

class TSxCodeEdit;

/// Raised when a theme's text cannot be read; the message names the line,
/// such as "line 12: unknown colour 'blu'".
class ESxTheme : public Exception {
    using Exception::Exception;
};

/// The control's own colours, each the TSxCodeEdit property of the same name.
struct TSxCodeEditColors {
    TColor Color = clWindow;  ///< the text area's ground
    TColor GutterColor = clBtnFace;
    TColor LineNumberColor = TColor(0x00707070);
    TColor RightMarginColor = clBtnFace;
    TColor SelectionColor = clHighlight;
    TColor SelectionTextColor = clHighlightText;
    /// A pale blue that the selection and the token colours stand out from.
    TColor CurrentLineColor = TColor(0x00FEF2E8);
    TColor BracketMatchColor = TColor(0x00C0F0C0);
    TColor BracketMismatchColor = TColor(0x00C0C0FF);
    TColor CaretColor = clWindowText;

    friend bool operator==(const TSxCodeEditColors&, const TSxCodeEditColors&) = default;
};

/// The colours a new control has.
inline constexpr TSxCodeEditColors ClassicEditColors{};

/// The colours and style of one row of a parser's colour table.
struct TSxThemeRow {
    String Name;  ///< the row's name in its table
    TColor TextColor = clWindowText;
    TColor BckColor = clWindow;
    TFontStyles Style;

    friend bool operator==(const TSxThemeRow&, const TSxThemeRow&) = default;
};

/// The languages whose colour tables a theme holds, in the order of a saved theme.
enum class TSxThemeLanguage { tlPascal, tlVB, tlJS, tlXml, tlSql };
constexpr std::size_t SxThemeLanguageCount = 5;

class TSxCodeEditTheme {
public:
    /// The start values of every table and control ("Classic").
    static TSxCodeEditTheme Classic();
    /// Dark text on white, and its counterpart in light text on a dark ground;
    /// every text is readable on its ground (WCAG contrast of 4.5:1 at least).
    static TSxCodeEditTheme Light();
    static TSxCodeEditTheme Dark();
    /// The tables as the process has them now, with the colours of AEdit, or
    /// of a new control without one.
    static TSxCodeEditTheme Current(const TSxCodeEdit* AEdit = nullptr);

    /// A theme's section name in a saved theme: "Pascal", "VB", "JS", "XML", "SQL".
    static String LanguageName(TSxThemeLanguage ALanguage);

    /// One row for each row of the language's colour table, in its order.
    std::vector<TSxThemeRow>& Rows(TSxThemeLanguage ALanguage) { return FRows[std::size_t(ALanguage)]; }
    const std::vector<TSxThemeRow>& Rows(TSxThemeLanguage ALanguage) const
    {
        return FRows[std::size_t(ALanguage)];
    }

    /// The control's colours to that control; the tables are ApplyTheme's.
    void ApplyTo(TSxCodeEdit& AEdit) const;

    /// The theme as INI text: [Theme] Name, [Editor] the control's colours,
    /// and a section of rows for each language.
    String SaveToText() const;
    /// Reads what the text gives over this theme; what it leaves out stays.
    /// The text is read whole before anything changes: on a fault ESxTheme
    /// is raised and the theme is as it was. Unknown sections and keys are faults.
    void LoadFromText(const String& AText);
    /// SaveToText into a UTF-8 file; raises EFCreateError when it cannot be written.
    void SaveToFile(const String& AFileName) const;
    /// LoadFromText of a file; raises EFOpenError when it cannot be read.
    void LoadFromFile(const String& AFileName);

    String Name;
    TSxCodeEditColors Editor;

    friend bool operator==(const TSxCodeEditTheme&, const TSxCodeEditTheme&) = default;

private:
    std::array<std::vector<TSxThemeRow>, SxThemeLanguageCount> FRows;
};

/// Puts the theme's rows into the five colour tables, which every parser of
/// the process shares; controls show them at their next paint.
void ApplyTheme(const TSxCodeEditTheme& ATheme);

}  // namespace sx
