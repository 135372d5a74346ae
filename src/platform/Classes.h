// The object model of the framework layer: class references with virtual
// construction, the class registry, components with an owner tree and removal
// notification, and the owning object list.
#pragma once

#include "platform/SysUtils.h"

#include <functional>
#include <type_traits>
#include <vector>

namespace sx {

class TObject;
class TComponent;

/// An event with its sender, assigned or not.
using TNotifyEvent = std::function<void(TObject* Sender)>;

/// A class reference: names a class, knows its parent and, for components,
/// builds instances through the virtual constructor Create(AOwner).
class TClass {
public:
    using Factory = TComponent* (*)(TComponent* owner);

    TClass(const char16_t* name, const TClass* parent, Factory factory)
        : FName(name), FParent(parent), FFactory(factory) {}
    TClass(const TClass&) = delete;
    TClass& operator=(const TClass&) = delete;

    const String& ClassName() const { return FName; }
    const TClass* ClassParent() const { return FParent; }
    bool InheritsFrom(const TClass& ancestor) const;
    /// Builds an instance; raises EInvalidOperation for a class that cannot be built.
    TComponent* Create(TComponent* owner) const;

private:
    String FName;
    const TClass* FParent;
    Factory FFactory;
};

template <class T>
TComponent* ConstructComponent(TComponent* owner)
{
    return new T(owner);
}

/// The factory of T when T can be built from an owner, else none.
template <class T>
constexpr TClass::Factory ClassFactory()
{
    if constexpr (std::is_constructible_v<T, TComponent*> && !std::is_abstract_v<T>)
        return &ConstructComponent<T>;
    else
        return nullptr;
}

/// A typed class reference: a class that is Base or one of its descendants.
template <class Base>
class TClassRef {
public:
    TClassRef() = default;
    TClassRef(const TClass& cls) : FClass(&cls)
    {
        if (!cls.InheritsFrom(Base::ClassInfo()))
            throw EInvalidOperation(u"Invalid class typecast: " + cls.ClassName());
    }
    const TClass* Class() const { return FClass; }
    explicit operator bool() const { return FClass != nullptr; }
    Base* Create(TComponent* owner) const { return static_cast<Base*>(FClass->Create(owner)); }
    friend bool operator==(const TClassRef&, const TClassRef&) = default;

private:
    const TClass* FClass = nullptr;
};

/// Declares the class-reference members of a class; pair with SX_DEFINE_CLASS.
#define SX_DECLARE_CLASS                                               \
public:                                                                \
    static const ::sx::TClass& ClassInfo();                            \
    const ::sx::TClass& ClassType() const override { return ClassInfo(); }

#define SX_DEFINE_CLASS(ThisClass, ParentClass)                                                 \
    const ::sx::TClass& ThisClass::ClassInfo()                                                  \
    {                                                                                           \
        static const ::sx::TClass info(u"" #ThisClass, &ParentClass::ClassInfo(),               \
                                       ::sx::ClassFactory<ThisClass>());                        \
        return info;                                                                            \
    }

/// Root of the class tree.
class TObject {
public:
    TObject() = default;
    virtual ~TObject() = default;
    TObject(const TObject&) = delete;
    TObject& operator=(const TObject&) = delete;

    static const TClass& ClassInfo();
    virtual const TClass& ClassType() const { return ClassInfo(); }
    const String& ClassName() const { return ClassType().ClassName(); }
    bool InheritsFrom(const TClass& ancestor) const { return ClassType().InheritsFrom(ancestor); }
};

/// Deletes an object; the classic Free, harmless on none.
inline void FreeAndNil(auto*& object)
{
    auto* doomed = object;
    object = nullptr;
    delete doomed;
}

class TPersistent : public TObject {
    SX_DECLARE_CLASS
};

/// Adds a class to the registry so that GetClass can find it by name.
void RegisterClass(const TClass& cls);
void UnRegisterClass(const TClass& cls);
/// The registered class of that name (case-blind), or none.
const TClass* GetClass(const String& name);

enum class TOperation { opInsert, opRemove };

enum TComponentStateFlag : unsigned {
    csLoading = 1u << 0,
    csDestroying = 1u << 1,
    csDesigning = 1u << 2,
    csFreeNotification = 1u << 3,
};

/// A component: owned by another component, which frees it; told when a
/// component it is linked to goes away.
class TComponent : public TPersistent {
    SX_DECLARE_CLASS
public:
    explicit TComponent(TComponent* AOwner);
    ~TComponent() override;

    TComponent* Owner() const { return FOwner; }
    const String& Name() const { return FName; }
    void SetName(const String& value) { FName = value; }
    int ComponentCount() const { return int(FComponents.size()); }
    TComponent* Components(int index) const { return FComponents.at(size_t(index)); }
    unsigned ComponentState() const { return FComponentState; }
    bool IsLoading() const { return (FComponentState & csLoading) != 0; }
    bool IsDestroying() const { return (FComponentState & csDestroying) != 0; }

    void InsertComponent(TComponent* AComponent);
    void RemoveComponent(TComponent* AComponent);
    /// Asks to be told (through Notification) when AComponent goes away.
    void FreeNotification(TComponent* AComponent);
    void RemoveFreeNotification(TComponent* AComponent);

    /// Marks the component as being read from a stored form; Loaded ends it.
    void BeginLoading() { FComponentState |= csLoading; }
    /// Called when reading the stored form has ended; clears the loading state.
    virtual void Loaded();

    /// Told of a component inserted into or removed from the owner tree, or of
    /// a component this one asked FreeNotification for. Passes it on to all
    /// owned components.
    virtual void Notification(TComponent* AComponent, TOperation Operation);

private:
    void RemoveFreeNotifications();
    void DestroyComponents();

    TComponent* FOwner = nullptr;
    String FName;
    std::vector<TComponent*> FComponents;
    std::vector<TComponent*> FFreeNotifies;
    unsigned FComponentState = 0;
};

/// A list of objects that frees its items when it owns them.
class TObjectList : public TObject {
public:
    explicit TObjectList(bool AOwnsObjects = true) : FOwnsObjects(AOwnsObjects) {}
    ~TObjectList() override { Clear(); }

    int Count() const { return int(FItems.size()); }
    TObject* Items(int index) const;
    bool OwnsObjects() const { return FOwnsObjects; }
    int Add(TObject* item);
    /// Removes the item at index, freeing it when the list owns it.
    void Delete(int index);
    /// Takes the item out without freeing it.
    TObject* Extract(TObject* item);
    /// Takes the item out, freeing it when the list owns it; answers its index or -1.
    int Remove(TObject* item);
    TObject* First() const { return Items(0); }
    TObject* Last() const { return Items(Count() - 1); }
    int IndexOf(const TObject* item) const;
    void Clear();

private:
    std::vector<TObject*> FItems;
    bool FOwnsObjects;
};

}  // namespace sx
