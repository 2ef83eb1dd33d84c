// Offscreen pictures of a scene, made alone or between the frames of shown views (and as a
// process's first rendering), upright, saved to a file, and converted from Coin's buffers;
// and the image files the views write.

#include "ImageChecks.h"
#include "InventorScenes.h"
#include <Vw3ImageFile.h>
#include <Vw3OffscreenRenderer.h>

#include <Vg3OpenInventor.h>
#include <Vw3RenderAreaQWindow.h>

#include <QHBoxLayout>
#include <QProcess>
#include <QRegularExpression>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include <vector>

using namespace InventorScenes;

namespace {

// Red above y = 0, blue below, seen from +z by a camera 2 units high; `top` receives the
// upper half's colour node.
SoRef<SoSeparator> redTopBlueBottom(SoBaseColor** top = nullptr)
{
    return SoRef(unlitScene(orthoCamera(SbVec3f(0, 0, 5), 2.0f),
                           {flatBox(SbVec3f(0, 5, 0), SbVec3f(20, 10, 0.1f), SbColor(1, 0, 0), 0.0f, top),
                            flatBox(SbVec3f(0, -5, 0), SbVec3f(20, 10, 0.1f), SbColor(0, 0, 1))}));
}

// The upper and lower middle of an image are `top` and `bottom`.
bool showsTopAndBottom(const QImage& image, QRgb top, QRgb bottom)
{
    return !image.isNull() && ImageChecks::near(image.pixel(image.width() / 2, image.height() / 8), top)
           && ImageChecks::near(image.pixel(image.width() / 2, image.height() * 7 / 8), bottom);
}

// What the screen shows of a render area.
QImage onScreen(QWindow* area)
{
    return area->screen()->grabWindow(area->winId()).toImage();
}

// Render areas of the kind the 3D views draw in, side by side in one shown window.
struct ShownAreas
{
    QWidget host;
    QHBoxLayout* layout = new QHBoxLayout(&host);
    QList<Vw3RenderAreaQWindow*> areas;

    bool add(int count, SoNode* scene)
    {
        for (int i = 0; i < count; ++i) {
            auto area = new Vw3RenderAreaQWindow(&host);
            area->setSceneGraph(scene);
            layout->addWidget(area->getContainerWidget());
            areas << area;
        }
        host.resize(120 * areas.size(), 90);
        for (Vw3RenderAreaQWindow* area : qAsConst(areas)) if (!showAndWait(host, area)) return false;
        return true;
    }
};

// A bottom-up buffer of width x height pixels with the colour of each row given.
std::vector<unsigned char> rowsBuffer(int width, const QList<QRgb>& rowsBottomUp, int components)
{
    std::vector<unsigned char> buffer;
    for (QRgb color : rowsBottomUp) for (int x = 0; x < width; ++x) {
            buffer.push_back(uchar(qRed(color)));
            buffer.push_back(uchar(qGreen(color)));
            buffer.push_back(uchar(qBlue(color)));
            if (components == 4) buffer.push_back(uchar(x % 2 ? 0 : 128)); // alpha that must not show
            if (components == 2) buffer.pop_back();
        }
    return buffer;
}

// A picture with distinct colours in each corner and a gradient between.
QImage picture(QImage::Format format)
{
    QImage image(37, 23, format);
    for (int y = 0; y < image.height(); ++y) for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgba(x * 7, y * 11, (x + y) * 3, format == QImage::Format_ARGB32 ? 40 + x * 5 : 255));
    return image;
}

} // namespace

class TestVw3OffscreenRenderer : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;

private Q_SLOTS:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    void renderingBesideShownViews_data()
    {
        QTest::addColumn<int>("views");
        QTest::newRow("before any view is shown") << 0;
        QTest::newRow("beside one view") << 1;
        QTest::newRow("beside three views") << 3;
    }

    // Offscreen renderings made between the frames of shown views; then the views, and one
    // shown only now, draw the scene's next state on screen.
    void renderingBesideShownViews()
    {
        QFETCH(int, views);
        SoBaseColor* top = nullptr;
        const auto scene = redTopBlueBottom(&top);
        ShownAreas shown;
        QVERIFY(shown.add(views, scene.get()));
        for (int i = 0; i < 50; ++i) {
            Vw3OffscreenRenderer renderer(64, 48);
            renderer.setSceneGraph(scene.get());
            QVERIFY2(showsTopAndBottom(renderer.getImage(), qRgb(255, 0, 0), qRgb(0, 0, 255)),
                     qPrintable(QStringLiteral("rendering %1").arg(i)));
            for (Vw3RenderAreaQWindow* area : qAsConst(shown.areas)) QCOMPARE(area->render(), SiRenderArea::RENDERED);
        }

        QVERIFY(shown.add(1, scene.get()));
        top->rgb.setValue(0, 1, 0);
        for (Vw3RenderAreaQWindow* area : qAsConst(shown.areas)) {
            QTRY_VERIFY(showsTopAndBottom(onScreen(area), qRgb(0, 255, 0), qRgb(0, 0, 255)));
            QVERIFY(showsTopAndBottom(area->getImage(64, 48), qRgb(0, 255, 0), qRgb(0, 0, 255)));
        }
    }

    // Coin measures its offscreen limits once per process, on the first rendering, which is
    // where views shown before used to crash it: each order in a fresh process.
    void firstRenderingOfAProcess_data() { renderingBesideShownViews_data(); }

    void firstRenderingOfAProcess()
    {
        QProcess child;
        child.setProcessChannelMode(QProcess::MergedChannels);
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("renderingBesideShownViews:%1").arg(QLatin1String(QTest::currentDataTag()))});
        QVERIFY(child.waitForFinished(120000));
        QVERIFY2(child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0, child.readAll().constData());
    }

    void renderedUprightAndSaved()
    {
        QTemporaryDir dir;
        Vw3OffscreenRenderer renderer(64, 48);
        renderer.setSceneGraph(redTopBlueBottom().get());
        const QImage image = renderer.getImage();
        QCOMPARE(image.size(), QSize(64, 48));
        QVERIFY(showsTopAndBottom(image, qRgb(255, 0, 0), qRgb(0, 0, 255)));
        QCOMPARE(qAlpha(image.pixel(0, 0)), 255);

        const QString path = dir.filePath(QStringLiteral("scene.png"));
        QVERIFY(renderer.saveToFile(path));
        const QImage read(path);
        QCOMPARE(read.size(), QSize(64, 48));
        QVERIFY(showsTopAndBottom(read, qRgb(255, 0, 0), qRgb(0, 0, 255)));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vw3OffscreenRenderer::saveToFile: cannot write .*"));
        QVERIFY(!renderer.saveToFile(dir.filePath(QStringLiteral("no/such/folder/scene.png"))));
    }

    void bufferConversion_data()
    {
        QTest::addColumn<int>("components");
        QTest::addColumn<bool>("logged");
        QTest::newRow("RGB") << 3 << false;
        QTest::newRow("RGBA, alpha dropped") << 4 << false;
        QTest::newRow("two components are read as RGB") << 2 << true;
    }

    void bufferConversion()
    {
        QFETCH(int, components);
        QFETCH(bool, logged);
        const int width = 3;
        // Bottom row first: green, then white, then red at the top.
        const QList<QRgb> rows = {qRgb(0, 200, 0), qRgb(255, 255, 255), qRgb(200, 0, 0)};
        // A two-component buffer is laid out as three components, as it is then read.
        const std::vector<unsigned char> buffer = rowsBuffer(width, rows, components == 2 ? 3 : components);
        if (logged) QTest::ignoreMessage(QtWarningMsg, "Wrong offscreen renderer number components");
        const QImage image = Vw3OffscreenRenderer::bufferToImage(buffer.data(), int(buffer.size()), components,
                                                                 width, rows.size());
        QCOMPARE(image.size(), QSize(width, 3));
        for (int x = 0; x < width; ++x) {
            QCOMPARE(image.pixel(x, 0), qRgb(200, 0, 0));
            QCOMPARE(image.pixel(x, 1), qRgb(255, 255, 255));
            QCOMPARE(image.pixel(x, 2), qRgb(0, 200, 0));
        }
    }

    void shortBufferStopsAtItsEnd()
    {
        // Four pixels' worth for a 3 x 2 image: the bottom row and one pixel of the top.
        const std::vector<unsigned char> buffer = {255, 0, 0, 255, 0, 0, 255, 0, 0, 0, 255, 0};
        const QImage image = Vw3OffscreenRenderer::bufferToImage(buffer.data(), int(buffer.size()), 3, 3, 2);
        QCOMPARE(image.pixel(2, 1), qRgb(255, 0, 0));
        QCOMPARE(image.pixel(0, 0), qRgb(0, 255, 0));
        QCOMPARE(image.pixel(1, 0), qRgb(0, 0, 0));
        const QImage empty = Vw3OffscreenRenderer::bufferToImage(buffer.data(), 0, 3, 3, 2);
        QCOMPARE(empty.pixel(0, 0), qRgb(0, 0, 0));
    }

    // Pictures written to disk by the views: read back with the same pixels whatever the
    // format and alpha, refused with a reason for bad names, never half-written over an
    // earlier file.
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

QTEST_MAIN(TestVw3OffscreenRenderer)
#include "tst_gl_vw3offscreenrenderer.moc"
