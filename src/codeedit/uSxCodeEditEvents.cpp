// The signatures of the events that the system's classes publish.
#include "codeedit/uSxCodeEditEvents.h"

#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodeParser.h"
#include "platform/TypInfo.h"

namespace sx::uSxCodeEditEvents {

void RegisterCodeEditEvents()
{
    RegisterPublishedProps(TWinControl::ClassInfo(), {
        {u"OnEnter", NotifyEventType()},
        {u"OnExit", NotifyEventType()},
    });
    RegisterPublishedProps(TSxCodeEdit::ClassInfo(), {
        {u"OnChange", NotifyEventType()},
        {u"OnCursorChange", NotifyEventType()},
        {u"OnParserLineChange",
         MethodType(u"TSxParserLineChangeEvent", mkFunction,
                    {{u"aLineNr", u"Integer"}, {u"aBackGroundColor", u"TColor", {pfVar}},
                     {u"aFontColor", u"TColor", {pfVar}}},
                    u"Boolean")},
    });
    RegisterPublishedProps(TSxLangParser::ClassInfo(), {
        {u"OnPaintInfo",
         MethodType(u"TSxOnGetTokenPaintInfo", mkProcedure,
                    {{u"AToken", u"string", {pfConst}}, {u"ABackGround", u"TColor", {pfVar}},
                     {u"ATextColor", u"TColor", {pfVar}}, {u"AFontStyle", u"TFontStyles", {pfVar}}})},
        {u"OnGetNewBuffer",
         MethodType(u"TSxOnGetNewBuffer", mkFunction, {{u"AReset", u"Boolean"}, {u"S", u"string", {pfVar}}},
                    u"Boolean")},
    });
}

void UnRegisterCodeEditEvents()
{
    UnRegisterPublishedProps(TSxLangParser::ClassInfo());
    UnRegisterPublishedProps(TSxCodeEdit::ClassInfo());
    UnRegisterPublishedProps(TWinControl::ClassInfo());
}

}  // namespace sx::uSxCodeEditEvents
