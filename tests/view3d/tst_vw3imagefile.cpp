// Pictures of the 3D views written to disk: read back with the same pixels whatever the
// format and alpha, refused with a reason for bad names, and never half-written over an
// earlier file.

#include "ImageChecks.h"
#include <Vw3ImageFile.h>

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// A picture with distinct colours in each corner and a gradient between.
QImage picture(QImage::Format format)
{
    QImage image(37, 23, format);
    for (int y = 0; y < image.height(); ++y) for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgba(x * 7, y * 11, (x + y) * 3, format == QImage::Format_ARGB32 ? 40 + x * 5 : 255));
    return image;
}

} // namespace

class TestVw3ImageFile : public QObject
{
    Q_OBJECT QTemporaryDir _dir;

private Q_SLOTS:
    void writtenPixelsReadBack_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("format");
        QTest::addColumn<bool>("exact");
        QTest::newRow("png, opaque") << "a.png" << int(QImage::Format_RGB32) << true;
        QTest::newRow("png, with alpha") << "b.png" << int(QImage::Format_ARGB32) << true;
        QTest::newRow("no suffix is png") << "c" << int(QImage::Format_RGB32) << true;
        QTest::newRow("upper-case suffix") << "d.PNG" << int(QImage::Format_RGB32) << true;
        QTest::newRow("bmp") << "e.bmp" << int(QImage::Format_RGB32) << true;
        QTest::newRow("jpeg, lossy") << "f.jpg" << int(QImage::Format_RGB32) << false;
    }
    void writtenPixelsReadBack()
    {
        QFETCH(QString, name);
        QFETCH(int, format);
        QFETCH(bool, exact);
        const QImage original = picture(QImage::Format(format));
        const QString path = _dir.filePath(name);
        QString error;
        QVERIFY2(Vw3ImageFile::write(original, path, &error), qPrintable(error));
        const QImage read(path, name.contains(QLatin1Char('.')) ? nullptr : "png");
        QVERIFY(!read.isNull());
        QCOMPARE(read.size(), original.size());
        QCOMPARE(read.hasAlphaChannel(), original.hasAlphaChannel());
        for (const QPoint& p : {QPoint(0, 0), QPoint(36, 0), QPoint(0, 22), QPoint(36, 22), QPoint(18, 11)}) {
            const QRgb a = original.pixel(p), b = read.pixel(p);
            QVERIFY2(ImageChecks::near(b, a, exact ? 0 : 24) && (!exact || qAlpha(a) == qAlpha(b)),
                     qPrintable(ImageChecks::toString(b) + QStringLiteral(" alpha %1").arg(qAlpha(b))));
        }
    }

    void badRequestsAreRefusedAndKeepTheEarlierFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("nullImage");
        QTest::addColumn<QString>("reason");
        QTest::newRow("unknown format") << "kept.xyz" << false << "not an image format";
        QTest::newRow("missing folder") << "missing/kept.png" << false << "";
        QTest::newRow("no image") << "kept.png" << true << "no image";
    }
    void badRequestsAreRefusedAndKeepTheEarlierFile()
    {
        QFETCH(QString, name);
        QFETCH(bool, nullImage);
        QFETCH(QString, reason);
        const QString path = _dir.filePath(name);
        const bool existing = !name.startsWith(QLatin1String("missing"));
        if (existing) {
            QFile earlier(path);
            QVERIFY(earlier.open(QIODevice::WriteOnly));
            earlier.write("earlier");
        }
        QString error;
        QVERIFY(!Vw3ImageFile::write(nullImage ? QImage() : picture(QImage::Format_RGB32), path, &error));
        QVERIFY(!error.isEmpty());
        QVERIFY2(error.contains(reason), qPrintable(error));
        if (existing) {
            QFile earlier(path);
            QVERIFY(earlier.open(QIODevice::ReadOnly));
            QCOMPARE(earlier.readAll(), QByteArray("earlier"));
        }
    }
};

QTEST_MAIN(TestVw3ImageFile)
#include "tst_vw3imagefile.moc"
