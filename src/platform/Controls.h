// Controls of the framework layer: a control with bounds and a parent, a
// windowed control that owns one QWidget, the custom-drawn control with its
// canvas. Sending and posting messages stands in PostedMessages.h.
#pragma once

#include "platform/Classes.h"
#include "platform/Graphics.h"
#include "platform/Messages.h"
#include "platform/PostedMessages.h"

#include <exception>
#include <functional>
#include <vector>

class QObject;
class QPainter;
class QWidget;

namespace sx {

enum class TAlign { alNone, alTop, alBottom, alLeft, alRight, alClient, alCustom };
enum class TAnchorKind { akLeft, akTop, akRight, akBottom };
using TAnchors = TSet<TAnchorKind, 8>;
enum class TBorderStyle { bsNone, bsSingle };
enum class TBevelCut { bvNone, bvLowered, bvRaised, bvSpace };
enum class TBevelKind { bkNone, bkTile, bkSoft, bkFlat };
enum class TBevelEdge { beLeft, beTop, beRight, beBottom };
using TBevelEdges = TSet<TBevelEdge, 8>;
using TBevelWidth = Integer;

enum class TShiftStateItem { ssShift, ssAlt, ssCtrl, ssLeft, ssRight, ssMiddle, ssDouble };
using TShiftState = TSet<TShiftStateItem, 16>;
enum class TMouseButton { mbLeft, mbRight, mbMiddle };

/// A key went down or up: Key is the virtual key code, which a handler may set to 0.
using TKeyEvent = std::function<void(TObject* Sender, Word& Key, TShiftState Shift)>;
/// A mouse button went down or up at (X, Y) in client pixels.
using TMouseEvent =
    std::function<void(TObject* Sender, TMouseButton Button, TShiftState Shift, Integer X, Integer Y)>;
using TMouseMoveEvent = std::function<void(TObject* Sender, TShiftState Shift, Integer X, Integer Y)>;
/// A character was typed: a handler may replace Key or set it to 0 to drop it.
using TKeyPressEvent = std::function<void(TObject* Sender, Char& Key)>;
/// Something dragged from Source was dropped at (X, Y) in client pixels.
using TDragDropEvent = std::function<void(TObject* Sender, TObject* Source, Integer X, Integer Y)>;

/// The modifier keys and mouse buttons held down at the moment of the call.
TShiftState KeyboardStateToShiftState();
/// The modifier keys of Shift (Shift, Alt, Ctrl), without the mouse buttons.
TShiftState ModifierKeysOf(TShiftState Shift);

/// Answers desktop settings; SPI_GETWHEELSCROLLLINES is the one known here.
bool SystemParametersInfo(Cardinal uiAction, Cardinal uiParam, void* pvParam, Cardinal fWinIni);

/// Receives exceptions that reach an event handler of the desktop; by default
/// it writes them to the error output, since an exception must not cross Qt.
/// The default keeps silent about EAbort, the exception that shows no message.
void SetApplicationExceptionHandler(std::function<void(const std::exception&)> handler);
void HandleApplicationException(const std::exception& e);

/// Whether a control takes text from the desktop's input methods (dead keys,
/// compose sequences, CJK input): the two modes of the classic framework's
/// ImeMode that Qt can honour.
enum class TImeMode { imDisable, imDontCare };

/// One step of a composition by an input method, as the classic desktop's
/// WM_IME_COMPOSITION brings it: text the user has finished, which goes in as
/// typed characters, and text still being composed, which only shows.
struct TImeComposition {
    /// Finished text; empty when this step finishes nothing.
    String Commit;
    /// Before Commit goes in, ReplaceLength characters from ReplaceStart
    /// (counted from the caret, negative to the left) are to be replaced.
    Integer ReplaceStart = 0;
    Integer ReplaceLength = 0;
    /// The text still being composed; empty when no composition is under way.
    String PreEdit;
    /// The composition's own cursor: an index into PreEdit, 0 to its length.
    Integer PreEditCursor = 0;
};

/// What an input method asks of a control (the classic WM_IME_REQUEST); each
/// question is answered in one field of TImeAnswer, named beside it.
enum class TImeQuery {
    iqEnabled,          ///< Flag: the control takes text from input methods now
    iqCursorRect,       ///< Rect: the caret in client pixels; the candidate window opens by it
    iqFont,             ///< Font: the font the composition is shown in
    iqSurroundingText,  ///< Text: the text around the caret
    iqCursorPos,        ///< Number: the caret's index in the surrounding text
    iqAnchorPos,        ///< Number: the selection's other end in the surrounding text
    iqSelection,        ///< Text: the selected text
    iqHints             ///< Hints: what kind of text the control takes
};

enum class TImeHint { ihMultiLine, ihNoAutoUppercase, ihNoPredictiveText };
using TImeHints = TSet<TImeHint, 8>;

/// The answer to one TImeQuery: only the field that the query names counts.
struct TImeAnswer {
    bool Flag = false;
    Integer Number = 0;
    String Text;
    TRect Rect;
    const TFont* Font = nullptr;
    TImeHints Hints;
};

class TWinControl;
class TAccessibleText;

class TControl : public TComponent {
    SX_DECLARE_CLASS
public:
    explicit TControl(TComponent* AOwner);
    ~TControl() override;

    Integer Left() const { return FLeft; }
    Integer Top() const { return FTop; }
    Integer Width() const { return FWidth; }
    Integer Height() const { return FHeight; }
    void SetLeft(Integer v) { SetBounds(v, FTop, FWidth, FHeight); }
    void SetTop(Integer v) { SetBounds(FLeft, v, FWidth, FHeight); }
    void SetWidth(Integer v) { SetBounds(FLeft, FTop, v, FHeight); }
    void SetHeight(Integer v) { SetBounds(FLeft, FTop, FWidth, v); }
    virtual void SetBounds(Integer ALeft, Integer ATop, Integer AWidth, Integer AHeight);
    Integer ClientWidth() const { return FWidth; }
    Integer ClientHeight() const { return FHeight; }
    TRect GetClientRect() const { return Rect(0, 0, FWidth, FHeight); }

    TWinControl* Parent() const { return FParent; }
    virtual void SetParent(TWinControl* AParent);
    bool Visible() const { return FVisible; }
    void SetVisible(bool value);
    TAlign Align() const { return FAlign; }
    void SetAlign(TAlign value) { FAlign = value; }
    TAnchors Anchors() const { return FAnchors; }
    void SetAnchors(TAnchors value) { FAnchors = value; }
    TFont& Font() { return FFont; }

    /// Drops what was dragged from Source at (X, Y); the framework's handling fires OnDragDrop.
    virtual void DragDrop(TObject* Source, Integer X, Integer Y);
    TDragDropEvent OnDragDrop;

    virtual void Invalidate() {}
    /// Sends the message to its handler, or to DefaultHandler when none answers it.
    virtual void Dispatch(TMessage& Message) { DefaultHandler(Message); }
    virtual void DefaultHandler(TMessage& Message) { (void)Message; }

protected:
    virtual void BoundsChanged() {}
    virtual void VisibleChanged() {}

private:
    Integer FLeft = 0, FTop = 0, FWidth = 0, FHeight = 0;
    TWinControl* FParent = nullptr;
    bool FVisible = true;
    TAlign FAlign = TAlign::alNone;
    TAnchors FAnchors{TAnchorKind::akLeft, TAnchorKind::akTop};
    TFont FFont;
};

/// A control with a window of its own: one QWidget that a host puts into any
/// Qt layout through Widget(). Qt events reach the control's handlers and
/// numbered messages. When Qt destroys the widget, the control is freed too.
class TWinControl : public TControl {
    SX_DECLARE_CLASS
public:
    ~TWinControl() override;

    QWidget* Widget() const { return FWidget; }
    void SetParent(TWinControl* AParent) override;
    /// True when the control sits in a parent control or in a host's Qt widget.
    bool HasParentWindow() const;
    int ControlCount() const { return int(FControls.size()); }
    TControl* Controls(int index) const { return FControls.at(std::size_t(index)); }

    bool TabStop() const { return FTabStop; }
    void SetTabStop(bool value);
    bool Ctl3D() const { return FCtl3D; }
    void SetCtl3D(bool value);
    TImeMode ImeMode() const { return FImeMode; }
    void SetImeMode(TImeMode value);
    bool Focused() const;
    /// Whether the control can take the focus at all: its window is enabled
    /// and takes the focus by click or by Tab.
    bool CanFocus() const;
    virtual void SetFocus();
    void Invalidate() override;
    /// Asks for a repaint of the rectangle only, in client pixels.
    void UpdateRect(const TRect& ARect);
    /// Moves what the screen shows in the rectangle down by ADy pixels (up
    /// when negative); the part it uncovers is repainted.
    void ScrollRect(const TRect& ARect, Integer ADy);
    /// Whether the control's paint covers every pixel of it, so that
    /// nothing is painted under it and the screen's pixels can be moved.
    void SetOpaquePaint(bool AValue);
    /// Paints now rather than at the next turn of the event loop.
    void Repaint();

    void Dispatch(TMessage& Message) override;
    /// The handle that messages are posted to.
    TWinControl* Handle() { return this; }
    /// The Qt object that posted messages travel to.
    QObject* MessageTarget() const { return FBridge; }

    TNotifyEvent OnEnter;
    TNotifyEvent OnExit;
    TKeyEvent OnKeyDown;
    TKeyEvent OnKeyUp;
    TKeyPressEvent OnKeyPress;
    TMouseEvent OnMouseDown;
    TMouseMoveEvent OnMouseMove;
    TMouseEvent OnMouseUp;
    TNotifyEvent OnDblClick;
    /// Extension: fired after the control has handled one Qt event of its
    /// widget or one posted message, and not inside another such handling,
    /// so that a host can report what the event changed, once.
    TNotifyEvent OnEventHandled;

    /// A point in client pixels as a point on the screen.
    TPoint ClientToScreen(TPoint Point) const;

    /// What the control offers a screen reader about its text, if anything
    /// (see Accessibility.h); the framework's handling offers none.
    virtual TAccessibleText* AccessibleText() { return nullptr; }

protected:
    TWinControl(TComponent* AOwner, QWidget* widget);

    /// The framework's mouse handling: each fires its event, if assigned.
    /// A double click arrives as a press with ssDouble, then DblClick.
    virtual void MouseDown(TMouseButton Button, TShiftState Shift, Integer X, Integer Y);
    virtual void MouseMove(TShiftState Shift, Integer X, Integer Y);
    virtual void MouseUp(TMouseButton Button, TShiftState Shift, Integer X, Integer Y);
    virtual void DblClick();

    /// The framework's key handling: each fires its event, if assigned.
    virtual void KeyDown(Word& Key, TShiftState Shift);
    virtual void KeyUp(Word& Key, TShiftState Shift);
    virtual void KeyPress(Char& Key);
    /// WM_KEYDOWN and WM_KEYUP: the key code in WParam, read back after the handler.
    virtual void WMKeyDown(TMessage& Message);
    virtual void WMKeyUp(TMessage& Message);
    /// WM_CHAR: the character in WParam goes through KeyPress, which may change it.
    virtual void WMChar(TMessage& Message);

    /// An input method composes (the classic WM_IME_COMPOSITION). The
    /// framework's handling sends each UTF-16 unit of the commit as WM_CHAR,
    /// as a plain control gets it, and neither replaces nor shows anything.
    /// When the control loses the focus during a composition, it gets one
    /// more call with nothing in it: the composition has ended.
    virtual void ImeComposition(const TImeComposition& Composition);
    /// An input method asks a question (the classic WM_IME_REQUEST): answer
    /// True with the answer filled in. The framework's handling answers nothing.
    virtual bool ImeRequest(TImeQuery Query, TImeAnswer& Answer);
    /// Tells the input method to ask its questions again, when the control
    /// has the focus: the caret or the text around it has changed. The
    /// framework calls it after each key, mouse, wheel or input method event
    /// and each posted message the control has handled.
    void ImeChanged();

    /// Focus came (CM_ENTER) or went (CM_EXIT); the framework's handling fires OnEnter/OnExit.
    virtual void CMEnter(TMessage& Message);
    virtual void CMExit(TMessage& Message);
    /// Qt put the widget into a host widget that is no control of ours.
    virtual void ParentWindowChanged() {}
    void BoundsChanged() override;
    void VisibleChanged() override;

private:
    friend class WidgetBridge;
    friend class ControlWidget;
    friend class TControl;
    void AddChild(TControl* child);
    void RemoveChild(TControl* child);
    void WidgetResized(Integer width, Integer height);
    void WidgetDestroyed();

    QWidget* FWidget;
    QObject* FBridge;
    std::vector<TControl*> FControls;
    bool FTabStop = false;
    bool FCtl3D = true;
    TImeMode FImeMode = TImeMode::imDisable;
};

/// A control that draws itself: Paint draws on Canvas inside Qt's paint event.
/// It takes input method text (ImeMode imDontCare), as a window of the
/// classic desktop does; what it shows and answers is its own.
class TCustomControl : public TWinControl {
    SX_DECLARE_CLASS
public:
    explicit TCustomControl(TComponent* AOwner);
    ~TCustomControl() override;

    TCanvas& Canvas() { return FCanvas; }

protected:
    virtual void Paint() {}

private:
    friend class ControlWidget;
    void PaintWidget(QPainter& painter);

    TCanvas FCanvas;
};

/// The control whose window is the widget, or none: a widget of no control,
/// or one whose control is being freed.
TWinControl* FindControl(const QWidget* widget);

}  // namespace sx
