// Test helpers of the handler operations of the script parsers: a component
// with published events of several shapes, and a parser fed with a script.
#pragma once

#include "codeedit/uSxCodeParser.h"
#include "parsers/ScannerTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

namespace sx::test {

/// A component that publishes events of every shape a handler is written for.
class TScriptButton : public TComponent {
public:
    explicit TScriptButton(TComponent* AOwner, const String& AName = String()) : TComponent(AOwner)
    {
        SetName(AName);
    }
    static const TClass& ClassInfo()
    {
        static const TClass info(u"TScriptButton", &TComponent::ClassInfo(), ClassFactory<TScriptButton>());
        return info;
    }
    const TClass& ClassType() const override { return ClassInfo(); }

    /// OnClick(Sender), OnKeyPress(Sender, var Key), OnIdle(), a function
    /// OnValidate(Sender, const Value): Boolean, events with parameters of
    /// every way of passing, an array parameter, a class function, a procedure
    /// with a result type, one without type information, and a plain property.
    static void RegisterEvents()
    {
        RegisterPublishedProps(ClassInfo(), {
            {u"OnClick", NotifyEventType()},
            {u"OnKeyPress", MethodType(u"TKeyPressEvent", mkProcedure, {{u"Sender", u"TObject"}, {u"Key", u"Char", {pfVar}}})},
            {u"OnIdle", MethodType(u"TIdleEvent", mkProcedure, {})},
            {u"OnValidate", MethodType(u"TValidateEvent", mkFunction,
                                       {{u"Sender", u"TObject"}, {u"Value", u"string", {pfConst}}}, u"Boolean")},
            {u"OnPassing", MethodType(u"TPassingEvent", mkProcedure,
                                      {{u"A", u"Integer", {pfVar}}, {u"B", u"string", {pfConst}}, {u"C", u"Integer", {pfOut}},
                                       {u"D", u"Integer"}, {u"E", u"Integer", {pfVar, pfConst}}, {u"F", u"Integer", {pfConst, pfOut}}})},
            {u"OnArray", MethodType(u"TArrayEvent", mkProcedure, {{u"Values", u"Integer", {pfConst, pfArray}}})},
            {u"OnCount", MethodType(u"TCountEvent", mkClassFunction, {}, u"Integer")},
            {u"OnOdd", MethodType(u"TOddEvent", mkProcedure, {}, u"Integer")},
            {u"OnBroken", std::nullopt},
            {u"Caption", PlainType(tkUString, u"string")},
        });
    }
};

/// A script parser over lines, with the events of TScriptButton registered.
template <class TParser>
struct ScriptMethods : testing::Test {
    ScriptMethods() { TScriptButton::RegisterEvents(); }
    void Feed(std::vector<String> ALines)
    {
        feed.Lines = std::move(ALines);
        parser.SetOnGetNewBuffer(std::ref(feed));
    }
    /// The script's lines joined with CR LF, each line ended.
    static String Joined(const std::vector<String>& ALines)
    {
        String text;
        for (const String& line : ALines)
            text += line + u"\r\n";
        return text;
    }
    TParser parser{nullptr};
    LineFeed feed{std::vector<String>{}, &parser};
    TScriptButton button1{nullptr, u"Button1"};
};

}  // namespace sx::test
