// The text stream's lines handed straight to the line store: the same lines
// as SetText(GetWString()) gives, in every encoding and with every kind of
// line break, and the list's change events framing the whole as one change.
#include "platform/SxStringStream.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

using namespace sx;
namespace fs = std::filesystem;

namespace {

class StreamLines : public ::testing::Test {
protected:
    void SetUp() override
    {
        dir = fs::temp_directory_path() / ("sx-streamlines-" + std::to_string(std::random_device{}()));
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }

    /// Loads the bytes both ways and expects the same lines.
    void ExpectSameLines(const std::string& bytes, Integer codePage = CodePages::Detect)
    {
        std::ofstream(dir / "t.txt", std::ios::binary) << bytes;
        const String path = StrFromLatin1((dir / "t.txt").string().c_str());
        TSxStringStream whole(CodePages::Utf16LE, 16);
        whole.LoadFromFile(path, codePage);
        TStringList expected;
        expected.SetText(whole.GetWString());

        TSxStringStream stream(CodePages::Utf16LE, 16);
        stream.LoadFromFile(path, codePage);
        TStringList lines(2, 8);
        std::string events;
        lines.OnChanging = [&](TObject*) { events += "<"; };
        lines.OnChange = [&](TObject*) { events += ">"; };
        stream.TakeLines(lines);
        EXPECT_EQ(events, "<>");
        EXPECT_EQ(stream.Size(), 0);
        ASSERT_EQ(lines.Count(), expected.Count()) << bytes;
        for (Integer i = 0; i < expected.Count(); ++i)
            EXPECT_EQ(lines.Get(i), expected.Get(i)) << "line " << i << " of " << bytes;
    }

    fs::path dir;
};

TEST_F(StreamLines, Utf8WithEveryKindOfBreak)
{
    ExpectSameLines("");
    ExpectSameLines("one line, no break");
    ExpectSameLines("a\r\nb\nc\rd\n\re\r\r\n\n");
    ExpectSameLines("\xEF\xBB\xBF" "marked\r\nGr\xC3\xB6\xC3\x9F" "e\r\n\xE2\x82\xAC uro\r\n\xF0\x9F\x98\x80\r\nlast");
    ExpectSameLines(std::string(5000, 'x') + "\r\n" + std::string(3, '\n'));
}

TEST_F(StreamLines, BrokenUtf8ReadAsUtf8OrAsTheEightBitPage)
{
    const std::string broken = "ok\r\nbad \xE2\x82\r\n\xC3\r\nlone \x80 \x9F \xFF\r\n";
    ExpectSameLines(broken, CodePages::Utf8);
    ExpectSameLines(broken);  // detected as Windows-1252
    ExpectSameLines("caf\xE9 \xA0 no C1 bytes\r\n\x80 euro", CodePages::Windows1252);
}

TEST_F(StreamLines, Utf16InBothByteOrdersWithAnOddLastByte)
{
    ExpectSameLines(std::string("\xFF\xFE" "a\0\r\0\n\0\xAC\x20\r\0b\0", 14));
    ExpectSameLines(std::string("\xFE\xFF\0a\0\n\0\n\x20\xAC\0b", 12));
    ExpectSameLines(std::string("\xFF\xFE" "a\0\n\0z", 7));
}

}  // namespace
