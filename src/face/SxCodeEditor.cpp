// SxCodeEditor: the widget around the control, its text, caret, selection,
// properties and commands, and the signals that report what changed.
#include "face/SxCodeEditor.h"

#include "codeedit/SxPackage.h"
#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodeEditTheme.h"
#include "face/SxCodeEditorPrivate.h"
#include "face/SxLanguages.h"
#include "platform/Clipboard.h"
#include "platform/PostedMessages.h"
#include "platform/QtConvert.h"

#include <QEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <climits>

using namespace sx;

namespace {

/// The package is started once, by the first editor of the process; the
/// parser classes it registers stay for the process's life.
void EnsurePackageStarted()
{
    static const bool started = [] {
        sx::Initialize();
        return true;
    }();
    (void)started;
}

/// The columns and lines a new editor asks room for.
constexpr int HintColumns = 80;
constexpr int HintLines = 25;
constexpr int MinimumHintColumns = 10;
constexpr int MinimumHintLines = 3;

std::u16string_view ViewOf(const QString& text)
{
    return std::u16string_view(reinterpret_cast<const Char*>(text.utf16()), std::size_t(text.size()));
}

TPoint PointOf(int line, int column) { return Point(std::max(column, 0), std::max(line, 0)); }

SxTextPosition PositionOf(TPoint point) { return SxTextPosition{point.Y, point.X}; }

bool Before(TPoint a, TPoint b) { return a.Y < b.Y || (a.Y == b.Y && a.X < b.X); }

}  // namespace

SxCodeEditor::SxCodeEditor(QWidget* parent) : QWidget(parent)
{
    EnsurePackageStarted();
    m_edit = new TSxCodeEdit(nullptr);  // freed with its widget, a child of this one
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_edit->Widget());
    setFocusProxy(m_edit->Widget());
    m_reporter = std::make_unique<Reporter>(*this);
    m_format = std::make_unique<FileFormat>();
    m_find = std::make_unique<FindState>();
    m_edit->OnEventHandled = [this](TObject*) { m_reporter->EventHandled(); };
    m_edit->SetOnFoldChange([this](TObject*) { m_reporter->FoldingChanged(); });
    // The widget's font property tells the control's font from the start.
    QWidget::setFont(m_edit->Font().QtFont());
    m_theme = QStringLiteral("Classic");
}

SxCodeEditor::~SxCodeEditor()
{
    // The control goes with its widget, a child of this one, after this body:
    // it must not call back into a half-destroyed editor.
    m_edit->OnEventHandled = nullptr;
    m_edit->SetOnFoldChange(nullptr);
}

TSxCodeEdit* SxCodeEditor::control() const { return m_edit; }

QString SxCodeEditor::text() const
{
    const TSxCodeEditLines& lines = m_edit->LineStore();
    const Integer count = lines.Count();
    qsizetype size = std::max<qsizetype>(count - 1, 0);
    for (Integer i = 0; i < count; ++i)
        size += qsizetype(lines.Line(i).size());
    QString text;
    text.reserve(size);
    for (Integer i = 0; i < count; ++i) {
        if (i > 0)
            text += QLatin1Char('\n');
        const TLineView line = lines.Line(i);
        if (const Byte* narrow = line.NarrowData())
            text += QLatin1StringView(reinterpret_cast<const char*>(narrow), qsizetype(line.size()));
        else
            text += QStringView(reinterpret_cast<const QChar*>(line.WideData()), qsizetype(line.size()));
    }
    return text;
}

void SxCodeEditor::setText(const QString& text)
{
    const Reporter::Scope scope(*m_reporter, Reporter::Clean);
    m_edit->SetTextView(ViewOf(text));
}

QStringList SxCodeEditor::lines() const
{
    QStringList lines;
    const Integer count = m_edit->LineStore().Count();
    lines.reserve(count);
    for (Integer i = 0; i < count; ++i)
        lines << lineText(i);
    return lines;
}

int SxCodeEditor::lineCount() const { return m_edit->LineStore().Count(); }

QString SxCodeEditor::lineText(int line) const
{
    if (line < 0 || line >= lineCount())
        return QString();
    const TLineView view = m_edit->LineStore().Line(line);
    if (const Byte* narrow = view.NarrowData())
        return QString::fromLatin1(reinterpret_cast<const char*>(narrow), qsizetype(view.size()));
    return QString(reinterpret_cast<const QChar*>(view.WideData()), qsizetype(view.size()));
}

void SxCodeEditor::insertText(int line, int column, const QString& text)
{
    const Reporter::Scope scope(*m_reporter);
    m_edit->InsertCode(std::max(line, 0), std::max(column, 0), FromQString(text));
}

SxTextPosition SxCodeEditor::cursorPosition() const { return SxTextPosition{m_edit->LinePos(), m_edit->CharPos()}; }

void SxCodeEditor::setCursorPosition(int line, int column)
{
    const Reporter::Scope scope(*m_reporter);
    const TPoint to = PointOf(line, column);
    m_edit->SetLinePos(to.Y);
    m_edit->SetCharPos(to.X);
    m_edit->ClearSelection();
}

SxTextRange SxCodeEditor::selection() const
{
    if (!m_edit->HasSelection())
        return SxTextRange{cursorPosition(), cursorPosition()};
    TPoint first = m_edit->SelStart(), last = m_edit->SelEnd();
    if (Before(last, first))
        std::swap(first, last);
    return SxTextRange{PositionOf(first), PositionOf(last)};
}

bool SxCodeEditor::hasSelectedText() const { return m_edit->HasSelection(); }

void SxCodeEditor::setSelection(int fromLine, int fromColumn, int toLine, int toColumn)
{
    const Reporter::Scope scope(*m_reporter);
    const TPoint from = PointOf(fromLine, fromColumn), to = PointOf(toLine, toColumn);
    // Each caret move collapses the selection, so its ends are set behind them.
    m_edit->SetLinePos(to.Y);
    m_edit->SetCharPos(to.X);
    m_edit->SetSelStart(from);
    m_edit->SetSelEnd(Point(to.X, m_edit->LinePos()));
}

QString SxCodeEditor::selectedText() const
{
    String selected;
    m_edit->GetSelected(selected);
    QString text = ToQString(selected);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return text;
}

QStringList SxCodeEditor::languages() { return LanguageNames(); }

QString SxCodeEditor::language() const { return m_language; }

bool SxCodeEditor::setLanguage(const QString& name)
{
    const QString language = LanguageNamed(name);
    if (language.isEmpty() && !name.trimmed().isEmpty())
        return false;
    m_edit->SetParser(language.isEmpty() ? nullptr : ParserForLanguage(language, m_edit));
    m_language = language;
    return true;
}

bool SxCodeEditor::setLanguageForFile(const QString& path)
{
    setLanguage(LanguageOfFile(path));
    return !m_language.isEmpty();
}

bool SxCodeEditor::isReadOnly() const { return m_edit->ReadOnly(); }

void SxCodeEditor::setReadOnly(bool readOnly)
{
    const Reporter::Scope scope(*m_reporter);
    m_edit->SetReadOnly(readOnly);
}

bool SxCodeEditor::isModified() const { return m_reporter->Modified(); }

void SxCodeEditor::setModified(bool modified)
{
    const Reporter::Scope scope(*m_reporter, modified ? Reporter::Dirty : Reporter::Clean);
}

int SxCodeEditor::tabWidth() const { return m_edit->TabIndentSize(); }

void SxCodeEditor::setTabWidth(int columns) { m_edit->SetTabIndentSize(std::max(columns, 1)); }

int SxCodeEditor::rightMargin() const { return m_edit->RightMargin(); }

void SxCodeEditor::setRightMargin(int column) { m_edit->SetRightMargin(std::max(column, 0)); }

bool SxCodeEditor::isRightMarginVisible() const { return m_edit->ShowRightMargin(); }

void SxCodeEditor::setRightMarginVisible(bool visible) { m_edit->SetShowRightMargin(visible); }

bool SxCodeEditor::isGutterVisible() const { return m_edit->ShowGuttor(); }

void SxCodeEditor::setGutterVisible(bool visible) { m_edit->SetShowGuttor(visible); }

int SxCodeEditor::gutterWidth() const { return m_edit->GuttorWidth(); }

void SxCodeEditor::setGutterWidth(int pixels) { m_edit->SetGuttorWidth(std::max(pixels, 0)); }

bool SxCodeEditor::extOption(int option) const { return m_edit->HasExtOption(TSxCodeExtOption(option)); }

void SxCodeEditor::setExtOption(int option, bool on)
{
    TSxCodeExtOptions options = m_edit->ExtOptions();
    if (on)
        options.Include(TSxCodeExtOption(option));
    else
        options.Exclude(TSxCodeExtOption(option));
    m_edit->SetExtOptions(options);
}

bool SxCodeEditor::areLineNumbersVisible() const { return extOption(int(TSxCodeExtOption::coLineNumbers)); }

void SxCodeEditor::setLineNumbersVisible(bool visible) { setExtOption(int(TSxCodeExtOption::coLineNumbers), visible); }

bool SxCodeEditor::isCurrentLineHighlighted() const { return extOption(int(TSxCodeExtOption::coCurrentLine)); }

void SxCodeEditor::setCurrentLineHighlighted(bool highlighted)
{
    setExtOption(int(TSxCodeExtOption::coCurrentLine), highlighted);
}

bool SxCodeEditor::isBracketMatching() const { return extOption(int(TSxCodeExtOption::coBracketMatch)); }

void SxCodeEditor::setBracketMatching(bool matching) { setExtOption(int(TSxCodeExtOption::coBracketMatch), matching); }

bool SxCodeEditor::isRedoEnabled() const { return extOption(int(TSxCodeExtOption::coRedo)); }

void SxCodeEditor::setRedoEnabled(bool enabled) { setExtOption(int(TSxCodeExtOption::coRedo), enabled); }

bool SxCodeEditor::isUndoGrouped() const { return extOption(int(TSxCodeExtOption::coGroupUndo)); }

void SxCodeEditor::setUndoGrouped(bool grouped) { setExtOption(int(TSxCodeExtOption::coGroupUndo), grouped); }

int SxCodeEditor::undoLimit() const { return m_edit->UndoLimit(); }

void SxCodeEditor::setUndoLimit(int steps) { m_edit->SetUndoLimit(std::max(steps, 0)); }

QString SxCodeEditor::theme() const { return m_theme; }

bool SxCodeEditor::setTheme(const QString& nameOrFile)
{
    TSxCodeEditTheme theme;
    if (nameOrFile.compare(QLatin1String("Classic"), Qt::CaseInsensitive) == 0)
        theme = TSxCodeEditTheme::Classic();
    else if (nameOrFile.compare(QLatin1String("Light"), Qt::CaseInsensitive) == 0)
        theme = TSxCodeEditTheme::Light();
    else if (nameOrFile.compare(QLatin1String("Dark"), Qt::CaseInsensitive) == 0)
        theme = TSxCodeEditTheme::Dark();
    else {
        try {
            theme = TSxCodeEditTheme::Current(m_edit);
            theme.LoadFromFile(FromQString(nameOrFile));
        } catch (const Exception& e) {
            return failWith(ToQString(e.Message()));
        }
    }
    ApplyTheme(theme);
    theme.ApplyTo(*m_edit);
    m_theme = theme.Name.empty() ? nameOrFile : ToQString(theme.Name);
    return true;
}

bool SxCodeEditor::canUndo() const { return m_edit->CanUndo(); }

bool SxCodeEditor::canRedo() const { return m_edit->CanRedo(); }

bool SxCodeEditor::canPaste() const { return !isReadOnly() && Clipboard().HasText(); }

QString SxCodeEditor::errorString() const { return m_error; }

bool SxCodeEditor::failWith(const QString& message)
{
    m_error = message;
    return false;
}

QSize SxCodeEditor::sizeHint() const { return sizeFor(HintColumns, HintLines); }

QSize SxCodeEditor::minimumSizeHint() const { return sizeFor(MinimumHintColumns, MinimumHintLines); }

QSize SxCodeEditor::sizeFor(int columns, int lines) const
{
    return QSize(m_edit->RealGuttorWidth() + columns * m_edit->GetCharWidth() + m_edit->VScrollBar().Width(),
                 lines * m_edit->GetLineWidth() + m_edit->HScrollBar().Height());
}

void SxCodeEditor::undo()
{
    const Reporter::Scope scope(*m_reporter);
    SendMessage(m_edit, WM_UNDO);
}

void SxCodeEditor::redo()
{
    const Reporter::Scope scope(*m_reporter);
    if (m_edit->CanRedo())
        SendMessage(m_edit, uSxCodeEdit::WM_SX_REDO);
}

void SxCodeEditor::cut()
{
    const Reporter::Scope scope(*m_reporter);
    SendMessage(m_edit, WM_CUT);
}

void SxCodeEditor::copy() { SendMessage(m_edit, WM_COPY); }

void SxCodeEditor::paste()
{
    const Reporter::Scope scope(*m_reporter);
    SendMessage(m_edit, WM_PASTE);
}

void SxCodeEditor::selectAll()
{
    const Reporter::Scope scope(*m_reporter);
    m_edit->SelectAll();
}

void SxCodeEditor::clear()
{
    const Reporter::Scope scope(*m_reporter);
    m_edit->SetTextView(std::u16string_view());
}

void SxCodeEditor::showFindDialog()
{
    const Reporter::Scope scope(*m_reporter);
    SendMessage(m_edit, uSxCodeEdit::WM_SX_SEARCHREPLACEDLG);
}

void SxCodeEditor::showReplaceDialog()
{
    const Reporter::Scope scope(*m_reporter);
    SendMessage(m_edit, uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, uSxCodeEdit::ReplaceDialogRequest);
}

void SxCodeEditor::gotoLine(int line)
{
    const Reporter::Scope scope(*m_reporter);
    m_edit->SetLinePos(std::clamp(line, 0, std::max(lineCount() - 1, 0)));
    m_edit->SetCharPos(0);
    m_edit->ClearSelection();
}

void SxCodeEditor::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange)
        applyFont();
    QWidget::changeEvent(event);
}

void SxCodeEditor::applyFont()
{
    const QFont& wanted = font();
    TFont& font = m_edit->Font();
    font.SetName(FromQString(wanted.family()));
    if (wanted.pointSize() > 0)
        font.SetSize(wanted.pointSize());
    TFontStyles style;
    if (wanted.bold())
        style.Include(TFontStyle::fsBold);
    if (wanted.italic())
        style.Include(TFontStyle::fsItalic);
    font.SetStyle(style);
}
