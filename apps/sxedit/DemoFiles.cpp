// Parser choice of the demo editor.
#include "DemoFiles.h"

#include "platform/QtConvert.h"

#include <QFileInfo>

namespace sx::demo {

TSxLangParser* ParserForFile(const QString& path, TComponent* owner)
{
    struct Language {
        const char* extensions;
        const char16_t* className;
    };
    static const Language languages[] = {
        {"pas dpr dpk inc pp", u"TsxCodePasParser"},
        {"vbs bas", u"TSxCodeVBParser"},
        {"js mjs", u"TSxCodeJSParser"},
        {"xml xsd xsl xslt svg ui", u"TSxCodeXMLParser"},
        {"sql ddl", u"TSxCodeSqlParser"},
    };
    const QString suffix = QFileInfo(path).suffix().toLower();
    for (const Language& language : languages) {
        if (!QString::fromLatin1(language.extensions).split(' ').contains(suffix))
            continue;
        if (const TClass* cls = GetClass(language.className))
            return TSxLangParserClass(*cls).Create(owner);
    }
    return nullptr;
}

}  // namespace sx::demo
