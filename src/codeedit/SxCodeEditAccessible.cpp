// Screen reader support of the code edit control through Qt's accessibility:
// the line store that reports its changes, the accessible interface over the
// text model, and the factory through which Qt finds that interface.
#include "SxCodeEditAccessible.h"

#include "SxCodeEditTextModel.h"
#include "uSxCodeEdit.h"

#include "platform/QtConvert.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace sx {

// ---------------------------------------------------------------------------
// The line store that names the lines of each change.

void TSxCodeEditLines::Put(Integer Index, const String& S)
{
    if (FListener && Index >= 0 && Index < Count())
        FListener->LineReplacing(Index, S.size());
    TStringList::Put(Index, S);
}

void TSxCodeEditLines::Insert(Integer Index, const String& S)
{
    if (FListener && Index >= 0 && Index <= Count())
        FListener->LineInserting(Index, S.size());
    TStringList::Insert(Index, S);
}

void TSxCodeEditLines::Delete(Integer Index)
{
    if (FListener && Index >= 0 && Index < Count())
        FListener->LineDeleting(Index);
    TStringList::Delete(Index);
}

void TSxCodeEditLines::Clear()
{
    if (Count() > 0)
        AllLinesReplacing();
    TStringList::Clear();
}

void TSxCodeEditLines::SetText(const String& Value)
{
    AllLinesReplacing();
    TStringList::SetText(Value);
}

void TSxCodeEditLines::Assign(const TStrings& Source)
{
    if (&Source != this)
        AllLinesReplacing();
    TStringList::Assign(Source);
}

void TSxCodeEditLines::AllLinesReplacing()
{
    if (FListener)
        FListener->AllLinesReplacing();
}

// ---------------------------------------------------------------------------
// The accessible interface.

/// What Qt hands to screen readers for a code edit control's widget. Qt owns
/// it; it reaches the control through the control's model and answers
/// nothing once the control is gone.
class TSxCodeEditAccessible final : public QAccessibleWidget,
                                    public QAccessibleTextInterface,
                                    public QAccessibleEditableTextInterface {
public:
    TSxCodeEditAccessible(QWidget* widget, TSxAccessibleTextModel& model)
        : QAccessibleWidget(widget, QAccessible::EditableText), FModel(&model)
    {
    }

    bool isValid() const override { return FModel && QAccessibleWidget::isValid(); }

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
        state.multiLine = true;
        state.selectableText = true;
        state.focusable = true;
        if (FModel) {
            const bool readOnly = FModel->Control().GetReadOnly();
            state.readOnly = readOnly;
            state.editable = !readOnly;
        }
        return state;
    }

    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Value && FModel)
            return ToQString(FModel->TextBetween(0, FModel->CharacterCount()));
        return QAccessibleWidget::text(t);
    }

    // QAccessibleTextInterface

    int characterCount() const override { return FModel ? ToInt(FModel->CharacterCount()) : 0; }

    QString text(int startOffset, int endOffset) const override
    {
        return FModel ? ToQString(FModel->TextBetween(startOffset, endOffset)) : QString();
    }

    int cursorPosition() const override { return FModel ? ToInt(FModel->CaretOffset()) : 0; }

    void setCursorPosition(int position) override
    {
        if (!FModel)
            return;
        const TPoint at = FModel->PositionOf(position);
        FModel->Control().SetLinePos(at.Y);
        FModel->Control().SetCharPos(at.X);
    }

    int selectionCount() const override { return FModel && !FModel->Selection().Empty() ? 1 : 0; }

    void selection(int selectionIndex, int* startOffset, int* endOffset) const override
    {
        *startOffset = *endOffset = 0;
        if (!FModel || selectionIndex != 0)
            return;
        if (const auto range = FModel->Selection(); !range.Empty()) {
            *startOffset = ToInt(range.Start);
            *endOffset = ToInt(range.End);
        }
    }

    /// The control holds one selection: adding one replaces it.
    void addSelection(int startOffset, int endOffset) override { setSelection(0, startOffset, endOffset); }

    void removeSelection(int selectionIndex) override
    {
        if (!FModel || selectionIndex != 0)
            return;
        TSxCodeEdit& edit = FModel->Control();
        const TPoint caret = Point(edit.CharPos(), edit.LinePos());
        edit.SetSelStart(caret);
        edit.SetSelEnd(caret);
    }

    /// The caret goes to the end offset, the anchor stays at the start offset.
    void setSelection(int selectionIndex, int startOffset, int endOffset) override
    {
        if (FModel && selectionIndex == 0)
            Select(startOffset, endOffset);
    }

    QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                         int* endOffset) const override
    {
        *startOffset = *endOffset = -1;
        if (!FModel)
            return QString();
        if (type == QAccessible::NoBoundary)
            return WholeText(startOffset, endOffset);
        TSxAccessibleTextModel::TRange unit;
        if (!FModel->UnitAt(Resolved(offset), type, unit))
            return QString();
        return Answer(unit, startOffset, endOffset);
    }

    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                             int* endOffset) const override
    {
        *startOffset = *endOffset = -1;
        if (!FModel || type == QAccessible::NoBoundary)
            return QString();
        const TOffset at = Resolved(offset);
        TSxAccessibleTextModel::TRange unit;
        const TOffset unitStart = FModel->UnitAt(at, type, unit) ? unit.Start : at;
        if (unitStart <= 0 || !FModel->UnitAt(unitStart - 1, type, unit))
            return QString();
        return Answer(unit, startOffset, endOffset);
    }

    QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                            int* endOffset) const override
    {
        *startOffset = *endOffset = -1;
        if (!FModel || type == QAccessible::NoBoundary)
            return QString();
        TSxAccessibleTextModel::TRange unit;
        if (!FModel->UnitAt(Resolved(offset), type, unit) || !FModel->UnitAt(unit.End, type, unit))
            return QString();
        return Answer(unit, startOffset, endOffset);
    }

    /// The cell of the character on the screen, as the caret stands in front
    /// of it: columns of the control's character width, rows of its line height.
    QRect characterRect(int offset) const override
    {
        if (!FModel || offset < 0)
            return QRect();
        TSxCodeEdit& edit = FModel->Control();
        const TPoint at = FModel->PositionOf(offset);
        const std::int64_t x = edit.RealGuttorWidth() + CaretMargin +
                               (std::int64_t(at.X) - edit.HScrollBar().Position()) * edit.GetCharWidth();
        const std::int64_t y = (std::int64_t(at.Y) - edit.VScrollBar().Position()) * edit.GetLineWidth();
        const QPoint topLeft = widget()->mapToGlobal(QPoint(ToCoordinate(x), ToCoordinate(y)));
        return QRect(topLeft, QSize(edit.GetCharWidth(), edit.GetLineWidth()));
    }

    int offsetAtPoint(const QPoint& point) const override
    {
        if (!FModel)
            return -1;
        TSxCodeEdit& edit = FModel->Control();
        const QPoint local = widget()->mapFromGlobal(point);
        const Integer charWidth = edit.GetCharWidth();
        const Integer lineHeight = edit.GetLineWidth();
        if (!widget()->rect().contains(local) || charWidth <= 0 || lineHeight <= 0)
            return -1;
        const Integer textX = std::max(local.x() - edit.RealGuttorWidth() - CaretMargin, 0);
        const Integer line = local.y() / lineHeight + edit.VScrollBar().Position();
        if (line >= edit.Lines().Count())
            return -1;
        return ToInt(FModel->OffsetOf(Point(textX / charWidth + edit.HScrollBar().Position(), line)));
    }

    /// Scrolls the view, not the caret, so that the start of the range shows,
    /// and its end too where both fit.
    void scrollToSubstring(int startIndex, int endIndex) override
    {
        if (!FModel)
            return;
        TSxCodeEdit& edit = FModel->Control();
        const TPoint first = FModel->PositionOf(startIndex);
        const TPoint last = FModel->PositionOf(std::max(startIndex, endIndex));
        ScrollToShow(edit.VScrollBar(), first.Y, last.Y, edit.VScrollBar().PageSize());
        ScrollToShow(edit.HScrollBar(), first.X, first.Y == last.Y ? last.X : first.X,
                     edit.HScrollBar().PageSize() + 1);
    }

    /// The control's colours are no text attributes: there are none to give.
    QString attributes(int offset, int* startOffset, int* endOffset) const override
    {
        *startOffset = *endOffset = offset;
        return QString();
    }

    // QAccessibleEditableTextInterface: through the control's own editing
    // operations, so that ReadOnly, the undo records and OnChange apply.

    void deleteText(int startOffset, int endOffset) override
    {
        if (!FModel || FModel->Control().GetReadOnly() || startOffset == endOffset)
            return;
        Select(std::min(startOffset, endOffset), std::max(startOffset, endOffset));
        String deleted;
        FModel->Control().DeleteSelected(uSxCodeEdit::ctDelete, deleted);
    }

    void insertText(int offset, const QString& text) override
    {
        if (!FModel || FModel->Control().GetReadOnly() || text.isEmpty())
            return;
        const TPoint at = FModel->PositionOf(offset);
        FModel->Control().InsertCode(at.Y, at.X, FromQString(text));
    }

    void replaceText(int startOffset, int endOffset, const QString& text) override
    {
        deleteText(startOffset, endOffset);
        insertText(std::min(startOffset, endOffset), text);
    }

private:
    /// The caret stands this many pixels right of its column's cell edge.
    static constexpr Integer CaretMargin = 2;

    static int ToCoordinate(std::int64_t v)
    {
        return int(std::clamp<std::int64_t>(v, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    }

    /// -1 stands for the end of the text.
    TOffset Resolved(int offset) const { return offset == -1 ? FModel->CharacterCount() : offset; }

    QString Answer(const TSxAccessibleTextModel::TRange& unit, int* startOffset, int* endOffset) const
    {
        *startOffset = ToInt(unit.Start);
        *endOffset = ToInt(unit.End);
        return ToQString(FModel->TextBetween(unit.Start, unit.End));
    }

    QString WholeText(int* startOffset, int* endOffset) const
    {
        return Answer({0, FModel->CharacterCount()}, startOffset, endOffset);
    }

    void Select(int anchorOffset, int caretOffset)
    {
        TSxCodeEdit& edit = FModel->Control();
        const TPoint anchor = FModel->PositionOf(anchorOffset);
        const TPoint caret = FModel->PositionOf(caretOffset);
        edit.SetLinePos(caret.Y);
        edit.SetCharPos(caret.X);
        edit.SetSelEnd(anchor);
    }

    /// Moves the bar the least so that first and, where it fits, last show
    /// among the room cells a page holds.
    static void ScrollToShow(TScrollBar& bar, Integer first, Integer last, Integer room)
    {
        room = std::max(room, 1);
        Integer position = bar.Position();
        if (std::int64_t(last) >= std::int64_t(position) + room)
            position = last - room + 1;
        if (first < position)
            position = first;
        bar.SetPosition(position);
    }

    QPointer<TSxAccessibleTextModel> FModel;
};

namespace {

QAccessibleInterface* CodeEditInterfaceFactory(const QString&, QObject* object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    auto* widget = static_cast<QWidget*>(object);
    auto* edit = dynamic_cast<TSxCodeEdit*>(FindControl(widget));
    TSxAccessibleTextModel* model = edit ? TSxAccessibleTextModel::Of(*edit) : nullptr;
    return model ? new TSxCodeEditAccessible(widget, *model) : nullptr;
}

}  // namespace

void InstallCodeEditAccessibility()
{
    static bool installed = false;
    if (installed)
        return;
    installed = true;
    WatchAccessibilityActivity();
    QAccessible::installFactory(CodeEditInterfaceFactory);
}

}  // namespace sx
