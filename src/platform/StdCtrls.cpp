// The standard controls over QLabel, QLineEdit, QPushButton, QCheckBox and
// QGroupBox; the radio group lays its buttons out as the classic one does.
#include "platform/StdCtrls.h"

#include "platform/Forms.h"
#include "platform/QtConvert.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include <algorithm>

namespace sx {

SX_DEFINE_CLASS(TLabel, TWidgetControl)
SX_DEFINE_CLASS(TEdit, TWidgetControl)
SX_DEFINE_CLASS(TButton, TWidgetControl)
SX_DEFINE_CLASS(TCheckBox, TWidgetControl)
SX_DEFINE_CLASS(TGroupBox, TWidgetControl)
SX_DEFINE_CLASS(TRadioGroup, TGroupBox)

TLabel::TLabel(TComponent* AOwner) : TWidgetControl(AOwner, new QLabel) {}

QLabel* TLabel::Label() const { return static_cast<QLabel*>(Widget()); }

void TLabel::CaptionChanged() { Label()->setText(ToQString(Caption())); }

bool TLabel::ReadProperty(const TFormProperty& Property)
{
    if (Property.Name != u"text")
        return TWidgetControl::ReadProperty(Property);
    SetCaption(Property.Text);
    return true;
}

TEdit::TEdit(TComponent* AOwner) : TWidgetControl(AOwner, new QLineEdit)
{
    SetTabStop(true);
    QObject::connect(Edit(), &QLineEdit::textChanged, Edit(), [this] {
        if (OnChange)
            RunGuarded([this] { OnChange(this); });
    });
}

QLineEdit* TEdit::Edit() const { return static_cast<QLineEdit*>(Widget()); }

String TEdit::Text() const { return FromQString(Edit()->text()); }

void TEdit::SetText(const String& value) { Edit()->setText(ToQString(value)); }

void TEdit::SelectAll() { Edit()->selectAll(); }

Integer TEdit::SelStart() const
{
    return Edit()->hasSelectedText() ? Integer(Edit()->selectionStart()) : Integer(Edit()->cursorPosition());
}

Integer TEdit::SelLength() const { return Integer(Edit()->selectedText().size()); }

String TEdit::SelText() const { return FromQString(Edit()->selectedText()); }

bool TEdit::ReadProperty(const TFormProperty& Property)
{
    if (Property.Name != u"text")
        return TWidgetControl::ReadProperty(Property);
    SetText(Property.Text);
    return true;
}

TButton::TButton(TComponent* AOwner) : TWidgetControl(AOwner, new QPushButton)
{
    SetTabStop(true);
    // Enter is the form's to handle: Qt's own default-button logic stays out.
    Button()->setAutoDefault(false);
    QObject::connect(Button(), &QPushButton::clicked, Button(), [this] { RunGuarded([this] { Click(); }); });
}

QPushButton* TButton::Button() const { return static_cast<QPushButton*>(Widget()); }

void TButton::CaptionChanged() { Button()->setText(ToQString(Caption())); }

void TButton::SetDefault(bool value)
{
    FDefault = value;
    Button()->setDefault(value);
}

void TButton::Click()
{
    if (TForm* form = GetParentForm(this))
        form->SetModalResult(FModalResult);
    if (OnClick)
        OnClick(this);
}

bool TButton::ReadProperty(const TFormProperty& Property)
{
    if (Property.Name == u"text")
        SetCaption(Property.Text);
    else if (Property.Name == u"default")
        SetDefault(Property.Bool);
    else if (Property.Name == u"modalResult")
        SetModalResult(Property.Number);
    else
        return TWidgetControl::ReadProperty(Property);
    return true;
}

TCheckBox::TCheckBox(TComponent* AOwner) : TWidgetControl(AOwner, new QCheckBox)
{
    SetTabStop(true);
    QObject::connect(Box(), &QCheckBox::toggled, Box(), [this] {
        if (OnClick)
            RunGuarded([this] { OnClick(this); });
    });
}

QCheckBox* TCheckBox::Box() const { return static_cast<QCheckBox*>(Widget()); }

bool TCheckBox::Checked() const { return Box()->isChecked(); }

void TCheckBox::SetChecked(bool value) { Box()->setChecked(value); }

void TCheckBox::CaptionChanged() { Box()->setText(ToQString(Caption())); }

bool TCheckBox::ReadProperty(const TFormProperty& Property)
{
    if (Property.Name == u"text")
        SetCaption(Property.Text);
    else if (Property.Name == u"checked")
        SetChecked(Property.Bool);
    else
        return TWidgetControl::ReadProperty(Property);
    return true;
}

TGroupBox::TGroupBox(TComponent* AOwner) : TWidgetControl(AOwner, new QGroupBox) {}

void TGroupBox::CaptionChanged() { static_cast<QGroupBox*>(Widget())->setTitle(ToQString(Caption())); }

bool TGroupBox::ReadProperty(const TFormProperty& Property)
{
    if (Property.Name != u"title")
        return TWidgetControl::ReadProperty(Property);
    SetCaption(Property.Text);
    return true;
}

TRadioGroup::TRadioGroup(TComponent* AOwner) : TGroupBox(AOwner), FGroup(new QButtonGroup(Widget()))
{
    FItems.OnChange = [this](TObject*) { UpdateButtons(); };
    QObject::connect(FGroup, &QButtonGroup::idClicked, Widget(), [this](int id) {
        FItemIndex = id;
        if (OnClick)
            RunGuarded([this] { OnClick(this); });
    });
}

TRadioGroup::~TRadioGroup() { FItems.OnChange = nullptr; }

QRadioButton* TRadioGroup::Button(Integer Index) const
{
    return Index >= 0 && Index < Integer(FButtons.size()) ? FButtons[std::size_t(Index)] : nullptr;
}

void TRadioGroup::SetItemIndex(Integer value)
{
    FItemIndex = value >= 0 && value < FItems.Count() ? value : -1;
    ShowItemIndex();
}

void TRadioGroup::ShowItemIndex()
{
    if (QRadioButton* chosen = Button(FItemIndex)) {
        chosen->setChecked(true);
        return;
    }
    // An exclusive group keeps one button checked; none is chosen only with
    // the rule off for a moment.
    FGroup->setExclusive(false);
    for (QRadioButton* button : FButtons)
        button->setChecked(false);
    FGroup->setExclusive(true);
}

void TRadioGroup::UpdateButtons()
{
    while (Integer(FButtons.size()) > FItems.Count()) {
        delete FButtons.back();
        FButtons.pop_back();
    }
    while (Integer(FButtons.size()) < FItems.Count()) {
        auto* button = new QRadioButton(Widget());
        FGroup->addButton(button, int(FButtons.size()));
        button->show();
        FButtons.push_back(button);
    }
    for (Integer i = 0; i < FItems.Count(); ++i)
        FButtons[std::size_t(i)]->setText(ToQString(FItems.Get(i)));
    if (FItemIndex >= FItems.Count())
        FItemIndex = -1;
    ShowItemIndex();
    ArrangeButtons();
}

void TRadioGroup::PlaceWidget()
{
    TGroupBox::PlaceWidget();
    ArrangeButtons();
}

void TRadioGroup::ArrangeButtons()
{
    if (FButtons.empty())
        return;
    // One column: the height below the caption is shared out evenly, and
    // what does not divide goes half above the first button.
    const auto count = Integer(FButtons.size());
    const Integer textHeight = Widget()->fontMetrics().height();
    const Integer space = std::max(Height() - textHeight - 5, 0);
    const Integer buttonHeight = space / count;
    const Integer top = textHeight + 1 + (space % count) / 2;
    for (Integer i = 0; i < count; ++i)
        FButtons[std::size_t(i)]->setGeometry(8, top + i * buttonHeight, std::max(Width() - 10, 0), buttonHeight);
}

bool TRadioGroup::ReadProperty(const TFormProperty& Property)
{
    if (Property.Name == u"items") {
        FItems.BeginUpdate();
        FItems.Clear();
        for (const String& item : Property.Items)
            FItems.Add(item);
        FItems.EndUpdate();
    } else if (Property.Name == u"itemIndex") {
        SetItemIndex(Property.Number);
    } else {
        return TGroupBox::ReadProperty(Property);
    }
    return true;
}

void TRadioGroup::CollectTabStops(std::vector<QWidget*>& Chain) const
{
    Chain.insert(Chain.end(), FButtons.begin(), FButtons.end());
}

}  // namespace sx
