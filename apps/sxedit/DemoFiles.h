// Choosing the demo editor's parser by the file's extension or the language's name.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <QString>

namespace sx::demo {

/// A parser for the file's language, owned by owner; none for plain text.
TSxLangParser* ParserForFile(const QString& path, TComponent* owner);
/// A parser for a language named as a database record names it (Pascal, SQL,
/// VB, JS, XML, or an extension), owned by owner; none for any other name.
TSxLangParser* ParserForLanguage(const QString& language, TComponent* owner);

}  // namespace sx::demo
