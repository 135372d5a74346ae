// Screen reader support through Qt's accessibility: the accessible interface
// over a control's TAccessibleText, the factory through which Qt finds it,
// whether a screen reader listens, the events a control sends, and the
// deferral of its reports to the end of the event loop's turn.
#include "platform/Accessibility.h"

#include "platform/Controls.h"
#include "platform/QtConvert.h"

#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QWidget>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace sx {

namespace {

/// An offset for Qt, which counts in int.
int ToInt(TTextOffset offset) { return int(std::min<TTextOffset>(offset, std::numeric_limits<int>::max())); }

TTextUnit UnitOf(QAccessible::TextBoundaryType type)
{
    switch (type) {
    case QAccessible::CharBoundary: return TTextUnit::tuCharacter;
    case QAccessible::WordBoundary: return TTextUnit::tuWord;
    case QAccessible::SentenceBoundary: return TTextUnit::tuSentence;
    case QAccessible::ParagraphBoundary: return TTextUnit::tuParagraph;
    case QAccessible::LineBoundary: return TTextUnit::tuLine;
    case QAccessible::NoBoundary: break;
    }
    return TTextUnit::tuWholeText;
}

/// The accessible text of the control whose window the widget is, if it
/// offers one; none once the control is being freed.
TAccessibleText* TextOf(const QWidget* widget)
{
    TWinControl* control = FindControl(widget);
    return control ? control->AccessibleText() : nullptr;
}

/// What Qt hands to screen readers for the window of a control that offers
/// an accessible text. Qt owns it; it asks the control for its text at each
/// question, so that it answers nothing once the control is gone.
class AccessibleTextWidget final : public QAccessibleWidget,
                                   public QAccessibleTextInterface,
                                   public QAccessibleEditableTextInterface {
public:
    explicit AccessibleTextWidget(QWidget* widget) : QAccessibleWidget(widget, QAccessible::EditableText) {}

    bool isValid() const override { return QAccessibleWidget::isValid() && Text(); }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface)
            return static_cast<QAccessibleEditableTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectableText = true;
        state.focusable = true;
        if (TAccessibleText* text = Text()) {
            const bool readOnly = text->ReadOnly();
            state.multiLine = text->MultiLine();
            state.readOnly = readOnly;
            state.editable = !readOnly;
        }
        return state;
    }

    QString text(QAccessible::Text t) const override
    {
        if (TAccessibleText* text = Text(); text && t == QAccessible::Value)
            return ToQString(text->TextBetween(0, text->CharacterCount()));
        return QAccessibleWidget::text(t);
    }

    // QAccessibleTextInterface

    int characterCount() const override { return Text() ? ToInt(Text()->CharacterCount()) : 0; }

    QString text(int startOffset, int endOffset) const override
    {
        return Text() ? ToQString(Text()->TextBetween(startOffset, endOffset)) : QString();
    }

    int cursorPosition() const override { return Text() ? ToInt(Text()->CaretOffset()) : 0; }

    void setCursorPosition(int position) override
    {
        if (TAccessibleText* text = Text())
            text->SetCaretOffset(position);
    }

    int selectionCount() const override { return Text() && !Text()->Selection().Empty() ? 1 : 0; }

    void selection(int selectionIndex, int* startOffset, int* endOffset) const override
    {
        *startOffset = *endOffset = 0;
        if (!Text() || selectionIndex != 0)
            return;
        if (const TTextRange range = Text()->Selection(); !range.Empty()) {
            *startOffset = ToInt(range.Start);
            *endOffset = ToInt(range.End);
        }
    }

    /// A control holds one selection: adding one replaces it.
    void addSelection(int startOffset, int endOffset) override { setSelection(0, startOffset, endOffset); }

    void removeSelection(int selectionIndex) override
    {
        if (TAccessibleText* text = Text(); text && selectionIndex == 0)
            text->RemoveSelection();
    }

    /// The caret goes to the end offset, the anchor stays at the start offset.
    void setSelection(int selectionIndex, int startOffset, int endOffset) override
    {
        if (TAccessibleText* text = Text(); text && selectionIndex == 0)
            text->SetSelection(startOffset, endOffset);
    }

    QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                         int* endOffset) const override
    {
        *startOffset = *endOffset = -1;
        TAccessibleText* text = Text();
        if (!text)
            return QString();
        if (type == QAccessible::NoBoundary)
            return Answer(*text, {0, text->CharacterCount()}, startOffset, endOffset);
        TTextRange unit;
        if (!text->UnitAt(Resolved(*text, offset), UnitOf(type), unit))
            return QString();
        return Answer(*text, unit, startOffset, endOffset);
    }

    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                             int* endOffset) const override
    {
        *startOffset = *endOffset = -1;
        TAccessibleText* text = Text();
        if (!text || type == QAccessible::NoBoundary)
            return QString();
        const TTextOffset at = Resolved(*text, offset);
        TTextRange unit;
        const TTextOffset unitStart = text->UnitAt(at, UnitOf(type), unit) ? unit.Start : at;
        if (unitStart <= 0 || !text->UnitAt(unitStart - 1, UnitOf(type), unit))
            return QString();
        return Answer(*text, unit, startOffset, endOffset);
    }

    QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                            int* endOffset) const override
    {
        *startOffset = *endOffset = -1;
        TAccessibleText* text = Text();
        if (!text || type == QAccessible::NoBoundary)
            return QString();
        TTextRange unit;
        if (!text->UnitAt(Resolved(*text, offset), UnitOf(type), unit) ||
            !text->UnitAt(unit.End, UnitOf(type), unit))
            return QString();
        return Answer(*text, unit, startOffset, endOffset);
    }

    QRect characterRect(int offset) const override
    {
        TAccessibleText* text = Text();
        if (!text || offset < 0)
            return QRect();
        const TRect cell = text->CharacterRect(offset);
        return QRect(widget()->mapToGlobal(QPoint(cell.Left, cell.Top)), QSize(cell.Width(), cell.Height()));
    }

    int offsetAtPoint(const QPoint& point) const override
    {
        TAccessibleText* text = Text();
        if (!text)
            return -1;
        const QPoint local = widget()->mapFromGlobal(point);
        if (!widget()->rect().contains(local))
            return -1;
        return ToInt(text->OffsetAtPoint(Point(local.x(), local.y())));
    }

    void scrollToSubstring(int startIndex, int endIndex) override
    {
        if (TAccessibleText* text = Text())
            text->ScrollToRange(startIndex, endIndex);
    }

    /// The framework knows no text attributes: there are none to give.
    QString attributes(int offset, int* startOffset, int* endOffset) const override
    {
        *startOffset = *endOffset = offset;
        return QString();
    }

    // QAccessibleEditableTextInterface

    void deleteText(int startOffset, int endOffset) override
    {
        if (TAccessibleText* text = Text())
            text->DeleteText(startOffset, endOffset);
    }

    void insertText(int offset, const QString& inserted) override
    {
        if (TAccessibleText* text = Text())
            text->InsertText(offset, FromQString(inserted));
    }

    void replaceText(int startOffset, int endOffset, const QString& replacement) override
    {
        if (TAccessibleText* text = Text())
            text->ReplaceText(startOffset, endOffset, FromQString(replacement));
    }

private:
    TAccessibleText* Text() const { return TextOf(widget()); }

    /// -1 stands for the end of the text.
    static TTextOffset Resolved(TAccessibleText& text, int offset)
    {
        return offset == -1 ? text.CharacterCount() : offset;
    }

    static QString Answer(TAccessibleText& text, TTextRange unit, int* startOffset, int* endOffset)
    {
        *startOffset = ToInt(unit.Start);
        *endOffset = ToInt(unit.End);
        return ToQString(text.TextBetween(unit.Start, unit.End));
    }
};

QAccessibleInterface* AccessibleTextFactory(const QString&, QObject* object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    auto* widget = static_cast<QWidget*>(object);
    return TextOf(widget) ? new AccessibleTextWidget(widget) : nullptr;
}

// ---------------------------------------------------------------------------
// Whether a screen reader listens, and how events reach it.

/// Follows QAccessible::setActive, which the platform's bridge calls when a
/// screen reader comes or goes, and which an application may call too.
class ActivityWatch : public QAccessible::ActivationObserver {
public:
    void accessibilityActiveChanged(bool active) override { Active = active; }
    bool Active = QAccessible::isActive();
};

/// Made at installation and kept for the life of the process, since Qt may
/// still report to it while the application shuts down.
ActivityWatch* Watch = nullptr;

/// QAccessible::updateAccessibility passes events on only while the
/// platform's bridge is active; an update handler that an application
/// installed and switched on through QAccessible::setActive hears them
/// without a bridge too.
void Send(QAccessibleEvent& event)
{
    if (QAccessible::isActive()) {
        QAccessible::updateAccessibility(&event);
        return;
    }
    const QAccessible::UpdateHandler handler = QAccessible::installUpdateHandler(nullptr);
    QAccessible::installUpdateHandler(handler);
    if (handler)
        handler(&event);
}

/// The control's window, when a screen reader listens and there is one.
QWidget* ListenedWindow(TWinControl& control) { return AccessibilityActive() ? control.Widget() : nullptr; }

// ---------------------------------------------------------------------------
// Reports that wait for the end of the event loop's turn.

struct WaitingReport {
    const void* Key;
    /// Tells this report from a later one of the same Key.
    std::uint64_t Serial;
    std::function<void()> Report;
};

std::vector<WaitingReport>& WaitingReports()
{
    static std::vector<WaitingReport> reports;
    return reports;
}

void RunWaitingReport(std::uint64_t serial)
{
    auto& reports = WaitingReports();
    const auto it = std::find_if(reports.begin(), reports.end(),
                                 [serial](const WaitingReport& waiting) { return waiting.Serial == serial; });
    if (it == reports.end())
        return;
    const std::function<void()> report = std::move(it->Report);
    reports.erase(it);
    report();
}

}  // namespace

void InstallAccessibility()
{
    if (Watch)
        return;
    Watch = new ActivityWatch;
    QAccessible::installActivationObserver(Watch);
    QAccessible::installFactory(AccessibleTextFactory);
}

bool AccessibilityActive() { return Watch && Watch->Active; }

void NotifyTextInserted(TWinControl& control, TTextOffset at, const String& text)
{
    if (QWidget* widget = ListenedWindow(control)) {
        QAccessibleTextInsertEvent event(widget, ToInt(at), ToQString(text));
        Send(event);
    }
}

void NotifyTextRemoved(TWinControl& control, TTextOffset at, const String& text)
{
    if (QWidget* widget = ListenedWindow(control)) {
        QAccessibleTextRemoveEvent event(widget, ToInt(at), ToQString(text));
        Send(event);
    }
}

void NotifyTextUpdated(TWinControl& control, TTextOffset at, const String& removed, const String& inserted)
{
    if (QWidget* widget = ListenedWindow(control)) {
        QAccessibleTextUpdateEvent event(widget, ToInt(at), ToQString(removed), ToQString(inserted));
        Send(event);
    }
}

void NotifyCaretMoved(TWinControl& control, TTextOffset caret)
{
    if (QWidget* widget = ListenedWindow(control)) {
        QAccessibleTextCursorEvent event(widget, ToInt(caret));
        Send(event);
    }
}

void NotifySelectionChanged(TWinControl& control, TTextRange selection, TTextOffset caret)
{
    if (QWidget* widget = ListenedWindow(control)) {
        QAccessibleTextSelectionEvent event(widget, selection.Empty() ? -1 : ToInt(selection.Start),
                                            selection.Empty() ? -1 : ToInt(selection.End));
        event.setCursorPosition(ToInt(caret));
        Send(event);
    }
}

void NotifyReadOnlyChanged(TWinControl& control)
{
    if (QWidget* widget = ListenedWindow(control)) {
        QAccessible::State changed;
        changed.readOnly = true;
        changed.editable = true;
        QAccessibleStateChangeEvent event(widget, changed);
        Send(event);
    }
}

void QueueAccessibilityReport(const void* Key, std::function<void()> Report)
{
    static std::uint64_t lastSerial = 0;
    auto& reports = WaitingReports();
    const auto same = [Key](const WaitingReport& waiting) { return waiting.Key == Key; };
    if (std::find_if(reports.begin(), reports.end(), same) != reports.end())
        return;
    QCoreApplication* application = QCoreApplication::instance();
    if (!application)
        return;
    const std::uint64_t serial = ++lastSerial;
    reports.push_back({Key, serial, std::move(Report)});
    QMetaObject::invokeMethod(application, [serial] { RunWaitingReport(serial); }, Qt::QueuedConnection);
}

void CancelAccessibilityReport(const void* Key)
{
    std::erase_if(WaitingReports(), [Key](const WaitingReport& waiting) { return waiting.Key == Key; });
}

}  // namespace sx
