#include "Vw3ImageFile.h"

#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QSaveFile>

namespace {
// Qt maps PNG quality 80 to zlib level 1: several times faster than the default level,
// with files of rendered scenes a little larger.
constexpr int kFastPngQuality = 80;
} // namespace

bool Vw3ImageFile::write(const QImage& image, const QString& fileName, QString* error)
{
    const auto fail = [error](const QString& reason) {
        if (error)
            *error = reason;
        return false;
    };
    if (image.isNull())
        return fail(QStringLiteral("there is no image"));
    QByteArray format = QFileInfo(fileName).suffix().toLower().toLatin1();
    if (format.isEmpty())
        format = "png";
    if (!QImageWriter::supportedImageFormats().contains(format))
        return fail(QStringLiteral("'%1' is not an image format").arg(QString::fromLatin1(format)));
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return fail(file.errorString());
    QImageWriter writer(&file, format);
    if (format == "png")
        writer.setQuality(kFastPngQuality);
    if (!writer.write(image)) {
        file.cancelWriting();
        return fail(writer.errorString());
    }
    if (!file.commit())
        return fail(file.errorString());
    return true;
}
