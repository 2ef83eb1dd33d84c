// The gnomon and compass as rendered: drawn in the chosen corner of pictures of several
// sizes, over a scene that fills the whole window in front of the camera, and nowhere
// else; hidden ones leave no trace.

#include <Vg3Compass.h>
#include <Vg3Gnomon.h>
#include <Vg3OpenInventor.h>
#include <VuPosition.h>

#include <Inventor/SbViewportRegion.h>
#include <Inventor/SoOffscreenRenderer.h>
#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCube.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoSeparator.h>

#include <QImage>
#include <QtTest>

namespace {

// Grey, so the gnomon's saturated colours and the compass's yellow stand out.
const QColor kSceneGrey(128, 128, 128);

// A pixel clearly of the decoration: far from the scene's grey and from black.
bool decorationPixel(QRgb pixel)
{
    const int r = qRed(pixel);
    const int g = qGreen(pixel);
    const int b = qBlue(pixel);
    const int spread = std::max({r, g, b}) - std::min({r, g, b});
    return spread > 80;
}

int countIn(const QImage& image, const QRect& area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            count += decorationPixel(image.pixel(x, y)) ? 1 : 0;
    return count;
}

// The square of `side` pixels in a corner of the picture, y counted from the top.
QRect cornerRect(const QSize& size, int position, int side)
{
    const int x = (position & Vu::RIGHT) ? size.width() - side : 0;
    const int y = (position & Vu::TOP) ? 0 : size.height() - side;
    return QRect(x, y, side, side);
}

QImage render(SoNode* root, const QSize& size)
{
    SoOffscreenRenderer renderer(SbViewportRegion(short(size.width()), short(size.height())));
    renderer.setBackgroundColor(SbColor(0.0f, 0.0f, 0.0f));
    if (!renderer.render(root))
        return QImage();
    const unsigned char* buffer = renderer.getBuffer();
    const int components = renderer.getComponents();
    QImage image(size, QImage::Format_RGB32);
    // The buffer's rows go upward from the bottom of the picture.
    for (int y = 0; y < size.height(); ++y) {
        const unsigned char* row = buffer + (size.height() - 1 - y) * size.width() * components;
        for (int x = 0; x < size.width(); ++x) {
            const unsigned char* p = row + x * components;
            image.setPixel(x, y, components >= 3 ? qRgb(p[0], p[1], p[2]) : qRgb(p[0], p[0], p[0]));
        }
    }
    return image;
}

// A grey wall filling the window just beyond the near plane, nearer in depth than anything
// of an overlay: an overlay that does not clear the depth in its corner is hidden by it.
SoSeparator* makeScene(SoPerspectiveCamera* camera)
{
    auto scene = new SoSeparator;
    camera->position.setValue(0.0f, 0.0f, 0.6f);
    camera->nearDistance = 0.5f;
    camera->farDistance = 10.0f;
    scene->addChild(camera);
    auto lightModel = new SoLightModel;
    lightModel->model = SoLightModel::BASE_COLOR;
    scene->addChild(lightModel);
    auto grey = new SoBaseColor;
    grey->rgb.setValue(float(kSceneGrey.redF()), float(kSceneGrey.greenF()),
                       float(kSceneGrey.blueF()));
    scene->addChild(grey);
    auto wall = new SoCube;
    wall->width = 50.0f;
    wall->height = 50.0f;
    wall->depth = 0.1f;
    scene->addChild(wall);
    return scene;
}

} // namespace

class TestGlVg3Decorations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }
    void overlayInCorner_data();
    void overlayInCorner();
};

void TestGlVg3Decorations::overlayInCorner_data()
{
    QTest::addColumn<bool>("compass");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("position");
    QTest::addColumn<bool>("visible");

    const int bottomLeft = Vu::LEFT | Vu::BOTTOM;
    const int topRight = Vu::RIGHT | Vu::TOP;
    QTest::newRow("gnomon bottom-left") << false << QSize(256, 256) << bottomLeft << true;
    QTest::newRow("gnomon bottom-left, wide window") << false << QSize(400, 240) << bottomLeft << true;
    QTest::newRow("gnomon top-right, tall window") << false << QSize(200, 320) << topRight << true;
    QTest::newRow("gnomon hidden") << false << QSize(256, 256) << bottomLeft << false;
    QTest::newRow("compass top-right") << true << QSize(256, 256) << topRight << true;
    QTest::newRow("compass bottom-left, wide window") << true << QSize(400, 240) << bottomLeft << true;
    QTest::newRow("compass hidden") << true << QSize(256, 256) << topRight << false;
}

void TestGlVg3Decorations::overlayInCorner()
{
    QFETCH(bool, compass);
    QFETCH(QSize, size);
    QFETCH(int, position);
    QFETCH(bool, visible);

    const int side = 100;
    auto camera = new SoPerspectiveCamera;
    auto root = new SoSeparator;
    root->ref();
    root->addChild(makeScene(camera));
    Vg3Gnomon gnomon;
    Vg3Compass north;
    if (compass) {
        north.setPosition(position);
        north.setSize(side);
        north.setColor(QColor(255, 255, 0));
        north.connectCamera(camera);
        north.setVisible(visible);
        root->addChild(north.getRoot());
    } else {
        gnomon.setPosition(position);
        gnomon.setSize(side);
        gnomon.connectCamera(camera);
        gnomon.setVisible(visible);
        root->addChild(gnomon.getRoot());
    }
    // A turned camera, so no arrow of the gnomon is seen end-on.
    camera->orientation = SbRotation(SbVec3f(1.0f, 1.0f, 0.0f), 0.5f);

    const QImage image = render(root, size);
    root->unref();
    QVERIFY(!image.isNull());

    // The scene itself is drawn: the centre shows the wall's grey.
    const QColor centre = image.pixelColor(size.width() / 2, size.height() / 2);
    QVERIFY2(std::abs(centre.red() - kSceneGrey.red()) <= 3 &&
                 std::abs(centre.blue() - kSceneGrey.blue()) <= 3,
             qPrintable(centre.name()));

    const int opposite = ((position & Vu::RIGHT) ? Vu::LEFT : Vu::RIGHT) |
                         ((position & Vu::TOP) ? Vu::BOTTOM : Vu::TOP);
    const int inCorner = countIn(image, cornerRect(size, position, side));
    const int elsewhere = countIn(image, QRect(QPoint(0, 0), size)) - inCorner;
    QCOMPARE(countIn(image, cornerRect(size, opposite, side)), 0);
    QCOMPARE(elsewhere, 0);
    if (visible)
        QVERIFY2(inCorner >= 150 && inCorner <= side * side / 2, qPrintable(QString::number(inCorner)));
    else
        QCOMPARE(inCorner, 0);
}

QTEST_MAIN(TestGlVg3Decorations)
#include "tst_gl_vg3decorations.moc"
