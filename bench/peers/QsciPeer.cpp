// QScintilla as an application drives it: read() from the file, UTF-8, its
// Pascal lexer in the common font, findFirst/findNext and replace.
#include "PeerEditor.h"

#include <Qsci/qscilexerpascal.h>
#include <Qsci/qsciscintilla.h>

#include <QElapsedTimer>
#include <QFile>
#include <QScrollBar>

namespace peers {

namespace {

class QsciEditor : public PeerEditor {
public:
    QsciEditor() : FEdit(new QsciScintilla(Window()))
    {
        FEdit->setUtf8(true);
        auto* lexer = new QsciLexerPascal(FEdit);
        lexer->setDefaultFont(MonospaceFont());
        lexer->setFont(MonospaceFont());  // every style
        FEdit->setLexer(lexer);
        FEdit->setGeometry(0, 0, ViewWidth, ViewHeight);
        ShowWindow();
    }

    const char* Name() const override { return "QScintilla"; }
    QWidget* View() const override { return FEdit; }

    void Load(const QString& path) override
    {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            FEdit->read(&file);
    }
    void ScrollTo(int line) override { FEdit->verticalScrollBar()->setValue(line); }
    void PutCaret(int line, int column) override { FEdit->setCursorPosition(line, column); }

    int Find(const QString& word, bool caseSensitive) override
    {
        if (!FEdit->findFirst(word, false, caseSensitive, false, false))
            return -1;
        int line = 0, index = 0;
        FEdit->getCursorPosition(&line, &index);
        return line;
    }

    bool ReplaceAll(const QString& word, const QString& by, qint64 timeoutMs) override
    {
        QElapsedTimer clock;
        clock.start();
        FEdit->beginUndoAction();
        bool found = FEdit->findFirst(word, false, true, false, false);
        while (found && clock.elapsed() < timeoutMs) {
            FEdit->replace(by);
            found = FEdit->findNext();
        }
        FEdit->endUndoAction();
        return !found;
    }

    void Undo() override { FEdit->undo(); }

    int LineCount() const override { return FEdit->lines(); }
    QString LineText(int line) const override
    {
        QString text = FEdit->text(line);
        while (text.endsWith(u'\n') || text.endsWith(u'\r'))
            text.chop(1);
        return text;
    }

private:
    QsciScintilla* FEdit;
};

}  // namespace

std::unique_ptr<PeerEditor> MakeQsciEditor() { return std::make_unique<QsciEditor>(); }

}  // namespace peers
