// Method descriptions of events of every shape, and every refusal; and the
// script parsers: Visual Basic's paint listener, and the handler operations
// of both on realistic scripts: the text of a new handler, the handlers that
// fit an event, and their lines.
#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodeVBParser.h"
#include "parsers/ParserTestSupport.h"

#include <memory>

namespace {

using namespace sx;
using namespace sx::uSxCodeParser;
using sx::test::TScriptButton;

class TDerivedHost : public TScriptButton {
    SX_DECLARE_CLASS
public:
    using TScriptButton::TScriptButton;
};

/// An object that is no component, with an event of its own.
class TPlainHolder : public TObject {
    SX_DECLARE_CLASS
};

SX_DEFINE_CLASS(TDerivedHost, TScriptButton)
SX_DEFINE_CLASS(TPlainHolder, TObject)

struct MethodDescription : testing::Test {
    static void SetUpTestSuite()
    {
        TScriptButton::RegisterEvents();
        RegisterPublishedProps(TDerivedHost::ClassInfo(), {{u"OnExtra", NotifyEventType()}});
        RegisterPublishedProps(TPlainHolder::ClassInfo(), {{u"OnNotify", NotifyEventType()}});
    }
    static std::unique_ptr<TSxMethodDescription> Describe(const TObject* AInstance, const String& AName)
    {
        return std::unique_ptr<TSxMethodDescription>(GetMethodDescription(AInstance, AName));
    }
    TScriptButton host{nullptr, u"Host1"};
};

TEST_F(MethodDescription, KindNameAndResult)
{
    const auto nothing = Describe(&host, u"OnIdle");
    ASSERT_TRUE(nothing);
    EXPECT_TRUE(nothing->Name() == u"Host1" && nothing->ProcName() == u"OnIdle");
    EXPECT_TRUE(nothing->ProcType() == mkProcedure && nothing->ParamCount() == 0 && nothing->ResultType().empty());
    nothing->SetParamCount(5);  // stored, never read
    EXPECT_EQ(nothing->ParamCount(), 0);
    const auto query = Describe(&host, u"OnValidate");
    EXPECT_TRUE(query->ProcType() == mkFunction && query->ResultType() == u"Boolean");
    EXPECT_EQ(query->Params(0)->ParamVarType(), u"TObject");
    EXPECT_EQ(Describe(&host, u"OnCount")->ResultType(), u"Integer");  // a class function
    EXPECT_EQ(Describe(&host, u"OnOdd")->ResultType(), u"");           // only functions have a result
}

TEST_F(MethodDescription, ParametersKeepOrderNamesTypesAndPassing)
{
    const auto d = Describe(&host, u"OnPassing");
    ASSERT_TRUE(d && d->ParamCount() == 6);
    const std::vector<std::pair<String, TSxParamType>> expected{
        {u"A", ptVar}, {u"B", ptConst}, {u"C", ptOut}, {u"D", ptNone}, {u"E", ptConst}, {u"F", ptOut}};
    for (Integer i = 0; i < d->ParamCount(); ++i)
        EXPECT_EQ(std::pair(d->Params(i)->Name(), d->Params(i)->ParamType()), expected[std::size_t(i)]) << i;
    EXPECT_EQ(d->Params(1)->ParamVarType(), u"string");
    EXPECT_THROW(d->Params(6), EListError);
    const auto arrays = Describe(&host, u"OnArray");
    ASSERT_TRUE(arrays && arrays->ParamCount() == 1);
    EXPECT_TRUE(arrays->Params(0)->ParamVarType() == u"Integer[]" && arrays->Params(0)->ParamType() == ptConst);
}

TEST_F(MethodDescription, NamesAndInheritance)
{
    EXPECT_EQ(Describe(&host, u"onvalidate")->ProcName(), u"OnValidate");  // the declared name, whatever the case asked
    TDerivedHost derived(nullptr);
    EXPECT_EQ(Describe(&derived, u"OnValidate")->Name(), u"");  // an inherited event of a component with no name
    TPlainHolder plain;
    const auto d = Describe(&plain, u"OnNotify");
    ASSERT_TRUE(d);
    EXPECT_TRUE(d->Name().empty() && d->ProcName() == u"OnNotify" && d->Params(0)->Name() == u"Sender");
}

TEST_F(MethodDescription, EveryRefusalAnswersNone)
{
    // no object, a blank name, a name no property has, a property that is no event, a missing event
    EXPECT_FALSE(Describe(nullptr, u"OnIdle"));
    for (const String name : {u"", u" \t ", u" OnIdle ", u"Caption", u"OnMissing"})
        EXPECT_FALSE(Describe(&host, name)) << StrToUtf8(name);
    // an event without type information gives the empty description
    const auto broken = Describe(&host, u"OnBroken");
    ASSERT_TRUE(broken);
    EXPECT_TRUE(broken->ProcName().empty() && broken->ParamCount() == 0);
}

using Cases = std::vector<std::pair<String, String>>;

TEST(VBParser, PaintInfoRunsTwiceForATokenWithARowAndOnceForOthers)
{
    TSxCodeVBParser p(nullptr);
    sx::test::LineFeed feed{{u"Dim x"}};
    p.SetOnGetNewBuffer(std::ref(feed));
    std::vector<String> seen;
    p.SetOnPaintInfo([&seen](const String& token, TColor&, TColor& text, TFontStyles&) {
        seen.push_back(token);
        if (token == u"x")
            text = clMaroon;
    });
    EXPECT_EQ(sx::test::Paint(p).Fore, uSxCodeVBParser::DrawInfo[1].TextColor);
    EXPECT_EQ(sx::test::Paint(p).Fore, uSxCodeVBParser::DrawInfo[0].TextColor);
    EXPECT_EQ(sx::test::Paint(p).Fore, clMaroon);
    EXPECT_TRUE(sx::test::Paint(p).LineBreak);
    EXPECT_FALSE(sx::test::Paint(p).More);
    // the line break and the end token are shown to the listener too
    EXPECT_EQ(seen, (std::vector<String>{u"Dim", u"Dim", u" ", u"x", u"x", u"\r", String(1, Char(0))}));
}

/// Per language: a script, the handlers of it that fit each event, the lines
/// of names, new handlers (component name, event, text), and what a script
/// with two new handlers of one event behind it gives.
struct VBScript {
    using Parser = TSxCodeVBParser;
    // handlers on lines 4, 8, 11 and 14
    static inline const std::vector<String> Script{
        u"Option Explicit", u"Dim clicks", u"", u"Sub Button1_OnClick(Sender)", u"  clicks = clicks + 1",
        u"  If clicks > 3 Then Exit Sub", u"End Sub", u"Private Sub Helper(ByVal a, ByRef b)",
        u"  b = a * 2 ' doubles", u"End Sub", u"Function Validate(Sender, Value)", u"  Validate = Len(Value) > 0",
        u"End Function", u"sub logClick(Sender) rem fits OnClick", u"end sub"};
    // ByVal and ByRef are noise
    static inline const Cases SameMethods{{u"OnClick", u"Button1_OnClick\r\nlogClick\r\n"},
                                          {u"OnKeyPress", u"Helper\r\n"}, {u"OnValidate", u"Validate\r\n"}};
    static inline const std::vector<std::pair<String, Integer>> Lines{
        {u"BUTTON1_ONCLICK", 4}, {u"helper", 8}, {u"LogClick", 14}, {u"clicks", -1}};
    static inline const std::vector<std::array<String, 3>> Created{
        {u"Button1", u"OnClick", u"\r\nsub Button1_OnClick(Sender)\r\n  \r\nend sub rem Button1_OnClick\r\n"},
        {u"Button1", u"OnValidate",
         u"\r\nfunction Button1_OnValidate(Sender, Value)\r\n  \r\nend function rem Button1_OnValidate\r\n"},
        {u"", u"OnKeyPress", u"\r\nsub OnKeyPress(Sender, Key)\r\n  \r\nend sub rem OnKeyPress\r\n"},
        {u"Button1", u"OnIdle", u"\r\nsub Button1_OnIdle()\r\n  \r\nend sub rem Button1_OnIdle\r\n"}};
    // the name behind "end sub rem" is comment text, no header; the first header of a name wins
    static inline const String Generated = u"OnClick",
                               GeneratedSame = u"Button1_OnClick\r\nlogClick\r\nButton1_OnClick\r\nButton2_OnClick\r\n";
    static constexpr Integer GeneratedLines[2] = {4, 21};
};

struct JSScript {
    using Parser = TSxCodeJSParser;
    // handlers on lines 3 and 8; a header in a comment on line 6
    static inline const std::vector<String> Script{
        u"// click handlers", u"var clicks = 0;", u"function Button1_OnClick(Sender)", u"{",
        u"  clicks = clicks + 1; /* counted", u"     function notAHeader(x) */", u"} // Button1_OnClick",
        u"function add(a, b) { return a + b; } FUNCTION twice(x) { return add(x, x); }"};
    // a function counts behind a brace and fits events of any kind
    static inline const Cases SameMethods{
        {u"OnClick", u"Button1_OnClick\r\ntwice\r\n"}, {u"OnKeyPress", u"add\r\n"}, {u"OnValidate", u"add\r\n"}};
    static inline const std::vector<std::pair<String, Integer>> Lines{
        {u"button1_onclick", 3}, {u"ADD", 8}, {u"twice", 8}, {u"notAHeader", -1}, {u"clicks", -1}};
    static inline const std::vector<std::array<String, 3>> Created{
        {u"Button1", u"OnClick", u"\r\nfunction Button1_OnClick(Sender)\r\n{  \r\n} // Button1_OnClick\r\n"},
        {u"", u"OnValidate", u"\r\nfunction OnValidate(Sender, Value)\r\n{  \r\n} // OnValidate\r\n"}};
    static inline const String Generated = u"OnKeyPress",
                               GeneratedSame = u"add\r\nButton1_OnKeyPress\r\nButton2_OnKeyPress\r\n";
    static constexpr Integer GeneratedLines[2] = {10, 14};
};

/// A script parser over lines, with the events of TScriptButton registered.
template <class L>
struct ScriptMethods : testing::Test {
    ScriptMethods() { TScriptButton::RegisterEvents(); }
    void Feed(std::vector<String> ALines)
    {
        feed.Lines = std::move(ALines);
        parser.SetOnGetNewBuffer(std::ref(feed));
    }
    /// The script's lines joined with CR LF, each line ended.
    static String Joined(const std::vector<String>& ALines)
    {
        String text;
        for (const String& line : ALines)
            text += line + u"\r\n";
        return text;
    }
    typename L::Parser parser{nullptr};
    sx::test::LineFeed feed{std::vector<String>{}, &parser};
    TScriptButton button1{nullptr, u"Button1"};
};

using Languages = testing::Types<VBScript, JSScript>;
TYPED_TEST_SUITE(ScriptMethods, Languages);

TYPED_TEST(ScriptMethods, CreateMethodNamesTheHandlerAndWritesItsText)
{
    for (const auto& [component, event, text] : TypeParam::Created) {
        TScriptButton button(nullptr, component);
        String name = u"old";
        EXPECT_EQ(this->parser.CreateMethod(&button, event, name), text);
        EXPECT_EQ(name, component.empty() ? event : component + u"_" + event);
    }
    // without a method description there is nothing to write
    String name;
    EXPECT_EQ(this->parser.CreateMethod(&this->button1, u"Caption", name), u"");
    EXPECT_EQ(this->parser.CreateMethod(nullptr, u"OnClick", name), u"");
    EXPECT_EQ(this->parser.GetSameMethods(nullptr, u"OnClick"), u"");
}

TYPED_TEST(ScriptMethods, SameMethodsFitByKindAndParameterCountAndLinesAreFoundCaseBlind)
{
    this->Feed(TypeParam::Script);
    for (const auto& [event, names] : TypeParam::SameMethods)
        EXPECT_EQ(this->parser.GetSameMethods(&this->button1, event), names) << StrToUtf8(event);
    for (const auto& [name, line] : TypeParam::Lines)
        EXPECT_EQ(this->parser.MethodLineNr(name), line) << StrToUtf8(name);
    this->Feed({});
    EXPECT_EQ(this->parser.GetSameMethods(&this->button1, u"OnClick"), u"");
    EXPECT_EQ(this->parser.MethodLineNr(u"x"), -1);
}

TYPED_TEST(ScriptMethods, AGeneratedHandlerIsFoundUnderBothNames)
{
    TScriptButton button2(nullptr, u"Button2");
    String name1, name2;
    const String text = this->parser.CreateMethod(&this->button1, TypeParam::Generated, name1) +
                        this->parser.CreateMethod(&button2, TypeParam::Generated, name2);
    this->parser.SetInputStream(sx::test::Utf16Stream(this->Joined(TypeParam::Script) + text), true);
    EXPECT_EQ(this->parser.GetSameMethods(&this->button1, TypeParam::Generated), TypeParam::GeneratedSame);
    EXPECT_EQ(this->parser.MethodLineNr(name1), TypeParam::GeneratedLines[0]);
    EXPECT_EQ(this->parser.MethodLineNr(name2), TypeParam::GeneratedLines[1]);  // each scan rewinds the stream
}

// A scan reads any feed, also one of a character a piece, and starts outside
// a comment that a paint left open; "exit sub" is taken for a header when an
// identifier follows it, over line breaks.
TYPED_TEST(ScriptMethods, ScansStartAtTheTopOfAnyFeed)
{
    const String source = this->Joined(TypeParam::Script);
    std::size_t next = 0;
    this->parser.SetOnGetNewBuffer([&](bool AReset, String& S) {
        next = AReset ? 0 : next;
        if (!AReset && next < source.size())
            S.assign(1, source[next++]);
        return AReset || !S.empty();
    });
    this->parser.SetLineKind(1);
    this->parser.SetRemarkEnd(u"*/");
    EXPECT_EQ(this->parser.MethodLineNr(TypeParam::Lines[0].first), TypeParam::Lines[0].second);
    EXPECT_EQ(this->parser.GetSameMethods(&this->button1, u"OnKeyPress"), TypeParam::SameMethods[1].second);
    this->Feed({u"If done Then Exit Sub", u"count = 0"});
    EXPECT_EQ(this->parser.MethodLineNr(u"count"), 2);
    typename TypeParam::Parser unfed(nullptr);
    EXPECT_EQ(unfed.MethodLineNr(u"x"), -1);
}

}  // namespace
