// Choosing the demo editor's parser by the file's extension.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <QString>

namespace sx::demo {

/// A parser for the file's language, owned by owner; none for plain text.
TSxLangParser* ParserForFile(const QString& path, TComponent* owner);

}  // namespace sx::demo
