// Fuzz target for the SQL keyword letter tree: a random keyword table (the
// lines of the input) either builds or raises the building error for its first
// bad character, and every keyword of a table that built, typed in any case at
// the start of a line, is found again as a keyword.
#include "FuzzSupport.h"

#include "codeedit/uSxCodeSqlParser.h"

#include <optional>

using namespace sx;
using namespace sx::fuzz;
using namespace sx::uSxCodeSqlParser;

namespace {

class Probe : public TSxCodeSqlParser {
public:
    using TSxCodeSqlParser::TSxCodeSqlParser;
    TSxSqlToken Next(String& Token) { return InternalGetNextToken(Token); }
};

/// The first character the tree has no place for, after upper-casing.
std::optional<Char> FirstBadChar(const String& upper)
{
    const auto bad = std::find_if(upper.begin(), upper.end(), [](Char c) { return c < u'A' || c > u'_'; });
    return bad == upper.end() ? std::nullopt : std::optional<Char>(*bad);
}

/// A keyword the scanner can reach: a letter, then letters and '_'.
bool Reachable(const String& upper)
{
    const auto wordChar = [](Char c) { return (c >= u'A' && c <= u'Z') || c == u'_'; };
    return !upper.empty() && upper[0] != u'_' && std::all_of(upper.begin(), upper.end(), wordChar);
}

/// Lower-cases every other letter, so that case plays no part in the test.
String MixedCase(const String& word)
{
    String out = word;
    for (std::size_t i = 0; i < out.size(); i += 2)
        if (out[i] >= u'A' && out[i] <= u'Z')
            out[i] = Char(out[i] + 32);
    return out;
}

void ExpectKeyword(Probe& parser, const String& word)
{
    Feed(parser, {word});
    parser.ResetBuffer();
    String token;
    const TSxSqlToken kind = parser.Next(token);
    SX_FUZZ_CHECK(kind == vtKeyWord && token == word, Show(word) + " gave " + Show(token));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const String text = TextOf(data, size);
    std::array<String, SxSqlKeyWordCount> table;
    std::size_t count = 0;
    for (std::size_t from = 0; from <= text.size() && count < table.size(); ++count) {
        const std::size_t end = std::min(text.find(u'\n', from), text.size());
        table[count] = text.substr(from, end - from);
        from = end + 1;
    }
    SxSqlKeyWords = table;

    String expectedError;
    for (const String& word : table) {
        const String upper = UpperCase(word);
        if (const std::optional<Char> bad = FirstBadChar(upper)) {
            expectedError = u"Invalid Character \"" + String(1, *bad) + u"\" in keyword \"" + upper + u"\" ";
            break;
        }
    }
    try {
        Probe parser(nullptr);
        SX_FUZZ_CHECK(expectedError.empty(), "built a table with " + Show(expectedError));
        for (const String& word : table) {
            if (!Reachable(UpperCase(word)))
                continue;
            ExpectKeyword(parser, word);
            ExpectKeyword(parser, MixedCase(UpperCase(word)));
        }
    } catch (const Exception& e) {
        SX_FUZZ_CHECK(e.Message() == expectedError, Show(e.Message()) + " instead of " + Show(expectedError));
    }
    return 0;
}
