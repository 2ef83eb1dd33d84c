// The three kinds of render area the 3D views draw in, driven as a user does: the first
// click only activates, keys are accepted when the scene handles them, Inventor rows count
// from the bottom, a still right click opens the context menu, and the picture, the saved
// file and the size follow the scene and the container.

#include "ImageChecks.h"
#include "InventorScenes.h"
#include "RenderAreaScenes.h"
#include <Vw3RenderAreaQGLWidget.h>
#include <Vw3RenderAreaQOpenGLWidget.h>
#include <Vw3RenderAreaQWindow.h>

#include <KbeError.h>
#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>

#include <Inventor/SoPickedPoint.h>
#include <Inventor/events/SoKeyboardEvent.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoEventCallback.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

using namespace InventorScenes;
using namespace RenderAreas;

namespace {

// Runs `test` on a shown area of the row's kind.
template <class F> void onArea(Recorder& recorder, F test)
{
    QFETCH(QString, variant);
    QWidget host;
    const auto run = [&](auto* area) {
        QVERIFY(area);
        test(*area);
    };
    if (variant == QLatin1String("QWindow")) run(showArea<Vw3RenderAreaQWindow>(host, recorder));
    else if (variant == QLatin1String("QGLWidget")) run(showArea<Vw3RenderAreaQGLWidget>(host, recorder));
    else run(showArea<Vw3RenderAreaQOpenGLWidget>(host, recorder));
}

template <class A> bool sendKey(A& area, int key)
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    event.setAccepted(false);
    QCoreApplication::sendEvent(&area, &event);
    return event.isAccepted();
}

// A move with the button held, as the windowing system sends it.
template <class A> void dragTo(A& area, Qt::MouseButton button, const QPoint& p)
{
    QMouseEvent move(QEvent::MouseMove, p, area.mapToGlobal(p), Qt::NoButton, button, Qt::NoModifier);
    QCoreApplication::sendEvent(&area, &move);
}

const char* const kVariants[] = {"QWindow", "QGLWidget", "QOpenGLWidget"};

} // namespace

class TestVw3RenderArea : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    void eventsAndPicture_data()
    {
        QTest::addColumn<QString>("variant");
        for (const char* variant : kVariants) QTest::newRow(variant) << QString::fromLatin1(variant);
    }
    void eventsAndPicture()
    {
        Recorder recorder;
        onArea(recorder, [&](auto& area) {
            const QImage image = area.getImage(100, 80);
            QCOMPARE(image.size(), QSize(100, 80));
            QVERIFY(ImageChecks::near(image.pixel(25, 20), qRgb(255, 0, 0)));
            QVERIFY(ImageChecks::near(image.pixel(75, 20), qRgb(0, 255, 0)));
            QVERIFY(ImageChecks::near(image.pixel(25, 60), qRgb(0, 0, 255)));
            QVERIFY(ImageChecks::near(image.pixel(75, 60), qRgb(255, 255, 0)));
            QCOMPARE(qAlpha(image.pixel(0, 0)), 255);

            QSignalSpy activated(&area, SIGNAL(renderAreaActivated()));
            // Not active yet: keys and the first press go nowhere.
            QVERIFY(!sendKey(area, Qt::Key_Q));
            QCOMPARE(recorder.keys, 0);
            QTest::mousePress(&area, Qt::LeftButton, Qt::NoModifier, QPoint(50, 40));
            QCOMPARE(activated.count(), 1);
            QVERIFY(recorder.buttons.isEmpty());
            QTest::mouseRelease(&area, Qt::LeftButton, Qt::NoModifier, QPoint(50, 40));

            // Inventor rows count from the bottom.
            recorder.positions.clear();
            const int bottom = area.size().height() - 1;
            QTest::mousePress(&area, Qt::LeftButton, Qt::NoModifier, QPoint(7, 0));
            QCOMPARE(recorder.positions.last(), SbVec2s(7, short(bottom)));
            QTest::mouseRelease(&area, Qt::LeftButton, Qt::NoModifier, QPoint(7, bottom));
            QCOMPARE(recorder.positions.last(), SbVec2s(7, 0));
            QCOMPARE(activated.count(), 1);
            QCOMPARE(recorder.buttons.count(QStringLiteral("1 down")), 1);

            // A key is accepted when the scene handles it.
            recorder.handleKeys = true;
            QVERIFY(sendKey(area, Qt::Key_Q));
            recorder.handleKeys = false;
            QVERIFY(!sendKey(area, Qt::Key_Q));
            QCOMPARE(recorder.keys, 2);
        });
    }

    void rightClickContextMenu_data()
    {
        QTest::addColumn<QString>("variant");
        QTest::addColumn<QPoint>("moveBy");
        QTest::addColumn<bool>("menuShown");
        for (const char* variant : kVariants) {
            QTest::addRow("%s, 5 right", variant) << QString::fromLatin1(variant) << QPoint(5, 0) << true;
            QTest::addRow("%s, 5 up and 5 left", variant) << QString::fromLatin1(variant) << QPoint(-5, -5) << true;
            QTest::addRow("%s, 6 right", variant) << QString::fromLatin1(variant) << QPoint(6, 0) << false;
            QTest::addRow("%s, 6 down", variant) << QString::fromLatin1(variant) << QPoint(0, 6) << false;
        }
    }
    void rightClickContextMenu()
    {
        QFETCH(QPoint, moveBy);
        QFETCH(bool, menuShown);
        Recorder recorder;
        onArea(recorder, [&](auto& area) {
            area.setActivated(true);
            int shown = 0;
            bool picked = false;
            QPoint global;
            QObject::connect(&area, &std::decay_t<decltype(area)>::showContextMenu,
                             [&](const SoPickedPoint* point, const QPoint& at) {
                                 ++shown;
                                 picked = point != nullptr;
                                 global = at;
                             });
            const QPoint start(100, 75);
            const QPoint end = start + moveBy;
            QTest::mousePress(&area, Qt::RightButton, Qt::NoModifier, start);
            dragTo(area, Qt::RightButton, end);
            QTest::mouseRelease(&area, Qt::RightButton, Qt::NoModifier, end);
            QCOMPARE(shown, menuShown ? 1 : 0);
            QCOMPARE(recorder.buttons, QStringList({"3 down", "3 up"}));
            if (menuShown) {
                QVERIFY2(picked, "the quads under the cursor are picked");
                QCOMPARE(global, area.mapToGlobal(end));
            }
            // A left click afterwards opens nothing.
            QTest::mouseClick(&area, Qt::LeftButton, Qt::NoModifier, start);
            QCOMPARE(shown, menuShown ? 1 : 0);
        });
    }

    void windowFollowsItsContainerAndSaves()
    {
        Recorder recorder;
        QWidget host;
        auto area = showArea<Vw3RenderAreaQWindow>(host, recorder, QSize(120, 90));
        QVERIFY(area);
        QTRY_COMPARE(area->getSize(), SbVec2i32(120, 90));
        QCOMPARE(area->getViewportRegion().getViewportSizePixels(), SbVec2s(120, 90));
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("view.png"));
        QVERIFY(area->saveToFile(path));
        const QImage read(path);
        QCOMPARE(read.size(), QSize(120, 90));
        QVERIFY(ImageChecks::near(read.pixel(30, 20), qRgb(255, 0, 0)));
        QVERIFY(ImageChecks::near(read.pixel(90, 70), qRgb(255, 255, 0)));
        QTest::ignoreMessage(QtWarningMsg, "Vw3RenderAreaQWindow::getImage: invalid image size 0x10");
        QVERIFY(area->getImage(0, 10).isNull());

        host.resize(160, 90);
        QTRY_COMPARE(area->getSize(), SbVec2i32(160, 90));
        QCOMPARE(area->render(), SiRenderArea::RENDERED);
    }

    void hiddenWindowRendersOnlyWhenOffscreen()
    {
        Recorder recorder;
        QWidget host;
        auto area = new Vw3RenderAreaQWindow(&host);
        area->setSceneInteractor(makeInteractor(&recorder));
        area->setSize(SbVec2i32(64, 48));
        QCOMPARE(area->render(), SiRenderArea::NOT_RENDERED);
        area->setupForOffscreenRendering(true);
        QCOMPARE(area->render(), SiRenderArea::RENDERED);
        QVERIFY(ImageChecks::near(area->getImage(64, 48).pixel(10, 10), qRgb(255, 0, 0)));
    }

    void imageOfAnUninitializedAreaFails()
    {
        Vw3RenderAreaQOpenGLWidget area;
        QVERIFY(!area.isInitialized());
        try {
            area.getImage(10, 10);
            QFAIL("no error");
        } catch (const KbeError& error) {
            QCOMPARE(error.getMessage(), QStringLiteral("Cannot get image, render area is not initialized."));
        }
    }
};

QTEST_MAIN(TestVw3RenderArea)
#include "tst_gl_vw3renderarea.moc"
