// Published-property tables: lookup through the class tree, unknown names,
// the kind filter, and registering again.
#include "platform/TypInfo.h"

#include <gtest/gtest.h>

using namespace sx;

namespace {

class TBase : public TComponent {
    SX_DECLARE_CLASS
public:
    using TComponent::TComponent;
};

class TMiddle : public TBase {
    SX_DECLARE_CLASS
public:
    using TBase::TBase;
};

class TLeaf : public TMiddle {
    SX_DECLARE_CLASS
public:
    using TMiddle::TMiddle;
};

SX_DEFINE_CLASS(TBase, TComponent)
SX_DEFINE_CLASS(TMiddle, TBase)
SX_DEFINE_CLASS(TLeaf, TMiddle)

struct TypInfo : testing::Test {
    TypInfo()
    {
        RegisterPublishedProps(TBase::ClassInfo(), {
            {u"OnClick", NotifyEventType()},
            {u"Caption", PlainType(tkUString, u"string")},
            {u"OnLost", std::nullopt},
        });
        RegisterPublishedProps(TLeaf::ClassInfo(), {
            {u"OnDone", MethodType(u"TDoneEvent", mkFunction, {{u"Sender", u"TObject"}, {u"Code", u"Integer", {pfVar}}},
                                   u"Boolean")},
            {u"Caption", NotifyEventType()},  // the leaf's Caption is an event
        });
    }
    ~TypInfo() override
    {
        UnRegisterPublishedProps(TBase::ClassInfo());
        UnRegisterPublishedProps(TLeaf::ClassInfo());
    }
    TLeaf leaf{nullptr};
    TMiddle middle{nullptr};
};

}  // namespace

TEST_F(TypInfo, AClassSeesItsAncestorsProperties)
{
    const PPropInfo click = GetPropInfo(&leaf, u"OnClick");
    ASSERT_NE(click, nullptr);
    EXPECT_EQ(click, GetPropInfo(&middle, u"OnClick"));
    EXPECT_EQ(click->Name(), u"OnClick");
    EXPECT_EQ(click->PropType()->Name, u"TNotifyEvent");
    EXPECT_EQ(GetPropInfo(&middle, u"OnDone"), nullptr);  // descendants' properties stay theirs
    EXPECT_EQ(GetPropInfo(TBase::ClassInfo(), u"OnDone"), nullptr);

    const TTypeData* done = GetTypeData(GetPropInfo(&leaf, u"ondone")->PropType());
    ASSERT_NE(done, nullptr);
    EXPECT_EQ(done->MethodKind, mkFunction);
    EXPECT_EQ(done->ParamCount(), 2);
    EXPECT_EQ(done->Params[1].ParamName, u"Code");
    EXPECT_TRUE(done->Params[1].Flags.Contains(pfVar));
    EXPECT_EQ(done->Params[1].Flags.ToBits(), 1u);  // the classic flags byte
    EXPECT_EQ(done->ResultType, u"Boolean");
}

TEST_F(TypInfo, UnknownNamesAndMissingObjects)
{
    EXPECT_EQ(GetPropInfo(&leaf, u"OnMissing"), nullptr);
    EXPECT_EQ(GetPropInfo(&leaf, u" OnClick"), nullptr);
    EXPECT_EQ(GetPropInfo(static_cast<const TObject*>(nullptr), u"OnClick"), nullptr);
    TComponent unregistered(nullptr);
    EXPECT_EQ(GetPropInfo(&unregistered, u"OnClick"), nullptr);
    EXPECT_EQ(GetTypeData(nullptr), nullptr);
}

TEST_F(TypInfo, TheKindFilterLooksAtTheNearestDeclaration)
{
    EXPECT_NE(GetPropInfo(&middle, u"Caption", {tkUString, tkString}), nullptr);
    EXPECT_EQ(GetPropInfo(&middle, u"Caption", {tkMethod}), nullptr);
    // the leaf's own Caption hides the ancestor's, kind and all
    EXPECT_NE(GetPropInfo(&leaf, u"Caption", {tkMethod}), nullptr);
    EXPECT_EQ(GetPropInfo(&leaf, u"Caption", {tkUString}), nullptr);
    // without type information the kind is unknown and the filter lets it pass
    const PPropInfo lost = GetPropInfo(&leaf, u"OnLost", {tkMethod});
    ASSERT_NE(lost, nullptr);
    EXPECT_EQ(lost->PropType(), nullptr);
    EXPECT_TRUE(tkAny().Contains(tkProcedure) && tkAny().Contains(tkUnknown));
}

TEST_F(TypInfo, RegisteringAgainReplacesInPlace)
{
    const PPropInfo before = GetPropInfo(&leaf, u"OnClick");
    RegisterPublishedProps(TBase::ClassInfo(), {{u"ONCLICK", MethodType(u"TClickEvent", mkProcedure, {})}});
    const PPropInfo after = GetPropInfo(&leaf, u"OnClick");
    EXPECT_EQ(before, after);
    EXPECT_EQ(after->Name(), u"ONCLICK");
    EXPECT_EQ(GetTypeData(after->PropType())->ParamCount(), 0);
    UnRegisterPublishedProps(TBase::ClassInfo());
    EXPECT_EQ(GetPropInfo(&leaf, u"OnClick"), nullptr);
    EXPECT_NE(GetPropInfo(&leaf, u"OnDone"), nullptr);
}
