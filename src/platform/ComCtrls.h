// Pages: a page control that shows one tab sheet at a time, with a tab
// strip whose tabs can be hidden one by one.
#pragma once

#include "platform/WidgetControl.h"

class QFrame;
class QTabBar;

namespace sx {

class TPageControl;

/// One page of a page control; its parent is the page control.
class TTabSheet : public TWidgetControl {
    SX_DECLARE_CLASS
public:
    explicit TTabSheet(TComponent* AOwner);
    ~TTabSheet() override;

    TPageControl* PageControl() const { return FPageControl; }
    void SetPageControl(TPageControl* value);
    Integer PageIndex() const;
    /// Whether the page has a tab in the strip; a page without one can still be the active page.
    bool TabVisible() const { return FTabVisible; }
    void SetTabVisible(bool value);
    void SetParent(TWinControl* AParent) override;
    bool ReadProperty(const TFormProperty& Property) override;

protected:
    void CaptionChanged() override;

private:
    friend class TPageControl;
    TPageControl* FPageControl = nullptr;
    bool FTabVisible = true;
};

class TPageControl : public TWidgetControl {
    SX_DECLARE_CLASS
public:
    explicit TPageControl(TComponent* AOwner);
    ~TPageControl() override;

    Integer PageCount() const { return Integer(FPages.size()); }
    TTabSheet* Pages(Integer Index) const;
    TTabSheet* ActivePage() const { return FActivePage; }
    /// Shows the page and hides the others; a page of another control is refused.
    void SetActivePage(TTabSheet* value);
    Integer ActivePageIndex() const { return FActivePage ? FActivePage->PageIndex() : -1; }
    /// The area the pages fill, in the control's pixels.
    TRect PageArea() const;
    bool ReadProperty(const TFormProperty& Property) override;
    void Loaded() override;

    /// The user chose another page through its tab.
    TNotifyEvent OnChange;

protected:
    void PlaceWidget() override;

private:
    friend class TTabSheet;
    void InsertPage(TTabSheet* page);
    void RemovePage(TTabSheet* page);
    /// Builds the tab strip anew from the pages' captions and TabVisible.
    void UpdateTabs();
    void LayoutPages();
    bool AnyTabVisible() const;

    std::vector<TTabSheet*> FPages;
    TTabSheet* FActivePage = nullptr;
    QTabBar* FTabBar;
    QFrame* FFrame;
    bool FUpdatingTabs = false;
    /// The page index a form definition asks for; taken when loading ends.
    Integer FLoadedPageIndex = -1;
};

}  // namespace sx
