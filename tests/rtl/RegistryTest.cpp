// The registry readers over a registry file: the export format, TRegistry's
// keys, TRegIniFile's conversions, and the colour identifiers.
#ifndef _WIN32  // the registry file stands in for the system's registry elsewhere

#include "platform/Colors.h"
#include "platform/Registry.h"
#include "support/TempRegistryFile.h"

#include <gtest/gtest.h>

using namespace sx;
using sx::test::ScopedEnv;
using sx::test::TempRegistryFile;

namespace {

/// Good lines mixed with lines that must be skipped.
const char* const SampleFile = R"(Windows Registry Editor Version 5.00
"Orphan"="before any section"
; a comment line
[HKEY_CURRENT_USER\Software\Sx\Demo]
@="the default"
"Path"="C:\\Tools\\say \"hi\""
"Count"=dword:0000000c
"Minus"=dword:ffffffff
"Twelve"="12"
"Blank"=" -3"
"Hex"="$1F"
"Word"="true"
"Mixed"="12abc"
"Huge"="99999999999"
"Bytes"=hex:01,02,\
  03,04
"After"="continued lines end"
"Unterminated="x"
"BadDword"=dword:xyz
"LongDword"=dword:123456789
"Trailing"="x" junk
"Removed"=-
garbage line
[HKEY_CURRENT_USER\Software\Sx\Demo\Inner]
"Deep"=dword:00000001
[HKEY_CURRENT_USER\Software\Broken
"InBroken"="x"
[-HKEY_CURRENT_USER\Software\Gone]
"Deleted"="x"
[HKEY_LOCAL_MACHINE\Software\Sx]
"Machine"="yes"
)";

String IniString(const String& key, const String& section, const String& name)
{
    return TRegIniFile(key, KEY_READ).ReadString(section, name, u"<default>");
}

TEST(RegistryFile, ReadsTheExportFormatInUtf16AndUtf8)
{
    std::string utf16 = "\xFF\xFE";  // UTF-16 LE with a byte-order mark, as the registry editor exports
    for (const Char c : StrFromUtf8(SampleFile))
        utf16 += {char(c & 0xFF), char(c >> 8)};
    for (const std::string& bytes : {utf16, std::string(SampleFile)}) {
        TempRegistryFile file(bytes);
        EXPECT_EQ(IniString(u"Software\\Sx", u"Demo", u"Path"), u"C:\\Tools\\say \"hi\"");
        EXPECT_EQ(IniString(u"Software\\Sx\\Demo", u"", u""), u"the default");
        EXPECT_EQ(IniString(u"Software\\Sx", u"Demo", u"After"), u"continued lines end");
        EXPECT_EQ(IniString(u"Software\\Sx", u"", u"Machine"), u"<default>");  // another root

        TRegistry registry(KEY_READ);
        EXPECT_FALSE(registry.OpenKey(u"Software\\Gone", false));
        EXPECT_FALSE(registry.OpenKey(u"Software\\Broken", false));
        ASSERT_TRUE(registry.OpenKey(u"Software\\Sx\\Demo", false));
        EXPECT_TRUE(registry.ValueExists(u"path"));  // so that the misses below can fail
        for (const String name : {u"Orphan", u"Unterminated", u"BadDword", u"LongDword", u"Trailing", u"Removed"})
            EXPECT_FALSE(registry.ValueExists(name)) << StrToUtf8(name);
    }
}

TEST(RegistryFile, MissingOrUnreadableFileIsAnEmptyRegistry)
{
    for (const char* path : {"/nonexistent/registry.reg", "/tmp"}) {
        ScopedEnv env("SX_REGISTRY_FILE", path);
        TRegistry registry(KEY_READ);
        EXPECT_FALSE(registry.OpenKey(u"Software", false));
        EXPECT_TRUE(registry.OpenKey(u"\\", false));  // the root itself is always there
    }
}

TEST(RegistryFile, LocationFollowsTheEnvironment)
{
    ScopedEnv noFile("SX_REGISTRY_FILE", std::nullopt);
    {
        ScopedEnv config("XDG_CONFIG_HOME", "/cfg");
        EXPECT_EQ(RegistryFileName(), u"/cfg/sxcodeedit/registry.reg");
    }
    ScopedEnv noConfig("XDG_CONFIG_HOME", std::nullopt);
    ScopedEnv home("HOME", "/home/me");
    EXPECT_EQ(RegistryFileName(), u"/home/me/.config/sxcodeedit/registry.reg");
    ScopedEnv file("SX_REGISTRY_FILE", "/x/y.reg");
    EXPECT_EQ(RegistryFileName(), u"/x/y.reg");
}

TEST(Registry, OpensExistingKeysOnlyAndReadsIntegers)
{
    TempRegistryFile file(SampleFile);
    TRegistry registry(KEY_READ);
    EXPECT_EQ(registry.RootKey(), HKEY_CURRENT_USER);
    ASSERT_TRUE(registry.OpenKey(u"\\Software\\Sx\\Demo\\", true));
    EXPECT_EQ(registry.ReadInteger(u"Minus"), -1);
    EXPECT_THROW(registry.ReadInteger(u"Twelve"), ERegistryException);  // a string, not an integer

    EXPECT_FALSE(registry.OpenKey(u"Nothing", true));  // nothing is created; the open key stays
    ASSERT_TRUE(registry.OpenKey(u"Inner", false));  // below the open key
    EXPECT_EQ(registry.ReadInteger(u"deep"), 1);

    registry.CloseKey();
    EXPECT_FALSE(registry.ValueExists(u"Deep"));
    EXPECT_FALSE(registry.OpenKey(u"Inner", false));  // from the root now
}

TEST(RegIniFile, IntegersAndFlagsConvertStringsWhenTheyCan)
{
    TempRegistryFile file(SampleFile);
    const TRegIniFile ini(u"Software\\Sx", KEY_READ);
    const std::pair<String, Integer> numbers[] = {{u"Count", 12}, {u"Twelve", 12}, {u"Blank", -3}, {u"Hex", 31},
                                                  {u"Word", -7},  {u"Mixed", -7},  {u"Huge", -7},  {u"Bytes", -7}};
    for (const auto& [name, number] : numbers)
        EXPECT_EQ(ini.ReadInteger(u"Demo", name, -7), number) << StrToUtf8(name);
    EXPECT_EQ(ini.ReadInteger(u"Nothing", u"Count", -7), -7);
    EXPECT_EQ(ini.ReadInteger(u"\\Software\\Sx\\Demo", u"Count", -7), 12);  // a section from the root

    EXPECT_TRUE(ini.ReadBool(u"Demo", u"Word", true));  // not a number: the default
    EXPECT_EQ(ini.ReadString(u"Demo", u"Minus", u""), u"-1");  // an integer as its decimal text
    EXPECT_EQ(ini.ReadString(u"Demo", u"Bytes", u"none"), u"none");
    EXPECT_TRUE(TRegIniFile(u"Software\\Nothing", KEY_READ).ReadBool(u"Sx\\Demo", u"Count", true));
}

TEST(IdentToColor, KnowsTheFrameworkNamesCaseBlind)
{
    const std::pair<String, TColor> known[] = {
        {u"CLWHITE", clWhite}, {u"clskyblue", clSkyBlue}, {u"clMenuBar", clMenuBar}, {u"Red", 1}, {u"clRed ", 1}};
    for (const auto& [name, value] : known) {
        TColor color = 1;
        EXPECT_EQ(IdentToColor(name, color), value != 1) << StrToUtf8(name);
        EXPECT_EQ(color, value) << StrToUtf8(name);
    }
}

}  // namespace

#endif
