"""The sxcodeedit module driven as a PyQt6 program drives it."""
import subprocess
import sys
from pathlib import Path

import pytest
from PyQt6.QtGui import QImage
from PyQt6.QtTest import QTest
from PyQt6.QtWidgets import QApplication

from sxcodeedit import SxCodeEditor, SxTextPosition, SxTextRange

Find = SxCodeEditor.FindFlag
PASCAL = "begin\n  Writeln('Hello');\nend."
EXAMPLES = Path(__file__).resolve().parents[2] / "examples"


def at(line, column, to_column):
    return SxTextRange(SxTextPosition(line, column), SxTextPosition(line, to_column))


@pytest.fixture(scope="module")
def app():
    return QApplication.instance() or QApplication([])


@pytest.fixture
def editor(app):
    editor = SxCodeEditor()
    assert editor.setLanguage("pascal") and editor.language() == "pascal"
    editor.setText(PASCAL)
    return editor


def test_typing_reports_each_key_and_the_caret(editor):
    changes, moves = [], []
    editor.textChanged.connect(lambda: changes.append(editor.text()))
    editor.cursorPositionChanged.connect(lambda line, column: moves.append((line, column)))
    editor.setCursorPosition(1, 2)
    QTest.keyClicks(editor.focusProxy(), "x := 1; ")
    assert editor.lineText(1) == "  x := 1; Writeln('Hello');"
    assert editor.cursorPosition() == SxTextPosition(1, 10) and moves[-1] == (1, 10)
    assert len(changes) == len("x := 1; ") and changes[-1] == editor.text() and editor.isModified()


def test_save_and_load_give_back_the_text(editor, tmp_path):
    path = str(tmp_path / "unit1.pas")
    assert editor.save(path) and not editor.isModified(), editor.errorString()
    other = SxCodeEditor()
    assert other.load(path), other.errorString()
    assert other.text() == PASCAL and not other.isModified()
    assert not other.load(str(tmp_path / "missing.pas")) and other.errorString()
    assert other.text() == PASCAL


@pytest.mark.parametrize("text, flags, hit", [
    ("WRITELN", Find(0), at(1, 2, 9)),
    ("WRITELN", Find.FindCaseSensitively, None),
    ("begin", Find.FindBackward | Find.FindWrapAround, at(0, 0, 5)),
])
def test_find_selects_the_hit(editor, text, flags, hit):
    assert editor.find(text, flags) == (hit is not None)
    assert editor.selection() == (hit or SxTextRange())


def test_replace_all_counts_the_hits(editor):
    assert editor.replaceAll("e", "E", Find(0)) == 4
    assert editor.text() == "bEgin\n  WritEln('HEllo');\nEnd."


@pytest.mark.parametrize("call", [
    lambda editor: editor.setText(None),
    lambda editor: editor.setLanguage(5),
    lambda editor: editor.find("x", None),
    lambda editor: SxCodeEditor(editor.text()),
])
def test_wrong_arguments_raise_type_error(editor, call):
    with pytest.raises(TypeError):
        call(editor)
    assert editor.text() == PASCAL


def test_positions_and_ranges_are_values():
    start, end = SxTextPosition(1, 2), SxTextPosition(line=1, column=5)
    assert start != end and start < end and SxTextPosition(0, 9) < start
    span = SxTextRange(start, end)
    assert eval(repr(span)) == span and not span.isEmpty()
    assert SxTextRange(end, end).isEmpty()


def test_screenshot_example_writes_a_png(tmp_path):
    png = tmp_path / "sample.png"
    subprocess.run([sys.executable, str(EXAMPLES / "python" / "screenshot.py"),
                    str(EXAMPLES / "sample.pas"), str(png)], check=True)
    assert QImage(str(png)).width() > 100
