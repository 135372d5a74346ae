// The About box's text, built from the library's and Qt's own version calls.
#include "AboutText.h"

#include "codeedit/SxPackage.h"

#include <QObject>
#include <QtGlobal>

namespace sx::demo {

QString AboutTitle() { return QObject::tr("About sxedit"); }

QString AboutText()
{
    return QObject::tr("<h3>Sx code edit %1</h3>"
                       "<p>A source-code editing control with syntax colouring for Qt desktop applications, "
                       "with parsers for Pascal, Visual Basic, JavaScript, XML and SQL.</p>"
                       "<p>sxedit is its demo editor.</p>"
                       "<p>Qt %2 (built with Qt %3)</p>")
        .arg(QString::fromLatin1(LibraryVersion()), QString::fromLatin1(qVersion()), QStringLiteral(QT_VERSION_STR));
}

}  // namespace sx::demo
