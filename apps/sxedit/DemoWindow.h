// The demo editor's main window: one TSxCodeEdit with File, Edit, View and Help menus,
// a popup menu on the control, and a status bar with the caret position. The
// File menu also opens the database mode in a window of its own.
#pragma once

#include "codeedit/uSxCodeEdit.h"

#include <QMainWindow>

class QAction;
class QLabel;

namespace sx::demo {

class DemoWindow : public QMainWindow {
public:
    DemoWindow();
    ~DemoWindow() override;

    TSxCodeEdit& Edit() { return *FEdit; }
    /// Loads the file into the control and picks its parser; raises on failure.
    void Open(const QString& path);
    /// Writes the text as UTF-8 with the line ends the file had; answers success.
    bool Save(const QString& path);
    /// Colours Pascal as Delphi version V does, from its registry settings,
    /// and repaints; answers whether that version is there. The colour table
    /// is shared, so this holds for every Pascal file opened later too.
    /// Raises ERegistryException for an element that stores no colour at all.
    bool UseDelphiColours(Integer V);
    /// Where the registry settings are read from, for messages.
    static QString RegistryPlace();
    /// Opens the database mode over an SQLite file in a window of its own;
    /// a missing file is made from the bundled sample first.
    void OpenDatabase(const QString& path);
    /// Applies a bundled theme ("Classic", "Light", "Dark") or a theme file
    /// to every control of the process; raises when the file cannot be read.
    void UseTheme(const QString& nameOrFile);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildMenus();
    void BuildPopupMenu();
    /// The control's extended options to switch on and off, and the colour choices.
    void BuildViewMenu();
    /// Edit commands go to the control as posted messages, as a menu of any
    /// application would send them.
    QAction* AddCommand(QMenu* menu, const QString& caption, Cardinal message, const QKeySequence& key,
                        NativeUInt wParam = 0);
    void OpenChosenFile();
    void OpenChosenDatabase();
    void ChooseDelphiColours();
    bool SaveFile(bool askForName);
    bool MayDiscardChanges();
    void ShowCaretPosition();
    void ShowTitle();

    TSxCodeEdit* FEdit;
    TPopupMenu* FPopup;
    QLabel* FPosition;
    QString FThemeName;
    QAction* FCut = nullptr;
    QAction* FCopy = nullptr;
    QAction* FPaste = nullptr;
    QAction* FUndo = nullptr;
    QAction* FRedo = nullptr;
    QString FPath;
    bool FCrLf = false;
};

}  // namespace sx::demo
