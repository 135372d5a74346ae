// The text stream: the encoding told from a mark or from the bytes, decoding
// into UTF-16 without losing a byte, and the error of a file that cannot be read.
#include "platform/SxStringStream.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

using namespace sx;
namespace fs = std::filesystem;

namespace {

class TextStream : public ::testing::Test {
protected:
    void SetUp() override
    {
        dir = fs::temp_directory_path() / ("sx-textstream-" + std::to_string(std::random_device{}()));
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }

    String PathOf(const std::string& name) const { return StrFromLatin1((dir / name).string().c_str()); }
    String WriteFile(const std::string& bytes)
    {
        std::ofstream(dir / "text.txt", std::ios::binary) << bytes;
        return PathOf("text.txt");
    }
    /// Writes the bytes to a file and loads it in the given code page.
    String Load(const std::string& bytes, Integer codePage = CodePages::Detect)
    {
        TSxStringStream stream(CodePages::Utf16LE, 16);
        stream.LoadFromFile(WriteFile(bytes), codePage);
        loadedCodePage = stream.CodePage();
        return stream.GetWString();
    }
    /// The message of the EFOpenError a load of the file raises.
    String OpenErrorOf(const String& path)
    {
        TSxStringStream stream(CodePages::Utf16LE, 16);
        try {
            stream.LoadFromFile(path, CodePages::Detect);
        } catch (const EFOpenError& e) {
            return e.Message();
        }
        return u"no error";
    }

    fs::path dir;
    Integer loadedCodePage = 0;
};

TEST_F(TextStream, Utf8WithOrWithoutMarkIsDecodedAndTheMarkDropped)
{
    const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z";
    const String expected = u"a\u00E9\u20AC\U0001F600z";
    EXPECT_EQ(Load(text), expected);
    EXPECT_EQ(loadedCodePage, CodePages::Utf8);
    EXPECT_EQ(Load("\xEF\xBB\xBF" + text), expected);
    EXPECT_EQ(loadedCodePage, CodePages::Utf8);
    EXPECT_EQ(Load("\xEF\xBB\xBF"), u"");
    EXPECT_EQ(Load(""), u"");
}

TEST_F(TextStream, Utf8WithMarkReplacesEachBadByte)
{
    EXPECT_EQ(Load("\xEF\xBB\xBF" "a\xFF\xC0\xAF" "b\xE2\x82"), u"a\uFFFD\uFFFD\uFFFDb\uFFFD\uFFFD");
}

TEST_F(TextStream, Utf16InBothByteOrdersKeepsUnitsAsTheyStand)
{
    using namespace std::string_literals;
    // a, a surrogate pair, a lone low surrogate.
    EXPECT_EQ(Load("\xFF\xFE" "a\0\x3D\xD8\x00\xDE\x00\xDC"s), u"a\xD83D\xDE00\xDC00");
    EXPECT_EQ(loadedCodePage, CodePages::Utf16LE);
    EXPECT_EQ(Load("\xFE\xFF" "\0a\xD8\x3D\xDE\x00"s), u"a\xD83D\xDE00");
    EXPECT_EQ(loadedCodePage, CodePages::Utf16BE);
    EXPECT_EQ(Load("\xFF\xFE" "a\0b"s), u"a\uFFFD");
    EXPECT_EQ(Load("\xFE\xFF" "\0a\0"s), u"a\uFFFD");
}

TEST_F(TextStream, EightBitTextLosesNoByte)
{
    EXPECT_EQ(Load("\x80\x81\x8D\x8F\x90\x9D\x9F caf\xE9 \xFF"),
              u"\u20AC\u0081\u008D\u008F\u0090\u009D\u0178 caf\u00E9 \u00FF");
    EXPECT_EQ(loadedCodePage, CodePages::Windows1252);
}

TEST_F(TextStream, BytesThatAreNotUtf8AreReadAsEightBit)
{
    const struct {
        const char* bytes;
        const char16_t* text;
    } cases[] = {
        {"ab\xC3", u"ab\u00C3"},                                // cut short at the end
        {"\xC3\xA9\xE2\x82", u"\u00C3\u00A9\u00E2\u201A"},      // a good sequence, then one cut short
        {"\xC0\xAF", u"\u00C0\u00AF"},                          // overlong slash
        {"\xE0\x80\xAF", u"\u00E0\u20AC\u00AF"},                // overlong in three bytes
        {"x\x80y", u"x\u20ACy"},                                // lone continuation byte
        {"\xED\xA0\x80", u"\u00ED\u00A0\u20AC"},                // a surrogate
        {"\xF4\x90\x80\x80", u"\u00F4\u0090\u20AC\u20AC"},      // beyond U+10FFFF
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Load(c.bytes), c.text) << c.bytes;
        EXPECT_EQ(loadedCodePage, CodePages::Windows1252) << c.bytes;
    }
}

TEST_F(TextStream, TheWholeFileDecidesAcrossReadChunks)
{
    // A sequence that straddles the first 64 KiB, then a bad byte far behind it.
    std::string bytes(65535, 'a');
    bytes += "\xC3\xA9";
    EXPECT_EQ(Load(bytes), String(65535, u'a') + u"\u00E9");
    bytes += std::string(100000, 'b') + "\xFF";
    const String text = Load(bytes);
    EXPECT_EQ(loadedCodePage, CodePages::Windows1252);
    EXPECT_EQ(text.size(), bytes.size());
    EXPECT_EQ(text.substr(65535, 2), u"\u00C3\u00A9");
}

TEST_F(TextStream, AGivenCodePageIsTakenAsItStands)
{
    EXPECT_EQ(Load("caf\xC3\xA9", CodePages::Windows1252), u"caf\u00C3\u00A9");
    EXPECT_EQ(Load("\xEF\xBB\xBF" "a\xFF", CodePages::Utf8), u"a\uFFFD");
    EXPECT_THROW(Load("a", 437), EConvertError);
    EXPECT_THROW(TSxStringStream(1250, 16), EConvertError);
}

TEST_F(TextStream, BytesWrittenAreTextInTheCodePageOfConstruction)
{
    TSxStringStream stream(CodePages::Utf16LE, 16);
    const char bytes[] = {'h', 0, 'i', 0};
    stream.WriteBuffer(bytes, 4);
    EXPECT_EQ(stream.GetWString(), u"hi");
}

TEST_F(TextStream, FileThatCannotBeReadRaisesWithNameAndReason)
{
    const String missing = PathOf("missing.txt");
    EXPECT_EQ(OpenErrorOf(missing),
              u"Cannot open file \"" + missing + u"\". " + StrFromLatin1(std::strerror(ENOENT)));
    const String folder = PathOf("");
    EXPECT_EQ(OpenErrorOf(folder), u"Cannot open file \"" + folder + u"\". " + StrFromLatin1(std::strerror(EISDIR)));
    TSxStringStream stream(CodePages::Utf16LE, 16);
    EXPECT_THROW(stream.LoadFromFile(missing, CodePages::Detect), EStreamError);
}

}  // namespace
