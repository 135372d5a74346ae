// Menus over QMenu: the Qt menu is built anew from the items at each popup,
// so items may change between popups without any bookkeeping.
#include "platform/Menus.h"

#include "platform/QtConvert.h"

#include <QAction>
#include <QMenu>

#include <algorithm>

namespace sx {

SX_DEFINE_CLASS(TMenuItem, TComponent)
SX_DEFINE_CLASS(TPopupMenu, TComponent)

namespace {

/// The caption as Qt shows it: "&" marks the access key in both worlds.
void AddActions(QMenu& menu, const TMenuItem& parent)
{
    for (int i = 0; i < parent.Count(); ++i) {
        TMenuItem* item = parent.Items(i);
        if (!item->Visible())
            continue;
        if (item->Caption() == u"-") {
            menu.addSeparator();
            continue;
        }
        if (item->Count() > 0) {
            QMenu* sub = menu.addMenu(ToQString(item->Caption()));
            sub->setEnabled(item->Enabled());
            AddActions(*sub, *item);
            continue;
        }
        QAction* action = menu.addAction(ToQString(item->Caption()));
        action->setEnabled(item->Enabled());
        QObject::connect(action, &QAction::triggered, [item] { item->Click(); });
    }
}

}  // namespace

TMenuItem::~TMenuItem()
{
    while (!FItems.empty())
        delete FItems.back();
    if (FParent)
        FParent->Remove(this);
}

void TMenuItem::Add(TMenuItem* item)
{
    if (item->FParent)
        item->FParent->Remove(item);
    item->FParent = this;
    FItems.push_back(item);
}

void TMenuItem::Remove(TMenuItem* item)
{
    std::erase(FItems, item);
    item->FParent = nullptr;
}

void TMenuItem::Click()
{
    if (OnClick)
        OnClick(this);
}

TPopupMenu::TPopupMenu(TComponent* AOwner) : TComponent(AOwner), FItems(new TMenuItem(nullptr)) {}

TPopupMenu::~TPopupMenu()
{
    delete FMenu;
    delete FItems;
}

void TPopupMenu::Notification(TComponent* AComponent, TOperation Operation)
{
    TComponent::Notification(AComponent, Operation);
    if (Operation == TOperation::opRemove && AComponent == FPopupComponent)
        FPopupComponent = nullptr;
}

void TPopupMenu::Popup(Integer X, Integer Y)
{
    if (OnPopup)
        OnPopup(this);
    delete FMenu;
    FMenu = new QMenu();
    FMenu->setAttribute(Qt::WA_DeleteOnClose, false);
    AddActions(*FMenu, *FItems);
    FMenu->popup(QPoint(X, Y));
}

QMenu* TPopupMenu::ShownMenu() const { return FMenu && FMenu->isVisible() ? FMenu : nullptr; }

}  // namespace sx
