#include <Vw3RenderAreaQWindow.h>

#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>

#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoEventCallback.h>
#include <Inventor/nodes/SoSeparator.h>

#include <QApplication>
#include <QTest>
#include <QVBoxLayout>

namespace {

void recordPosition(void* data, SoEventCallback* callback)
{
    if (callback->getEvent()->isOfType(SoMouseButtonEvent::getClassTypeId()))
        *static_cast<QList<SbVec2s>*>(data) << callback->getEvent()->getPosition();
}

} // namespace

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
        QList<SbVec2s> presses;
        QSharedPointer<Vg3SceneInteractor> interactor(new Vg3SceneInteractor);
        auto scene = new SoSeparator;
        auto callback = new SoEventCallback;
        callback->addEventCallback(SoMouseButtonEvent::getClassTypeId(), &recordPosition, &presses);
        scene->addChild(callback);
        interactor->setSceneGraph(scene);

        QWidget host;
        auto layout = new QVBoxLayout(&host);
        layout->setContentsMargins(0, 0, 0, 0);
        auto area = new Vw3RenderAreaQWindow(&host);
        area->setSceneInteractor(interactor);
        layout->addWidget(area->getContainerWidget());
        host.resize(400, 300);
        host.show();
        QVERIFY(QTest::qWaitForWindowExposed(area));
        QTRY_COMPARE(area->getSize(), SbVec2i32(800, 600));
        QCOMPARE(interactor->getViewportRegion().getViewportSizePixels(), SbVec2s(800, 600));

        area->setActivated(true);
        QTest::mousePress(area, Qt::LeftButton, Qt::NoModifier, click);
        QTest::mouseRelease(area, Qt::LeftButton, Qt::NoModifier, click);
        QCOMPARE(presses.size(), 2);
        QCOMPARE(QPoint(presses.first()[0], presses.first()[1]), inventorPosition);
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
