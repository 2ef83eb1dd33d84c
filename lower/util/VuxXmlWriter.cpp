#include "VuxXmlWriter.h"

#include <QDomElement>
#include <QDomNamedNodeMap>

#include <cstring>
#include <utility>

namespace {

// Writes the characters from p up to sliceEnd (a surrogate pair may end one past it) and
// leaves p after the last one read and o after the last byte written.
void escapeSlice(const QChar*& p, const QChar* sliceEnd, const QChar* end, char*& o, bool attribute)
{
    const auto put = [&o](const char* s, int n) {
        memcpy(o, s, size_t(n));
        o += n;
    };
    for (; p < sliceEnd; ++p) {
        const char16_t c = p->unicode();
        if (c >= 0x20 && c < 0x80) {
            switch (c) {
            case '<': put("&lt;", 4); break;
            case '>': put("&gt;", 4); break;
            case '&': put("&amp;", 5); break;
            case '"': put("&quot;", 6); break;
            default: *o++ = char(c); break;
            }
        } else if (c < 0x20) {
            // A carriage return, and in attributes a line break or a tab, would be changed
            // by the reader's normalisation: as character references they come back.
            if (c == '\r')
                put("&#13;", 5);
            else if (c == '\n' && attribute)
                put("&#10;", 5);
            else if (c == '\t' && attribute)
                put("&#9;", 4);
            else if (c == '\n' || c == '\t')
                *o++ = char(c);
            else
                put("\xEF\xBF\xBD", 3);
        } else if (c < 0x800) {
            *o++ = char(0xC0 | (c >> 6));
            *o++ = char(0x80 | (c & 0x3F));
        } else if (QChar::isHighSurrogate(c) && p + 1 < end && QChar::isLowSurrogate(p[1].unicode())) {
            const char32_t u = QChar::surrogateToUcs4(c, p[1].unicode());
            ++p;
            *o++ = char(0xF0 | (u >> 18));
            *o++ = char(0x80 | ((u >> 12) & 0x3F));
            *o++ = char(0x80 | ((u >> 6) & 0x3F));
            *o++ = char(0x80 | (u & 0x3F));
        } else if (QChar::isSurrogate(c) || c == 0xFFFE || c == 0xFFFF) {
            put("\xEF\xBF\xBD", 3);
        } else {
            *o++ = char(0xE0 | (c >> 12));
            *o++ = char(0x80 | ((c >> 6) & 0x3F));
            *o++ = char(0x80 | (c & 0x3F));
        }
    }
}

} // namespace

VuxXmlWriter::VuxXmlWriter(QByteArray& out)
    : _out(out)
{
    _open.reserve(16);
}

void VuxXmlWriter::writeStartDocument(QLatin1String docType)
{
    _out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE ";
    _out.append(docType.data(), docType.size());
    _out += '>';
}

void VuxXmlWriter::_closeStartTag()
{
    if (_startTagOpen) {
        _out += '>';
        _startTagOpen = false;
    }
}

void VuxXmlWriter::_newLine()
{
    _out += '\n';
    _out.append(_open.size(), ' ');
}

void VuxXmlWriter::_startElement(const char* name, int size, QByteArray owned)
{
    _closeStartTag();
    _newLine();
    _out += '<';
    _out.append(name, size);
    _open.append(Open{name, size, std::move(owned)});
    _startTagOpen = true;
    _hasChildren = false;
}

void VuxXmlWriter::writeStartElement(QLatin1String name)
{
    _startElement(name.data(), name.size(), QByteArray());
}

void VuxXmlWriter::writeStartElement(const QString& name)
{
    QByteArray utf8 = name.toUtf8();
    const char* data = utf8.constData(); // the same buffer once moved into the stack
    const int size = utf8.size();
    _startElement(data, size, std::move(utf8));
}

void VuxXmlWriter::_attribute(const char* name, int size, const QString& value)
{
    _out += ' ';
    _out.append(name, size);
    _out += "=\"";
    _escaped(value, true);
    _out += '"';
}

void VuxXmlWriter::writeAttribute(QLatin1String name, const QString& value)
{
    _attribute(name.data(), name.size(), value);
}

void VuxXmlWriter::writeAttribute(const QString& name, const QString& value)
{
    const QByteArray utf8 = name.toUtf8();
    _attribute(utf8.constData(), utf8.size(), value);
}

void VuxXmlWriter::writeCharacters(const QString& text)
{
    _closeStartTag();
    _escaped(text, false);
}

void VuxXmlWriter::writeEndElement()
{
    if (_open.isEmpty())
        return;
    if (_startTagOpen) {
        _out += "/>";
        _startTagOpen = false;
        _open.removeLast();
    } else {
        const Open element = _open.takeLast();
        if (_hasChildren)
            _newLine();
        _out += "</";
        _out.append(element.name, element.size);
        _out += '>';
    }
    // The parent, whose element this was, has a child now.
    _hasChildren = true;
}

void VuxXmlWriter::writeEndDocument()
{
    while (!_open.isEmpty())
        writeEndElement();
    _out += '\n';
}

void VuxXmlWriter::writeFields(const VuxXml::Fields& fields)
{
    for (const auto& f : fields) {
        writeStartElement(QLatin1String("field"));
        writeAttribute(QLatin1String("name"), f.first);
        if (!f.second.isEmpty())
            writeCharacters(f.second);
        writeEndElement();
    }
}

void VuxXmlWriter::writeElement(const QDomElement& element)
{
    writeStartElement(element.tagName());
    const QDomNamedNodeMap attributes = element.attributes();
    for (int i = 0; i < attributes.count(); ++i) {
        const QDomAttr a = attributes.item(i).toAttr();
        writeAttribute(a.name(), a.value());
    }
    for (QDomNode n = element.firstChild(); !n.isNull(); n = n.nextSibling()) {
        if (n.isElement())
            writeElement(n.toElement());
        else if (n.isCharacterData())
            writeCharacters(n.nodeValue());
    }
    writeEndElement();
}

void VuxXmlWriter::_escaped(const QString& text, bool attribute)
{
    // Written through a pointer into room for the longest form (six bytes a character, as
    // "&quot;"), a slice of the text at a time, then cut to what was written: no check or
    // reallocation per character.
    constexpr int SLICE = 4096;
    const QChar* p = text.constData();
    const QChar* const end = p + text.size();
    while (p < end) {
        const QChar* const sliceEnd = p + qMin<qptrdiff>(SLICE, end - p);
        const int oldSize = _out.size();
        _out.resize(oldSize + 6 * int(sliceEnd - p));
        char* o = _out.data() + oldSize;
        escapeSlice(p, sliceEnd, end, o, attribute);
        _out.resize(int(o - _out.constData()));
    }
}
