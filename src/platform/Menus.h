// Menus: items with a caption and a click event, and the popup menu that
// shows them over a Qt menu. A menu is a component of its own so that a
// control hears of its removal through the owner's notification.
#pragma once

#include "platform/Classes.h"

#include <vector>

class QMenu;

namespace sx {

/// One entry of a menu; a caption of "-" makes a separator.
class TMenuItem : public TComponent {
    SX_DECLARE_CLASS
public:
    explicit TMenuItem(TComponent* AOwner) : TComponent(AOwner) {}
    ~TMenuItem() override;

    const String& Caption() const { return FCaption; }
    void SetCaption(const String& value) { FCaption = value; }
    bool Enabled() const { return FEnabled; }
    void SetEnabled(bool value) { FEnabled = value; }
    bool Visible() const { return FVisible; }
    void SetVisible(bool value) { FVisible = value; }

    /// Sub-items, owned by this item.
    int Count() const { return int(FItems.size()); }
    TMenuItem* Items(int index) const { return FItems.at(std::size_t(index)); }
    void Add(TMenuItem* item);
    void Remove(TMenuItem* item);

    /// Fires OnClick, as choosing the item does.
    virtual void Click();
    TNotifyEvent OnClick;

private:
    String FCaption;
    bool FEnabled = true;
    bool FVisible = true;
    std::vector<TMenuItem*> FItems;
    TMenuItem* FParent = nullptr;
};

class TPopupMenu : public TComponent {
    SX_DECLARE_CLASS
public:
    explicit TPopupMenu(TComponent* AOwner);
    ~TPopupMenu() override;

    /// The root item whose sub-items the menu shows.
    TMenuItem& Items() { return *FItems; }
    /// The component the menu was last opened for.
    TComponent* PopupComponent() const { return FPopupComponent; }
    void SetPopupComponent(TComponent* value) { FPopupComponent = value; }

    /// Fires OnPopup, then shows the visible items at the screen point and
    /// returns at once; a chosen item fires its OnClick later.
    virtual void Popup(Integer X, Integer Y);
    TNotifyEvent OnPopup;

    /// The Qt menu on screen since the last Popup, or none.
    QMenu* ShownMenu() const;

protected:
    void Notification(TComponent* AComponent, TOperation Operation) override;

private:
    TMenuItem* FItems;
    TComponent* FPopupComponent = nullptr;
    QMenu* FMenu = nullptr;
};

}  // namespace sx
