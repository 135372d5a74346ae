// Qt's QPlainTextEdit as an application drives it, without line wrapping as
// a code view is, with a small QSyntaxHighlighter for Pascal keywords,
// strings and the three kinds of comment.
#include "PeerEditor.h"

#include <QElapsedTimer>
#include <QFile>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSet>
#include <QSyntaxHighlighter>
#include <QTextBlock>
#include <QTextDocument>

namespace peers {

namespace {

class PascalHighlighter : public QSyntaxHighlighter {
public:
    explicit PascalHighlighter(QTextDocument* document) : QSyntaxHighlighter(document)
    {
        FKeyword.setForeground(Qt::darkBlue);
        FKeyword.setFontWeight(QFont::Bold);
        FString.setForeground(Qt::darkRed);
        FComment.setForeground(Qt::darkGreen);
        FComment.setFontItalic(true);
        for (const char* word :
             {"and",      "array",     "as",        "begin",     "case",   "class",     "const",   "constructor",
              "destructor", "div",     "do",        "downto",    "else",   "end",       "except",  "finally",
              "for",      "function",  "if",        "implementation", "in", "inherited", "interface", "is",
              "mod",      "nil",       "not",       "of",        "or",     "private",   "procedure", "property",
              "protected", "public",   "published", "read",      "record", "repeat",    "shl",     "shr",
              "string",   "then",      "to",        "try",       "type",   "unit",      "until",   "uses",
              "var",      "while",     "with",      "write",     "xor"})
            FKeywords.insert(QString::fromLatin1(word));
    }

protected:
    enum State { Code = 0, InBraceComment = 1, InParenComment = 2 };

    void highlightBlock(const QString& text) override
    {
        int state = std::max(previousBlockState(), 0);
        const auto n = int(text.size());
        int i = 0;
        while (i < n) {
            if (state != Code) {
                const QString close = state == InBraceComment ? QStringLiteral("}") : QStringLiteral("*)");
                const auto end = int(text.indexOf(close, i));
                const int stop = end < 0 ? n : end + int(close.size());
                setFormat(i, stop - i, FComment);
                i = stop;
                state = end < 0 ? state : Code;
                continue;
            }
            const QChar c = text[i];
            const QChar next = i + 1 < n ? text[i + 1] : QChar();
            if (c == u'{' || (c == u'(' && next == u'*')) {
                state = c == u'{' ? InBraceComment : InParenComment;
                setFormat(i, c == u'{' ? 1 : 2, FComment);
                i += c == u'{' ? 1 : 2;
            } else if (c == u'/' && next == u'/') {
                setFormat(i, n - i, FComment);
                i = n;
            } else if (c == u'\'') {
                const auto end = int(text.indexOf(u'\'', i + 1));
                const int stop = end < 0 ? n : end + 1;
                setFormat(i, stop - i, FString);
                i = stop;
            } else if (c.isLetter() || c == u'_') {
                int stop = i + 1;
                while (stop < n && (text[stop].isLetterOrNumber() || text[stop] == u'_'))
                    ++stop;
                if (FKeywords.contains(text.mid(i, stop - i).toLower()))
                    setFormat(i, stop - i, FKeyword);
                i = stop;
            } else {
                ++i;
            }
        }
        setCurrentBlockState(state);
    }

private:
    QSet<QString> FKeywords;
    QTextCharFormat FKeyword;
    QTextCharFormat FString;
    QTextCharFormat FComment;
};

class PlainEditor : public PeerEditor {
public:
    PlainEditor() : FEdit(new QPlainTextEdit(Window()))
    {
        FEdit->setFont(MonospaceFont());
        FEdit->setLineWrapMode(QPlainTextEdit::NoWrap);
        new PascalHighlighter(FEdit->document());
        FEdit->setGeometry(0, 0, ViewWidth, ViewHeight);
        ShowWindow();
    }

    const char* Name() const override { return "QPlainTextEdit"; }
    QWidget* View() const override { return FEdit; }

    void Load(const QString& path) override
    {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            FEdit->setPlainText(QString::fromUtf8(file.readAll()));
    }
    void ScrollTo(int line) override { FEdit->verticalScrollBar()->setValue(line); }
    void PutCaret(int line, int column) override
    {
        const QTextBlock block = FEdit->document()->findBlockByNumber(line);
        QTextCursor cursor(block);
        cursor.setPosition(block.position() + std::min(column, block.length() - 1));
        FEdit->setTextCursor(cursor);
    }

    int Find(const QString& word, bool caseSensitive) override
    {
        const auto flags = caseSensitive ? QTextDocument::FindCaseSensitively : QTextDocument::FindFlags();
        return FEdit->find(word, flags) ? FEdit->textCursor().blockNumber() : -1;
    }

    bool ReplaceAll(const QString& word, const QString& by, qint64 timeoutMs) override
    {
        QElapsedTimer clock;
        clock.start();
        QTextDocument* document = FEdit->document();
        QTextCursor edit(document);
        edit.beginEditBlock();  // one undo step, one change signal at the end
        QTextCursor hit = document->find(word, FEdit->textCursor(), QTextDocument::FindCaseSensitively);
        while (!hit.isNull() && clock.elapsed() < timeoutMs) {
            hit.insertText(by);
            hit = document->find(word, hit, QTextDocument::FindCaseSensitively);
        }
        edit.endEditBlock();
        return hit.isNull();
    }

    void Undo() override { FEdit->undo(); }

    int LineCount() const override { return FEdit->document()->blockCount(); }
    QString LineText(int line) const override { return FEdit->document()->findBlockByNumber(line).text(); }

private:
    QPlainTextEdit* FEdit;
};

}  // namespace

std::unique_ptr<PeerEditor> MakePlainEditor() { return std::make_unique<PlainEditor>(); }

}  // namespace peers
