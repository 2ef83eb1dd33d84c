// Feeds arbitrary bytes to the point-set reader (both formats, told apart by their first
// bytes): it must give a set whose columns agree, or throw KbeError.

#include <KbeError.h>
#include <VsdPointSetFile.h>

#include <QBuffer>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    try {
        const VsdPointSet set = VsdPointSetFile::read(buffer, QStringLiteral("fuzz"));
        if (set.x().size() != set.size() || set.y().size() != set.size() || set.z().size() != set.size())
            std::abort();
        for (const QString& name : set.variableNames())
            if (set.variable(name).size() != set.size())
                std::abort();
    } catch (const KbeError&) {
    }
    return 0;
}
