// Feeds arbitrary bytes to the reader of the project's XML files: it must either give a
// document or throw KbeError, within its depth and size limits.

#include <KbeError.h>
#include <VuxXml.h>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    try {
        const QDomDocument document = VuxXml::parseXml(bytes, QStringLiteral("windows"), VuxXml::Limits(),
                                                       QStringLiteral("fuzz"));
        for (QDomElement e = document.documentElement().firstChildElement(); !e.isNull(); e = e.nextSiblingElement())
            VuxXml::loadFields(e);
    } catch (const KbeError&) {
    }
    return 0;
}
