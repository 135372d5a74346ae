// The scroll bar over QScrollBar. The bar keeps its own Position: the program
// may set it up to Max, while the user can drag only to Max - PageSize + 1.
#include "platform/ScrollBar.h"

#include "platform/KeptScrollBar.h"

#include <QApplication>
#include <QScrollBar>
#include <QStyle>

namespace sx {

SX_DEFINE_CLASS(TScrollBar, TWinControl)

TScrollBar::TScrollBar(TComponent* AOwner) : TWinControl(AOwner, new KeptScrollBar(Qt::Horizontal))
{
    SetBounds(0, 0, 121, DefaultThickness());
    SetTabStop(true);
    QObject::connect(Bar(), &QAbstractSlider::valueChanged, Bar(), [this](int value) { UserMoved(value); });
    SyncWidget();
}

TScrollBar::~TScrollBar() { CancelScreenUpdate(this); }

Integer TScrollBar::DefaultThickness()
{
    if (auto* app = qobject_cast<QApplication*>(QCoreApplication::instance()))
        return app->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return 17;
}

QScrollBar* TScrollBar::Bar() const { return static_cast<QScrollBar*>(Widget()); }

void TScrollBar::SetKind(TScrollBarKind value)
{
    if (value == FKind)
        return;
    FKind = value;
    if (Bar())
        Bar()->setOrientation(value == TScrollBarKind::sbHorizontal ? Qt::Horizontal : Qt::Vertical);
    if (!IsLoading())
        SetBounds(Left(), Top(), Height(), Width());
}

void TScrollBar::SetParams(Integer APosition, Integer AMin, Integer AMax)
{
    if (AMax < AMin)
        throw EInvalidOperation(u"Scroll bar property out of range");
    if (APosition < AMin)
        APosition = AMin;
    if (APosition > AMax)
        APosition = AMax;
    const bool rangeChanged = AMin != FMin || AMax != FMax;
    const Integer pageBefore = FPageSize;
    FMin = AMin;
    FMax = AMax;
    if (FPageSize > FMax - FMin + 1)
        FPageSize = FMax - FMin + 1;
    const bool moved = APosition != FPosition;
    const bool changed = moved || rangeChanged || pageBefore != FPageSize;
    FPosition = APosition;
    if (changed)
        ShowState();
    if (moved)
        Change();
}

void TScrollBar::SetPageSize(Integer value)
{
    if (value == FPageSize || value > FMax)
        return;
    FPageSize = value;
    ShowState();
}

void TScrollBar::SetLargeChange(Integer value)
{
    if (value == FLargeChange)
        return;
    FLargeChange = value;
    ShowState();
}

void TScrollBar::SetSmallChange(Integer value)
{
    if (value == FSmallChange)
        return;
    FSmallChange = value;
    ShowState();
}

void TScrollBar::ShowState()
{
    UpdateScreen(this, [this] { SyncWidget(); });
}

void TScrollBar::Change()
{
    if (OnChange)
        OnChange(this);
}

void TScrollBar::SyncWidget()
{
    QScrollBar* bar = Bar();
    if (!bar)
        return;
    FSyncing = true;
    const int page = FPageSize > 0 ? FPageSize : 0;
    bar->setRange(FMin, std::max(FMin, FMax - (page > 0 ? page - 1 : 0)));
    bar->setPageStep(page > 0 ? page : std::max(1, FLargeChange));
    bar->setSingleStep(std::max(1, FSmallChange));
    bar->setValue(FPosition);
    FSyncing = false;
}

void TScrollBar::UserMoved(int value)
{
    if (!FSyncing && value != FPosition)
        SetPosition(value);
}

}  // namespace sx
