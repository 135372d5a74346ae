// SxCodeEditor: the code editor as a Qt widget. It owns one TSxCodeEdit and
// shows it as its only child, and speaks Qt to the application: QString text,
// line and column positions, properties, slots and signals.
#pragma once

#include <QFlags>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <cstdint>
#include <memory>

namespace sx {
class TSxCodeEdit;
}

/// A place in the text: a line and a column, both counted from 0. The caret
/// may stand beyond the end of its line.
struct SxTextPosition {
    /// Counted from 0.
    int line = 0;
    /// Counted from 0, in UTF-16 units.
    int column = 0;
    /// Same line and same column.
    friend bool operator==(const SxTextPosition&, const SxTextPosition&) = default;
};

/// A stretch of text from start up to end, start never behind end.
struct SxTextRange {
    /// Where the stretch begins.
    SxTextPosition start;
    /// Where it ends: the place behind its last character.
    SxTextPosition end;
    /// Whether the stretch holds no character.
    bool isEmpty() const { return start == end; }
    /// Same start and same end.
    friend bool operator==(const SxTextRange&, const SxTextRange&) = default;
};

/// The code editor widget: syntax colouring for Pascal, Visual Basic,
/// JavaScript, XML and SQL, with Qt's ways of working.
///
/// Lines and columns count from 0; a column counts UTF-16 units. `text()`
/// joins the lines with `"\n"`; `setText()` takes `"\n"`, `"\r\n"` or `"\r"`
/// between lines. The signals are emitted once per user action (a key, a click, a
/// command) or per call of this class, after the action is done, and never
/// from inside a paint. Changes made through control() are reported when the
/// widget next handles an event or a call.
class SxCodeEditor : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged USER true)
    Q_PROPERTY(QString language READ language WRITE setLanguage)
    Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly NOTIFY readOnlyChanged)
    Q_PROPERTY(bool modified READ isModified WRITE setModified NOTIFY modificationChanged)
    Q_PROPERTY(int tabWidth READ tabWidth WRITE setTabWidth)
    Q_PROPERTY(int rightMargin READ rightMargin WRITE setRightMargin)
    Q_PROPERTY(bool rightMarginVisible READ isRightMarginVisible WRITE setRightMarginVisible)
    Q_PROPERTY(bool gutterVisible READ isGutterVisible WRITE setGutterVisible)
    Q_PROPERTY(int gutterWidth READ gutterWidth WRITE setGutterWidth)
    Q_PROPERTY(bool lineNumbersVisible READ areLineNumbersVisible WRITE setLineNumbersVisible)
    Q_PROPERTY(bool currentLineHighlighted READ isCurrentLineHighlighted WRITE setCurrentLineHighlighted)
    Q_PROPERTY(bool bracketMatching READ isBracketMatching WRITE setBracketMatching)
    Q_PROPERTY(bool foldingEnabled READ isFoldingEnabled WRITE setFoldingEnabled)
    Q_PROPERTY(bool redoEnabled READ isRedoEnabled WRITE setRedoEnabled)
    Q_PROPERTY(bool undoGrouped READ isUndoGrouped WRITE setUndoGrouped)
    Q_PROPERTY(int undoLimit READ undoLimit WRITE setUndoLimit)
    Q_PROPERTY(QString theme READ theme WRITE setTheme)

public:
    /// How find() and replaceAll() match.
    enum FindFlag {
        FindBackward = 0x1,         ///< towards the start of the text
        FindCaseSensitively = 0x2,  ///< "a" does not match "A"
        FindWholeWords = 0x4,       ///< only a hit with no word character on either side
        FindWrapAround = 0x8,       ///< past one end of the text, go on from the other
        /// the text is a regular expression (PCRE2), which may match over
        /// lines; a replacement takes $0, $1, ${name}, \\n and \\t
        FindRegularExpression = 0x10,
    };
    Q_DECLARE_FLAGS(FindFlags, FindFlag)
    Q_FLAG(FindFlags)

    /// An editor with no text, colouring none until setLanguage().
    explicit SxCodeEditor(QWidget* parent = nullptr);
    ~SxCodeEditor() override;

    /// The whole text, its lines joined by `"\n"`.
    QString text() const;
    /// The lines of the text, without their line breaks.
    QStringList lines() const;
    /// How many lines the text has; a line break at its end adds no empty line.
    int lineCount() const;
    /// The text of one line, without its line break; empty past the last line.
    QString lineText(int line) const;
    /// Inserts text at a place; a column past the end of its line pads the
    /// line with blanks, a line past the last adds empty lines.
    void insertText(int line, int column, const QString& text);

    /// Where the caret stands.
    SxTextPosition cursorPosition() const;
    /// Moves the caret there and drops the selection; a negative line or column counts as 0.
    void setCursorPosition(int line, int column);
    /// The selected stretch, empty at the caret when nothing is selected.
    SxTextRange selection() const;
    /// Whether any text is selected.
    bool hasSelectedText() const;
    /// Selects from one place to another; the caret goes to the second.
    void setSelection(int fromLine, int fromColumn, int toLine, int toColumn);
    /// The selected text, its lines joined by `"\n"`; empty when nothing is selected.
    QString selectedText() const;

    /// The language names setLanguage() knows: "pascal", "vb", "js", "xml", "sql".
    static QStringList languages();
    /// The language of the colouring, empty for plain text.
    QString language() const;
    /// Colours the text as the named language (also a file suffix such as
    /// "pas" or "vbs"), or as plain text for an empty name; answers false,
    /// and changes nothing, for a name it does not know.
    bool setLanguage(const QString& name);
    /// Chooses the language by the file's suffix; plain text for any other.
    /// Answers whether a language was found.
    bool setLanguageForFile(const QString& path);

    /// Whether the text is kept from the user's edits.
    bool isReadOnly() const;
    /// Keeps the text from the user's edits or lets them in again; readOnlyChanged() reports a change.
    void setReadOnly(bool readOnly);
    /// Whether the text changed since it was set, loaded or saved.
    bool isModified() const;
    /// Marks the text changed or unchanged, as a save does; modificationChanged() reports a change.
    void setModified(bool modified);
    /// The columns a Tab key indents by.
    int tabWidth() const;
    /// 2 at first; a width below 1 counts as 1.
    void setTabWidth(int columns);
    /// The column of the right margin's line.
    int rightMargin() const;
    /// Column 80 at first; a negative column counts as 0.
    void setRightMargin(int column);
    /// Whether the right margin's line shows.
    bool isRightMarginVisible() const;
    /// Shows or hides the right margin's line; shown at first.
    void setRightMarginVisible(bool visible);
    /// Whether the gutter, the strip left of the text, shows.
    bool isGutterVisible() const;
    /// Shows or hides the gutter; shown at first.
    void setGutterVisible(bool visible);
    /// The gutter's width in pixels (its least width when line numbers show).
    int gutterWidth() const;
    /// 20 at first; a negative width counts as 0.
    void setGutterWidth(int pixels);
    /// Whether the gutter shows the line numbers, widening to fit them.
    bool areLineNumbersVisible() const;
    /// Shows or hides the line numbers; hidden at first.
    void setLineNumbersVisible(bool visible);
    /// Whether the caret's line is painted on a ground of its own.
    bool isCurrentLineHighlighted() const;
    /// Off at first.
    void setCurrentLineHighlighted(bool highlighted);
    /// The bracket at the caret and its partner highlighted; Ctrl+] jumps between them.
    bool isBracketMatching() const;
    /// Off at first.
    void setBracketMatching(bool matching);
    /// Regions of code (blocks, long comments, elements) fold from buttons in
    /// the gutter and by keys: Ctrl+Shift+[ and ] at the caret, Ctrl+Alt+[
    /// and ] everywhere. The language gives the regions.
    bool isFoldingEnabled() const;
    /// Off at first.
    void setFoldingEnabled(bool enabled);
    /// The first lines of the regions that can fold, in order.
    QList<int> foldRegionStarts() const;
    /// The last line that the region starting at line hides; -1 when no region starts there.
    int foldRegionEnd(int line) const;
    /// Whether the region that starts at line is folded.
    bool isFolded(int line) const;
    /// Whether line shows: false for a line that a folded region hides.
    bool isLineVisible(int line) const;
    /// Undone steps can be redone (Ctrl+Y, Ctrl+Shift+Z, redo()).
    bool isRedoEnabled() const;
    /// Off at first, as in the classic control.
    void setRedoEnabled(bool enabled);
    /// A run of typing or of Backspaces undoes as one step.
    bool isUndoGrouped() const;
    /// Off at first: each typed character undoes alone.
    void setUndoGrouped(bool grouped);
    /// The most undo steps kept; 0 keeps all that memory holds.
    int undoLimit() const;
    /// 100 at first; a negative number counts as 0.
    void setUndoLimit(int steps);
    /// The colour theme last set through this widget: "Classic" at first.
    QString theme() const;
    /// Applies a bundled theme ("Classic", "Light", "Dark") or a theme file.
    /// The language colours are shared by every editor of the process; the
    /// editor's own colours change on this one. Answers false, with
    /// errorString(), when the file cannot be read.
    bool setTheme(const QString& nameOrFile);

    /// Whether undo() has a step to take back.
    bool canUndo() const;
    /// Whether redo() has a step to play again; never without redoEnabled.
    bool canRedo() const;
    /// Whether paste() would insert: the editor is not read-only and the clipboard holds text.
    bool canPaste() const;

    /// Reads a text file, telling its encoding (a byte-order mark of UTF-8 or
    /// UTF-16, otherwise UTF-8 when valid and Windows-1252 when not) and its
    /// line break. On failure answers false, keeps the text as it was and
    /// leaves a message in errorString().
    bool load(const QString& path);
    /// Writes the text in the encoding and with the line break of the file
    /// loaded last (UTF-8 with `"\n"` otherwise). The file is written beside
    /// the target and renamed over it, so a failed save leaves the old file
    /// whole. A text that Windows-1252 cannot hold is written as UTF-8.
    bool save(const QString& path);
    /// The message of the last load(), save(), setTheme(), find() or replaceAll() that failed.
    QString errorString() const;

    /// Room for 80 columns and 25 lines of text besides the gutter and the scroll bars.
    QSize sizeHint() const override;
    /// Room for 10 columns and 3 lines of text.
    QSize minimumSizeHint() const override;

    /// The control itself, for its full interface.
    sx::TSxCodeEdit* control() const;

public slots:
    /// Replaces the whole text, puts the caret at its start and marks it unmodified.
    void setText(const QString& text);
    /// Takes back the last step of the undo list.
    void undo();
    /// Plays the step undone last again; does nothing without redoEnabled.
    void redo();
    /// Moves the selected text to the clipboard.
    void cut();
    /// Copies the selected text to the clipboard.
    void copy();
    /// Puts the clipboard's text in place of the selection, or at the caret.
    void paste();
    /// Selects the whole text; the caret goes to its end.
    void selectAll();
    /// Removes all text.
    void clear();
    /// Selects the next hit of text from the caret on; answers whether there
    /// was one. A regular expression that does not compile, or runs away,
    /// finds nothing and leaves PCRE2's message in errorString().
    bool find(const QString& text, SxCodeEditor::FindFlags flags = {});
    /// find() again with the text and flags of the last find().
    bool findNext();
    /// Replaces every hit in the text, from its start on; answers how many.
    /// With undoGrouped they undo as one step, otherwise one step each. A
    /// regular expression that runs away stops it there, with errorString().
    int replaceAll(const QString& text, const QString& replacement, SxCodeEditor::FindFlags flags = {});
    /// Opens the find dialog, as Ctrl+F does.
    void showFindDialog();
    /// Opens the replace dialog, as Ctrl+R does.
    void showReplaceDialog();
    /// Puts the caret at the start of a line (from 0) and scrolls it into view.
    void gotoLine(int line);
    /// Folds the region that starts at line, or else the innermost one that holds it.
    void fold(int line);
    /// Unfolds the region folded at line, or those that hide it.
    void unfold(int line);
    /// Unfolds the region folded at line, or else folds as fold() does.
    void toggleFold(int line);
    /// Folds every region of the text.
    void foldAll();
    /// Unfolds every folded region.
    void unfoldAll();

signals:
    /// The text changed, by the user or by a call.
    void textChanged();
    /// isModified() changed to modified.
    void modificationChanged(bool modified);
    /// The caret moved to line and column.
    void cursorPositionChanged(int line, int column);
    /// The selected stretch changed, appeared or went.
    void selectionChanged();
    /// isReadOnly() changed to readOnly.
    void readOnlyChanged(bool readOnly);
    /// Regions folded or unfolded, by the user, a call or an edit that reached a hidden line.
    void foldingChanged();

protected:
    /// Passes a change of the widget's font on to the control.
    void changeEvent(QEvent* event) override;

private:
    class Reporter;
    friend class Reporter;
    struct FileFormat;
    struct FindState;

    bool failWith(const QString& message);
    /// The widget's size for a text area of so many columns and lines.
    QSize sizeFor(int columns, int lines) const;
    void applyFont();
    bool extOption(int option) const;
    void setExtOption(int option, bool on);

    sx::TSxCodeEdit* m_edit;
    std::unique_ptr<Reporter> m_reporter;
    std::unique_ptr<FileFormat> m_format;
    std::unique_ptr<FindState> m_find;
    QString m_language;
    QString m_theme;
    QString m_error;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(SxCodeEditor::FindFlags)
