#pragma once
// Writes an XML document as UTF-8 straight into a byte array, for the files that are
// written at every save and should cost no more than the bytes themselves (the windows
// file). Elements are indented by one space a level, an element with text only stays on
// one line and an empty one is closed at once ("<workspace/>"). Text and attribute values
// are escaped so that they read back exactly, line breaks, tabs and carriage returns
// included; the few characters XML 1.0 cannot hold at all (most control characters, lone
// surrogates) are written as U+FFFD.
//
//   QByteArray bytes;
//   VuxXmlWriter xml(bytes);
//   xml.writeStartDocument(QLatin1String("windows"));
//   xml.writeStartElement(QLatin1String("windows"));
//   xml.writeFields(fields);
//   xml.writeEndDocument();

#include <velmora_util_export.h>

#include <VuxXml.h>

#include <QByteArray>
#include <QString>
#include <QVector>

class QDomElement;

class VELMORA_UTIL_EXPORT VuxXmlWriter
{
public:
    // Appends to `out`, which must outlive the writer.
    explicit VuxXmlWriter(QByteArray& out);

    // The XML declaration and "<!DOCTYPE docType>".
    void writeStartDocument(QLatin1String docType);
    // The name's characters are not copied: a literal, or text that lives until the
    // element ends.
    void writeStartElement(QLatin1String name);
    void writeStartElement(const QString& name);
    // An attribute of the element just started.
    void writeAttribute(QLatin1String name, const QString& value);
    void writeAttribute(const QString& name, const QString& value);
    void writeCharacters(const QString& text);
    void writeEndElement();
    // Closes every open element.
    void writeEndDocument();

    // <field name="key">value</field> children of the current element, which
    // VuxXmlReader::readFields() reads back.
    void writeFields(const VuxXml::Fields& fields);
    // A DOM element with its attributes, text and children.
    void writeElement(const QDomElement& element);

private:
    void _closeStartTag();
    void _newLine();
    void _startElement(const char* name, int size, QByteArray owned);
    void _attribute(const char* name, int size, const QString& value);
    void _escaped(const QString& text, bool attribute);

    struct Open
    {
        const char* name; // in `owned`, or the caller's literal
        int size;
        QByteArray owned;
    };

    QByteArray& _out;
    QVector<Open> _open;        // the open elements
    bool _startTagOpen = false; // "<name attr=..." written, '>' not yet
    bool _hasChildren = false;  // the current element has child elements
};
