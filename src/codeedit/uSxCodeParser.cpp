// The parser base: its two input feeds, push-back and the base tokenizer;
// and the descriptions of event methods taken from type information.
#include "codeedit/uSxCodeParser.h"

#include "platform/Registry.h"

#include <algorithm>

namespace sx {

using namespace uSxCodeParser;

namespace {

/// The stream feed reads this many 16-bit characters per load.
constexpr Integer StreamBlockChars = 4096;

/// How a parameter is passed, from its flags; out wins over const, const over
/// var. A value parameter has none of the three.
TSxParamType ParamTypeOf(TParamFlags flags)
{
    TSxParamType result = ptNone;
    if (flags.Contains(pfVar))
        result = ptVar;
    if (flags.Contains(pfConst))
        result = ptConst;
    if (flags.Contains(pfOut))
        result = ptOut;
    return result;
}

void AddParams(TSxMethodDescription& description, const TTypeData& data)
{
    for (const TMethodParamData& source : data.Params) {
        TSxMethodParam* param = description.AddParam();
        param->SetParamType(ParamTypeOf(source.Flags));
        param->SetName(source.ParamName);
        param->SetParamVarType(source.Flags.Contains(pfArray) ? source.TypeName + u"[]" : source.TypeName);
    }
}

}  // namespace

TSxMethodParam* TSxMethodDescription::AddParam()
{
    auto* param = new TSxMethodParam;
    FParams.Add(param);
    return param;
}

TSxMethodParam* TSxMethodDescription::GetParams(Integer Index) const
{
    return static_cast<TSxMethodParam*>(FParams.Items(Index));
}

TSxMethodDescription* GetMethodDescription(const TObject* AInstance, const String& APropName)
{
    if (!AInstance || Trim(APropName).empty())
        return nullptr;
    const PPropInfo prop = GetPropInfo(AInstance, APropName, TTypeKinds{tkMethod});
    if (!prop)
        return nullptr;
    auto* description = new TSxMethodDescription;
    const TTypeData* data = GetTypeData(prop->PropType());
    if (!data)
        return description;
    description->SetProcType(data->MethodKind);
    if (const auto* component = dynamic_cast<const TComponent*>(AInstance))
        description->SetName(component->Name());
    description->SetProcName(prop->Name());
    AddParams(*description, *data);
    if (data->MethodKind == mkFunction || data->MethodKind == mkClassFunction)
        description->SetResultType(data->ResultType);
    return description;
}

SX_DEFINE_CLASS(TSxLangParser, TComponent)

TSxLangParser::TSxLangParser(TComponent* aOwner) : TComponent(aOwner) {}

TSxLangParser::~TSxLangParser() { ReleaseStream(); }

void TSxLangParser::ReleaseStream()
{
    if (FInputStream && FOwned)
        delete FInputStream;
    FInputStream = nullptr;
}

String TSxLangParser::GetLanguage() { return u"<undefined language>"; }

void TSxLangParser::LoadPushBuffer()
{
    if (FOnGetNewBuffer)
        LoadFromCallback();
    else if (FInputStream)
        LoadFromStream();
}

void TSxLangParser::LoadFromCallback()
{
    String piece;
    if (FOnGetNewBuffer(false, piece))
        FPushBuffer = std::move(piece);
    else
        FPushBuffer.assign(1, Char(0));
    FPushBufferLength = Integer(FPushBuffer.size());
    FPushPos = 0;
}

void TSxLangParser::LoadFromStream()
{
    unsigned char bytes[StreamBlockChars * 2];
    const Integer read = FInputStream->Read(bytes, Integer(sizeof bytes));
    FPushBufferLength = read > 0 ? read / 2 : 0;
    FPushBuffer.resize(std::size_t(FPushBufferLength));
    for (Integer i = 0; i < FPushBufferLength; ++i)
        FPushBuffer[std::size_t(i)] = Char(bytes[2 * i] | (bytes[2 * i + 1] << 8));
    if (FPushBufferLength < StreamBlockChars) {
        FPushBuffer.push_back(Char(0));  // a short read ends in a terminator
        ++FPushBufferLength;
    }
    FPushPos = 0;
}

Char TSxLangParser::InternalReadChar()
{
    if (FPushBufferLength <= FPushPos)
        LoadPushBuffer();
    if (FPushBufferLength <= FPushPos)
        return 0;
    const Char c = FPushBuffer[std::size_t(FPushPos)];
    ++FPushPos;
    if (c == 10)
        ++FLineNr;
    return c;
}

void TSxLangParser::InternalPushChar(Char AChar)
{
    if (AChar == 10)
        --FLineNr;
    if (FPushPos == 0) {
        FPushBuffer.insert(FPushBuffer.begin(), AChar);
        FPushBufferLength = Integer(FPushBuffer.size());
    } else {
        --FPushPos;
        FPushBuffer[std::size_t(FPushPos)] = AChar;
    }
}

Char TSxLangParser::ReadCurrChar() const
{
    if (FPushPos < 1 || FPushPos > Integer(FPushBuffer.size()))
        return 0;
    return FPushBuffer[std::size_t(FPushPos - 1)];
}

Char TSxLangParser::PeekChar()
{
    const Char c = ReadChar();
    PushChar(c);
    return c;
}

void TSxLangParser::PushStr(const String& AStr)
{
    for (auto it = AStr.rbegin(); it != AStr.rend(); ++it)
        InternalPushChar(*it);
}

String TSxLangParser::PeekChars(Integer Count)
{
    String result;
    result.reserve(Count > 0 ? std::size_t(Count) : 0);
    for (Integer i = 0; i < Count; ++i)
        result += ReadChar();
    PushStr(result);
    return result;
}

void TSxLangParser::Reset()
{
    FText.clear();
    if (FOnGetNewBuffer)
        FOnGetNewBuffer(true, FText);
    else if (FInputStream)
        FInputStream->SetPosition(0);
    FLineNr = 1;
    FPushPos = 0;
    FPushBuffer.clear();
    FPushBufferLength = 0;
}

void TSxLangParser::ResetBuffer()
{
    Reset();
    FPushBuffer.clear();
    FPushPos = 0;
    FPushBufferLength = 0;
}

void TSxLangParser::SetInputStream(TStream* AStream, bool Owner)
{
    if (FInputStream != AStream)
        ReleaseStream();
    FInputStream = AStream;
    FOwned = Owner;
    LoadPushBuffer();
}

TlngToken TSxLangParser::InternalGetNextToken(String& Token)
{
    Token.clear();
    for (;;) {
        const Char c = ReadChar();
        switch (c) {
        case 0:
            return tEndOfFile;
        case 10:
            break;
        case 13:
            if (Token.empty())
                return tLineBreak;
            InternalPushChar(c);
            return tLine;
        default:
            Token += c;
        }
    }
}

bool TSxLangParser::GetNextToken(String& Token, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                                 bool& LineBreak)
{
    const TlngToken token = InternalGetNextToken(Token);
    BackGround = clWindow;
    TextColor = clWindowText;
    FontStyle = TFontStyles{};
    LineBreak = token == tLineBreak || token == tEndOfFile;
    return token != tUnknown;
}

void TSxLangParser::GetPaintInfo(const String& AToken, TColor& ABackGround, TColor& ATextColor,
                                 TFontStyles& AFontStyle)
{
    if (FOnGetPaintInfo)
        FOnGetPaintInfo(AToken, ABackGround, ATextColor, AFontStyle);
}

String TSxLangParser::CreateMethod(TObject*, const String&, String&) { return String(); }

String TSxLangParser::GetSameMethods(TObject*, const String&) { return String(); }

Integer TSxLangParser::MethodLineNr(const String&) { return -1; }

// The highlight settings of a Delphi IDE. Every reader opens and frees its own
// registry object; a missing key or value gives the defaults, never an error.

namespace {

/// The 16 colours that older IDE versions store by index.
constexpr std::array<TColor, 16> IdePalette = {clBlack, clMaroon, clGreen,   clOlive,  clNavy, clPurple,
                                               clTeal,  clGray,   clSilver,  clRed,    clLime, clYellow,
                                               clBlue,  clFuchsia, clAqua,   clWhite};

/// The palette entry of AIndex; ADefault for a number outside the palette.
TColor PaletteColor(Integer AIndex, TColor ADefault)
{
    return AIndex >= 0 && AIndex < Integer(IdePalette.size()) ? IdePalette[std::size_t(AIndex)] : ADefault;
}

/// A flag stored as an integer (not 0: True) or as a word (TRUE in any case:
/// True); ADefault when the value is missing or empty.
bool ReadRegFlag(const TRegIniFile& AIni, const String& ASection, const String& AName, bool ADefault)
{
    if (AIni.ReadBool(ASection, AName, false))
        return true;
    const String word = UpperCase(AIni.ReadString(ASection, AName, String()));
    return word.empty() ? ADefault : word == u"TRUE";
}

/// The integer value AName of the key made of a backslash, AKey, ASection and
/// a backslash, joined as they stand; ADefault when that key is missing. A
/// missing or non-integer value raises ERegistryException.
Integer ReadRegInteger(const String& AKey, const String& ASection, const String& AName, Integer ADefault)
{
    TRegistry registry(KEY_READ);
    registry.SetRootKey(HKEY_CURRENT_USER);
    if (!registry.OpenKey(u"\\" + AKey + ASection + u"\\", false))
        return ADefault;
    const Integer result = registry.ReadInteger(AName);
    registry.CloseKey();
    return result;
}

/// A colour stored as a framework colour identifier or as a palette index.
/// When the value is missing or empty, the palette index stored under the
/// older name (AName without its " New") is tried. ADefault when neither gives a colour.
TColor ReadRegColor(const TRegIniFile& AIni, const String& AKey, const String& ASection, const String& AName,
                    TColor ADefault)
{
    const String text = AIni.ReadString(ASection, AName, String());
    if (text.empty()) {
        const String oldName = AName.substr(0, AName.size() - std::min<std::size_t>(4, AName.size()));
        return PaletteColor(ReadRegInteger(AKey, ASection, oldName, -1), ADefault);
    }
    if (text[0] >= u'0' && text[0] <= u'9')
        return PaletteColor(AIni.ReadInteger(ASection, AName, -1), ADefault);
    TColor result = ADefault;
    IdentToColor(text, result);  // an unknown word leaves the default
    return result;
}

void ReadStyleFlag(const TRegIniFile& AIni, const String& ASection, const String& AName, TFontStyle AFlag,
                   TFontStyles& AStyle)
{
    if (ReadRegFlag(AIni, ASection, AName, false))
        AStyle.Include(AFlag);
    else
        AStyle.Exclude(AFlag);
}

}  // namespace

bool DelphiKnown(Integer V)
{
    const TRegIniFile ini(u"software\\borland\\delphi\\" + IntToStr(V) + u".0\\", KEY_READ);
    return !ini.ReadString(String(), u"App", String()).empty();
}

void GetPaintInfoFromDelphi(Integer V, const String& ASection, TColor& ABackGround, TColor& ATextColor,
                            TFontStyles& AStyle)
{
    const String key = u"Software\\Borland\\Delphi\\" + IntToStr(V) + u".0\\Editor\\HighLight\\";
    GetPaintInfoFromReg(key, ASection, ABackGround, ATextColor, AStyle);
}

void GetPaintInfoFromReg(const String& AKey, const String& ASection, TColor& ABackGround, TColor& ATextColor,
                         TFontStyles& AStyle)
{
    TRegIniFile ini(AKey, KEY_READ);
    ini.SetRootKey(HKEY_CURRENT_USER);
    ReadStyleFlag(ini, ASection, u"Bold", TFontStyle::fsBold, AStyle);
    ReadStyleFlag(ini, ASection, u"Italic", TFontStyle::fsItalic, AStyle);
    ReadStyleFlag(ini, ASection, u"Underline", TFontStyle::fsUnderline, AStyle);
    ABackGround = ReadRegFlag(ini, ASection, u"Default BackGround", false)
                      ? clWindow
                      : ReadRegColor(ini, AKey, ASection, u"Background Color New", clWindow);
    ATextColor = ReadRegFlag(ini, ASection, u"Default ForeGround", false)
                     ? clWindowText
                     : ReadRegColor(ini, AKey, ASection, u"Foreground Color New", clWindowText);
}

}  // namespace sx
