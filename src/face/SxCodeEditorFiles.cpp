// SxCodeEditor's files: load() tells a file's encoding and line break and
// keeps them; save() writes them back, atomically.
#include "face/SxCodeEditor.h"

#include "codeedit/uSxCodeEdit.h"
#include "face/SxCodeEditorPrivate.h"
#include "platform/QtConvert.h"

#include <QFileInfo>
#include <QSaveFile>

using namespace sx;

namespace {

QString CodePageName(Integer codePage)
{
    switch (codePage) {
    case CodePages::Utf16LE:
        return QStringLiteral("UTF-16LE");
    case CodePages::Utf16BE:
        return QStringLiteral("UTF-16BE");
    case CodePages::Windows1252:
        return QStringLiteral("Windows-1252");
    default:
        return QStringLiteral("UTF-8");
    }
}

/// Why a path cannot be read, or empty when it can be tried.
QString UnreadableReason(const QFileInfo& info)
{
    if (!info.exists())
        return QObject::tr("the file does not exist");
    if (info.isDir())
        return QObject::tr("it is a folder");
    if (!info.isReadable())
        return QObject::tr("permission denied");
    return QString();
}

/// The text with the lines joined by the line break.
String JoinedLines(const TStringList& lines, const String& lineBreak)
{
    const Integer count = lines.Count();
    std::size_t size = lineBreak.size() * std::size_t(std::max(count - 1, 0));
    for (Integer i = 0; i < count; ++i)
        size += lines.Line(i).size();
    String text;
    text.reserve(size);
    for (Integer i = 0; i < count; ++i) {
        if (i > 0)
            text += lineBreak;
        lines.Line(i).AppendTo(text);
    }
    return text;
}

}  // namespace

bool SxCodeEditor::load(const QString& path)
{
    const QString reason = UnreadableReason(QFileInfo(path));
    if (!reason.isEmpty())
        return failWith(tr("Cannot open %1: %2.").arg(path, reason));
    TSxStringStream stream(CodePages::Utf16LE, 0);
    try {
        stream.LoadFromFile(FromQString(path), CodePages::Detect);
    } catch (const Exception& e) {
        return failWith(ToQString(e.Message()));
    }
    if (!stream.IsWellFormed())
        return failWith(tr("Cannot open %1: it is not valid %2 text.").arg(path, CodePageName(stream.CodePage())));
    // A file of one line keeps the line break of a new text.
    const String lineBreak = stream.FirstLineBreak();
    const FileFormat format{stream.CodePage(), stream.HasByteOrderMark(), lineBreak.empty() ? FileFormat().lineBreak : lineBreak};
    const bool endsWithLineBreak = stream.EndsWithLineBreak();
    const Reporter::Scope scope(*m_reporter, Reporter::Clean);
    m_edit->LoadFromStream(stream);
    // The line store drops a last line break; the empty line behind it keeps
    // it in text() and in the next save.
    if (endsWithLineBreak)
        m_edit->Lines().Add(String());
    *m_format = format;
    return true;
}

bool SxCodeEditor::save(const QString& path)
{
    TSxStringStream stream(CodePages::Utf16LE, 0);
    const String text = JoinedLines(m_edit->LineStore(), m_format->lineBreak);
    // A character that Windows-1252 cannot hold is kept: the file becomes UTF-8.
    if (!stream.SetWString(text, m_format->codePage, m_format->byteOrderMark))
        stream.SetWString(text, CodePages::Utf8, false);
    // The size is checked before the rename: a disk that fills up may take
    // part of the bytes and still report success.
    QSaveFile file(path);
    const TByteBuffer& bytes = stream.Bytes();
    const auto size = qint64(bytes.size());
    const bool written = file.open(QIODevice::WriteOnly) &&
                         file.write(reinterpret_cast<const char*>(bytes.data()), size) == size && file.flush() &&
                         file.size() == size;
    if (!written || !file.commit()) {
        const QString reason = file.error() != QFileDevice::NoError ? file.errorString() : tr("the disk is full");
        return failWith(tr("Cannot save %1: %2.").arg(path, reason));
    }
    m_format->codePage = stream.CodePage();
    const Reporter::Scope scope(*m_reporter, Reporter::Clean);
    return true;
}
