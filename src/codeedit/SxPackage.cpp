// The package's unit table and its start and stop.
#include "codeedit/SxPackage.h"

#include "codeedit/uSxCodeEditEvents.h"
#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodePascalParser.h"
#include "codeedit/uSxCodeSqlParser.h"
#include "codeedit/uSxCodeVBParser.h"
#include "codeedit/uSxCodeXmlParser.h"

#include <array>

namespace sx {

namespace {

const std::array<TPackageUnit, 10> Units = {{
    {u"uSxCodeParser", nullptr, nullptr},
    {u"uSxPaintHelpers", nullptr, nullptr},
    {u"fSxCodeEditSearchReplaceDlg", nullptr, nullptr},
    // The control's unit makes its published events known to the type information.
    {u"uSxCodeEdit", &uSxCodeEditEvents::RegisterCodeEditEvents, &uSxCodeEditEvents::UnRegisterCodeEditEvents},
    {u"uSxCodePascalParser", &uSxCodePascalParser::Initialization, &uSxCodePascalParser::Finalization},
    {u"uSxCodeVBParser", &uSxCodeVBParser::Initialization, &uSxCodeVBParser::Finalization},
    {u"uSxCodeJSParser", &uSxCodeJSParser::Initialization, &uSxCodeJSParser::Finalization},
    {u"uSxCodeXmlParser", &uSxCodeXmlParser::Initialization, &uSxCodeXmlParser::Finalization},
    {u"uSxDbCodeEdit", nullptr, nullptr},
    {u"uSxCodeSqlParser", &uSxCodeSqlParser::Initialization, &uSxCodeSqlParser::Finalization},
}};

bool Started = false;

}  // namespace

std::span<const TPackageUnit> GetPackageInfoTable() { return Units; }

const char* LibraryVersion() { return SX_LIBRARY_VERSION; }

void Initialize()
{
    if (Started)
        return;
    Started = true;
    for (const TPackageUnit& unit : Units)
        if (unit.Initialization)
            unit.Initialization();
}

void Finalize()
{
    if (!Started)
        return;
    Started = false;
    for (auto it = Units.rbegin(); it != Units.rend(); ++it)
        if (it->Finalization)
            it->Finalization();
}

}  // namespace sx
