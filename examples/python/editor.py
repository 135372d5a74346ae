#!/usr/bin/env python3
"""A small editor window in Python: opens a file (the bundled Pascal sample
when none is named), colours it by its suffix, saves it with Ctrl+S and shows
the caret's place and an unsaved change in the title.

    PYTHONPATH=build/python python3 examples/python/editor.py [FILE]
"""
import sys
from pathlib import Path

from PyQt6.QtGui import QKeySequence, QShortcut
from PyQt6.QtWidgets import QApplication, QMessageBox

from sxcodeedit import SxCodeEditor


def main():
    app = QApplication(sys.argv)
    path = sys.argv[1] if len(sys.argv) > 1 else str(Path(__file__).resolve().parents[1] / "sample.pas")
    editor = SxCodeEditor()
    if not editor.load(path):
        sys.exit(editor.errorString())
    editor.setLanguageForFile(path)
    editor.setLineNumbersVisible(True)
    editor.setTheme("Light")

    def show_state(*_):
        line, column = editor.cursorPosition().line, editor.cursorPosition().column
        changed = "*" if editor.isModified() else ""
        editor.setWindowTitle(f"{changed}{Path(path).name} - line {line + 1}, column {column + 1}")

    def save():
        if not editor.save(path):
            QMessageBox.warning(editor, "Save", editor.errorString())

    editor.cursorPositionChanged.connect(show_state)
    editor.modificationChanged.connect(show_state)
    QShortcut(QKeySequence.StandardKey.Save, editor, save)
    show_state()
    editor.resize(800, 600)
    editor.show()
    sys.exit(app.exec())


if __name__ == "__main__":
    main()
