// The demo's 3D display as a user meets it: the samples and the surface drawn with their
// legend, the first click taken to activate the view, keys and the wheel moving the camera,
// items ticked off, the view saved as a PNG, and the camera and exaggeration back when the
// project reopens, or the scene framed when what was saved cannot be read.

#include "Demo3DWindow.h"
#include "DemoSession.h"
#include "WindowFileHelpers.h"

#include <SoCameraInteractor.h>
#include <Vg3Ruler.h>
#include <Vg3SceneInteractor.h>
#include <Vw3ExaminerView.h>
#include <Vw3OivViewer.h>
#include <Vw3RenderAreaQWindow.h>

#include <Inventor/nodes/SoCamera.h>

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QtTest>

#include <cmath>

namespace {

SbVec3f viewDirection(Vw3AView* view)
{
    SbVec3f direction;
    view->getSceneInteractor()->getCamera()->orientation.getValue().multVec(SbVec3f(0, 0, -1), direction);
    return direction;
}

} // namespace

class TestDemo3D : public QObject
{
    Q_OBJECT
    DemoSession _demo;

    static Demo3DWindow* display() { return DemoSession::window<Demo3DWindow>(); }

    // Opens the project and brings its 3D display up, drawn.
    Demo3DWindow* openAndShow()
    {
        if (!_demo.open())
            return nullptr;
        Demo3DWindow* window = display();
        if (!window)
            return nullptr;
        _demo.main->setActiveWindow(window);
        Vw3RenderAreaQWindow* area = window->getView()->getViewer()->getRenderArea();
        if (!QTest::qWaitFor([&] { return !window->visibleRegion().isEmpty() && area->isInitialized(); }))
            return nullptr;
        QTest::qWait(50);
        return window;
    }

    static QWindow* area(Demo3DWindow* window) { return window->getView()->getViewer()->getRenderArea(); }

private Q_SLOTS:
    void init() { QVERIFY(_demo.start(QSize(1200, 800))); }
    void cleanup() { _demo.stop(); }

    void theSceneIsDrawnWithItsLegend()
    {
        Demo3DWindow* window = openAndShow();
        QVERIFY(window);
        Vw3ExaminerView* view = window->getView();
        QCOMPARE(window->shownItems(), QStringList({"Samples (porosity)", "Thickness surface"}));
        QCOMPARE(view->getVisibleNodesCount(), 2);
        QVERIFY(view->isLegendShown());

        // The surface fills the middle of the picture; the top edge shows the background.
        const QImage image = view->getImage(1.0);
        const QColor background = view->getBackgroundColor();
        QVERIFY(QColor(image.pixel(image.width() / 2, image.height() / 2)) != background);
        QCOMPARE(QColor(image.pixel(image.width() / 2, 2)).name(), background.name());

        // Unticking an item hides its node; the other stays.
        auto* items = window->findChild<QListWidget*>(QStringLiteral("SCENE_ITEMS"));
        items->item(1)->setCheckState(Qt::Unchecked);
        QCOMPARE(window->shownItems(), QStringList({"Samples (porosity)"}));
        QCOMPARE(view->getVisibleNodesCount(), 1);

        // The bindings beside the view are the view's own, and the README lists the same.
        const QString bindings = Vw3AView::getBindingsHelp();
        QCOMPARE(view->whatsThis(), bindings);
        const QList<QLabel*> labels = window->findChildren<QLabel*>();
        QVERIFY(std::any_of(labels.cbegin(), labels.cend(), [&](const QLabel* l) { return l->text() == bindings; }));
        QFile readme(QFINDTESTDATA("../../README.md"));
        QVERIFY(readme.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(readme.readAll()).replace(QLatin1String("\n  "), QLatin1String("\n"));
        QVERIFY2(text.contains(bindings), "the README's bindings differ from Vw3AView::getBindingsHelp()");
    }

    void firstClickActivatesThenKeysAndWheelMoveTheCamera()
    {
        Demo3DWindow* window = openAndShow();
        QVERIFY(window);
        Vw3AView* view = window->getView();
        QWindow* surface = area(window);
        const QPoint middle(surface->width() / 2, surface->height() / 2);

        // The first click only activates: a key pressed before it moves nothing.
        const SbVec3f before = viewDirection(view);
        QTest::keyClick(surface, Qt::Key_U);
        QVERIFY((viewDirection(view) - before).length() < 1e-6f);
        QTest::mouseClick(surface, Qt::LeftButton, Qt::NoModifier, middle);
        QVERIFY((viewDirection(view) - before).length() < 1e-6f);

        QTest::keyClick(surface, Qt::Key_E);
        QVERIFY((viewDirection(view) - SbVec3f(-1, 0, 0)).length() < 1e-4f);

        // One notch towards the user moves the camera back by 2^(π/180).
        const float distance = view->getSceneInteractor()->getCamera()->focalDistance.getValue();
        QWheelEvent wheel(QPointF(middle), surface->mapToGlobal(middle), QPoint(), QPoint(0, -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QGuiApplication::sendEvent(surface, &wheel);
        QVERIFY(std::abs(view->getSceneInteractor()->getCamera()->focalDistance.getValue() / distance - std::pow(2.0f, float(M_PI / 180))) < 1e-3f);
    }

    void theRulerAndPicksReadTheField()
    {
        Demo3DWindow* window = openAndShow();
        QVERIFY(window);
        QWindow* surface = area(window);
        const QPoint middle(surface->width() / 2, surface->height() / 2);
        QTest::mouseClick(surface, Qt::LeftButton, Qt::NoModifier, middle); // activates
        window->getView()->getRulerMode()->trigger();
        auto* readout = window->findChild<QLabel*>(QStringLiteral("VIEW_READOUT"));
        QVERIFY(readout && readout->text().isEmpty());
        QTest::mouseClick(surface, Qt::LeftButton, Qt::NoModifier, middle);
        QTest::mouseMove(surface, middle + QPoint(30, 10));
        QTest::mouseClick(surface, Qt::LeftButton, Qt::NoModifier, middle + QPoint(60, 20));
        QTRY_VERIFY(readout->text().startsWith(QStringLiteral("Length ")));
        QVERIFY(readout->text().contains(QStringLiteral(" m, horizontal ")));
        QVERIFY(!window->getView()->getRuler()->isDrawing());
        // A click beside the field hides the ruler and its readout.
        QTest::mouseClick(surface, Qt::LeftButton, Qt::NoModifier, QPoint(3, 3));
        QVERIFY(readout->text().isEmpty());

        // A pick reads the place picked, in the field's coordinates.
        window->getView()->getPickingMode()->trigger();
        QTest::mouseClick(surface, Qt::LeftButton, Qt::NoModifier, middle);
        const QStringList lines = readout->text().split(QLatin1Char('\n'));
        QVERIFY2(lines.size() >= 4 && lines.at(1).startsWith(QStringLiteral("x: 4")), qPrintable(readout->text()));
    }

    void saveAsImageWritesAPng()
    {
        Demo3DWindow* window = openAndShow();
        QVERIFY(window);
        const QString path = _demo.dir.filePath(QStringLiteral("view.png"));
        QVERIFY(window->exportImage(path));
        const SbVec2i32 size = window->getView()->getViewer()->getRenderArea()->getSize();
        QCOMPARE(QImage(path).size(), QSize(size[0], size[1]));
        QVERIFY(!window->exportImage(_demo.dir.filePath(QStringLiteral("missing/view.png"))));
    }

    void cameraAndExaggerationComeBackWithTheProject()
    {
        Demo3DWindow* window = openAndShow();
        QVERIFY(window);
        QWindow* surface = area(window);
        QTest::mouseClick(surface, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
        QTest::keyClick(surface, Qt::Key_N);
        auto* exaggeration = window->findChild<QComboBox*>(QStringLiteral("Z_SCALE"));
        exaggeration->setCurrentIndex(exaggeration->findData(5.0));
        QMetaObject::invokeMethod(exaggeration, "activated", Q_ARG(int, exaggeration->currentIndex()));
        QCOMPARE(window->getView()->getZScale(), 5.0f);
        const Vug::CameraState saved = window->getView()->getCameraState();

        QVERIFY(_demo.main->closeProject());
        window = openAndShow();
        QVERIFY(window);
        QCOMPARE(window->getView()->getZScale(), 5.0f);
        const Vug::CameraState restored = window->getView()->getCameraState();
        for (int i = 0; i < 3; ++i)
            QVERIFY2(std::abs(restored.position[i] - saved.position[i]) < 1e-3,
                     qPrintable(restored.toString() + " != " + saved.toString()));
        QVERIFY((viewDirection(window->getView()) - SbVec3f(0, -1, 0)).length() < 1e-4f);
    }

    void anUnreadableCameraIsReportedAndTheSceneFramed()
    {
        QVERIFY(openAndShow());
        QVERIFY(_demo.main->closeProject());
        const QString path = WindowFiles::windowsFile(_demo.folder);
        QString xml = QString::fromUtf8(WindowFiles::read(path));
        const QRegularExpression camera(QStringLiteral("(camera[^>]*>)[^<]*(<)"));
        QVERIFY2(xml.contains(camera), qPrintable(xml));
        QVERIFY(WindowFiles::write(path, xml.replace(camera, QStringLiteral("\\1not a camera\\2")).toUtf8()));

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("saved camera of the 3D display cannot be read"));
        Demo3DWindow* window = openAndShow();
        QVERIFY(window);
        QVERIFY(window->getView()->getCameraState().isValid());
        const QImage image = window->getView()->getImage(1.0);
        QVERIFY(QColor(image.pixel(image.width() / 2, image.height() / 2)) != window->getView()->getBackgroundColor());
    }
};

QTEST_MAIN(TestDemo3D)
#include "tst_gl_demo3d.moc"
