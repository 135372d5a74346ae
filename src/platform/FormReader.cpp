// The reader of form definitions over QXmlStreamReader. It knows the parts
// of Designer's format that a fixed-size dialog uses: nested widgets with
// properties and attributes, and values of the kinds rect, string, number,
// bool, enum, set, cstring, stringlist and font. Layouts and connections
// are not read.
#include "platform/FormReader.h"

#include "platform/ComCtrls.h"
#include "platform/Forms.h"
#include "platform/QtConvert.h"
#include "platform/StdCtrls.h"

#include <QFile>
#include <QXmlStreamReader>

namespace sx {

namespace {

/// The classes a form definition may name besides the registered ones.
const TClass* StockClass(const String& name)
{
    const TClass* const classes[] = {&TLabel::ClassInfo(),    &TEdit::ClassInfo(),     &TButton::ClassInfo(),
                                     &TCheckBox::ClassInfo(), &TGroupBox::ClassInfo(), &TRadioGroup::ClassInfo(),
                                     &TPageControl::ClassInfo(), &TTabSheet::ClassInfo()};
    for (const TClass* cls : classes)
        if (cls->ClassName() == name)
            return cls;
    return nullptr;
}

class FormReader {
public:
    FormReader(TForm& form, QIODevice& device, const String& source) : FForm(form), FXml(&device), FSource(source) {}

    void Read()
    {
        if (!FXml.readNextStartElement() || FXml.name() != u"ui")
            Fail(u"no <ui> element");
        bool formRead = false;
        while (FXml.readNextStartElement()) {
            if (FXml.name() == u"widget" && !formRead) {
                FForm.SetName(Attribute("name"));
                FForm.BeginLoading();
                FLoaded.push_back(&FForm);
                ReadWidget(FForm);
                formRead = true;
            } else {
                FXml.skipCurrentElement();
            }
        }
        if (FXml.hasError())
            Fail(FromQString(FXml.errorString()));
        if (!formRead)
            Fail(u"no form widget");
        for (TComponent* component : FLoaded)
            component->Loaded();
    }

private:
    /// The content of a <widget> element: its properties, then its children.
    void ReadWidget(TWidgetControl& control)
    {
        while (FXml.readNextStartElement()) {
            if (FXml.name() == u"property" || FXml.name() == u"attribute")
                ApplyProperty(control, ReadProperty());
            else if (FXml.name() == u"widget")
                ReadChild(control);
            else
                FXml.skipCurrentElement();
        }
    }

    void ReadChild(TWidgetControl& parent)
    {
        const String className = Attribute("class");
        const String name = Attribute("name");
        const TClass* cls = GetClass(className);
        if (!cls)
            cls = StockClass(className);
        if (!cls)
            Fail(u"unknown class " + className);
        auto* child = dynamic_cast<TWidgetControl*>(cls->Create(&FForm));
        if (!child)
            Fail(className + u" is no control");
        child->SetName(name);
        child->BeginLoading();
        FLoaded.push_back(child);
        child->SetParent(&parent);
        ReadWidget(*child);
    }

    void ApplyProperty(TWidgetControl& control, const TFormProperty& property)
    {
        if (!control.ReadProperty(property))
            Fail(u"property " + property.Name + u" of " + control.Name() + u" does not exist");
    }

    /// A <property> or <attribute> element with its one value element.
    TFormProperty ReadProperty()
    {
        TFormProperty property;
        property.Name = Attribute("name");
        while (FXml.readNextStartElement())
            ReadValue(property);
        return property;
    }

    void ReadValue(TFormProperty& property)
    {
        const auto kind = FXml.name();
        if (kind == u"rect") {
            ReadRect(property.Bounds);
        } else if (kind == u"string" || kind == u"enum" || kind == u"set" || kind == u"cstring") {
            property.Text = ReadText();
        } else if (kind == u"number") {
            property.Number = ReadNumber();
        } else if (kind == u"bool") {
            property.Bool = ReadText() == u"true";
        } else if (kind == u"stringlist") {
            while (FXml.readNextStartElement())
                property.Items.push_back(ReadText());
        } else if (kind == u"font") {
            ReadFont(property);
        } else {
            Fail(u"value of unknown kind " + FromQString(kind.toString()));
        }
    }

    void ReadRect(TRect& rect)
    {
        Integer x = 0, y = 0, width = 0, height = 0;
        while (FXml.readNextStartElement()) {
            const auto part = FXml.name();
            const Integer value = ReadNumber();
            if (part == u"x")
                x = value;
            else if (part == u"y")
                y = value;
            else if (part == u"width")
                width = value;
            else if (part == u"height")
                height = value;
        }
        rect = Rect(x, y, x + width, y + height);
    }

    void ReadFont(TFormProperty& property)
    {
        while (FXml.readNextStartElement()) {
            if (FXml.name() == u"family")
                property.Text = ReadText();
            else if (FXml.name() == u"pointsize")
                property.Number = ReadNumber();
            else
                FXml.skipCurrentElement();
        }
    }

    String ReadText() { return FromQString(FXml.readElementText()); }

    String Attribute(const char* name) const
    {
        return FromQString(FXml.attributes().value(QLatin1String(name)).toString());
    }

    Integer ReadNumber()
    {
        bool ok = false;
        const int value = FXml.readElementText().trimmed().toInt(&ok);
        if (!ok)
            Fail(u"bad number");
        return value;
    }

    [[noreturn]] void Fail(const String& what)
    {
        throw EReadError(u"Error reading " + FSource + u", line " + IntToStr(FXml.lineNumber()) + u": " + what);
    }

    TForm& FForm;
    QXmlStreamReader FXml;
    String FSource;
    std::vector<TComponent*> FLoaded;
};

}  // namespace

void ReadForm(TForm& Form, QIODevice& Device, const String& Source) { FormReader(Form, Device, Source).Read(); }

void ReadComponentRes(TForm& Form, const String& ResourceName)
{
    const String path = u":/forms/" + ResourceName + u".ui";
    QFile file(ToQString(path));
    if (!file.open(QIODevice::ReadOnly))
        throw EReadError(u"Resource " + ResourceName + u" not found");
    ReadForm(Form, file, path);
}

}  // namespace sx
