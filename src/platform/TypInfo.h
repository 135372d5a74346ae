// Run-time type information of published properties: a per-class table of
// property names and their types, with the signatures of method (event) types.
#pragma once

#include "platform/Classes.h"

#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

namespace sx {

/// The kinds of type a published property can have, in the classic order.
enum TTypeKind {
    tkUnknown, tkInteger, tkChar, tkEnumeration, tkFloat, tkString, tkSet, tkClass, tkMethod, tkWChar,
    tkLString, tkWString, tkVariant, tkArray, tkRecord, tkInterface, tkInt64, tkDynArray, tkUString,
    tkClassRef, tkPointer, tkProcedure
};
using TTypeKinds = TSet<TTypeKind, 32>;

/// Every type kind: the filter of a lookup that accepts any property.
TTypeKinds tkAny();

/// The kind of a method type.
enum TMethodKind {
    mkProcedure, mkFunction, mkConstructor, mkDestructor, mkClassProcedure, mkClassFunction,
    mkClassConstructor, mkClassDestructor, mkOperatorOverload, mkSafeProcedure, mkSafeFunction
};

/// How a parameter is passed. The bit numbers are those of the classic flags
/// byte: 0 var, 1 const, 2 array, 5 out.
enum TParamFlag { pfVar, pfConst, pfArray, pfAddress, pfReference, pfOut, pfResult };
using TParamFlags = TSet<TParamFlag, 8>;

/// One parameter of a method type, in order of declaration. For an array
/// parameter (pfArray) TypeName is the element type.
struct TMethodParamData {
    TMethodParamData(String AParamName, String ATypeName, TParamFlags AFlags = {})
        : ParamName(std::move(AParamName)), TypeName(std::move(ATypeName)), Flags(AFlags)
    {
    }
    String ParamName;
    String TypeName;
    TParamFlags Flags;
};

/// What is known of a type beyond its kind and name; filled for method types.
struct TTypeData {
    TMethodKind MethodKind = mkProcedure;
    std::vector<TMethodParamData> Params;
    /// The result's type name, for mkFunction and mkClassFunction; else empty.
    String ResultType;
    Integer ParamCount() const { return Integer(Params.size()); }
};

struct TTypeInfo {
    TTypeKind Kind = tkUnknown;
    String Name;
    TTypeData Data;
};
using PTypeInfo = const TTypeInfo*;

/// The type information of a method type: its name, kind, parameters and result.
TTypeInfo MethodType(String AName, TMethodKind AKind, std::initializer_list<TMethodParamData> AParams,
                     String AResultType = String());
/// The type information of any other type: a kind and a name.
TTypeInfo PlainType(TTypeKind AKind, String AName);
/// TNotifyEvent: procedure(Sender: TObject).
TTypeInfo NotifyEventType();

/// One published property as a lookup answers it.
class TPropInfo {
public:
    TPropInfo(String AName, std::shared_ptr<const TTypeInfo> AType)
        : FName(std::move(AName)), FType(std::move(AType))
    {
    }
    /// The property's name, as declared.
    const String& Name() const { return FName; }
    /// The type's information; none when it was registered without.
    PTypeInfo PropType() const { return FType.get(); }

private:
    String FName;
    std::shared_ptr<const TTypeInfo> FType;
};
using PPropInfo = const TPropInfo*;

/// One entry of a registration: a property name and its type, or std::nullopt
/// for a property whose type information is missing.
struct TPublishedProp {
    String Name;
    std::optional<TTypeInfo> Type;
};

/// Adds published properties to a class. A name the class already has (by
/// CompareText) takes the new type. The class's descendants see them too.
/// Records handed out by GetPropInfo stay valid until UnRegisterPublishedProps.
void RegisterPublishedProps(const TClass& AClass, std::initializer_list<TPublishedProp> AProps);
/// Forgets what was registered for the class itself (not its ancestors).
void UnRegisterPublishedProps(const TClass& AClass);

/// The published property of that name (case-blind) of the class or its
/// nearest ancestor that has one, if its type's kind is in AKinds; else none.
/// A property registered without type information passes any filter, since
/// its kind is unknown.
PPropInfo GetPropInfo(const TClass& AClass, const String& APropName, TTypeKinds AKinds = tkAny());
/// As above for the class of an object; none for a missing object.
PPropInfo GetPropInfo(const TObject* AInstance, const String& APropName, TTypeKinds AKinds = tkAny());
/// The data of a type; none for missing type information.
const TTypeData* GetTypeData(PTypeInfo ATypeInfo);

}  // namespace sx
