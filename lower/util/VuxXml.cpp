#include "VuxXml.h"

#include <KbeError.h>
#include <VusFileUtils.h>
#include <VusSaveFile.h>
#include <VuxXmlReader.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {

const QString kField = QStringLiteral("field");
const QString kName = QStringLiteral("name");

QString tr(const char* text)
{
    return QCoreApplication::translate("VuxXml", text);
}

} // namespace

QDomDocument VuxXml::readXml(const QString& path, const QString& docTypeName)
{
    return readXml(path, docTypeName, Limits());
}

QDomDocument VuxXml::readXml(const QString& path, const QString& docTypeName, const Limits& limits)
{
    return parseXml(readFile(path, limits), docTypeName, limits, QDir::toNativeSeparators(path));
}

QByteArray VuxXml::readFile(const QString& path, const Limits& limits)
{
    QFile file(path);
    VusFileUtils::openForReading(file);
    if (file.size() > limits.maxBytes)
        throw KbeError(tr("'%1' is too large (%2 bytes; at most %3 bytes are read).")
                           .arg(QDir::toNativeSeparators(path))
                           .arg(file.size())
                           .arg(limits.maxBytes));
    // Read in chunks against the limit, which also catches a file that grew since the check.
    QByteArray data;
    data.reserve(int(file.size()));
    char chunk[64 * 1024];
    qint64 n = 0;
    while ((n = file.read(chunk, sizeof chunk)) > 0) {
        if (data.size() + n > limits.maxBytes)
            throw KbeError(tr("'%1' is too large (at most %2 bytes are read).")
                               .arg(QDir::toNativeSeparators(path))
                               .arg(limits.maxBytes));
        data.append(chunk, int(n));
    }
    if (n < 0)
        throw KbeError(tr("'%1' cannot be read: %2").arg(QDir::toNativeSeparators(path), file.errorString()));
    return data;
}

QDomDocument VuxXml::parseXml(const QByteArray& data, const QString& docTypeName, const Limits& limits,
                              const QString& sourceName)
{
    QDomDocument document(docTypeName);
    VuxXmlReader reader(data, sourceName, limits);
    if (!reader.readNextStartElement())
        reader.fail(tr("it has no root element"));
    document.appendChild(reader.readSubtree(document));
    reader.finish();
    return document;
}

void VuxXml::saveXml(const QString& path, const QDomDocument& document)
{
    saveXml(path, document.toByteArray(1));
}

void VuxXml::saveXml(const QString& path, const QByteArray& content)
{
    VusSaveFile::save(path, content);
}

void VuxXml::saveFields(QDomDocument& document, QDomElement& element, const Fields& fields)
{
    for (const auto& f : fields) {
        QDomElement field = document.createElement(kField);
        field.setAttribute(kName, f.first);
        if (!f.second.isEmpty())
            field.appendChild(document.createTextNode(f.second));
        element.appendChild(field);
    }
}

VuxXml::Fields VuxXml::loadFields(const QDomElement& element)
{
    Fields fields;
    for (QDomElement e = element.firstChildElement(kField); !e.isNull(); e = e.nextSiblingElement(kField))
        fields.insert(e.attribute(kName), e.text());
    return fields;
}
