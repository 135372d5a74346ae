// SxCodeEditorPlugin: SxCodeEditor in Qt Designer's widget box. Designer
// makes real editors through it and lists their Q_PROPERTYs in its property
// editor; uic writes the include file it names into the generated code.
#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

/// The plugin's one widget. It uses only Designer's abstract interfaces
/// (Qt UiPlugin), so it links none of Designer's libraries.
class SxCodeEditorPlugin : public QObject, public QDesignerCustomWidgetInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QDesignerCustomWidgetInterface_iid)
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    explicit SxCodeEditorPlugin(QObject* parent = nullptr);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override;
    QWidget* createWidget(QWidget* parent) override;
    bool isInitialized() const override;
    void initialize(QDesignerFormEditorInterface* core) override;
    /// The editor as a new form gets it: its object name, its size, and how
    /// Designer edits its string properties.
    QString domXml() const override;

private:
    bool m_initialized = false;
};
