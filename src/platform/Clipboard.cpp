// The clipboard over Qt's: text goes in and out as UTF-16 without change.
#include "platform/Clipboard.h"

#include "platform/QtConvert.h"
#include "platform/SysUtils.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace sx {

namespace {

QClipboard* Desktop()
{
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        throw Exception(u"The clipboard needs a running application");
    return QGuiApplication::clipboard();
}

}  // namespace

String TClipboard::AsText() const { return FromQString(Desktop()->text()); }

void TClipboard::SetAsText(const String& Value) { Desktop()->setText(ToQString(Value)); }

bool TClipboard::HasText() const
{
    const QMimeData* data = Desktop()->mimeData();
    return data && data->hasText();
}

void TClipboard::Clear() { Desktop()->clear(); }

TClipboard& Clipboard()
{
    static TClipboard clipboard;
    return clipboard;
}

}  // namespace sx
