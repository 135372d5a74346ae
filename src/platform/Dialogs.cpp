// Message boxes over QMessageBox, centred on the active window.
#include "platform/Dialogs.h"

#include "platform/Controls.h"
#include "platform/QtConvert.h"

#include <QApplication>
#include <QMessageBox>

namespace sx {

namespace {

TMsgBoxHook& MsgBoxHook()
{
    static TMsgBoxHook hook;
    return hook;
}

Integer ShowBox(TMsgBoxKind kind, const String& text, const String& caption)
{
    const TScreenUpdatesNow screenUpdates;
    if (const TMsgBoxHook hook = MsgBoxHook())
        return hook(kind, text, caption);
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    QMessageBox::Icon icon = QMessageBox::Information;
    if (kind != TMsgBoxKind::mbInfo) {
        icon = QMessageBox::Question;
        buttons = QMessageBox::Yes | QMessageBox::No;
        if (kind == TMsgBoxKind::mbYesNoCancel)
            buttons |= QMessageBox::Cancel;
    }
    const QString title = caption.empty() ? QApplication::applicationDisplayName() : ToQString(caption);
    QMessageBox box(icon, title, ToQString(text), buttons, QApplication::activeWindow());
    switch (box.exec()) {
    case QMessageBox::Yes: return idYes;
    case QMessageBox::No: return idNo;
    case QMessageBox::Cancel: return idCancel;
    default: return idOk;
    }
}

}  // namespace

void SxMsgBoxInfo(const String& Text, const String& Caption) { ShowBox(TMsgBoxKind::mbInfo, Text, Caption); }

Integer SxMsgBoxYesNo(const String& Text, const String& Caption)
{
    return ShowBox(TMsgBoxKind::mbYesNo, Text, Caption);
}

Integer SxMsgBoxYesNoCancel(const String& Text, const String& Caption)
{
    return ShowBox(TMsgBoxKind::mbYesNoCancel, Text, Caption);
}

TMsgBoxHook SetMsgBoxHook(TMsgBoxHook Hook) { return std::exchange(MsgBoxHook(), std::move(Hook)); }

}  // namespace sx
