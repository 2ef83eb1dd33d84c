// A render area on a screen of device pixel ratio 2: it renders and counts Inventor's
// positions in device pixels, rows from the bottom.

#include "RenderAreaScenes.h"
#include <Vg3OpenInventor.h>

#include <QApplication>
#include <QTest>

using namespace RenderAreas;

// Runs with a device pixel ratio of 2 (see main).
class TestVw3RenderAreaHiDpi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        Vg3OpenInventor::getInstance()->init();
        QCOMPARE(qApp->devicePixelRatio(), 2.0);
    }

    void renderSizeIsInDevicePixels_data()
    {
        QTest::addColumn<QPoint>("click");
        QTest::addColumn<QPoint>("inventorPosition");
        // QTest reads a null point as the centre: stay one pixel off the corner.
        QTest::newRow("near the top-left corner") << QPoint(1, 1) << QPoint(2, 597);
        QTest::newRow("bottom-right pixel") << QPoint(399, 299) << QPoint(798, 1);
        QTest::newRow("centre") << QPoint(200, 150) << QPoint(400, 299);
    }

    void renderSizeIsInDevicePixels()
    {
        QFETCH(QPoint, click);
        QFETCH(QPoint, inventorPosition);
        Recorder recorder;
        QWidget host;
        auto area = showArea<Vw3RenderAreaQWindow>(host, recorder, QSize(400, 300));
        QVERIFY(area);
        QTRY_COMPARE(area->getSize(), SbVec2i32(800, 600));
        QCOMPARE(area->getSceneInteractor()->getViewportRegion().getViewportSizePixels(), SbVec2s(800, 600));

        area->setActivated(true);
        QTest::mousePress(area, Qt::LeftButton, Qt::NoModifier, click);
        QCOMPARE(QPoint(recorder.positions.last()[0], recorder.positions.last()[1]), inventorPosition);
        QTest::mouseRelease(area, Qt::LeftButton, Qt::NoModifier, click);
        QCOMPARE(recorder.buttons, QStringList({"1 down", "1 up"}));
    }
};

int main(int argc, char** argv)
{
    // Before the application reads its screens.
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication app(argc, argv);
    TestVw3RenderAreaHiDpi test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_gl_vw3renderareahidpi.moc"
