// Text from files and streams: the encoding told from a mark or from the
// bytes, decoding into UTF-16 without losing a byte, the lines handed to the
// line store as one change, and the errors of files that cannot be read.
#include "platform/Streams.h"
#include "platform/StringList.h"
#include "platform/SxStringStream.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

using namespace sx;
using namespace sx::CodePages;
using namespace std::string_literals;

namespace {

class TextStream : public ::testing::Test {
protected:
    String WriteFile(const std::string& bytes) { return StrFromUtf8(folder.Write("text.txt", bytes).string()); }

    test::TempFolder folder;
};

TEST_F(TextStream, DecodesEachEncodingAndHandsOverTheSameLinesAsSetText)
{
    const std::string broken = "ok\r\nbad \xE2\x82\r\n\xC3\r\nlone \x80 \x9F \xFF\r\n";
    const struct {
        std::string bytes;
        Integer given;
        String text;
        Integer detected;
    } cases[] = {
        {"a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z", Detect, u"a\u00E9\u20AC\U0001F600z", Utf8},
        {"\xEF\xBB\xBF", Detect, u"", Utf8},
        {"", Detect, u"", Utf8},
        {"a\r\nb\nc\rd\n\re\r\r\n\n", Detect, u"a\r\nb\nc\rd\n\re\r\r\n\n", Utf8},
        {std::string(5000, 'x') + "\r\n\n\n\n", Detect, String(5000, u'x') + u"\r\n\n\n\n", Utf8},
        // With a mark or when told, UTF-8 replaces each bad byte.
        {"\xEF\xBB\xBF" "a\xFF\xC0\xAF" "b\xE2\x82", Detect, u"a\uFFFD\uFFFD\uFFFDb\uFFFD\uFFFD", Utf8},
        {broken, Utf8, u"ok\r\nbad \uFFFD\uFFFD\r\n\uFFFD\r\nlone \uFFFD \uFFFD \uFFFD\r\n", Utf8},
        // UTF-16 keeps its units as they stand, a lone surrogate too; an odd last byte is a bad unit.
        {"\xFF\xFE" "a\0\x3D\xD8\x00\xDE\x00\xDC\r\0\n\0\xAC\x20\r\0b\0"s, Detect, u"a\xD83D\xDE00\xDC00\r\n\u20AC\rb", Utf16LE},
        {"\xFE\xFF" "\0a\xD8\x3D\xDE\x00\0"s, Detect, u"a\xD83D\xDE00\uFFFD", Utf16BE},
        // Bytes that are not UTF-8 are Windows-1252, and no byte is lost.
        {"\x80\x81\x8D\x8F\x90\x9D\x9F \xE9\xFF", Detect, u"\u20AC\u0081\u008D\u008F\u0090\u009D\u0178 \u00E9\u00FF", Windows1252},
        {broken, Detect, u"ok\r\nbad \u00E2\u201A\r\n\u00C3\r\nlone \u20AC \u0178 \u00FF\r\n", Windows1252},
        {"\xC3\xA9\xE2\x82", Detect, u"\u00C3\u00A9\u00E2\u201A", Windows1252},  // a good sequence, then one cut short
        {"\xC0\xAF", Detect, u"\u00C0\u00AF", Windows1252},                      // overlong slash
        {"\xE0\x80\xAF", Detect, u"\u00E0\u20AC\u00AF", Windows1252},            // overlong in three bytes
        {"\xED\xA0\x80", Detect, u"\u00ED\u00A0\u20AC", Windows1252},            // a surrogate
        {"\xF4\x90\x80\x80", Detect, u"\u00F4\u0090\u20AC\u20AC", Windows1252},  // beyond U+10FFFF
        {"caf\xC3\xA9", Windows1252, u"caf\u00C3\u00A9", Windows1252},           // told, not detected
    };
    for (const auto& c : cases) {
        TSxStringStream stream(Utf16LE, 16);
        stream.LoadFromFile(WriteFile(c.bytes), c.given);
        EXPECT_EQ(stream.CodePage(), c.detected) << c.bytes;
        const String text = stream.GetWString();
        EXPECT_EQ(text, c.text) << c.bytes;
        TStringList expected, lines(2, 8);
        expected.SetText(text);
        std::string events;
        lines.OnChanging = [&](TObject*) { events += "<"; };
        lines.OnChange = [&](TObject*) { events += ">"; };
        stream.TakeLines(lines);
        EXPECT_EQ(events, "<>") << c.bytes;
        EXPECT_EQ(stream.Size(), 0) << c.bytes;
        EXPECT_EQ(lines.Text(), expected.Text()) << c.bytes;
    }
}

TEST_F(TextStream, TheWholeFileDecidesAcrossReadChunks)
{
    // A sequence that straddles the first 64 KiB, then a bad byte far behind it.
    std::string bytes = std::string(65535, 'a') + "\xC3\xA9";
    TSxStringStream stream(Utf16LE, 16);
    stream.LoadFromFile(WriteFile(bytes), Detect);
    EXPECT_EQ(stream.GetWString(), String(65535, u'a') + u"\u00E9");
    bytes += std::string(100000, 'b') + "\xFF";
    stream.LoadFromFile(WriteFile(bytes), Detect);
    EXPECT_EQ(stream.CodePage(), Windows1252);
    const String text = stream.GetWString();
    EXPECT_EQ(text.size(), bytes.size());
    EXPECT_EQ(text.substr(65535, 2), u"\u00C3\u00A9");
}


TEST_F(TextStream, UnknownCodePagesAndFilesThatCannotBeReadRaise)
{
    TSxStringStream stream(Utf16LE, 16);
    EXPECT_THROW(stream.LoadFromFile(WriteFile("a"), 437), EConvertError);
    EXPECT_THROW(TSxStringStream(1250, 16), EConvertError);
    for (const auto& [name, error] : {std::pair{"missing.txt", ENOENT}, {"", EISDIR}}) {
        const String path = StrFromUtf8(folder.Path(name).string());
        try {
            TSxStringStream(Utf16LE, 16).LoadFromFile(path, Detect);
            ADD_FAILURE() << "no error for " << name;
        } catch (const EFOpenError& e) {
            EXPECT_EQ(e.Message(), u"Cannot open file \"" + path + u"\". " + StrFromLatin1(std::strerror(error)));
        }
    }
}

TEST(StringsStream, SavesUtf8AndLoadsBackByTheByteOrderMark)
{
    TStringList lines, again;
    lines.SetText(u"caf\u00E9\r\n\U0001F600 end");
    TMemoryStream saved;
    lines.SaveToStream(saved);
    EXPECT_EQ(std::string(saved.Bytes().begin(), saved.Bytes().end()), "caf\xC3\xA9\r\n\xF0\x9F\x98\x80 end\r\n");
    saved.SetPosition(0);
    again.LoadFromStream(saved);
    EXPECT_EQ(again.Text(), lines.Text());
    const std::pair<std::vector<std::uint8_t>, String> marked[] = {
        {{0xEF, 0xBB, 0xBF, 'a', '\n', 'b'}, u"a\r\nb\r\n"},
        {{0xFF, 0xFE, 'a', 0, 0xAC, 0x20}, u"a\u20AC\r\n"},
        {{0xFE, 0xFF, 0, 'a', 0x20, 0xAC}, u"a\u20AC\r\n"},
    };
    for (const auto& [bytes, text] : marked) {
        TMemoryStream stream(bytes);
        again.LoadFromStream(stream);
        EXPECT_EQ(again.Text(), text);
    }
}

}  // namespace
