// Fuzz target for the method operations of the Visual Basic and JavaScript
// parsers on random scripts: GetSameMethods and MethodLineNr end on any
// input, and the handler text of CreateMethod, put in front of the script,
// is found again under its name and listed for its event.
#include "FuzzSupport.h"

#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodeVBParser.h"
#include "platform/TypInfo.h"

#include <memory>

using namespace sx;
using namespace sx::fuzz;

namespace {

/// A component with events of the shapes a handler is written for.
class TFuzzButton : public TComponent {
    SX_DECLARE_CLASS
    using TComponent::TComponent;
    static void RegisterEvents()
    {
        RegisterPublishedProps(ClassInfo(), {
            {u"OnClick", NotifyEventType()},
            {u"OnKeyPress", MethodType(u"TKeyPressEvent", mkProcedure,
                                       {{u"Sender", u"TObject"}, {u"Key", u"Char", {pfVar}}})},
            {u"OnIdle", MethodType(u"TIdleEvent", mkProcedure, {})},
            {u"OnValidate", MethodType(u"TValidateEvent", mkFunction,
                                       {{u"Sender", u"TObject"}, {u"Value", u"string", {pfConst}}}, u"Boolean")},
        });
    }
};

SX_DEFINE_CLASS(TFuzzButton, TComponent)

const char16_t* const Events[] = {u"OnClick", u"OnKeyPress", u"OnIdle", u"OnValidate"};

/// The names of a GetSameMethods answer, each ended by CR LF.
std::vector<String> Names(const String& listed)
{
    SX_FUZZ_CHECK(listed.empty() || listed.ends_with(u"\r\n"), "a name without CR LF in " + Show(listed));
    return SplitLines(listed);
}

String ComponentName(ByteReader& in)
{
    String name;
    for (Integer n = in.Below(9); n > 0; --n)
        name.push_back(Char(u'A' + in.Below(26)));
    return name;
}

void Exercise(TSxLangParser& parser, TFuzzButton& button, const String& event, const std::vector<String>& script)
{
    // A listed name need not be found by MethodLineNr: the list is filtered
    // by the handler's kind before a name is read, the line search is not, so
    // in "Function Sub X" only the list sees the header of X.
    Feed(parser, script);
    for (const String& name : Names(parser.GetSameMethods(&button, event)))
        SX_FUZZ_CHECK(!name.empty(), "an empty name listed");
    parser.MethodLineNr(u"x");

    String name;
    const String created = parser.CreateMethod(&button, event, name);
    std::vector<String> withHandler = SplitLines(created);
    const auto handlerLines = Integer(withHandler.size());
    withHandler.insert(withHandler.end(), script.begin(), script.end());
    Feed(parser, withHandler);
    const Integer at = parser.MethodLineNr(name);
    SX_FUZZ_CHECK(at >= 1 && at <= handlerLines, Show(name) + " at line " + std::to_string(at) + " of " + Show(created));
    const std::vector<String> listed = Names(parser.GetSameMethods(&button, event));
    SX_FUZZ_CHECK(std::find(listed.begin(), listed.end(), name) != listed.end(), Show(name) + " not listed");
    parser.SetOnGetNewBuffer(nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool registered = (TFuzzButton::RegisterEvents(), true);
    (void)registered;
    static TSxCodeVBParser vb(nullptr);
    static TSxCodeJSParser js(nullptr);
    ByteReader in(data, size);
    TSxLangParser& parser = in.Below(2) == 0 ? static_cast<TSxLangParser&>(vb) : js;
    const String event = Events[in.Below(4)];
    TFuzzButton button(nullptr);
    button.SetName(ComponentName(in));
    Exercise(parser, button, event, SplitLines(in.Text(in.Left())));
    return 0;
}
