// The page control over a QTabBar and a QFrame: the pages are child
// controls of their own, of which the active one is shown.
#include "platform/ComCtrls.h"

#include "platform/QtConvert.h"

#include <QFrame>
#include <QTabBar>

#include <algorithm>

namespace sx {

namespace {

/// Width of the frame around the pages, as the classic page control draws it.
constexpr Integer PageBorder = 4;

}  // namespace

SX_DEFINE_CLASS(TTabSheet, TWidgetControl)
SX_DEFINE_CLASS(TPageControl, TWidgetControl)

TTabSheet::TTabSheet(TComponent* AOwner) : TWidgetControl(AOwner, new QWidget) {}

TTabSheet::~TTabSheet()
{
    if (FPageControl)
        FPageControl->RemovePage(this);
}

void TTabSheet::SetPageControl(TPageControl* value) { SetParent(value); }

Integer TTabSheet::PageIndex() const
{
    if (!FPageControl)
        return -1;
    const auto& pages = FPageControl->FPages;
    return Integer(std::find(pages.begin(), pages.end(), this) - pages.begin());
}

void TTabSheet::SetParent(TWinControl* AParent)
{
    auto* pageControl = dynamic_cast<TPageControl*>(AParent);
    if (FPageControl && FPageControl != pageControl) {
        FPageControl->RemovePage(this);
        FPageControl = nullptr;
    }
    TWidgetControl::SetParent(AParent);
    if (pageControl && FPageControl != pageControl) {
        FPageControl = pageControl;
        pageControl->InsertPage(this);
    }
}

void TTabSheet::SetTabVisible(bool value)
{
    if (value == FTabVisible)
        return;
    FTabVisible = value;
    if (FPageControl)
        FPageControl->UpdateTabs();
}

void TTabSheet::CaptionChanged()
{
    if (FPageControl)
        FPageControl->UpdateTabs();
}

bool TTabSheet::ReadProperty(const TFormProperty& Property)
{
    if (Property.Name == u"title")
        SetCaption(Property.Text);
    else if (Property.Name == u"tabVisible")
        SetTabVisible(Property.Bool);
    else
        return TWidgetControl::ReadProperty(Property);
    return true;
}

TPageControl::TPageControl(TComponent* AOwner)
    : TWidgetControl(AOwner, new QWidget), FTabBar(new QTabBar(Widget())), FFrame(new QFrame(Widget()))
{
    FFrame->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    SetTabStop(false);
    QObject::connect(FTabBar, &QTabBar::currentChanged, FTabBar, [this](int index) {
        if (FUpdatingTabs)
            return;
        RunGuarded([this, index] {
            SetActivePage(Pages(index));
            if (OnChange)
                OnChange(this);
        });
    });
}

TPageControl::~TPageControl()
{
    // The pages are freed after this body, as children of the control: they
    // must not report back to a page control that is going.
    for (TTabSheet* page : FPages)
        page->FPageControl = nullptr;
    FPages.clear();
    FActivePage = nullptr;
}

TTabSheet* TPageControl::Pages(Integer Index) const
{
    return Index >= 0 && Index < PageCount() ? FPages[std::size_t(Index)] : nullptr;
}

void TPageControl::SetActivePage(TTabSheet* value)
{
    if (value && value->FPageControl != this)
        return;
    FActivePage = value;
    FUpdatingTabs = true;
    if (FActivePage)
        FTabBar->setCurrentIndex(FActivePage->PageIndex());
    FUpdatingTabs = false;
    LayoutPages();
}

void TPageControl::InsertPage(TTabSheet* page)
{
    FPages.push_back(page);
    UpdateTabs();
    if (!FActivePage)
        SetActivePage(page);
    else
        LayoutPages();
}

void TPageControl::RemovePage(TTabSheet* page)
{
    std::erase(FPages, page);
    if (FActivePage == page)
        FActivePage = FPages.empty() ? nullptr : FPages.front();
    UpdateTabs();
}

bool TPageControl::AnyTabVisible() const
{
    return std::any_of(FPages.begin(), FPages.end(), [](const TTabSheet* page) { return page->TabVisible(); });
}

void TPageControl::UpdateTabs()
{
    FUpdatingTabs = true;
    while (FTabBar->count() > 0)
        FTabBar->removeTab(0);
    for (const TTabSheet* page : FPages) {
        const int index = FTabBar->addTab(ToQString(page->Caption()));
        FTabBar->setTabVisible(index, page->TabVisible());
    }
    if (FActivePage)
        FTabBar->setCurrentIndex(FActivePage->PageIndex());
    FUpdatingTabs = false;
    LayoutPages();
}

TRect TPageControl::PageArea() const
{
    const Integer top = AnyTabVisible() ? FTabBar->sizeHint().height() : 0;
    return Rect(PageBorder, top + PageBorder, Width() - PageBorder, Height() - PageBorder);
}

void TPageControl::LayoutPages()
{
    const TRect area = PageArea();
    const Integer top = area.Top - PageBorder;
    FTabBar->setVisible(top > 0);
    FTabBar->setGeometry(0, 0, Width(), top);
    FFrame->setGeometry(0, top, Width(), std::max(Height() - top, 0));
    for (TTabSheet* page : FPages) {
        page->SetBounds(area.Left, area.Top, std::max(area.Width(), 0), std::max(area.Height(), 0));
        page->SetVisible(page == FActivePage);
    }
}

void TPageControl::PlaceWidget()
{
    TWidgetControl::PlaceWidget();
    LayoutPages();
}

bool TPageControl::ReadProperty(const TFormProperty& Property)
{
    if (Property.Name != u"currentIndex")
        return TWidgetControl::ReadProperty(Property);
    FLoadedPageIndex = Property.Number;
    return true;
}

void TPageControl::Loaded()
{
    TWidgetControl::Loaded();
    if (FLoadedPageIndex >= 0)
        SetActivePage(Pages(FLoadedPageIndex));
    FLoadedPageIndex = -1;
}

}  // namespace sx
