// The registry readers and the store behind them: the Windows registry on
// Windows, elsewhere a registry file in the Windows registry editor's export
// format, read into a key tree when a registry object is created.
#include "platform/Registry.h"

#include "platform/SxStringStream.h"

#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace sx {

namespace {

constexpr Char KeyDelimiter = u'\\';

/// The path with empty parts dropped: "\a\\b\" gives "a\b".
String NormalizedPath(std::u16string_view path)
{
    String result;
    for (const Char c : path)
        if (c != KeyDelimiter || (!result.empty() && result.back() != KeyDelimiter))
            result += c;
    if (!result.empty() && result.back() == KeyDelimiter)
        result.pop_back();
    return result;
}

/// The value of a hexadecimal digit; 99 for any other character.
int DigitValue(Char c)
{
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    return 99;
}

/// The whole number S spells, as the classic StrToIntDef reads it: blanks in
/// front, a sign, then decimal digits, or hexadecimal ones behind $ or 0x
/// (which may fill all 32 bits). Default for anything else or out of range.
Integer StrToIntDef(const String& s, Integer Default)
{
    std::size_t i = 0;
    while (i < s.size() && s[i] == u' ')
        ++i;
    const bool negative = i < s.size() && s[i] == u'-';
    if (i < s.size() && (s[i] == u'-' || s[i] == u'+'))
        ++i;
    int base = 10;
    if (i < s.size() && s[i] == u'$') {
        base = 16;
        ++i;
    } else if (i + 1 < s.size() && s[i] == u'0' && (s[i + 1] == u'x' || s[i + 1] == u'X')) {
        base = 16;
        i += 2;
    }
    if (i == s.size())
        return Default;
    std::int64_t value = 0;
    for (; i < s.size(); ++i) {
        const int digit = DigitValue(s[i]);
        if (digit >= base)
            return Default;
        value = value * base + digit;
        if (value > 0xFFFFFFFFll)
            return Default;
    }
    if (base == 16)
        value = std::int32_t(std::uint32_t(value));
    else if (value > std::int64_t(MaxInt) + (negative ? 1 : 0))
        return Default;
    return Integer(negative ? -value : value);
}

}  // namespace

#ifdef _WIN32

// The real registry of the current user, read through the Win32 API.

String RegistryFileName() { return String(); }

class TRegStore {
public:
    bool KeyExists(HKEY root, const String& path) const
    {
        HKEY key = nullptr;
        if (::RegOpenKeyExW(root, Wide(path), 0, KEY_READ, &key) != ERROR_SUCCESS)
            return false;
        ::RegCloseKey(key);
        return true;
    }

    std::optional<TRegValue> Value(HKEY root, const String& path, const String& name) const
    {
        HKEY key = nullptr;
        if (::RegOpenKeyExW(root, Wide(path), 0, KEY_READ, &key) != ERROR_SUCCESS)
            return std::nullopt;
        DWORD type = 0;
        DWORD size = 0;
        std::vector<BYTE> data;
        LONG status = ::RegQueryValueExW(key, Wide(name), nullptr, &type, nullptr, &size);
        if (status == ERROR_SUCCESS) {
            data.resize(size + sizeof(wchar_t));
            status = ::RegQueryValueExW(key, Wide(name), nullptr, &type, data.data(), &size);
        }
        ::RegCloseKey(key);
        if (status != ERROR_SUCCESS)
            return std::nullopt;
        return ToValue(type, data, size);
    }

private:
    static const wchar_t* Wide(const String& s) { return reinterpret_cast<const wchar_t*>(s.c_str()); }

    static TRegValue ToValue(DWORD type, const std::vector<BYTE>& data, DWORD size)
    {
        TRegValue value;
        if (type == REG_SZ || type == REG_EXPAND_SZ) {
            value.DataType = type == REG_SZ ? rdString : rdExpandString;
            value.Text.assign(reinterpret_cast<const Char*>(data.data()), size / sizeof(Char));
            value.Text.resize(std::u16string_view(value.Text.c_str()).size());  // up to the terminator
        } else if (type == REG_DWORD && size == sizeof(DWORD)) {
            value.DataType = rdInteger;
            std::memcpy(&value.Number, data.data(), sizeof(DWORD));
        } else {
            value.DataType = rdBinary;
        }
        return value;
    }
};

namespace {
std::shared_ptr<const TRegStore> LoadStore() { return std::make_shared<const TRegStore>(); }
}  // namespace

#else

// The registry file: what the registry editor writes when it exports a key.

namespace {

struct TRootName {
    HKEY Key;
    const char16_t* Name;
    const char16_t* ShortName;
};

constexpr TRootName RootNames[] = {
    {HKEY_CLASSES_ROOT, u"HKEY_CLASSES_ROOT", u"HKCR"},
    {HKEY_CURRENT_USER, u"HKEY_CURRENT_USER", u"HKCU"},
    {HKEY_LOCAL_MACHINE, u"HKEY_LOCAL_MACHINE", u"HKLM"},
    {HKEY_USERS, u"HKEY_USERS", u"HKU"},
    {HKEY_CURRENT_CONFIG, u"HKEY_CURRENT_CONFIG", u"HKCC"},
};

const TRootName* FindRoot(HKEY key)
{
    for (const TRootName& root : RootNames)
        if (root.Key == key)
            return &root;
    return nullptr;
}

const TRootName* FindRoot(const String& name)
{
    for (const TRootName& root : RootNames)
        if (CompareText(name, root.Name) == 0 || CompareText(name, root.ShortName) == 0)
            return &root;
    return nullptr;
}

/// The tree's index of a key: root name and path, upper case, so that keys compare case-blind.
String TreeKey(const TRootName& root, const String& path)
{
    return UpperCase(path.empty() ? String(root.Name) : root.Name + (KeyDelimiter + path));
}

bool StartsWithText(std::u16string_view s, std::u16string_view prefix)
{
    return s.size() >= prefix.size() && CompareText(String(s.substr(0, prefix.size())), String(prefix)) == 0;
}

String EnvironmentText(const char* name)
{
    const char* value = std::getenv(name);
    return value ? StrFromUtf8(value) : String();
}

/// The values of one key, each under its name in upper case.
using TRegKeyValues = std::vector<std::pair<String, TRegValue>>;
/// Every key of the file by its TreeKey, with the keys above it.
using TRegKeyTree = std::unordered_map<String, TRegKeyValues>;

/// Reads the lines of a registry file into a key tree. A line it does not
/// understand is skipped, and so are the values of a section it cannot use.
class TRegFileReader {
public:
    explicit TRegFileReader(TRegKeyTree& tree) : FTree(tree) {}

    void ReadText(std::u16string_view text)
    {
        String line;
        std::size_t pos = 0;
        while (pos < text.size()) {
            std::size_t end = text.find_first_of(u"\r\n", pos);
            if (end == std::u16string_view::npos)
                end = text.size();
            line += Trim(String(text.substr(pos, end - pos)));
            pos = end + 1;
            // Long binary values go on over lines that end in a backslash.
            if (IsValueLine(line) && line.back() == KeyDelimiter) {
                line.pop_back();
                continue;
            }
            ReadLine(line);
            line.clear();
        }
        ReadLine(line);
    }

private:
    static bool IsValueLine(const String& line) { return !line.empty() && (line[0] == u'"' || line[0] == u'@'); }

    void ReadLine(const String& line)
    {
        if (line.empty())
            return;
        if (line[0] == u'[')
            ReadSection(line);
        else if (IsValueLine(line))
            ReadValue(line);
        // Anything else, the header and ";" comments among them, carries nothing.
    }

    /// "[ROOT\path]" opens a key; "[-ROOT\path]" deletes one on import and is ignored here.
    void ReadSection(const String& line)
    {
        FKey = nullptr;
        if (line.back() != u']' || line.size() < 3 || line[1] == u'-')
            return;
        const std::u16string_view name = std::u16string_view(line).substr(1, line.size() - 2);
        const std::size_t delimiter = name.find(KeyDelimiter);
        const TRootName* root = FindRoot(String(name.substr(0, delimiter)));
        if (!root)
            return;
        const String path = delimiter == name.npos ? String() : NormalizedPath(name.substr(delimiter + 1));
        // Importing a key makes the keys above it too.
        for (std::size_t end = path.find(KeyDelimiter); end != path.npos; end = path.find(KeyDelimiter, end + 1))
            FTree.try_emplace(TreeKey(*root, path.substr(0, end)));
        FKey = &FTree[TreeKey(*root, path)];  // element references survive a rehash
    }

    /// "Name"=data or @=data, the latter being the key's default value.
    void ReadValue(const String& line)
    {
        if (!FKey)
            return;
        std::size_t pos = 0;
        String name;
        if (line[0] == u'@')
            pos = 1;
        else if (!ReadQuoted(line, pos, name))
            return;
        while (pos < line.size() && line[pos] == u' ')
            ++pos;
        if (pos == line.size() || line[pos] != u'=')
            return;
        if (std::optional<TRegValue> value = ReadData(Trim(line.substr(pos + 1))))
            Store(UpperCase(name), std::move(*value));
    }

    /// "text" with \" and \\ escaped, dword:8 hex digits, or hex...: bytes
    /// (kept as binary of no content). "-", a deletion, is not a value.
    static std::optional<TRegValue> ReadData(const String& data)
    {
        TRegValue value;
        std::size_t pos = 0;
        if (!data.empty() && data[0] == u'"') {
            if (!ReadQuoted(data, pos, value.Text) || pos != data.size())
                return std::nullopt;
            value.DataType = rdString;
        } else if (StartsWithText(data, u"dword:")) {
            if (!ReadDword(std::u16string_view(data).substr(6), value.Number))
                return std::nullopt;
            value.DataType = rdInteger;
        } else if (StartsWithText(data, u"hex")) {
            value.DataType = rdBinary;
        } else {
            return std::nullopt;
        }
        return value;
    }

    /// One to eight hexadecimal digits and nothing else, all 32 bits as they stand.
    static bool ReadDword(std::u16string_view digits, Integer& number)
    {
        if (digits.empty() || digits.size() > 8)
            return false;
        std::uint32_t value = 0;
        for (const Char c : digits) {
            const int digit = DigitValue(c);
            if (digit >= 16)
                return false;
            value = value * 16 + std::uint32_t(digit);
        }
        number = std::int32_t(value);
        return true;
    }

    /// Reads a quoted text from pos, undoing the escapes; pos ends behind the closing quote.
    static bool ReadQuoted(const String& line, std::size_t& pos, String& text)
    {
        if (pos >= line.size() || line[pos] != u'"')
            return false;
        for (++pos; pos < line.size();) {
            const Char c = line[pos++];
            if (c == u'"')
                return true;
            if (c == u'\\' && pos < line.size())
                text += line[pos++];
            else
                text += c;
        }
        return false;
    }

    /// A later value of the same name replaces the earlier one, as an import does.
    void Store(const String& name, TRegValue value)
    {
        for (auto& [existing, old] : *FKey)
            if (existing == name) {
                old = std::move(value);
                return;
            }
        FKey->emplace_back(name, std::move(value));
    }

    TRegKeyTree& FTree;
    TRegKeyValues* FKey = nullptr;
};

}  // namespace

String RegistryFileName()
{
    String file = EnvironmentText("SX_REGISTRY_FILE");
    if (!file.empty())
        return file;
    String folder = EnvironmentText("XDG_CONFIG_HOME");
    if (folder.empty()) {
        const String home = EnvironmentText("HOME");
        if (home.empty())
            return String();
        folder = home + u"/.config";
    }
    return folder + u"/sxcodeedit/registry.reg";
}

class TRegStore {
public:
    /// Reads the file; a file that is missing or cannot be read is an empty registry.
    explicit TRegStore(const String& fileName)
    {
        if (fileName.empty())
            return;
        TSxStringStream stream(CodePages::Utf8, 0);
        try {
            stream.LoadFromFile(fileName, CodePages::Detect);
        } catch (const EStreamError&) {
            return;
        }
        TRegFileReader(FKeys).ReadText(stream.GetWString());
    }

    bool KeyExists(HKEY root, const String& path) const
    {
        const TRootName* rootName = FindRoot(root);
        return rootName && (path.empty() || FKeys.contains(TreeKey(*rootName, path)));
    }

    std::optional<TRegValue> Value(HKEY root, const String& path, const String& name) const
    {
        const TRootName* rootName = FindRoot(root);
        if (!rootName)
            return std::nullopt;
        const auto key = FKeys.find(TreeKey(*rootName, path));
        if (key == FKeys.end())
            return std::nullopt;
        const String upperName = UpperCase(name);
        for (const auto& [valueName, value] : key->second)
            if (valueName == upperName)
                return value;
        return std::nullopt;
    }

private:
    TRegKeyTree FKeys;
};

namespace {
std::shared_ptr<const TRegStore> LoadStore() { return std::make_shared<const TRegStore>(RegistryFileName()); }
}  // namespace

#endif

TRegistry::TRegistry(REGSAM AAccess) : FStore(LoadStore()), FRootKey(HKEY_CURRENT_USER), FAccess(AAccess) {}

TRegistry::~TRegistry() = default;

void TRegistry::SetRootKey(HKEY value)
{
    if (value == FRootKey)
        return;
    FRootKey = value;
    CloseKey();
}

String TRegistry::ResolvePath(const String& Key) const
{
    const bool relative = Key.empty() || Key[0] != KeyDelimiter;
    return NormalizedPath(relative && FKeyOpen ? FCurrentPath + KeyDelimiter + Key : Key);
}

bool TRegistry::OpenKey(const String& Key, bool /*CanCreate*/)
{
    const String path = ResolvePath(Key);
    if (!FStore->KeyExists(FRootKey, path))
        return false;
    FCurrentPath = path;
    FKeyOpen = true;
    return true;
}

void TRegistry::CloseKey()
{
    FCurrentPath.clear();
    FKeyOpen = false;
}

std::optional<TRegValue> TRegistry::FindValue(const String& Path, const String& Name) const
{
    return FStore->Value(FRootKey, Path, Name);
}

bool TRegistry::ValueExists(const String& Name) const { return FKeyOpen && FindValue(FCurrentPath, Name); }

Integer TRegistry::ReadInteger(const String& Name) const
{
    const std::optional<TRegValue> value = FKeyOpen ? FindValue(FCurrentPath, Name) : std::nullopt;
    if (!value)
        throw ERegistryException(u"Failed to get data for '" + Name + u"'");
    if (value->DataType != rdInteger)
        throw ERegistryException(u"Invalid data type for '" + Name + u"'");
    return value->Number;
}

TRegIniFile::TRegIniFile(const String& FileName, REGSAM AAccess) : TRegistry(AAccess), FFileName(FileName)
{
    OpenKey(FFileName, false);
}

void TRegIniFile::SetRootKey(HKEY value)
{
    if (value == RootKey())
        return;
    TRegistry::SetRootKey(value);
    OpenKey(FFileName, false);
}

std::optional<TRegValue> TRegIniFile::FindIniValue(const String& Section, const String& Ident) const
{
    if (!KeyOpen())
        return std::nullopt;
    return FindValue(ResolvePath(Section), Ident);
}

String TRegIniFile::ReadString(const String& Section, const String& Ident, const String& Default) const
{
    const std::optional<TRegValue> value = FindIniValue(Section, Ident);
    if (!value)
        return Default;
    switch (value->DataType) {
    case rdString:
    case rdExpandString:
        return value->Text;
    case rdInteger:
        return IntToStr(value->Number);
    default:
        return Default;
    }
}

Integer TRegIniFile::ReadInteger(const String& Section, const String& Ident, Integer Default) const
{
    const std::optional<TRegValue> value = FindIniValue(Section, Ident);
    if (!value)
        return Default;
    switch (value->DataType) {
    case rdString:
    case rdExpandString:
        return StrToIntDef(value->Text, Default);
    case rdInteger:
        return value->Number;
    default:
        return Default;
    }
}

bool TRegIniFile::ReadBool(const String& Section, const String& Ident, bool Default) const
{
    return ReadInteger(Section, Ident, Default ? 1 : 0) != 0;
}

}  // namespace sx
