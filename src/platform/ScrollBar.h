// A scroll bar with the classic semantics: Position is clamped to Min..Max and
// OnChange fires on every change of it, whether the user or the program made it.
#pragma once

#include "platform/Controls.h"

class QScrollBar;

namespace sx {

enum class TScrollBarKind { sbHorizontal, sbVertical };

class TScrollBar : public TWinControl {
    SX_DECLARE_CLASS
public:
    explicit TScrollBar(TComponent* AOwner);
    ~TScrollBar() override;

    TScrollBarKind Kind() const { return FKind; }
    /// Changing the kind turns the bar: width and height swap.
    void SetKind(TScrollBarKind value);
    Integer Min() const { return FMin; }
    void SetMin(Integer value) { SetParams(FPosition, value, FMax); }
    Integer Max() const { return FMax; }
    void SetMax(Integer value) { SetParams(FPosition, FMin, value); }
    Integer Position() const { return FPosition; }
    void SetPosition(Integer value) { SetParams(value, FMin, FMax); }
    /// Sets all three at once; raises EInvalidOperation when Max is below Min.
    /// A Max below the page size shrinks the page to fit.
    void SetParams(Integer APosition, Integer AMin, Integer AMax);
    Integer PageSize() const { return FPageSize; }
    /// A page larger than Max is ignored, as the classic bar does.
    void SetPageSize(Integer value);
    Integer LargeChange() const { return FLargeChange; }
    void SetLargeChange(Integer value);
    Integer SmallChange() const { return FSmallChange; }
    void SetSmallChange(Integer value);

    /// Thickness of a bar on this desktop: the height of a horizontal bar.
    static Integer DefaultThickness();

    TNotifyEvent OnChange;

protected:
    virtual void Change();

private:
    QScrollBar* Bar() const;
    /// Shows the bar's state on its widget, through UpdateScreen.
    void ShowState();
    void SyncWidget();
    void UserMoved(int value);

    TScrollBarKind FKind = TScrollBarKind::sbHorizontal;
    Integer FMin = 0;
    Integer FMax = 100;
    Integer FPosition = 0;
    Integer FPageSize = 0;
    Integer FLargeChange = 1;
    Integer FSmallChange = 1;
    bool FSyncing = false;
};

}  // namespace sx
