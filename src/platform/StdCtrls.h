// The standard controls of a dialog over stock Qt widgets: label, one-line
// edit, push button, check box, group box and radio group.
#pragma once

#include "platform/StringList.h"
#include "platform/WidgetControl.h"

class QButtonGroup;
class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace sx {

/// The answer of a modal form: the ModalResult of the button that ended it.
using TModalResult = Integer;
constexpr TModalResult mrNone = 0;
constexpr TModalResult mrOk = 1;
constexpr TModalResult mrCancel = 2;
constexpr TModalResult mrAbort = 3;
constexpr TModalResult mrRetry = 4;
constexpr TModalResult mrIgnore = 5;
constexpr TModalResult mrYes = 6;
constexpr TModalResult mrNo = 7;
constexpr TModalResult mrClose = 8;
constexpr TModalResult mrHelp = 9;
constexpr TModalResult mrTryAgain = 10;
constexpr TModalResult mrContinue = 11;
constexpr TModalResult mrAll = 12;
constexpr TModalResult mrNoToAll = 13;
constexpr TModalResult mrYesToAll = 14;

/// A line of text; takes no focus.
class TLabel : public TWidgetControl {
    SX_DECLARE_CLASS
public:
    explicit TLabel(TComponent* AOwner);
    bool ReadProperty(const TFormProperty& Property) override;

protected:
    void CaptionChanged() override;

private:
    QLabel* Label() const;
};

/// A one-line text box.
class TEdit : public TWidgetControl {
    SX_DECLARE_CLASS
public:
    explicit TEdit(TComponent* AOwner);

    String Text() const;
    void SetText(const String& value);
    void SelectAll();
    Integer SelStart() const;
    Integer SelLength() const;
    String SelText() const;
    bool ReadProperty(const TFormProperty& Property) override;

    /// The text changed, by the user or by code.
    TNotifyEvent OnChange;

private:
    QLineEdit* Edit() const;
};

/// A push button. Clicking it sets the ModalResult of its form to its own;
/// the form presses the Default button when Enter is pressed in a control
/// that is no button.
class TButton : public TWidgetControl {
    SX_DECLARE_CLASS
public:
    explicit TButton(TComponent* AOwner);

    bool Default() const { return FDefault; }
    void SetDefault(bool value);
    TModalResult ModalResult() const { return FModalResult; }
    void SetModalResult(TModalResult value) { FModalResult = value; }
    /// Presses the button as a click of the user does.
    virtual void Click();
    bool ReadProperty(const TFormProperty& Property) override;

    TNotifyEvent OnClick;

protected:
    void CaptionChanged() override;

private:
    QPushButton* Button() const;

    bool FDefault = false;
    TModalResult FModalResult = mrNone;
};

class TCheckBox : public TWidgetControl {
    SX_DECLARE_CLASS
public:
    explicit TCheckBox(TComponent* AOwner);

    bool Checked() const;
    void SetChecked(bool value);
    bool ReadProperty(const TFormProperty& Property) override;

    /// The user or code changed Checked.
    TNotifyEvent OnClick;

protected:
    void CaptionChanged() override;

private:
    QCheckBox* Box() const;
};

/// A frame with a caption around other controls.
class TGroupBox : public TWidgetControl {
    SX_DECLARE_CLASS
public:
    explicit TGroupBox(TComponent* AOwner);
    bool ReadProperty(const TFormProperty& Property) override;

protected:
    void CaptionChanged() override;
};

/// A group box with one radio button per item, stacked in one column in the
/// manner of the classic radio group; ItemIndex is the chosen one, -1 none.
class TRadioGroup : public TGroupBox {
    SX_DECLARE_CLASS
public:
    explicit TRadioGroup(TComponent* AOwner);
    ~TRadioGroup() override;

    TStrings& Items() { return FItems; }
    Integer ItemIndex() const { return FItemIndex; }
    /// A value outside the items chooses none.
    void SetItemIndex(Integer value);
    /// The radio button of item Index, for tests and key handling.
    QRadioButton* Button(Integer Index) const;
    bool ReadProperty(const TFormProperty& Property) override;
    void CollectTabStops(std::vector<QWidget*>& Chain) const override;

    /// The user chose an item.
    TNotifyEvent OnClick;

protected:
    void PlaceWidget() override;

private:
    void UpdateButtons();
    void ArrangeButtons();
    void ShowItemIndex();

    TStringList FItems;
    Integer FItemIndex = -1;
    QButtonGroup* FGroup;
    std::vector<QRadioButton*> FButtons;
};

}  // namespace sx
