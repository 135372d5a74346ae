// Components: owners free what they own, removal reaches the owner's other
// components and those that asked for it, and the class registry.
#include "platform/Classes.h"

#include <gtest/gtest.h>

#include <vector>

using namespace sx;

namespace {

class Probe : public TComponent {
    SX_DECLARE_CLASS
public:
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

SX_DEFINE_CLASS(Probe, TComponent)

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

TEST(Component, RemovalReachesSiblingsAndFreeNotificationAcrossOwners)
{
    TComponent owner(nullptr);
    auto* a = new Probe(&owner);
    auto* b = new Probe(&owner);
    Probe stranger(nullptr);
    b->FreeNotification(&stranger);
    const std::vector<TComponent*> expected{b};
    delete b;
    EXPECT_EQ(a->removed, expected);
    EXPECT_EQ(stranger.removed, expected);
    EXPECT_EQ(owner.ComponentCount(), 1);
}

TEST(Component, FreeNotificationIsMutualAndCanBeTakenBack)
{
    auto* x = new Probe(nullptr);
    Probe y(nullptr);
    x->FreeNotification(&y);
    x->RemoveFreeNotification(&y);
    delete x;
    EXPECT_TRUE(y.removed.empty());
    auto* z = new Probe(nullptr);
    z->FreeNotification(&y);
    delete z;
    EXPECT_EQ(y.removed.size(), 1u);
}

TEST(Component, RegisteredClassesAreFoundByNameAndBuilt)
{
    RegisterClass(Probe::ClassInfo());
    EXPECT_EQ(GetClass(u"probe"), &Probe::ClassInfo());
    TComponent owner(nullptr);
    TComponent* made = FindClass(u"Probe").Create(&owner);
    EXPECT_EQ(made->ClassName(), u"Probe");
    EXPECT_TRUE(made->InheritsFrom(TComponent::ClassInfo()));
    EXPECT_EQ(made->Owner(), &owner);
    UnRegisterClass(Probe::ClassInfo());
    EXPECT_EQ(GetClass(u"Probe"), nullptr);
    EXPECT_THROW(FindClass(u"Probe"), EClassNotFound);
}

}  // namespace
