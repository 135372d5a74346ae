// Read-only access to the user's registry settings: TRegistry and TRegIniFile.
// On Windows they read the real registry; elsewhere a file in the format the
// Windows registry editor exports stands in for it (see RegistryFileName).
#pragma once

#include "platform/Classes.h"
#include "platform/SysUtils.h"
#include "platform/Types.h"

#include <memory>
#include <optional>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>  // HKEY, REGSAM, HKEY_CURRENT_USER and KEY_READ are Win32's own here
#endif

namespace sx {

#ifdef _WIN32
using ::HKEY;
using ::REGSAM;
#else
/// A root key of the registry; the values are those of Win32.
using HKEY = std::uintptr_t;
using REGSAM = Cardinal;

constexpr HKEY HKEY_CLASSES_ROOT = 0x80000000u;
constexpr HKEY HKEY_CURRENT_USER = 0x80000001u;
constexpr HKEY HKEY_LOCAL_MACHINE = 0x80000002u;
constexpr HKEY HKEY_USERS = 0x80000003u;
constexpr HKEY HKEY_CURRENT_CONFIG = 0x80000005u;

constexpr REGSAM KEY_READ = 0x20019;
#endif

/// Raised by TRegistry::ReadInteger for a value that is missing or holds no integer.
class ERegistryException : public Exception {
    using Exception::Exception;
};

enum TRegDataType { rdUnknown, rdString, rdExpandString, rdInteger, rdBinary };

/// One value as the store holds it: Text for the string types, Number for rdInteger.
struct TRegValue {
    TRegDataType DataType = rdUnknown;
    String Text;
    Integer Number = 0;
};

/// The registry file of this system: $SX_REGISTRY_FILE if set, else
/// $XDG_CONFIG_HOME/sxcodeedit/registry.reg, else ~/.config/sxcodeedit/registry.reg.
/// Empty on Windows, which reads the real registry, and where no folder is known.
String RegistryFileName();

/// Where the registry objects read from; one per object, loaded when it is created.
class TRegStore;

/// Keys and values of one root key. It never writes: OpenKey creates no key.
class TRegistry : public TObject {
public:
    /// The root starts as HKEY_CURRENT_USER. A registry file is read here, once per object.
    explicit TRegistry(REGSAM AAccess);
    ~TRegistry() override;

    HKEY RootKey() const { return FRootKey; }
    /// Changing the root closes the open key.
    virtual void SetRootKey(HKEY value);
    REGSAM Access() const { return FAccess; }
    /// The open key's path below the root, without leading backslash; empty when none is open.
    const String& CurrentPath() const { return FCurrentPath; }

    /// Opens Key: from the root when it starts with a backslash or no key is
    /// open, else below the open key. Answers whether the key exists; on False
    /// the open key stays. CanCreate is accepted and ignored: nothing is created.
    bool OpenKey(const String& Key, bool CanCreate);
    void CloseKey();
    /// Whether the open key holds a value of that name; "" names the key's default value.
    bool ValueExists(const String& Name) const;
    /// The integer value of that name in the open key. Raises ERegistryException
    /// when the value is missing or of another type, as the classic reader does.
    Integer ReadInteger(const String& Name) const;

protected:
    /// The value of that name in the key at Path (below the root); none when either is missing.
    std::optional<TRegValue> FindValue(const String& Path, const String& Name) const;
    /// Path below the open key, or from the root when it starts with a backslash.
    String ResolvePath(const String& Key) const;
    bool KeyOpen() const { return FKeyOpen; }

private:
    std::shared_ptr<const TRegStore> FStore;
    HKEY FRootKey;
    REGSAM FAccess;
    String FCurrentPath;
    bool FKeyOpen = false;
};

/// A registry key read like an INI file: a section is a subkey, an ident a
/// value in it. Every read answers its default when the key, the section or
/// the value is missing.
class TRegIniFile : public TRegistry {
public:
    /// Opens FileName, a key path below the root; nothing is created when it is missing.
    TRegIniFile(const String& FileName, REGSAM AAccess);

    /// Changing the root opens the same key path under the new root.
    void SetRootKey(HKEY value) override;
    const String& FileName() const { return FFileName; }

    /// A string value as it stands; an integer value as its decimal text.
    String ReadString(const String& Section, const String& Ident, const String& Default) const;
    /// An integer value as it stands; a string value converted when it is a
    /// whole number (decimal, or hexadecimal behind $ or 0x), else Default.
    Integer ReadInteger(const String& Section, const String& Ident, Integer Default) const;
    /// ReadInteger with 1 or 0 for the default, answering whether the number is not 0.
    bool ReadBool(const String& Section, const String& Ident, bool Default) const;

private:
    std::optional<TRegValue> FindIniValue(const String& Section, const String& Ident) const;

    String FFileName;
};

}  // namespace sx
