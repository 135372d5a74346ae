// The Qt Designer plugin as Designer uses it: loaded from the build tree,
// described for the widget box, and making editors whose properties Designer
// reads and writes by name.
#include <QDir>
#include <QMetaProperty>
#include <QPluginLoader>
#include <QWidget>
#include <QXmlStreamReader>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <gtest/gtest.h>

#include <memory>

namespace {

/// The plugin's widget interface, initialized as Designer does before it makes widgets.
QDesignerCustomWidgetInterface* LoadPlugin()
{
    QPluginLoader loader(QStringLiteral(SX_DESIGNER_PLUGIN));
    auto* plugin = qobject_cast<QDesignerCustomWidgetInterface*>(loader.instance());
    EXPECT_NE(plugin, nullptr) << qPrintable(loader.errorString());
    if (plugin && !plugin->isInitialized())
        plugin->initialize(nullptr);
    return plugin;
}

TEST(DesignerPlugin, DescribesTheEditorForTheWidgetBoxAndForUic)
{
    QDesignerCustomWidgetInterface* plugin = LoadPlugin();
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(plugin->name().toStdString(), "SxCodeEditor");
    EXPECT_FALSE(plugin->isContainer());
    // uic writes this include into generated code: it must name the header
    // as the source tree and the installed package hold it.
    EXPECT_TRUE(QDir(QStringLiteral(SX_SOURCE_DIR "/src")).exists(plugin->includeFile()))
        << qPrintable(plugin->includeFile());

    // Designer takes the first widget inside <ui> as the one a new form gets.
    QXmlStreamReader xml(plugin->domXml());
    ASSERT_TRUE(xml.readNextStartElement() && xml.name() == u"ui");
    ASSERT_TRUE(xml.readNextStartElement() && xml.name() == u"widget") << qPrintable(xml.errorString());
    EXPECT_EQ(xml.attributes().value(QLatin1String("class")).toString().toStdString(), "SxCodeEditor");
    EXPECT_FALSE(xml.attributes().value(QLatin1String("name")).isEmpty());
}

TEST(DesignerPlugin, MakesEditorsWhosePropertiesDesignerSetsByName)
{
    QDesignerCustomWidgetInterface* plugin = LoadPlugin();
    ASSERT_NE(plugin, nullptr);
    const std::unique_ptr<QWidget> widget(plugin->createWidget(nullptr));
    ASSERT_TRUE(widget && widget->inherits("SxCodeEditor"));

    // Designer shows every property of the class and writes back what it read.
    const QMetaObject* meta = widget->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        SCOPED_TRACE(property.name());
        EXPECT_TRUE(property.isDesignable() && property.isReadable() && property.isWritable());
        EXPECT_TRUE(widget->setProperty(property.name(), widget->property(property.name())));
    }

}

}  // namespace
