// The framework's colour identifiers: the names under which colours are
// written into settings, such as the highlight colours of an IDE.
#include "platform/Colors.h"

#include "platform/SysUtils.h"

#include <string_view>

namespace sx {

namespace {

struct TColorIdent {
    TColor Value;
    const char16_t* Name;
};

constexpr TColorIdent ColorIdents[] = {
    {clBlack, u"clBlack"},
    {clMaroon, u"clMaroon"},
    {clGreen, u"clGreen"},
    {clOlive, u"clOlive"},
    {clNavy, u"clNavy"},
    {clPurple, u"clPurple"},
    {clTeal, u"clTeal"},
    {clGray, u"clGray"},
    {clSilver, u"clSilver"},
    {clRed, u"clRed"},
    {clLime, u"clLime"},
    {clYellow, u"clYellow"},
    {clBlue, u"clBlue"},
    {clFuchsia, u"clFuchsia"},
    {clAqua, u"clAqua"},
    {clWhite, u"clWhite"},
    {clMoneyGreen, u"clMoneyGreen"},
    {clSkyBlue, u"clSkyBlue"},
    {clCream, u"clCream"},
    {clMedGray, u"clMedGray"},
    {clNone, u"clNone"},
    {clDefault, u"clDefault"},
    {clScrollBar, u"clScrollBar"},
    {clBackground, u"clBackground"},
    {clActiveCaption, u"clActiveCaption"},
    {clInactiveCaption, u"clInactiveCaption"},
    {clMenu, u"clMenu"},
    {clWindow, u"clWindow"},
    {clWindowFrame, u"clWindowFrame"},
    {clMenuText, u"clMenuText"},
    {clWindowText, u"clWindowText"},
    {clCaptionText, u"clCaptionText"},
    {clActiveBorder, u"clActiveBorder"},
    {clInactiveBorder, u"clInactiveBorder"},
    {clAppWorkSpace, u"clAppWorkSpace"},
    {clHighlight, u"clHighlight"},
    {clHighlightText, u"clHighlightText"},
    {clBtnFace, u"clBtnFace"},
    {clBtnShadow, u"clBtnShadow"},
    {clGrayText, u"clGrayText"},
    {clBtnText, u"clBtnText"},
    {clInactiveCaptionText, u"clInactiveCaptionText"},
    {clBtnHighlight, u"clBtnHighlight"},
    {cl3DDkShadow, u"cl3DDkShadow"},
    {cl3DLight, u"cl3DLight"},
    {clInfoText, u"clInfoText"},
    {clInfoBk, u"clInfoBk"},
    {clHotLight, u"clHotLight"},
    {clGradientActiveCaption, u"clGradientActiveCaption"},
    {clGradientInactiveCaption, u"clGradientInactiveCaption"},
    {clMenuHighlight, u"clMenuHighlight"},
    {clMenuBar, u"clMenuBar"},
};

/// Case-blind equality on ASCII letters, with no string built.
bool SameText(std::u16string_view a, std::u16string_view b) noexcept
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (UpCase(a[i]) != UpCase(b[i]))
            return false;
    return true;
}

}  // namespace

bool IdentToColor(const String& Ident, TColor& Color) noexcept
{
    for (const TColorIdent& ident : ColorIdents)
        if (SameText(Ident, ident.Name)) {
            Color = ident.Value;
            return true;
        }
    return false;
}

bool ColorToIdent(TColor Color, String& Ident)
{
    for (const TColorIdent& ident : ColorIdents)
        if (ident.Value == Color) {
            Ident = ident.Name;
            return true;
        }
    return false;
}

}  // namespace sx
