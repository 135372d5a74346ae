// Method descriptions of events of every shape, every refusal, and the
// handler operations of the parsers that have none.
#include "codeedit/uSxCodePascalParser.h"
#include "codeedit/uSxCodeParser.h"
#include "codeedit/uSxCodeSqlParser.h"
#include "codeedit/uSxCodeXmlParser.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using namespace sx;
using namespace sx::uSxCodeParser;

class THost : public TComponent {
    SX_DECLARE_CLASS
public:
    using TComponent::TComponent;
};

class TDerivedHost : public THost {
    SX_DECLARE_CLASS
public:
    using THost::THost;
};

/// An object that is no component, with an event of its own.
class TPlainHolder : public TObject {
    SX_DECLARE_CLASS
};

SX_DEFINE_CLASS(THost, TComponent)
SX_DEFINE_CLASS(TDerivedHost, THost)
SX_DEFINE_CLASS(TPlainHolder, TObject)

struct MethodDescription : testing::Test {
    static void SetUpTestSuite()
    {
        RegisterPublishedProps(THost::ClassInfo(), {
            {u"OnNothing", MethodType(u"TNothingEvent", mkProcedure, {})},
            {u"OnPassing", MethodType(u"TPassingEvent", mkProcedure,
                                      {{u"A", u"Integer", {pfVar}}, {u"B", u"string", {pfConst}},
                                       {u"C", u"Integer", {pfOut}}, {u"D", u"Integer"},
                                       {u"E", u"Integer", {pfVar, pfConst}}, {u"F", u"Integer", {pfConst, pfOut}}})},
            {u"OnArray", MethodType(u"TArrayEvent", mkProcedure, {{u"Values", u"Integer", {pfConst, pfArray}}})},
            {u"OnQuery", MethodType(u"TQueryEvent", mkFunction, {{u"Sender", u"TObject"}}, u"Boolean")},
            {u"OnCount", MethodType(u"TCountEvent", mkClassFunction, {}, u"Integer")},
            {u"OnOdd", MethodType(u"TOddEvent", mkProcedure, {}, u"Integer")},
            {u"OnBroken", std::nullopt},
            {u"Caption", PlainType(tkUString, u"string")},
        });
        RegisterPublishedProps(TDerivedHost::ClassInfo(), {{u"OnExtra", NotifyEventType()}});
        RegisterPublishedProps(TPlainHolder::ClassInfo(), {{u"OnNotify", NotifyEventType()}});
    }
    static void TearDownTestSuite()
    {
        UnRegisterPublishedProps(THost::ClassInfo());
        UnRegisterPublishedProps(TDerivedHost::ClassInfo());
        UnRegisterPublishedProps(TPlainHolder::ClassInfo());
    }

    static std::unique_ptr<TSxMethodDescription> Describe(const TObject* instance, const String& name)
    {
        return std::unique_ptr<TSxMethodDescription>(GetMethodDescription(instance, name));
    }

    THost host{nullptr};
    MethodDescription() { host.SetName(u"Host1"); }
};

TEST_F(MethodDescription, KindNameAndResult)
{
    const auto nothing = Describe(&host, u"OnNothing");
    ASSERT_TRUE(nothing);
    EXPECT_TRUE(nothing->Name() == u"Host1" && nothing->ProcName() == u"OnNothing");
    EXPECT_TRUE(nothing->ProcType() == mkProcedure && nothing->ParamCount() == 0 && nothing->ResultType().empty());
    nothing->SetParamCount(5);  // stored, never read
    EXPECT_EQ(nothing->ParamCount(), 0);
    const auto query = Describe(&host, u"OnQuery");
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
    EXPECT_EQ(Describe(&host, u"onquery")->ProcName(), u"OnQuery");  // the declared name, whatever the case asked
    TDerivedHost derived(nullptr);
    EXPECT_EQ(Describe(&derived, u"OnQuery")->Name(), u"");  // an inherited event of a component with no name
    TPlainHolder plain;
    const auto d = Describe(&plain, u"OnNotify");
    ASSERT_TRUE(d);
    EXPECT_TRUE(d->Name().empty() && d->ProcName() == u"OnNotify" && d->Params(0)->Name() == u"Sender");
}

TEST_F(MethodDescription, EveryRefusalAnswersNone)
{
    // no object, a blank name, a name no property has, a property that is no event, a missing event
    EXPECT_FALSE(Describe(nullptr, u"OnNothing"));
    for (const String name : {u"", u" \t ", u" OnNothing ", u"Caption", u"OnMissing"})
        EXPECT_FALSE(Describe(&host, name)) << StrToUtf8(name);
    // an event without type information gives the empty description
    const auto broken = Describe(&host, u"OnBroken");
    ASSERT_TRUE(broken);
    EXPECT_TRUE(broken->ProcName().empty() && broken->ParamCount() == 0);
}

TEST_F(MethodDescription, ParsersWithoutHandlersAnswerNothing)
{
    std::vector<std::unique_ptr<TSxLangParser>> parsers;
    parsers.emplace_back(new TSxLangParser(nullptr));
    parsers.emplace_back(new TSxCodePascalParser(nullptr));
    parsers.emplace_back(new TSxCodeXMLParser(nullptr));
    parsers.emplace_back(new TSxCodeSqlParser(nullptr));
    for (const auto& parser : parsers) {
        String name = u"kept";
        EXPECT_EQ(parser->CreateMethod(&host, u"OnQuery", name), u"") << StrToUtf8(parser->GetLanguage());
        EXPECT_EQ(name, u"kept");
        EXPECT_EQ(parser->GetSameMethods(&host, u"OnQuery"), u"");
        EXPECT_EQ(parser->MethodLineNr(u"OnQuery"), -1);
    }
}

}  // namespace
