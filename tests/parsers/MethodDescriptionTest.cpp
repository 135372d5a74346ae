// Method descriptions of events of every shape, and every refusal.
#include "codeedit/uSxCodeParser.h"

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

}  // namespace
