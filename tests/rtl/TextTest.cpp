// Text in the framework layer. The line store and the gap vector that holds
// its lines: text blocks that loaded lines share and that go with their last
// line, adopted buffers read in place, nested updates; and, against a plain
// vector, thousands of seeded random edits at several grow (and text block)
// sizes, 1 included, compared after every step, lines read through their
// views in both widths, each change framed by the change events; indexes out
// of range raise. A failure names seed and step. SearchBuf: the offsets each
// direction tries, the bounds of the buffer, case-blind comparison beyond
// ASCII and the whole-word rule; and its one-byte Latin-1 twin, which must
// answer as the wide search does. The search engine's tests meet plain hits
// in each direction, ASCII case and words. Text from files and streams: the
// encoding told from a mark or from the bytes, decoding into UTF-16 without
// losing a byte, splitting at any line break, the lines handed to the line
// store as one change, and the errors of files that cannot be read.
#include "platform/LineGap.h"
#include "platform/LineText.h"
#include "platform/StrUtils.h"
#include "platform/Streams.h"
#include "platform/StringList.h"
#include "platform/SxStringStream.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace sx;
using namespace sx::CodePages;
using namespace std::string_literals;

namespace {

TEST(LineText, AnAdoptedBufferIsReadInPlaceAndFreedWithItsLastLine)
{
    TLineTextStore store;
    TByteBuffer bytes = {'a', 'b', '\r', '\n', 'c'};
    const Byte* data = bytes.data();  // a moved vector keeps its buffer
    const std::uint32_t block = store.Adopt(std::move(bytes));
    const TLineText ab = store.InPlace(block, data, 2);
    const TLineText c = store.InPlace(block, data + 4, 1);
    EXPECT_EQ(ab.View().NarrowData(), data);
    store.Release(ab);
    EXPECT_EQ(store.LiveBlocks(), 1u);
    store.Release(c);
    EXPECT_EQ(store.LiveBlocks(), 0u);
    store.DropIfUnused(store.Adopt({'x'}));
    EXPECT_EQ(store.LiveBlocks(), 0u);
}

TEST(StringList, LoadedLinesShareBlocksThatGoWithTheirLastLine)
{
    TStringList list(64, 32);
    String text;
    for (int i = 0; i < 20; ++i)
        text += (i % 3 ? u"line " : u"wide line \u20AC ") + IntToStr(i) + u"\r\n";
    list.SetText(text);
    EXPECT_GT(list.TextBlocks(), 5u);
    EXPECT_LT(list.TextBlocks(), 20u);  // fewer than lines: they share
    for (Integer i = 0; i < 10; ++i)
        list.Put(i, u"edited");
    for (Integer i = 18; i >= 10; --i)
        list.Delete(i);
    EXPECT_EQ(list.TextBlocks(), 1u);
    EXPECT_EQ(list.Get(10), u"line 19");
    list.Delete(10);
    EXPECT_EQ(list.TextBlocks(), 0u);
    EXPECT_EQ(list.Get(9), u"edited");
}

TEST(StringList, NestedUpdatesReportOnceAtTheOutermostEnds)
{
    TStringList list;
    std::string log;
    list.OnChanging = [&](TObject*) { log += "<"; };
    list.OnChange = [&](TObject*) { log += ">"; };
    list.BeginUpdate();
    list.BeginUpdate();
    list.Add(u"a");
    list.Add(u"b");
    list.EndUpdate();
    EXPECT_EQ(log, "<");
    list.EndUpdate();
    EXPECT_EQ(log, "<>");
    list.EndUpdate();  // one end too many is ignored
    EXPECT_EQ(log, "<>");
}

TEST(LineGap, EditsNearTheLastOneMoveOnlyTheGap)
{
    LineGap<int> gap(1);
    for (int i = 0; i < 1000; ++i)
        gap.Insert(gap.Length(), i);
    gap.Insert(500, -1);
    EXPECT_EQ(gap.GapStart(), 501u);
    EXPECT_EQ(gap[501], 500);
    gap.Delete(501);
    EXPECT_EQ(gap.GapStart(), 501u);
    EXPECT_EQ(gap[500], -1);
    EXPECT_EQ(gap[501], 501);
}

struct ModelLine {
    String Text;
    NativeInt Slot = 0;
};

String RandomLine(std::mt19937& random)
{
    static const Char Pieces[] = {u'a', u'b', u' ', u'\t', 0xE9, 0xD83D, 0};
    String line;
    for (auto n = random() % 6; n > 0; --n)
        line.push_back(Pieces[random() % std::size(Pieces)]);
    return line;
}

/// The model's text as Text gives it: every line ended by CR LF.
String ModelText(const std::vector<ModelLine>& model)
{
    String text;
    for (const ModelLine& line : model)
        text += line.Text + u"\r\n";
    return text;
}

/// One random edit on the store, the same on its gap vector alone and on the
/// model; false when the edit was a refused one, which changes nothing.
bool RandomEdit(std::mt19937& random, TStringList& store, LineGap<ModelLine>& gap, std::vector<ModelLine>& model)
{
    const std::size_t size = model.size(), at = random() % std::max<std::size_t>(size, 1);
    const String line = RandomLine(random);
    const auto action = unsigned(random() % 20);
    if (action < 7 || size == 0) {
        const std::size_t where = action < 6 ? random() % (size + 1) : size;
        action < 6 ? store.Insert(Integer(where), line) : void(store.Add(line));  // Add inserts at the end
        gap.Insert(where, ModelLine{line});
        model.insert(model.begin() + std::ptrdiff_t(where), ModelLine{line});
    } else if (action < 11) {
        store.Delete(Integer(at));
        gap.Delete(at);
        model.erase(model.begin() + std::ptrdiff_t(at));
    } else if (action < 15) {
        store.Put(Integer(at), line);
        gap[at].Text = model[at].Text = line;  // the slot stays with its line
    } else if (action < 18) {
        // Small slots live in the record, others beside it; both stay with their line.
        static const NativeInt Slots[] = {0, 1, 4, -1, 8191, -8191, -8192, 8192, NativeInt(1) << 40,
                                          std::numeric_limits<NativeInt>::min()};
        const NativeInt slot = Slots[random() % std::size(Slots)];
        store.PutObject(Integer(at), slot);
        gap[at].Slot = model[at].Slot = slot;
    } else if (action < 19) {
        const auto count = Integer(size);
        EXPECT_THROW(store.Get(count), EListError);
        EXPECT_THROW(store.Get(-1), EListError);
        EXPECT_THROW(store.Delete(count), EListError);
        EXPECT_THROW(store.Delete(-1), EListError);
        EXPECT_THROW(store.Insert(count + 1, line), EListError);
        return false;
    } else {
        // Text splits anew: every slot starts at 0 again.
        model.clear();
        for (auto n = random() % 20; n > 0; --n)
            model.push_back(ModelLine{RandomLine(random)});
        store.SetText(ModelText(model));
        gap.Clear();
        for (const ModelLine& fresh : model)
            gap.Insert(gap.Length(), fresh);
    }
    return true;
}

/// A grow size and a size of the text blocks that loaded lines share.
class LineStoreOracle : public ::testing::TestWithParam<std::pair<std::size_t, std::size_t>> {};

TEST_P(LineStoreOracle, RandomEditsMatchAPlainVector)
{
    const auto [growSize, blockBytes] = GetParam();
    const unsigned seed = 7919u * unsigned(growSize) + 11u;
    std::mt19937 random(seed);
    TStringList store(growSize, blockBytes);
    LineGap<ModelLine> gap(growSize);
    std::vector<ModelLine> model;
    std::string events;
    store.OnChanging = [&](TObject*) { events += "<"; };
    store.OnChange = [&](TObject*) { events += ">"; };
    for (int step = 0; step < 4000; ++step) {
        events.clear();
        const bool changed = RandomEdit(random, store, gap, model);
        const std::string where = "seed " + std::to_string(seed) + " step " + std::to_string(step);
        ASSERT_EQ(events, changed ? "<>" : "") << where;  // each change framed once, a refusal not at all
        ASSERT_EQ(store.Count(), Integer(model.size())) << where;
        ASSERT_EQ(gap.Length(), model.size()) << where;
        for (std::size_t i = 0; i < model.size(); ++i)
            ASSERT_TRUE(gap[i].Text == model[i].Text && gap[i].Slot == model[i].Slot) << where << " line " << i;
        if (model.empty())
            continue;
        const std::size_t probe = random() % model.size(), from = random() % 8;
        const String& text = model[probe].Text;
        ASSERT_EQ(store.Get(Integer(probe)), text) << where;
        ASSERT_EQ(store.GetObject(Integer(probe)), model[probe].Slot) << where;
        // The view reads the same whether the line is kept in one byte a character or in two.
        const TLineView view = store.Line(Integer(probe));
        const bool latin1 = std::all_of(text.begin(), text.end(), [](Char c) { return c <= 0xFF; });
        ASSERT_EQ(view.WideData() == nullptr, latin1) << where;
        ASSERT_EQ(view.Substr(from, 3), text.substr(std::min(from, text.size()), 3)) << where;
        ASSERT_EQ(view.FindFirstNot(u' '), text.find_first_not_of(u' ')) << where;
        String appended = u">";
        view.AppendTo(appended);
        ASSERT_EQ(appended, u">" + text) << where;
    }
    EXPECT_EQ(store.Text(), ModelText(model)) << "seed " << seed;
    TStringList copy(growSize, blockBytes);
    copy.Assign(store);
    ASSERT_EQ(copy.Count(), store.Count());
    for (Integer i = 0; i < store.Count(); ++i) {
        EXPECT_EQ(copy.Get(i), store.Get(i)) << i;
        EXPECT_EQ(copy.Objects(i), store.Objects(i)) << i;
    }
    events.clear();
    store.Clear();
    store.Clear();  // nothing left to clear: no events
    EXPECT_EQ(events, model.empty() ? "" : "<>");
    EXPECT_EQ(store.TextBlocks(), 0u);
}

INSTANTIATE_TEST_SUITE_P(GrowSizes, LineStoreOracle,
                         ::testing::Values(std::pair{std::size_t(1), std::size_t(16)},
                                           std::pair{std::size_t(2), TLineTextStore::DefaultBlockBytes},
                                           std::pair{std::size_t(7), std::size_t(16)},
                                           std::pair{std::size_t(64), TLineTextStore::DefaultBlockBytes}));


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
    // Over 2 MB: decoded lines written down in place, and the pages behind the last line given back.
    std::string many;
    String manyText;
    for (int i = 0; i < 150000; ++i) {
        many += "\xE2\x82\xAC" "b\r\ncaf\xC3\xA9\r\nab\r\n";
        manyText += u"\u20ACb\r\ncaf\u00E9\r\nab\r\n";
    }
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
        {many, Detect, manyText, Utf8},
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
        for (Integer i = 0; i < lines.Count(); ++i)
            lines.PutObject(i, NativeInt(1) << 40);  // a large slot gives the line a text of its own
        EXPECT_EQ(lines.Text(), expected.Text()) << c.bytes;
        EXPECT_EQ(lines.TextBlocks(), 0u) << c.bytes;
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
