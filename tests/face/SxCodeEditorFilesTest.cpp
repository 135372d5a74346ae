// SxCodeEditor's files: a save gives back the bytes the load read, whatever
// their encoding and line break; a load or save that fails loses nothing.
#include "face/SxCodeEditor.h"
#include "support/TempFolder.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

namespace sx::test {
namespace {

using namespace Qt::Literals::StringLiterals;

QByteArray ReadAll(const std::filesystem::path& path)
{
    QFile file(QString::fromStdString(path.string()));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

QString PathOf(const std::filesystem::path& path) { return QString::fromStdString(path.string()); }

TEST(SxCodeEditorFiles, SaveKeepsTheEncodingAndLineBreak)
{
    const struct {
        const char* name;
        std::string bytes;
        QString text;
    } cases[] = {
        {"UTF-8, LF", "a\xc3\xa9\nb", u"a\u00e9\nb"_s},
        {"UTF-8 with a mark, CR LF", "\xef\xbb\xbf" "a\r\nb\r\n", u"a\nb\n"_s},
        {"UTF-16LE, CR", std::string("\xff\xfe" "a\0\r\0b\0", 8), u"a\nb"_s},
        {"UTF-16BE", std::string("\xfe\xff\0a\0\n\xd8\x3d\xde\x00", 10), u"a\n\U0001F600"_s},
        {"Windows-1252", "caf\xe9 \x80\r\n", u"caf\u00e9 \u20ac\n"_s},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TempFolder folder;
        SxCodeEditor editor;
        ASSERT_TRUE(editor.load(PathOf(folder.Write("in.txt", c.bytes)))) << editor.errorString().toStdString();
        EXPECT_EQ(editor.text(), c.text);
        EXPECT_FALSE(editor.isModified());
        ASSERT_TRUE(editor.save(PathOf(folder.Path("out.txt"))));
        EXPECT_EQ(ReadAll(folder.Path("out.txt")), QByteArray::fromStdString(c.bytes));
    }
}

TEST(SxCodeEditorFiles, TextThatWindows1252CannotHoldIsSavedAsUtf8)
{
    TempFolder folder;
    SxCodeEditor editor;
    ASSERT_TRUE(editor.load(PathOf(folder.Write("in.txt", "caf\xe9"))));
    editor.insertText(0, 4, u"\u4e2d"_s);
    ASSERT_TRUE(editor.save(PathOf(folder.Path("in.txt"))));
    EXPECT_EQ(ReadAll(folder.Path("in.txt")), QByteArray("caf\xc3\xa9\xe4\xb8\xad"));
}

TEST(SxCodeEditorFiles, AFailedLoadKeepsTheText)
{
    TempFolder folder;
    const std::filesystem::path locked = folder.Write("locked.txt", "x");
    std::filesystem::permissions(locked, std::filesystem::perms::none);
    const struct {
        const char* name;
        std::filesystem::path path;
        const char* reason;
    } cases[] = {
        {"missing", folder.Path("none.txt"), "does not exist"},
        {"a folder", folder.Dir(), "folder"},
        {"no read permission", locked, "permission"},
        {"broken UTF-8 behind its mark", folder.Write("bad8.txt", "\xef\xbb\xbf" "a\xff"), "not valid UTF-8"},
        {"odd UTF-16", folder.Write("bad16.txt", "\xff\xfe" "a"), "not valid UTF-16LE"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.path == locked && geteuid() == 0)
            continue;  // the superuser reads any file
        SxCodeEditor editor;
        editor.setText(u"typed"_s);
        editor.insertText(0, 5, u"!"_s);
        EXPECT_FALSE(editor.load(PathOf(c.path)));
        EXPECT_TRUE(editor.errorString().contains(QLatin1String(c.reason))) << editor.errorString().toStdString();
        EXPECT_EQ(editor.text(), u"typed!"_s);
        EXPECT_TRUE(editor.isModified());
    }
}

/// Files may grow to a few bytes only while it lives: a disk that is full.
class DiskFull {
public:
    DiskFull()
    {
        getrlimit(RLIMIT_FSIZE, &FSaved);
        FSignal = std::signal(SIGXFSZ, SIG_IGN);  // a write past the limit fails instead of ending the process
        rlimit limit = FSaved;
        limit.rlim_cur = 16;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~DiskFull()
    {
        setrlimit(RLIMIT_FSIZE, &FSaved);
        std::signal(SIGXFSZ, FSignal);
    }

private:
    rlimit FSaved{};
    void (*FSignal)(int) = nullptr;
};

TEST(SxCodeEditorFiles, AFailedSaveLeavesTheFileWhole)
{
    TempFolder folder;
    SxCodeEditor editor;
    editor.setText(QString(1000, u'x'));
    editor.setModified(true);
    const std::filesystem::path old = folder.Write("old.txt", "old");
    {
        const DiskFull full;
        EXPECT_FALSE(editor.save(PathOf(old)));
    }
    EXPECT_EQ(ReadAll(old), QByteArray("old"));
    EXPECT_FALSE(editor.errorString().isEmpty());
    EXPECT_FALSE(editor.save(PathOf(folder.Path("no-such-folder") / "new.txt")));
    EXPECT_FALSE(editor.save(PathOf(folder.Dir())));
    EXPECT_TRUE(editor.isModified());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Dir()), {}), 1);  // no temporary file left
}

}  // namespace
}  // namespace sx::test
