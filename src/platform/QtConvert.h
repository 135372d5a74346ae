// Converters between the framework layer's values and Qt's. Qt types stop in
// src/platform/: the system's units never include this header.
#pragma once

#include "platform/Colors.h"
#include "platform/Types.h"

#include <QColor>
#include <QRect>
#include <QString>

namespace sx {

inline QString ToQString(const String& s)
{
    return QString(reinterpret_cast<const QChar*>(s.data()), qsizetype(s.size()));
}

inline String FromQString(const QString& s)
{
    return String(reinterpret_cast<const Char*>(s.utf16()), std::size_t(s.size()));
}

/// A plain or system colour as a Qt colour; system colours are resolved first.
QColor ToQColor(TColor color);

inline QRect ToQRect(const TRect& r) { return QRect(r.Left, r.Top, r.Right - r.Left, r.Bottom - r.Top); }

}  // namespace sx
