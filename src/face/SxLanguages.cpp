// The language table: the words that name each language and its parser class.
#include "face/SxLanguages.h"

#include <QFileInfo>

namespace sx {

namespace {

/// One language: its name, the other words that name it (file suffixes and
/// the names databases give it, lower case) and the class of its parser.
struct Language {
    const char* name;
    const char* otherNames;
    const char16_t* className;
};

const Language Languages[] = {
    {"pascal", "pas dpr dpk inc pp delphi", u"TsxCodePasParser"},
    {"vb", "vbs bas vbscript", u"TSxCodeVBParser"},
    {"js", "mjs javascript", u"TSxCodeJSParser"},
    {"xml", "xsd xsl xslt svg ui", u"TSxCodeXMLParser"},
    {"sql", "ddl", u"TSxCodeSqlParser"},
};

const Language* LanguageOf(const QString& word)
{
    const QString key = word.trimmed().toLower();
    for (const Language& language : Languages) {
        if (key == QLatin1String(language.name) || QString::fromLatin1(language.otherNames).split(' ').contains(key))
            return &language;
    }
    return nullptr;
}

}  // namespace

QStringList LanguageNames()
{
    QStringList names;
    for (const Language& language : Languages)
        names << QString::fromLatin1(language.name);
    return names;
}

QString LanguageNamed(const QString& word)
{
    const Language* language = LanguageOf(word);
    return language ? QString::fromLatin1(language->name) : QString();
}

QString LanguageOfFile(const QString& path) { return LanguageNamed(QFileInfo(path).suffix()); }

TSxLangParser* ParserForLanguage(const QString& word, TComponent* owner)
{
    const Language* language = LanguageOf(word);
    if (!language)
        return nullptr;
    const TClass* cls = GetClass(language->className);
    return cls ? TSxLangParserClass(*cls).Create(owner) : nullptr;
}

TSxLangParser* ParserForFile(const QString& path, TComponent* owner)
{
    return ParserForLanguage(QFileInfo(path).suffix(), owner);
}

}  // namespace sx
