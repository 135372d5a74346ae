// Class references, the class registry, components and the object list.
#include "platform/Classes.h"

#include <algorithm>

namespace sx {

bool TClass::InheritsFrom(const TClass& ancestor) const
{
    for (const TClass* c = this; c; c = c->FParent)
        if (c == &ancestor)
            return true;
    return false;
}

TComponent* TClass::Create(TComponent* owner) const
{
    if (!FFactory)
        throw EInvalidOperation(u"Cannot create an instance of " + FName);
    return FFactory(owner);
}

const TClass& TObject::ClassInfo()
{
    static const TClass info(u"TObject", nullptr, nullptr);
    return info;
}

SX_DEFINE_CLASS(TPersistent, TObject)
SX_DEFINE_CLASS(TComponent, TPersistent)

namespace {

std::vector<const TClass*>& Registry()
{
    static std::vector<const TClass*> classes;
    return classes;
}

}  // namespace

void RegisterClass(const TClass& cls)
{
    if (!GetClass(cls.ClassName()))
        Registry().push_back(&cls);
}

void UnRegisterClass(const TClass& cls) { std::erase(Registry(), &cls); }

const TClass* GetClass(const String& name)
{
    for (const TClass* cls : Registry())
        if (CompareText(cls->ClassName(), name) == 0)
            return cls;
    return nullptr;
}

TComponent::TComponent(TComponent* AOwner)
{
    if (AOwner)
        AOwner->InsertComponent(this);
}

TComponent::~TComponent()
{
    FComponentState |= csDestroying;
    RemoveFreeNotifications();
    DestroyComponents();
    if (FOwner)
        FOwner->RemoveComponent(this);
}

void TComponent::InsertComponent(TComponent* AComponent)
{
    if (AComponent->FOwner)
        AComponent->FOwner->RemoveComponent(AComponent);
    FComponents.push_back(AComponent);
    AComponent->FOwner = this;
    Notification(AComponent, TOperation::opInsert);
}

void TComponent::RemoveComponent(TComponent* AComponent)
{
    Notification(AComponent, TOperation::opRemove);
    std::erase(FComponents, AComponent);
    AComponent->FOwner = nullptr;
}

void TComponent::FreeNotification(TComponent* AComponent)
{
    if (!AComponent || AComponent == this)
        return;
    if (!FOwner || AComponent->FOwner != FOwner) {
        if (std::find(FFreeNotifies.begin(), FFreeNotifies.end(), AComponent) == FFreeNotifies.end()) {
            FFreeNotifies.push_back(AComponent);
            AComponent->FFreeNotifies.push_back(this);
        }
    }
    FComponentState |= csFreeNotification;
}

void TComponent::RemoveFreeNotification(TComponent* AComponent)
{
    std::erase(FFreeNotifies, AComponent);
    std::erase(AComponent->FFreeNotifies, this);
}

void TComponent::RemoveFreeNotifications()
{
    while (!FFreeNotifies.empty()) {
        TComponent* other = FFreeNotifies.back();
        FFreeNotifies.pop_back();
        std::erase(other->FFreeNotifies, this);
        other->Notification(this, TOperation::opRemove);
    }
}

void TComponent::DestroyComponents()
{
    while (!FComponents.empty()) {
        TComponent* child = FComponents.back();
        FComponents.pop_back();
        child->FOwner = nullptr;
        delete child;
    }
}

void TComponent::Loaded() { FComponentState &= ~unsigned(csLoading); }

void TComponent::Notification(TComponent* AComponent, TOperation Operation)
{
    if (Operation == TOperation::opRemove && AComponent)
        RemoveFreeNotification(AComponent);
    // A handler may free components, so the index is checked against the
    // current count on every step.
    for (int i = int(FComponents.size()) - 1; i >= 0; --i) {
        if (i >= int(FComponents.size()))
            i = int(FComponents.size()) - 1;
        if (i < 0)
            break;
        FComponents[size_t(i)]->Notification(AComponent, Operation);
    }
}

TObject* TObjectList::Items(int index) const
{
    if (index < 0 || index >= Count())
        throw EListError(u"List index out of bounds (" + IntToStr(index) + u")");
    return FItems[size_t(index)];
}

int TObjectList::Add(TObject* item)
{
    FItems.push_back(item);
    return Count() - 1;
}

void TObjectList::Delete(int index)
{
    TObject* item = Items(index);
    FItems.erase(FItems.begin() + index);
    if (FOwnsObjects)
        delete item;
}

TObject* TObjectList::Extract(TObject* item)
{
    const int index = IndexOf(item);
    if (index < 0)
        return nullptr;
    FItems.erase(FItems.begin() + index);
    return item;
}

int TObjectList::Remove(TObject* item)
{
    const int index = IndexOf(item);
    if (index >= 0)
        Delete(index);
    return index;
}

int TObjectList::IndexOf(const TObject* item) const
{
    const auto it = std::find(FItems.begin(), FItems.end(), item);
    return it == FItems.end() ? -1 : int(it - FItems.begin());
}

void TObjectList::Clear()
{
    while (!FItems.empty()) {
        TObject* item = FItems.back();
        FItems.pop_back();
        if (FOwnsObjects)
            delete item;
    }
}

}  // namespace sx
