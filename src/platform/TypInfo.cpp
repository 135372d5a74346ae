// The published-property tables of the registered classes and their lookup.
#include "platform/TypInfo.h"

#include <unordered_map>

namespace sx {

namespace {

/// The properties a class itself publishes; the records never move, so that
/// the pointers GetPropInfo hands out stay valid.
using PropTable = std::vector<std::unique_ptr<TPropInfo>>;

std::unordered_map<const TClass*, PropTable>& Registry()
{
    static std::unordered_map<const TClass*, PropTable> tables;
    return tables;
}

TPropInfo* FindOwnProp(const PropTable& table, const String& APropName)
{
    for (const std::unique_ptr<TPropInfo>& prop : table)
        if (CompareText(prop->Name(), APropName) == 0)
            return prop.get();
    return nullptr;
}

}  // namespace

TTypeKinds tkAny() { return TTypeKinds::FromBits((1ull << (tkProcedure + 1)) - 1); }

TTypeInfo MethodType(String AName, TMethodKind AKind, std::initializer_list<TMethodParamData> AParams,
                     String AResultType)
{
    return TTypeInfo{tkMethod, std::move(AName), TTypeData{AKind, AParams, std::move(AResultType)}};
}

TTypeInfo PlainType(TTypeKind AKind, String AName) { return TTypeInfo{AKind, std::move(AName), {}}; }

TTypeInfo NotifyEventType() { return MethodType(u"TNotifyEvent", mkProcedure, {{u"Sender", u"TObject"}}); }

void RegisterPublishedProps(const TClass& AClass, std::initializer_list<TPublishedProp> AProps)
{
    PropTable& table = Registry()[&AClass];
    for (const TPublishedProp& prop : AProps) {
        auto type = prop.Type ? std::make_shared<const TTypeInfo>(*prop.Type) : nullptr;
        if (TPropInfo* existing = FindOwnProp(table, prop.Name))
            *existing = TPropInfo(prop.Name, std::move(type));
        else
            table.push_back(std::make_unique<TPropInfo>(prop.Name, std::move(type)));
    }
}

void UnRegisterPublishedProps(const TClass& AClass) { Registry().erase(&AClass); }

PPropInfo GetPropInfo(const TClass& AClass, const String& APropName, TTypeKinds AKinds)
{
    const auto& registry = Registry();
    for (const TClass* cls = &AClass; cls; cls = cls->ClassParent()) {
        const auto found = registry.find(cls);
        if (found == registry.end())
            continue;
        if (const TPropInfo* prop = FindOwnProp(found->second, APropName)) {
            const PTypeInfo type = prop->PropType();
            return !type || AKinds.Contains(type->Kind) ? prop : nullptr;
        }
    }
    return nullptr;
}

PPropInfo GetPropInfo(const TObject* AInstance, const String& APropName, TTypeKinds AKinds)
{
    return AInstance ? GetPropInfo(AInstance->ClassType(), APropName, AKinds) : nullptr;
}

const TTypeData* GetTypeData(PTypeInfo ATypeInfo) { return ATypeInfo ? &ATypeInfo->Data : nullptr; }

}  // namespace sx
