#!/usr/bin/env python3
"""Renders an SxCodeEditor showing a file into a PNG, with no display: the
widget paints itself through QWidget.grab() on Qt's offscreen platform.

    PYTHONPATH=build/python python3 examples/python/screenshot.py examples/sample.pas out.png [--theme Dark]
"""
import argparse
import os
import sys

# Before Qt starts: no window system is needed to paint into an image.
os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")

from PyQt6.QtWidgets import QApplication  # noqa: E402

from sxcodeedit import SxCodeEditor  # noqa: E402


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("file", help="the text file to show, coloured by its suffix")
    parser.add_argument("png", help="the image to write")
    parser.add_argument("--theme", default="Light", help="Light, Dark, Classic or a theme file")
    parser.add_argument("--size", default="640x400", help="the widget's size in pixels, WIDTHxHEIGHT")
    args = parser.parse_args()

    app = QApplication(sys.argv[:1])
    editor = SxCodeEditor()
    if not editor.load(args.file) or not editor.setTheme(args.theme):
        sys.exit(f"{args.file}: {editor.errorString()}")
    editor.setLanguageForFile(args.file)
    editor.setLineNumbersVisible(True)
    width, height = (int(n) for n in args.size.split("x"))
    editor.resize(width, height)
    editor.show()
    app.processEvents()  # lays out the control before it paints
    if not editor.grab().save(args.png):
        sys.exit(f"cannot write {args.png}")
    print(f"{args.png}: {width}x{height}")


if __name__ == "__main__":
    main()
