// Components and classes: owners free what they own, a free notification
// taken back, the class registry,
// and published-property tables: lookup through the class tree, the kind
// filter, and unregistering.
#include "platform/Classes.h"
#include "platform/TypInfo.h"

#include <gtest/gtest.h>

#include <vector>

using namespace sx;

namespace {

class Probe : public TComponent {
    SX_DECLARE_CLASS  // opens a public section
    explicit Probe(TComponent* AOwner) : TComponent(AOwner) {}
    ~Probe() override { ++destroyed; }
    void Notification(TComponent* AComponent, TOperation Operation) override
    {
        TComponent::Notification(AComponent, Operation);
        if (Operation == TOperation::opRemove)
            removed.push_back(AComponent);
    }
    std::vector<TComponent*> removed;
    static inline int destroyed = 0;
};

class TMiddle : public Probe {
    SX_DECLARE_CLASS
    using Probe::Probe;
};

class TLeaf : public TMiddle {
    SX_DECLARE_CLASS
    using TMiddle::TMiddle;
};

SX_DEFINE_CLASS(Probe, TComponent)
SX_DEFINE_CLASS(TMiddle, Probe)
SX_DEFINE_CLASS(TLeaf, TMiddle)

TEST(Component, OwnerFreesWhatItOwns)
{
    Probe::destroyed = 0;
    auto* owner = new TComponent(nullptr);
    new Probe(owner);
    auto* inner = new Probe(owner);
    new Probe(inner);
    EXPECT_EQ(owner->ComponentCount(), 2);
    delete owner;
    EXPECT_EQ(Probe::destroyed, 3);
}

// The control's tests free its parser and menu, owned alongside it and by
// nobody, and so meet removal among siblings and across owners.
TEST(Component, FreeNotificationTakenBackIsNotSent)
{
    Probe former(nullptr);
    auto* b = new Probe(nullptr);
    b->FreeNotification(&former);
    b->RemoveFreeNotification(&former);
    delete b;
    EXPECT_TRUE(former.removed.empty());
}

TEST(Component, RegisteredClassesAreFoundByNameAndBuilt)
{
    RegisterClass(Probe::ClassInfo());
    EXPECT_EQ(GetClass(u"probe"), &Probe::ClassInfo());
    TComponent owner(nullptr);
    TComponent* made = GetClass(u"PROBE")->Create(&owner);
    EXPECT_EQ(made->ClassName(), u"Probe");
    EXPECT_TRUE(made->InheritsFrom(TComponent::ClassInfo()));
    EXPECT_EQ(made->Owner(), &owner);
    UnRegisterClass(Probe::ClassInfo());
}

struct TypInfo : testing::Test {
    TypInfo()
    {
        RegisterPublishedProps(Probe::ClassInfo(),
                               {{u"OnClick", NotifyEventType()}, {u"Caption", PlainType(tkUString, u"string")}});
        // The leaf's Caption is an event.
        RegisterPublishedProps(TLeaf::ClassInfo(), {{u"OnDone", NotifyEventType()}, {u"Caption", NotifyEventType()}});
    }
    ~TypInfo() override
    {
        UnRegisterPublishedProps(Probe::ClassInfo());
        UnRegisterPublishedProps(TLeaf::ClassInfo());
    }
    TLeaf leaf{nullptr};
    TMiddle middle{nullptr};
};

// GetMethodDescription's tests look events up by name, case-blind, through
// the class tree and with the method kind filter; here what they do not meet.
TEST_F(TypInfo, LookupGoesUpThroughClassesWithoutATableNeverDownAndStopsAtTheNearest)
{
    const PPropInfo click = GetPropInfo(&leaf, u"OnClick");
    ASSERT_NE(click, nullptr);
    EXPECT_EQ(click, GetPropInfo(&middle, u"OnClick"));
    EXPECT_EQ(click->PropType()->Name, u"TNotifyEvent");
    EXPECT_EQ(GetPropInfo(&middle, u"OnDone"), nullptr);
    EXPECT_EQ(GetPropInfo(Probe::ClassInfo(), u"OnDone"), nullptr);
    TComponent unregistered(nullptr);
    EXPECT_EQ(GetPropInfo(&unregistered, u"OnClick"), nullptr);
    EXPECT_EQ(GetTypeData(nullptr), nullptr);
    // The kind filter looks at the nearest declaration.
    EXPECT_NE(GetPropInfo(&middle, u"Caption", {tkUString, tkString}), nullptr);
    EXPECT_EQ(GetPropInfo(&middle, u"Caption", {tkMethod}), nullptr);
    // the leaf's own Caption hides the ancestor's, kind and all
    EXPECT_NE(GetPropInfo(&leaf, u"Caption", {tkMethod}), nullptr);
    EXPECT_EQ(GetPropInfo(&leaf, u"Caption", {tkUString}), nullptr);
}

TEST_F(TypInfo, UnregisteringAClassLeavesItsDescendantsTables)
{
    UnRegisterPublishedProps(Probe::ClassInfo());
    EXPECT_EQ(GetPropInfo(&leaf, u"OnClick"), nullptr);
    EXPECT_NE(GetPropInfo(&leaf, u"OnDone"), nullptr);
}

}  // namespace
