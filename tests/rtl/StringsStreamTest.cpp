// Lines to and from a stream: UTF-8 both ways by default, UTF-16 read when a
// byte-order mark says so.
#include "platform/StringList.h"
#include "platform/Streams.h"

#include <gtest/gtest.h>

using namespace sx;

namespace {

String Loaded(std::vector<std::uint8_t> bytes)
{
    TMemoryStream stream(std::move(bytes));
    TStringList lines;
    lines.LoadFromStream(stream);
    return lines.Text();
}

TEST(StringsStream, SavedTextLoadsBackTheSame)
{
    TStringList lines;
    lines.SetText(u"caf\u00E9\r\n\U0001F600 end");
    TMemoryStream stream;
    lines.SaveToStream(stream);
    EXPECT_EQ(std::string(stream.Bytes().begin(), stream.Bytes().end()), "caf\xC3\xA9\r\n\xF0\x9F\x98\x80 end\r\n");
    stream.SetPosition(0);
    TStringList again;
    again.LoadFromStream(stream);
    EXPECT_EQ(again.Text(), lines.Text());
}

TEST(StringsStream, AByteOrderMarkChoosesTheEncoding)
{
    EXPECT_EQ(Loaded({0xEF, 0xBB, 0xBF, 'a', '\n', 'b'}), u"a\r\nb\r\n");
    EXPECT_EQ(Loaded({0xFF, 0xFE, 'a', 0, 0xAC, 0x20}), u"a\u20AC\r\n");
    EXPECT_EQ(Loaded({0xFE, 0xFF, 0, 'a', 0x20, 0xAC}), u"a\u20AC\r\n");
    EXPECT_EQ(Loaded({}), u"");
}

}  // namespace
