// Writing and finding event handlers in script source, shared by the Visual
// Basic and JavaScript parsers: the text of a new handler from a template, and
// the scans that list the handlers fitting an event or find one's line.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <memory>
#include <string_view>

namespace sx::script {

/// Fills "%0:s" with AName and "%1:s" with AParams; other text stays as it is.
inline String FormatMethodTemplate(std::u16string_view ATemplate, const String& AName, const String& AParams)
{
    constexpr std::u16string_view nameMark = u"%0:s";
    constexpr std::u16string_view paramsMark = u"%1:s";
    String result;
    for (std::size_t i = 0; i < ATemplate.size();) {
        const std::u16string_view rest = ATemplate.substr(i);
        if (rest.starts_with(nameMark)) {
            result += AName;
            i += nameMark.size();
        } else if (rest.starts_with(paramsMark)) {
            result += AParams;
            i += paramsMark.size();
        } else {
            result += ATemplate[i++];
        }
    }
    return result;
}

/// The parameter names of a description, joined with ", ".
inline String ParamNameList(const TSxMethodDescription& ADescription)
{
    String list;
    for (Integer i = 0; i < ADescription.ParamCount(); ++i) {
        if (i > 0)
            list += u", ";
        list += ADescription.Params(i)->Name();
    }
    return list;
}

/// The text of a new handler, from the function template for a function event
/// and the sub template for every other kind. AName becomes the component's
/// name, "_" and the event (Button1_OnClick), or the event alone for an
/// unnamed component or an object that is no component. Without a method
/// description there is nothing to write: the text is empty.
inline String CreateMethodText(TObject* AInstance, const String& APropName, String& AName,
                               std::u16string_view AFunctionTemplate, std::u16string_view ASubTemplate)
{
    AName.clear();
    if (const auto* component = dynamic_cast<const TComponent*>(AInstance))
        AName = component->Name();
    AName = AName.empty() ? APropName : AName + u"_" + APropName;
    const std::unique_ptr<TSxMethodDescription> description(GetMethodDescription(AInstance, APropName));
    if (!description)
        return String();
    const std::u16string_view chosen = description->ProcType() == mkFunction ? AFunctionTemplate : ASubTemplate;
    return FormatMethodTemplate(chosen, AName, ParamNameList(*description));
}

/// What a method scan needs to know of a real token.
enum class MethodToken { Other, Function, Sub, End, Identifier, OpenParen, CloseParen, EndOfFile };

/// Tokens the method scans step over: line breaks, comments, the unknown,
/// and ByVal and ByRef in front of a parameter. Both script languages name
/// their tokens alike, so one template serves both enumerations.
template <class TToken>
bool IsNoise(TToken AToken)
{
    switch (AToken) {
    case TToken::vtLineBreak: case TToken::vtUnknown: case TToken::vtInvalid: case TToken::vtByVal:
    case TToken::vtByRef: case TToken::vtRem: case TToken::vtComment:
        return true;
    default:
        return false;
    }
}

/// The language's token as the method scans see it.
template <class TToken>
MethodToken ToMethodToken(TToken AToken)
{
    switch (AToken) {
    case TToken::vtFunction: return MethodToken::Function;
    case TToken::vtSub: return MethodToken::Sub;
    case TToken::vtEnd: return MethodToken::End;
    case TToken::vtIdentifier: return MethodToken::Identifier;
    case TToken::vtOpenParen: return MethodToken::OpenParen;
    case TToken::vtCloseParen: return MethodToken::CloseParen;
    case TToken::vtEndOfFile: return MethodToken::EndOfFile;
    default: return MethodToken::Other;
    }
}

/// Which "function" and "sub" tokens open a handler. A "sub" never counts
/// behind "end" and fits only procedure events; "function" may differ.
struct HeaderRules {
    /// "function" counts behind "end" too (JavaScript's "}" is an end).
    bool FunctionAfterEnd = false;
    /// "function" fits events of every kind, not only function events.
    bool FunctionFitsAnyKind = false;
};

inline bool IsHeader(MethodToken AToken, MethodToken APrevious, const HeaderRules& ARules)
{
    if (AToken == MethodToken::Function)
        return ARules.FunctionAfterEnd || APrevious != MethodToken::End;
    return AToken == MethodToken::Sub && APrevious != MethodToken::End;
}

inline bool KindFits(MethodToken AToken, TMethodKind AKind, const HeaderRules& ARules)
{
    if (AToken == MethodToken::Function)
        return ARules.FunctionFitsAnyKind || AKind == mkFunction;
    return AKind == mkProcedure;
}

/// Starts a method scan at the beginning of the parser's input, outside any
/// comment whatever a paint left behind.
inline void RestartScan(TSxLangParser& AParser)
{
    AParser.SetRemarkEnd(String());
    AParser.SetLineKind(0);
    AParser.ResetBuffer();
}

/// The names of the handlers that fit the event, each with CR LF, in source
/// order. A header fits by its kind and its number of parameters (each
/// identifier between its parentheses); ANext gives the real tokens.
template <class NextToken>
String FindSameMethods(TSxLangParser& AParser, TObject* AInstance, const String& APropName, const HeaderRules& ARules,
                       NextToken ANext)
{
    RestartScan(AParser);
    const std::unique_ptr<TSxMethodDescription> description(GetMethodDescription(AInstance, APropName));
    if (!description)
        return String();
    String result;
    String text;
    String name;
    MethodToken previous = MethodToken::Other;
    for (MethodToken token = ANext(text); token != MethodToken::EndOfFile; token = ANext(text)) {
        if (IsHeader(token, previous, ARules) && KindFits(token, description->ProcType(), ARules)) {
            token = ANext(name);
            if (token == MethodToken::Identifier) {
                Integer count = 0;
                token = ANext(text);
                if (token == MethodToken::OpenParen)
                    while (token != MethodToken::CloseParen && token != MethodToken::EndOfFile)
                        if ((token = ANext(text)) == MethodToken::Identifier)
                            ++count;
                if (count == description->ParamCount())
                    result += name + sLineBreak;
            }
            if (token == MethodToken::EndOfFile)
                break;
        }
        previous = token;
    }
    return result;
}

/// The line, from 1, of the first handler header of that name (case-blind),
/// whatever its kind; -1 when there is none.
template <class NextToken>
Integer FindMethodLine(TSxLangParser& AParser, const String& AMethodName, const HeaderRules& ARules, NextToken ANext)
{
    RestartScan(AParser);
    String text;
    MethodToken previous = MethodToken::Other;
    for (MethodToken token = ANext(text); token != MethodToken::EndOfFile; token = ANext(text)) {
        if (IsHeader(token, previous, ARules)) {
            token = ANext(text);
            if (token == MethodToken::Identifier && CompareText(text, AMethodName) == 0)
                return AParser.LineNr();
            if (token == MethodToken::EndOfFile)
                break;
        }
        previous = token;
    }
    return -1;
}

}  // namespace sx::script
