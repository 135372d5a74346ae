# Finds what the sxcodeedit Python module is built with: sip-build, the Python
# that runs it (which must hold PyQt-builder and PyQt6 with its .sip files)
# and Qt's qmake, which PyQt-builder asks for the Qt version. Sets
# SX_PYTHON_TOOLS_FOUND, and when found Python3_EXECUTABLE, SX_SIP_BUILD,
# SX_PYQT6_SIP_DIR, SX_QMAKE and SX_PYTHON_INSTALL_DIR; otherwise
# SX_PYTHON_MISSING says what is missing.

set(SX_PYTHON_TOOLS_FOUND OFF)
find_program(SX_SIP_BUILD sip-build)
if(NOT SX_SIP_BUILD)
  set(SX_PYTHON_MISSING "sip-build (Debian: sip-tools)")
  return()
endif()

# The bindings are for the PyQt6 of the Python that runs sip-build, which
# need not be the first python3 on PATH: take the interpreter its first line
# names.
if(NOT Python3_EXECUTABLE)
  file(STRINGS "${SX_SIP_BUILD}" sx_shebang LIMIT_COUNT 1)
  if(sx_shebang MATCHES "^#! *(/[^ ]*python[0-9.]*)$")
    set(Python3_EXECUTABLE "${CMAKE_MATCH_1}" CACHE FILEPATH "The Python of the sxcodeedit module")
  endif()
endif()
find_package(Python3 COMPONENTS Interpreter Development.Module)
if(NOT Python3_FOUND)
  set(SX_PYTHON_MISSING "Python's headers (Debian: python3-dev)")
  return()
endif()

execute_process(
  COMMAND "${Python3_EXECUTABLE}" -c "import os, pyqtbuild, PyQt6; print(os.path.join(os.path.dirname(PyQt6.__file__), 'bindings'))"
  OUTPUT_VARIABLE sx_sip_dir OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE sx_failed)
if(sx_failed OR NOT EXISTS "${sx_sip_dir}/QtWidgets/QtWidgetsmod.sip")
  set(SX_PYTHON_MISSING "PyQt-builder, or PyQt6 with its .sip files, for ${Python3_EXECUTABLE} (Debian: python3-pyqtbuild, pyqt6-dev)")
  return()
endif()
set(SX_PYQT6_SIP_DIR "${sx_sip_dir}")

if(TARGET Qt6::qmake)
  get_target_property(SX_QMAKE Qt6::qmake IMPORTED_LOCATION)
else()
  find_program(SX_QMAKE NAMES qmake6 qmake)
endif()
if(NOT SX_QMAKE)
  set(SX_PYTHON_MISSING "Qt's qmake (Debian: qmake6)")
  return()
endif()

# Where the module goes below the install prefix: Debian's Python looks in
# lib/python3/dist-packages of /usr, where PyQt6 is; other Pythons in their
# own platlib.
execute_process(
  COMMAND "${Python3_EXECUTABLE}" -c "import sysconfig as s; n = 'deb_system' if 'deb_system' in s.get_scheme_names() else 'posix_prefix'; print(s.get_path('platlib', n, vars={'platbase': '.', 'base': '.'}))"
  OUTPUT_VARIABLE sx_platlib OUTPUT_STRIP_TRAILING_WHITESPACE)
set(SX_PYTHON_INSTALL_DIR "${sx_platlib}" CACHE STRING "Where the sxcodeedit Python module installs, below the prefix")
set(SX_PYTHON_TOOLS_FOUND ON)
