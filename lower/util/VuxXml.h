#pragma once
// Reading and writing of the project's small XML files, and of field maps (ordered
// key/value texts) stored under an element as <field name="key">value</field>.
//
// readXml() refuses what a project file never holds and a hostile one might: files
// over maxBytes, elements nested deeper than maxDepth, and entity declarations. Its
// failures and those of saveXml() are KbeError exceptions with a message for the user.
// saveXml() replaces the file atomically: a failure leaves the previous file whole.

#include <velmora_util_export.h>

#include <KbbOrderedMap.h>

#include <QDomDocument>
#include <QString>

class VELMORA_UTIL_EXPORT VuxXml
{
public:
    using Fields = KbbOrderedMap<QString, QString>;

    struct Limits
    {
        qint64 maxBytes = 16 * 1024 * 1024;
        int maxDepth = 64;
    };

    static QDomDocument readXml(const QString& path, const QString& docTypeName, const Limits& limits);
    static QDomDocument readXml(const QString& path, const QString& docTypeName);
    // The bytes of a file of at most limits.maxBytes; throws KbeError.
    static QByteArray readFile(const QString& path, const Limits& limits);
    static QDomDocument parseXml(const QByteArray& data, const QString& docTypeName, const Limits& limits,
                                 const QString& sourceName);
    static void saveXml(const QString& path, const QDomDocument& document);
    static void saveXml(const QString& path, const QByteArray& content);

    static void saveFields(QDomDocument& document, QDomElement& element, const Fields& fields);
    static Fields loadFields(const QDomElement& element);
    // Streamed, the same fields are written by VuxXmlWriter::writeFields() and read by
    // VuxXmlReader::readFields().

    VuxXml() = delete;
};
