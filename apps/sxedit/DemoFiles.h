// Reading a text file for the demo editor and choosing its parser by the
// file's extension.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <QString>

namespace sx::demo {

/// The file's text: UTF-16 with a byte-order mark, else UTF-8. Raises
/// EStreamError with the file's name when it cannot be read.
String ReadTextFile(const QString& path);

/// A parser for the file's language, owned by owner; none for plain text.
TSxLangParser* ParserForFile(const QString& path, TComponent* owner);

}  // namespace sx::demo
