// SxCodeEditorPlugin: what Designer shows of SxCodeEditor in its widget box
// and what it writes into a form that uses it.
#include "designer/SxCodeEditorPlugin.h"

#include "face/SxCodeEditor.h"

#include <QIcon>

SxCodeEditorPlugin::SxCodeEditorPlugin(QObject* parent) : QObject(parent) {}

QString SxCodeEditorPlugin::name() const { return QStringLiteral("SxCodeEditor"); }

QString SxCodeEditorPlugin::group() const { return QStringLiteral("Sx Code Editor"); }

QString SxCodeEditorPlugin::toolTip() const
{
    return QStringLiteral("Code editor with syntax colouring for Pascal, Visual Basic, JavaScript, XML and SQL");
}

QString SxCodeEditorPlugin::whatsThis() const
{
    return QStringLiteral("SxCodeEditor: a source-code editing widget. Set its language (%1), line numbers, "
                          "margins and undo behaviour in the property editor.")
        .arg(SxCodeEditor::languages().join(QLatin1String(", ")));
}

// Installed headers live below include/sxcodeedit, which the package puts on
// the include path, so forms include the header the way the library does.
QString SxCodeEditorPlugin::includeFile() const { return QStringLiteral("face/SxCodeEditor.h"); }

QIcon SxCodeEditorPlugin::icon() const { return QIcon(QStringLiteral(":/sxcodeeditor/designer/SxCodeEditor.png")); }

bool SxCodeEditorPlugin::isContainer() const { return false; }

QWidget* SxCodeEditorPlugin::createWidget(QWidget* parent) { return new SxCodeEditor(parent); }

bool SxCodeEditorPlugin::isInitialized() const { return m_initialized; }

void SxCodeEditorPlugin::initialize(QDesignerFormEditorInterface*) { m_initialized = true; }

// The text, the language and the theme are code and names, never words to
// translate; the text gets Designer's multi-line editor.
QString SxCodeEditorPlugin::domXml() const
{
    return QStringLiteral(R"(<ui language="c++">
 <widget class="SxCodeEditor" name="codeEditor">
  <property name="geometry">
   <rect><x>0</x><y>0</y><width>400</width><height>300</height></rect>
  </property>
 </widget>
 <customwidgets>
  <customwidget>
   <class>SxCodeEditor</class>
   <propertyspecifications>
    <stringpropertyspecification name="text" notr="true" type="multiline"/>
    <stringpropertyspecification name="language" notr="true" type="singleline"/>
    <stringpropertyspecification name="theme" notr="true" type="singleline"/>
   </propertyspecifications>
  </customwidget>
 </customwidgets>
</ui>
)");
}
