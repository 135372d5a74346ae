// The fold rules of the five languages, through the fold structure: small
// texts per language with the regions they fold, among them the words that
// look like an opening and are none; and unbalanced texts, which still fold
// what pairs up.
#include "codeedit/uSxCodeFolds.h"
#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodePascalParser.h"
#include "codeedit/uSxCodeSqlParser.h"
#include "codeedit/uSxCodeVBParser.h"
#include "codeedit/uSxCodeXmlParser.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <vector>

namespace sx {

[[maybe_unused]] static void PrintTo(const TSxFoldRegion& ARegion, std::ostream* AOut)
{
    *AOut << "{" << ARegion.First << "," << ARegion.Last << "}";
}

}  // namespace sx

namespace {

using namespace sx;
using Regions = std::vector<TSxFoldRegion>;

enum class Lang { Pascal, VB, JS, Xml, Sql };

std::unique_ptr<TSxLangParser> MakeParser(Lang ALang)
{
    switch (ALang) {
    case Lang::Pascal: return std::make_unique<TSxCodePascalParser>(nullptr);
    case Lang::VB: return std::make_unique<TSxCodeVBParser>(nullptr);
    case Lang::JS: return std::make_unique<TSxCodeJSParser>(nullptr);
    case Lang::Xml: return std::make_unique<TSxCodeXMLParser>(nullptr);
    case Lang::Sql: return std::make_unique<TSxCodeSqlParser>(nullptr);
    }
    return nullptr;
}

struct FoldCase {
    Lang Language;
    const char16_t* Text;
    Regions Expected;
};

void ExpectRegions(std::initializer_list<FoldCase> ACases)
{
    for (const FoldCase& c : ACases) {
        SCOPED_TRACE(StrToUtf8(c.Text));
        const auto parser = MakeParser(c.Language);
        TStringList lines;
        lines.SetText(c.Text);
        TSxFoldStructure folds(lines);
        folds.SetParser(parser.get());
        EXPECT_EQ(folds.Regions(0, MaxInt), c.Expected);
    }
}

constexpr Lang Pascal = Lang::Pascal, VB = Lang::VB, JS = Lang::JS, Xml = Lang::Xml, Sql = Lang::Sql;

TEST(FoldRules, Pascal)
{
    ExpectRegions({
        {Pascal, u"BEGIN\n  REPEAT\n    try\n      x;\n    finally\n    End;\n  until x;\n  case x of\n"
                 u"    1: y;\n  end;\nend.", {{0, 10}, {1, 6}, {2, 5}, {7, 9}}},
        {Pascal, u"if a then begin\n  x;\nend else begin\n  y;\nend;", {{0, 1}, {2, 4}}},
        {Pascal, u"begin // end\n  s := 'end'; { end }\nend;\nAsm\n  mov eax, 1\nEND;", {{0, 2}, {3, 5}}},
        {Pascal, u"type\n  TFoo = class(TBase)\n    TFwd = class;\n    TShort = class(TBase);\n"
                 u"    TRef = class of TFoo;\n    TProc = procedure of object;\n    class function Make: TFoo;\n"
                 u"    class procedure Q;\n    class var N: Integer;\n    class property C: Integer read N;\n"
                 u"    class operator Add(a, b: TFoo): TFoo;\n    class constructor Create;\n  end;\n"
                 u"  TObj = object\n    x: Integer;\n  end;", {{1, 12}, {13, 15}}},
        {Pascal, u"TRec = packed record\n  a: Integer;\n  case Byte of\n    0: (b: Byte);\n    1: (c: Word);\n"
                 u"end;\nbegin\nend;", {{0, 5}, {6, 7}}},
        {Pascal, u"unit U;\ninterface\ntype\n  IFoo = interface(IBase)\n    procedure A;\n  end;\n"
                 u"  IFwd = interface;\nimplementation\nprocedure A;\nbegin\nend;\ninitialization\n  A;\nend.",
         {{1, 6}, {3, 5}, {7, 10}, {9, 10}, {11, 13}}},
    });
}

TEST(FoldRules, VisualBasic)
{
    ExpectRegions({
        {VB, u"Public Sub Main()\n  If a Then\n    Exit Sub\n  ElseIf b Then\n    x = 1\n  End If\n"
             u"  If c Then d = 1\n  For i = 1 To 3\n    Exit For\n  Next\nEnd Sub", {{0, 10}, {1, 5}, {7, 9}}},
        {VB, u"Private Function G()\n  Declare Function F Lib \"x\" ()\n  Do While x\n    Exit Do\n  Loop\n  do\n"
             u"    Exit Function\n  LOOP While y\n  Select Case z\n    Case 1\n  End Select\nEnd Function",
         {{0, 11}, {2, 4}, {5, 7}, {8, 10}}},
        {VB, u"Class C\n  Public Property Get P()\n    With o : .x = 1\n    End With\n  End Property\nEnd Class\n"
             u"x = 1 : While a\nWend\nIf a Then ' a comment\n  b\nend if", {{0, 5}, {1, 4}, {2, 3}, {6, 7}, {8, 10}}},
    });
}

TEST(FoldRules, JavaScript)
{
    ExpectRegions({
        {JS, u"function f() {\n  if (a) {\n    s = \"}\";\n  } else {\n    // }\n    end = 2;\n  }\n  /* { */\n}",
         {{0, 8}, {1, 2}, {3, 6}}},
    });
}

TEST(FoldRules, Xml)
{
    ExpectRegions({
        {Xml, u"<?xml version=\"1.0\"?>\n<!DOCTYPE r>\n<r a=\"1/2\">\n  <e/>\n  <f\n    b=\"2\"/>\n  <g>x</g>\n"
              u"  <!-- <h> -->\n  <![CDATA[<j>]]>\n  <i>\n    text\n  </i>\n</r>\n</x>", {{2, 12}, {4, 5}, {9, 11}}},
    });
}

TEST(FoldRules, Sql)
{
    ExpectRegions({
        {Sql, u"IF x BEGIN\n  BEGIN TRANSACTION\n  begin work\n  BEGIN TRAN; BEGIN;\n  SELECT CASE\n"
              u"    WHEN a THEN 1\n  END\n  FROM t\nEND", {{0, 8}, {4, 6}}},
        {Sql, u"CREATE PROCEDURE p AS\nBEGIN\n  IF a THEN\n    CASE b\n    WHEN 1 THEN x;\n    END CASE;\n"
              u"  END IF;\n  LOOP\n  END LOOP;\n  INSERT INTO t VALUES (\n    1, 2)\nEND", {{1, 11}, {3, 5}, {9, 10}}},
        {Sql, u"BEGIN TRY\n  x\nEND TRY", {{0, 2}}},
    });
}

TEST(FoldRules, UnbalancedTextsFoldWhatPairsUp)
{
    ExpectRegions({
        {Pascal, u"end;\nbegin\n  x;\nend;\nend;\nend.", {{1, 3}}},
        {Pascal, u"until x;\nbegin\n  repeat\n  x;\nuntil y;", {{2, 4}}},
        {VB, u"End If\nNext\nSub S\n  x\nEnd Sub\nLoop\nWend\nEnd Class", {{2, 4}}},
        {JS, u"}\n{\n  a;\n}\n}\n{\n  {\n  }", {{1, 3}, {6, 7}}},
        {Xml, u"</a>\n<b>\n</b>\n</c>\n<d>\n<e>\n</d>", {{1, 2}, {5, 6}}},
        {Sql, u"END\n)\nBEGIN\n  (1,\n  2)\nEND\nEND\n(", {{2, 5}, {3, 4}}},
    });
}

}  // namespace
