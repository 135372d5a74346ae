// Loading a file into the control: the text replaced, caret and scroll bars
// at the top, the undo list kept, and a load that fails changing no text.
#include "codeedit/EditorFixture.h"
#include "support/TempFolder.h"

using namespace sx;
using namespace sx::test;

namespace {

class LoadFromFile : public EditorTest {
protected:
    String WriteFile(const std::string& bytes) { return StrFromUtf8(folder.Write("code.txt", bytes).string()); }
    TempFolder folder;
};

TEST_F(LoadFromFile, ReplacesTextAndPutsCaretAndScrollBarsAtTheTop)
{
    Start(LinesOf(200, [](int i) { return u"line " + IntToStr(i) + u" with some text that runs wide of the window"; }),
          Point(12, 150));
    Type(*edit, QStringLiteral("x"));
    Select(Point(2, 140), Point(12, 150));
    edit->HScrollBar().SetPosition(5);
    ASSERT_GT(edit->VScrollBar().Position(), 0);
    ASSERT_GT(edit->HScrollBar().Position(), 0);
    const Integer undoRecords = edit->UndoList().Count();
    edit->SetModified(false);

    edit->LoadFromFile(WriteFile("one\ntwo\n"));

    EXPECT_EQ(edit->Text(), u"one\r\ntwo\r\n");
    EXPECT_EQ(Caret(), Point(0, 0));
    EXPECT_EQ(edit->SelLength(), 0);
    EXPECT_EQ(edit->HScrollBar().Position(), 0);
    EXPECT_EQ(edit->VScrollBar().Position(), 0);
    EXPECT_TRUE(edit->Modified());
    EXPECT_EQ(edit->UndoList().Count(), undoRecords);
}

TEST_F(LoadFromFile, BytesBecomeLinesWhateverTheirEncodingOrFaults)
{
    const std::pair<std::string, String> files[] = {
        // any line end splits lines, and the byte order mark is no text
        {"\xEF\xBB\xBF" "caf\xC3\xA9\rb\nc\r\n\r\nd", u"caf\u00E9\r\nb\r\nc\r\n\r\nd\r\n"},
        {std::string("\xFF\xFE" "a\0b", 5), u"a\uFFFD\r\n"},  // an odd byte behind a UTF-16 mark
        {"caf\xE9\r\n\x80uro", u"caf\u00E9\r\n\u20ACuro\r\n"},  // no UTF-8: every byte in 8 bits
        {std::string("a\0b\r\n\0", 6), String(u"a\0b\r\n\0\r\n", 8)},  // NUL bytes stay characters of their lines
    };
    for (const auto& [bytes, text] : files) {
        edit->LoadFromFile(WriteFile(bytes));
        EXPECT_EQ(edit->Text(), text);
        Render(*edit);
    }
    Start(u"old\r\ntext", Point(2, 1));  // an empty file leaves no lines
    edit->LoadFromFile(WriteFile(""));
    EXPECT_EQ(edit->Lines().Count(), 0);
    EXPECT_EQ(Caret(), Point(0, 0));
}

TEST_F(LoadFromFile, AFileThatCannotBeOpenedRaisesAndLeavesTheTextWithTheCaretAtTheTop)
{
    for (const std::filesystem::path& path : {folder.Path("missing.txt"), folder.Path("")}) {
        Start(u"old\r\ntext", Point(2, 1));
        EXPECT_THROW(edit->LoadFromFile(StrFromUtf8(path.string())), EFOpenError);
        EXPECT_EQ(edit->Text(), u"old\r\ntext\r\n");
        EXPECT_EQ(Caret(), Point(0, 0));
    }
}

TEST_F(LoadFromFile, ALineOfTenMillionCharactersIsLoadedAndEdited)
{
    edit->LoadFromFile(WriteFile(std::string(10000000, 'x') + "\r\nend"));
    ASSERT_EQ(edit->Lines().Count(), 2);
    EXPECT_EQ(Line(0).size(), 10000000u);
    Press(*edit, Qt::Key_End);
    EXPECT_EQ(Caret(), Point(10000000, 0));
    Type(*edit, QStringLiteral("!"));
    EXPECT_EQ(Line(0).size(), 10000001u);
    Render(*edit);
}

}  // namespace
