// The languages the editor colours, by name and by file suffix: which parser
// class each one takes.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <QString>
#include <QStringList>

namespace sx {

/// The names of the languages, one for each parser: "pascal", "vb", "js", "xml", "sql".
QStringList LanguageNames();
/// The name of the language that a word names (a name, a file suffix such as
/// "pas", or a database's name for it such as "JavaScript"), in any case;
/// empty for a word that names none.
QString LanguageNamed(const QString& word);
/// The name of the language of a file, by its suffix; empty for any other.
QString LanguageOfFile(const QString& path);
/// A parser for the named language, owned by owner; none for an unknown name.
TSxLangParser* ParserForLanguage(const QString& word, TComponent* owner);
/// A parser for the file's language, owned by owner; none for plain text.
TSxLangParser* ParserForFile(const QString& path, TComponent* owner);

}  // namespace sx
