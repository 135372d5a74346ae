// Parser choice of the demo editor, by file extension or by language name.
#include "DemoFiles.h"

#include "platform/QtConvert.h"

#include <QFileInfo>

namespace sx::demo {

namespace {

/// One language: the words that name it (file extensions and names, lower
/// case) and the class of its parser.
struct Language {
    const char* names;
    const char16_t* className;
};

const Language Languages[] = {
    {"pas dpr dpk inc pp pascal delphi", u"TsxCodePasParser"},
    {"vbs bas vb vbscript", u"TSxCodeVBParser"},
    {"js mjs javascript", u"TSxCodeJSParser"},
    {"xml xsd xsl xslt svg ui", u"TSxCodeXMLParser"},
    {"sql ddl", u"TSxCodeSqlParser"},
};

/// The registered parser of the language that the word names, made for owner.
TSxLangParser* ParserNamed(const QString& word, TComponent* owner)
{
    const QString key = word.trimmed().toLower();
    for (const Language& language : Languages) {
        if (!QString::fromLatin1(language.names).split(' ').contains(key))
            continue;
        if (const TClass* cls = GetClass(language.className))
            return TSxLangParserClass(*cls).Create(owner);
    }
    return nullptr;
}

}  // namespace

TSxLangParser* ParserForFile(const QString& path, TComponent* owner)
{
    return ParserNamed(QFileInfo(path).suffix(), owner);
}

TSxLangParser* ParserForLanguage(const QString& language, TComponent* owner) { return ParserNamed(language, owner); }

}  // namespace sx::demo
