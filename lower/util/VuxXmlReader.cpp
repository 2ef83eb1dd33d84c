#include "VuxXmlReader.h"

#include <KbeError.h>

#include <QCoreApplication>
#include <QVector>

namespace {
QString tr(const char* text)
{
    return QCoreApplication::translate("VuxXml", text);
}
} // namespace

VuxXmlReader::VuxXmlReader(const QByteArray& data, const QString& sourceName, const VuxXml::Limits& limits)
    : _reader(data)
    , _source(sourceName)
    , _limits(limits)
{
}

void VuxXmlReader::fail(const QString& reason) const
{
    throw KbeError(tr("'%1' is not a valid file (line %2, column %3): %4")
                       .arg(_source)
                       .arg(_reader.lineNumber())
                       .arg(_reader.columnNumber())
                       .arg(reason));
}

QXmlStreamReader::TokenType VuxXmlReader::_next()
{
    const QXmlStreamReader::TokenType token = _reader.readNext();
    switch (token) {
    case QXmlStreamReader::DTD:
        if (!_reader.entityDeclarations().isEmpty() || !_reader.notationDeclarations().isEmpty())
            fail(tr("it declares entities, which are not accepted"));
        break;
    case QXmlStreamReader::StartElement:
        if (++_depth > _limits.maxDepth)
            fail(tr("elements are nested deeper than %1 levels").arg(_limits.maxDepth));
        break;
    case QXmlStreamReader::EndElement:
        --_depth;
        break;
    case QXmlStreamReader::EntityReference:
        fail(tr("it refers to the undeclared entity '%1'").arg(_reader.name()));
    case QXmlStreamReader::Invalid:
        fail(_reader.errorString());
    default:
        break;
    }
    return token;
}

bool VuxXmlReader::readNextStartElement()
{
    for (;;) {
        switch (_next()) {
        case QXmlStreamReader::StartElement: return true;
        case QXmlStreamReader::EndElement:
        case QXmlStreamReader::EndDocument: return false;
        default: break;
        }
    }
}

void VuxXmlReader::skipCurrentElement()
{
    const int depth = _depth;
    while (_depth >= depth)
        if (_next() == QXmlStreamReader::EndDocument)
            return;
}

QString VuxXmlReader::readElementText()
{
    QString text;
    const int depth = _depth;
    for (;;) {
        const QXmlStreamReader::TokenType token = _next();
        if (token == QXmlStreamReader::Characters && _depth == depth)
            text += _reader.text();
        else if ((token == QXmlStreamReader::EndElement && _depth < depth) || token == QXmlStreamReader::EndDocument)
            return text;
    }
}

VuxXml::Fields VuxXmlReader::readFields()
{
    VuxXml::Fields fields;
    while (readNextStartElement()) {
        if (_reader.name() == QLatin1String("field")) {
            const QString name = attribute(QStringLiteral("name")).toString();
            fields.insert(name, readElementText());
        } else {
            skipCurrentElement();
        }
    }
    return fields;
}

QDomElement VuxXmlReader::readSubtree(QDomDocument& document)
{
    auto makeElement = [&]() {
        QDomElement element = document.createElement(_reader.name().toString());
        for (const QXmlStreamAttribute& a : _reader.attributes())
            element.setAttribute(a.qualifiedName().toString(), a.value().toString());
        return element;
    };
    QDomElement top = makeElement();
    QVector<QDomElement> stack{top};
    while (!stack.isEmpty()) {
        switch (_next()) {
        case QXmlStreamReader::StartElement: {
            QDomElement child = makeElement();
            stack.last().appendChild(child);
            stack.append(child);
            break;
        }
        case QXmlStreamReader::EndElement:
            stack.removeLast();
            break;
        case QXmlStreamReader::Characters:
            if (!_reader.isWhitespace())
                stack.last().appendChild(document.createTextNode(_reader.text().toString()));
            break;
        case QXmlStreamReader::EndDocument:
            fail(tr("the document ends inside an element"));
        default:
            break;
        }
    }
    return top;
}

void VuxXmlReader::finish()
{
    while (!_reader.atEnd())
        _next();
    if (_reader.hasError())
        fail(_reader.errorString());
}
