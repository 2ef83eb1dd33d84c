#pragma once
// A pull reader over an XML text that refuses what the project's files never hold and a
// hostile file might: entity declarations and references, and elements nested deeper
// than the limit. Every refusal and every syntax error throws KbeError with the source
// name, the line and the column. Callers stream through the parts they know and take
// the rest as DOM subtrees.

#include <velmora_util_export.h>

#include <VuxXml.h>

#include <QXmlStreamReader>

class VELMORA_UTIL_EXPORT VuxXmlReader
{
public:
    VuxXmlReader(const QByteArray& data, const QString& sourceName, const VuxXml::Limits& limits = VuxXml::Limits());

    // The next child element of the current element; false at the end of the current
    // element (or of the document).
    bool readNextStartElement();
    QStringRef name() const { return _reader.name(); }
    QStringRef attribute(const QString& name) const { return _reader.attributes().value(name); }
    // Skips the rest of the current element.
    void skipCurrentElement();
    // The text of the current element; child elements are skipped.
    QString readElementText();
    // The <field name="..."> children of the current element, up to its end.
    VuxXml::Fields readFields();
    // The current element with its attributes, text and children, made in `document`.
    QDomElement readSubtree(QDomDocument& document);
    // Reads to the end of the document, so that a damaged tail is found too.
    void finish();

    [[noreturn]] void fail(const QString& reason) const;

private:
    QXmlStreamReader::TokenType _next();

    QXmlStreamReader _reader;
    QString _source;
    VuxXml::Limits _limits;
    int _depth = 0;
};
