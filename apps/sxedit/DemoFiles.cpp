// File reading and parser choice of the demo editor.
#include "DemoFiles.h"

#include "platform/QtConvert.h"
#include "platform/Streams.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

namespace sx::demo {

String ReadTextFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw EStreamError(u"Cannot open file \"" + FromQString(path) + u"\": " + FromQString(file.errorString()));
    const QByteArray bytes = file.readAll();
    const bool utf16 = bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF");
    QStringDecoder decoder(utf16 ? QStringConverter::Utf16 : QStringConverter::Utf8);
    return FromQString(decoder.decode(bytes));
}

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
