// The gnomon and compass as rendered: drawn in the chosen corner of pictures of several
// sizes, over a scene that fills the whole window in front of the camera, and nowhere
// else; hidden ones leave no trace.

#include "ImageChecks.h"
#include "InventorScenes.h"
#include <Vg3Compass.h>
#include <Vg3Gnomon.h>
#include <Vg3OpenInventor.h>
#include <VuPosition.h>

#include <Inventor/nodes/SoPerspectiveCamera.h>

#include <QtTest>

using namespace InventorScenes;

namespace {

// Grey, so the gnomon's saturated colours and the compass's yellow stand out.
const QColor kSceneGrey(128, 128, 128);

// Pixels clearly of the decoration, far from the scene's grey and from black, in `area`.
int decorationPixels(const QImage& image, const QRect& area)
{
    return ImageChecks::count(image.copy(area), [](QRgb p) {
        return std::max({qRed(p), qGreen(p), qBlue(p)}) - std::min({qRed(p), qGreen(p), qBlue(p)}) > 80;
    });
}

// The square of `side` pixels in a corner of the picture, y counted from the top.
QRect cornerRect(const QSize& size, int position, int side)
{
    return QRect((position & Vu::RIGHT) ? size.width() - side : 0, (position & Vu::TOP) ? 0 : size.height() - side,
                 side, side);
}

} // namespace

class TestGlVg3Decorations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }
    void overlayInCorner_data()
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

    void overlayInCorner()
    {
        QFETCH(bool, compass);
        QFETCH(QSize, size);
        QFETCH(int, position);
        QFETCH(bool, visible);

        const int side = 100;
        // A grey wall filling the window just beyond the near plane, nearer in depth than
        // anything of an overlay: an overlay that does not clear the depth in its corner is
        // hidden by it.
        auto camera = new SoPerspectiveCamera;
        camera->position.setValue(0.0f, 0.0f, 0.6f);
        camera->nearDistance = 0.5f;
        camera->farDistance = 10.0f;
        auto root = hold(unlitScene(camera, {flatBox(SbVec3f(0, 0, 0), SbVec3f(50, 50, 0.1f), sb(kSceneGrey))}));
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
        const QImage image = render(root.get(), size);
        QVERIFY(!image.isNull());

        // The scene itself is drawn: the centre shows the wall's grey.
        const QRgb centre = image.pixel(size.width() / 2, size.height() / 2);
        QVERIFY2(ImageChecks::near(centre, kSceneGrey, 3), qPrintable(ImageChecks::toString(centre)));

        const int opposite = ((position & Vu::RIGHT) ? Vu::LEFT : Vu::RIGHT) |
                             ((position & Vu::TOP) ? Vu::BOTTOM : Vu::TOP);
        const int inCorner = decorationPixels(image, cornerRect(size, position, side));
        const int elsewhere = decorationPixels(image, QRect(QPoint(0, 0), size)) - inCorner;
        QCOMPARE(decorationPixels(image, cornerRect(size, opposite, side)), 0);
        QCOMPARE(elsewhere, 0);
        if (visible) QVERIFY2(inCorner >= 150 && inCorner <= side * side / 2, qPrintable(QString::number(inCorner)));
        else QCOMPARE(inCorner, 0);
    }
};

QTEST_MAIN(TestGlVg3Decorations)
#include "tst_gl_vg3decorations.moc"
