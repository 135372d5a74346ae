// Forms: a dialog window over QDialog that runs modally until its
// ModalResult is set, with a key preview, placement on the owner's form,
// and the reading of its form definition.
#pragma once

#include "platform/StdCtrls.h"

#include <functional>

class QEventLoop;
class QKeyEvent;

namespace sx {

enum class TPosition {
    poDesigned,
    poDefault,
    poDefaultPosOnly,
    poDefaultSizeOnly,
    poScreenCenter,
    poDesktopCenter,
    poMainFormCenter,
    poOwnerFormCenter
};

/// A top-level window. Width and Height count the classic window frame
/// (FrameWidth and FrameHeight), as a stored form has them; the window
/// system draws its own frame around the rest, the client area.
class TForm : public TWidgetControl {
    SX_DECLARE_CLASS
public:
    /// The classic frame: a 4-pixel border on each side and a 19-pixel caption.
    static constexpr Integer FrameWidth = 8;
    static constexpr Integer FrameHeight = 27;

    explicit TForm(TComponent* AOwner);
    ~TForm() override;

    TModalResult ModalResult() const { return FModalResult; }
    /// A value other than mrNone ends a running ShowModal with it.
    void SetModalResult(TModalResult value);
    /// Shows the form, fires OnShow and waits until ModalResult is set; hides
    /// the form and answers that result. Closing the window answers mrCancel.
    virtual TModalResult ShowModal();
    /// Ends a modal form with mrCancel; hides a form that is not modal.
    void Close();
    /// The form is up on the screen.
    bool Showing() const;
    bool Modal() const { return FModal; }
    /// The form sees each key before the control with the focus does.
    bool KeyPreview() const { return FKeyPreview; }
    void SetKeyPreview(bool value) { FKeyPreview = value; }
    TPosition Position() const { return FPosition; }
    void SetPosition(TPosition value) { FPosition = value; }
    TColor Color() const { return FColor; }
    void SetColor(TColor value);
    /// The control that has the focus inside the form, or will have it when
    /// the form is active; none when no control of the form has had it.
    TWinControl* ActiveControl() const;

    TPoint ClientExtent() const override;
    bool ReadProperty(const TFormProperty& Property) override;
    /// Ends the reading of the form definition: the tab order is built.
    void Loaded() override;
    /// Chains the focus of the controls in the order of their TabOrder.
    void UpdateTabOrder();

    TNotifyEvent OnShow;

protected:
    /// Reads the form definition named after the form's class, which the
    /// library carries as a resource, and creates the controls it describes.
    void ReadFormDefinition();
    virtual void DoShow();
    void PlaceWidget() override;
    void CaptionChanged() override;

private:
    friend class FormWindow;
    friend class KeyPreviewFilter;
    /// The form's share of a key: the preview through KeyDown, then Enter,
    /// which presses a focused button or else the default one. Answers
    /// whether the key was used up.
    bool HandleKey(const QKeyEvent& event);
    bool PressButtonForEnter();
    void PlaceOnScreen();
    void WindowResized(Integer clientWidth, Integer clientHeight);
    void EndModal();

    TModalResult FModalResult = mrNone;
    bool FModal = false;
    bool FKeyPreview = false;
    TPosition FPosition = TPosition::poDesigned;
    TColor FColor = clBtnFace;
    QEventLoop* FModalLoop = nullptr;
    QObject* FKeyPreviewFilter;
};

/// The form a control stands on, or none.
TForm* GetParentForm(TControl* Control);

/// Stands in for the user at modal forms: when set, ShowModal calls it once
/// the form is up and OnShow has run, instead of waiting for the user. The
/// hook fills in the controls, clicks buttons or types keys, and ends the
/// form by setting ModalResult; a form it leaves open ends with mrCancel.
using TShowModalHook = std::function<void(TForm& Form)>;
/// Installs the hook (or none) and answers the one it replaces.
TShowModalHook SetShowModalHook(TShowModalHook Hook);

}  // namespace sx
