#include "VuxXml.h"

#include <KbeError.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QVector>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

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
    const QFileInfo info(path);
    if (!info.isFile())
        throw KbeError(tr("'%1' is not a file.").arg(QDir::toNativeSeparators(path)));
    if (info.size() > limits.maxBytes)
        throw KbeError(tr("'%1' is too large (%2 bytes; at most %3 bytes are read).")
                           .arg(QDir::toNativeSeparators(path))
                           .arg(info.size())
                           .arg(limits.maxBytes));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw KbeError(tr("'%1' cannot be read: %2").arg(QDir::toNativeSeparators(path), file.errorString()));
    // Read one byte past the limit so that a file that grew since the size check is caught.
    const QByteArray data = file.read(limits.maxBytes + 1);
    if (data.size() > limits.maxBytes)
        throw KbeError(tr("'%1' is too large (at most %2 bytes are read).")
                           .arg(QDir::toNativeSeparators(path))
                           .arg(limits.maxBytes));
    return parseXml(data, docTypeName, limits, QDir::toNativeSeparators(path));
}

QDomDocument VuxXml::parseXml(const QByteArray& data, const QString& docTypeName, const Limits& limits,
                              const QString& sourceName)
{
    QDomDocument document(docTypeName);
    QXmlStreamReader reader(data);
    QVector<QDomNode> stack;
    stack.append(document);

    auto fail = [&](const QString& reason) {
        throw KbeError(tr("'%1' is not a valid file (line %2, column %3): %4")
                           .arg(sourceName)
                           .arg(reader.lineNumber())
                           .arg(reader.columnNumber())
                           .arg(reason));
    };

    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::DTD:
            if (!reader.entityDeclarations().isEmpty() || !reader.notationDeclarations().isEmpty())
                fail(tr("it declares entities, which are not accepted"));
            break;
        case QXmlStreamReader::StartElement: {
            if (stack.size() > limits.maxDepth)
                fail(tr("elements are nested deeper than %1 levels").arg(limits.maxDepth));
            QDomElement element = document.createElement(reader.name().toString());
            for (const QXmlStreamAttribute& a : reader.attributes())
                element.setAttribute(a.qualifiedName().toString(), a.value().toString());
            stack.last().appendChild(element);
            stack.append(element);
            break;
        }
        case QXmlStreamReader::EndElement:
            stack.removeLast();
            break;
        case QXmlStreamReader::Characters:
            if (stack.size() > 1 && !reader.isWhitespace())
                stack.last().appendChild(reader.isCDATA() ? QDomNode(document.createCDATASection(reader.text().toString()))
                                                          : QDomNode(document.createTextNode(reader.text().toString())));
            break;
        case QXmlStreamReader::EntityReference:
            fail(tr("it refers to the undeclared entity '%1'").arg(reader.name()));
            break;
        default:
            break;
        }
    }
    if (reader.hasError())
        fail(reader.errorString());
    if (document.documentElement().isNull())
        fail(tr("it has no root element"));
    return document;
}

void VuxXml::saveXml(const QString& path, const QDomDocument& document)
{
    saveXml(path, document.toByteArray(1));
}

void VuxXml::saveXml(const QString& path, const QByteArray& content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw KbeError(tr("'%1' cannot be written: %2").arg(QDir::toNativeSeparators(path), file.errorString()));
    if (file.write(content) != content.size() || !file.commit())
        throw KbeError(tr("'%1' cannot be written: %2").arg(QDir::toNativeSeparators(path), file.errorString()));
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

void VuxXml::writeFields(QXmlStreamWriter& writer, const Fields& fields)
{
    for (const auto& f : fields) {
        writer.writeStartElement(kField);
        writer.writeAttribute(kName, f.first);
        writer.writeCharacters(f.second);
        writer.writeEndElement();
    }
}

VuxXml::Fields VuxXml::readFields(QXmlStreamReader& reader)
{
    Fields fields;
    while (reader.readNextStartElement()) {
        if (reader.name() == kField) {
            const QString name = reader.attributes().value(kName).toString();
            fields.insert(name, reader.readElementText(QXmlStreamReader::SkipChildElements));
        } else {
            reader.skipCurrentElement();
        }
    }
    return fields;
}
