// Text in the framework layer. SearchBuf: the offsets each direction tries,
// the bounds of the buffer, case-blind comparison beyond ASCII and the
// whole-word rule; and its one-byte Latin-1 twin, which must answer as the
// wide search does. The search engine's tests meet plain hits in each
// direction, ASCII case and words. Text from files and streams: the encoding
// told from a mark or from the bytes, decoding into UTF-16 without losing a
// byte, the lines handed to the line store as one change, and the errors of
// files that cannot be read.
#include "platform/StrUtils.h"
#include "platform/Streams.h"
#include "platform/StringList.h"
#include "platform/SxStringStream.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <random>
#include <string>
#include <vector>

using namespace sx;
using namespace sx::CodePages;
using namespace std::string_literals;

namespace {

using Opt = TStringSearchOption;

constexpr int WholeBuffer = -1000;

const TStringSearchOptions Down{Opt::soDown};
const TStringSearchOptions Up{};
const TStringSearchOptions DownWord = Down + TStringSearchOptions{Opt::soWholeWord};
const TStringSearchOptions UpWord{Opt::soWholeWord};

TEST(SearchBuf, FindsWhereEachRuleSays)
{
    const struct {
        String buf;
        int selStart;
        String what;
        TStringSearchOptions options;
        int expected;  ///< the offset of the hit, or -1
        int bufLen = WholeBuffer;
        int selLength = 0;
    } cases[] = {
        // Forward starts behind the selection and stays inside the buffer.
        {u"abcabc", 1, u"abc", Down, 3},
        {u"abcabc", 0, u"abc", Down, 3, WholeBuffer, 1},  // SelStart + SelLength
        {u"abcabc", 3, u"abc", Down, -1, 5},              // would end behind BufLen
        {u"abcabc", 4, u"abc", Down, -1},
        // Backward finds the last hit that ends at or before the start.
        {u"abcabc", 5, u"abc", Up, 0},
        {u"abcabc", 2, u"abc", Up, -1},
        // Nothing outside the buffer, nothing for an empty or a longer text.
        {u"abc", 0, u"a", Down, -1, 0},
        {u"abc", 0, u"a", Down, -1, -3},
        {u"abc", -1, u"a", Down, -1},
        {u"abc", 4, u"c", Up, -1},
        {u"abc", 0, u"", Down, -1},
        {u"abc", 0, u"abcd", Down, -1},
        // Case-blind compares in upper case, beyond ASCII too.
        {u"Straße CAFÉ", 0, u"café", Down, 7},
        {u"\u0416\u0443\u043A", 3, u"\u0436\u0423\u043a", Up, 0},  // Жук in mixed case
        {u"\u03C3\u03C2", 0, u"\u03A3\u03A3", Down, 0},             // both sigmas are Σ
        {u"\u00E9", 0, u"e", Down, -1},                             // no accent folding
        {u"[{", 0, u"{", Down, 1},  // no ASCII punctuation is folded onto another
        // Whole words need delimiters around the hit.
        {u"a_cat_b cat", 0, u"cat", DownWord, 2},  // the underscore is a delimiter
        {u"cat", 0, u"cat", DownWord, 0},           // the buffer's end closes the word
        {u"catcat", 0, u"cat", DownWord, 0, 3},     // even inside a longer line
        {u"xcat cat", 1, u"cat", DownWord, 1},      // the first offset tried is a word start
        {u"xcat cat", 0, u"cat", DownWord, 5},
        {u"cat xcat", 8, u"cat", UpWord, 5},  // the first offset tried going up
        {u"cat xcat", 7, u"cat", UpWord, 0},
        {u"caf\u00E9 caf", 0, u"caf", DownWord, 0},  // only ASCII letters and digits make words
    };
    for (const auto& c : cases) {
        const Integer length = c.bufLen == WholeBuffer ? Integer(c.buf.size()) : c.bufLen;
        const Char* hit = SearchBuf(c.buf.data(), length, c.selStart, c.selLength, c.what, c.options);
        EXPECT_EQ(hit ? int(hit - c.buf.data()) : -1, c.expected)
            << StrToUtf8(c.what) << " in " << StrToUtf8(c.buf) << " from " << c.selStart;
    }
    EXPECT_EQ(SearchBuf(nullptr, 3, 0, 0, u"a", Down), nullptr);
}

TEST(SearchBufLatin1, AnswersAsTheWideSearchDoes)
{
    const unsigned seed = 20261123u;
    std::mt19937 random(seed);
    // Letters whose upper case lies outside Latin-1 included.
    const Char alphabet[] = {u'a', u'A', u'b', u'_', u' ', u'1', 0xDF, 0xFF, 0xB5, 0xE9, 0xC9, u'x'};
    for (int round = 0; round < 3000; ++round) {
        std::vector<Byte> narrow(random() % 24);
        String wide;
        for (Byte& b : narrow) {
            b = Byte(alphabet[random() % std::size(alphabet)]);
            wide += Char(b);
        }
        String needle;
        for (std::size_t n = 1 + random() % 3; n > 0; --n)
            needle += random() % 8 ? alphabet[random() % std::size(alphabet)] : Char(0x178);
        TStringSearchOptions options;
        for (const auto option : {Opt::soDown, Opt::soMatchCase, Opt::soWholeWord})
            if (random() % 2)
                options.Include(option);
        const auto length = Integer(narrow.size());
        const auto start = Integer(random() % std::size_t(length + 2)) - 1;
        const Byte* hit = SearchBufLatin1(narrow.data(), length, start, 0, needle, options);
        const Char* expected = SearchBuf(wide.data(), length, start, 0, needle, options);
        ASSERT_EQ(hit ? hit - narrow.data() : -1, expected ? expected - wide.data() : -1)
            << "seed " << seed << " round " << round;
    }
}

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
