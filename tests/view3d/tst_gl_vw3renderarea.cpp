#include <Vw3RenderAreaQGLWidget.h>
#include <Vw3RenderAreaQOpenGLWidget.h>
#include <Vw3RenderAreaQWindow.h>

#include <KbeError.h>
#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>

#include <Inventor/SoPickedPoint.h>
#include <Inventor/events/SoKeyboardEvent.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoEventCallback.h>
#include <Inventor/nodes/SoFaceSet.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoSeparator.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <functional>

namespace {

// What reached the scene: one line per button or key event, and the positions of all.
struct Recorder
{
    QStringList buttons;
    QList<SbVec2s> positions;
    int keys = 0;
    bool handleKeys = false;

    static void record(void* data, SoEventCallback* callback)
    {
        auto recorder = static_cast<Recorder*>(data);
        const SoEvent* event = callback->getEvent();
        recorder->positions << event->getPosition();
        if (event->isOfType(SoMouseButtonEvent::getClassTypeId())) {
            auto button = static_cast<const SoMouseButtonEvent*>(event);
            recorder->buttons << QStringLiteral("%1 %2")
                                     .arg(int(button->getButton()))
                                     .arg(button->getState() == SoButtonEvent::DOWN ? "down" : "up");
        } else if (event->isOfType(SoKeyboardEvent::getClassTypeId())) {
            ++recorder->keys;
            if (recorder->handleKeys)
                callback->setHandled();
        }
    }
};

void addQuad(SoSeparator* root, float x0, float y0, float x1, float y1, const SbColor& color)
{
    auto part = new SoSeparator;
    auto base = new SoBaseColor;
    base->rgb.setValue(color);
    auto coords = new SoCoordinate3;
    const SbVec3f corners[4] = {{x0, y0, 0}, {x1, y0, 0}, {x1, y1, 0}, {x0, y1, 0}};
    coords->point.setValues(0, 4, corners);
    part->addChild(base);
    part->addChild(coords);
    part->addChild(new SoFaceSet);
    root->addChild(part);
}

// Four coloured quadrants seen from above, a recorder of every event reaching the scene.
QSharedPointer<Vg3SceneInteractor> makeInteractor(Recorder* recorder)
{
    QSharedPointer<Vg3SceneInteractor> interactor(new Vg3SceneInteractor);
    auto scene = new SoSeparator;
    auto callback = new SoEventCallback;
    callback->addEventCallback(SoEvent::getClassTypeId(), &Recorder::record, recorder);
    scene->addChild(callback);
    auto light = new SoLightModel;
    light->model = SoLightModel::BASE_COLOR;
    scene->addChild(light);
    addQuad(scene, -50, 0, 0, 50, SbColor(1, 0, 0));
    addQuad(scene, 0, 0, 50, 50, SbColor(0, 1, 0));
    addQuad(scene, -50, -50, 0, 0, SbColor(0, 0, 1));
    addQuad(scene, 0, -50, 50, 0, SbColor(1, 1, 0));
    interactor->setSceneGraph(scene);
    interactor->setProjectionType(Vg3SceneInteractor::ORTHOGRAPHIC);
    auto camera = static_cast<SoOrthographicCamera*>(interactor->getCamera());
    camera->position.setValue(0, 0, 10);
    camera->orientation.setValue(SbRotation::identity());
    camera->height = 2.0f;
    return interactor;
}

// One render area of any variant in a shown top-level widget, with uniform access.
struct Area
{
    std::unique_ptr<QWidget> host;
    QWindow* window = nullptr;
    QWidget* widget = nullptr;
    QObject* object = nullptr;
    SiRenderArea* renderArea = nullptr;
    std::function<void(bool)> setActivated;
    std::function<QImage(int, int)> getImage;
    std::function<bool()> isInitialized;

    QPoint toGlobal(const QPoint& p) const { return window ? window->mapToGlobal(p) : widget->mapToGlobal(p); }
    void press(Qt::MouseButton button, const QPoint& p)
    {
        if (window)
            QTest::mousePress(window, button, Qt::NoModifier, p);
        else
            QTest::mousePress(widget, button, Qt::NoModifier, p);
    }
    void release(Qt::MouseButton button, const QPoint& p)
    {
        if (window)
            QTest::mouseRelease(window, button, Qt::NoModifier, p);
        else
            QTest::mouseRelease(widget, button, Qt::NoModifier, p);
    }
    void moveWith(Qt::MouseButton button, const QPoint& p)
    {
        if (window) {
            QTest::mouseMove(window, p);
        } else {
            QMouseEvent move(QEvent::MouseMove, p, widget->mapToGlobal(p), Qt::NoButton, button, Qt::NoModifier);
            QApplication::sendEvent(widget, &move);
        }
    }
    bool sendKey(int key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        event.setAccepted(false);
        QCoreApplication::sendEvent(window ? static_cast<QObject*>(window) : widget, &event);
        return event.isAccepted();
    }
};

template <class T> void wire(Area& area, T* typed, const QSharedPointer<Vg3SceneInteractor>& interactor)
{
    area.object = typed;
    area.renderArea = typed;
    typed->setSceneInteractor(interactor);
    area.setActivated = [typed](bool on) { typed->setActivated(on); };
    area.getImage = [typed](int w, int h) { return typed->getImage(w, h); };
    area.isInitialized = [typed] { return typed->isInitialized(); };
}

std::unique_ptr<Area> makeArea(const QString& variant, const QSharedPointer<Vg3SceneInteractor>& interactor,
                               QSize size = QSize(200, 150))
{
    auto area = std::make_unique<Area>();
    area->host = std::make_unique<QWidget>();
    auto layout = new QVBoxLayout(area->host.get());
    layout->setContentsMargins(0, 0, 0, 0);
    if (variant == QLatin1String("QWindow")) {
        auto typed = new Vw3RenderAreaQWindow(area->host.get());
        layout->addWidget(typed->getContainerWidget());
        area->window = typed;
        wire(*area, typed, interactor);
    } else if (variant == QLatin1String("QGLWidget")) {
        auto typed = new Vw3RenderAreaQGLWidget(area->host.get());
        layout->addWidget(typed);
        area->widget = typed;
        wire(*area, typed, interactor);
    } else {
        auto typed = new Vw3RenderAreaQOpenGLWidget(area->host.get());
        layout->addWidget(typed);
        area->widget = typed;
        wire(*area, typed, interactor);
    }
    area->host->resize(size);
    area->host->show();
    if (!QTest::qWaitForWindowExposed(area->host.get()))
        return nullptr;
    if (area->window && !QTest::qWaitForWindowExposed(area->window))
        return nullptr;
    return area;
}

bool near(QRgb actual, QRgb expected, int tolerance = 8)
{
    return qAbs(qRed(actual) - qRed(expected)) <= tolerance && qAbs(qGreen(actual) - qGreen(expected)) <= tolerance
           && qAbs(qBlue(actual) - qBlue(expected)) <= tolerance;
}

void addVariants()
{
    QTest::addColumn<QString>("variant");
    QTest::newRow("QWindow") << QStringLiteral("QWindow");
    QTest::newRow("QGLWidget") << QStringLiteral("QGLWidget");
    QTest::newRow("QOpenGLWidget") << QStringLiteral("QOpenGLWidget");
}

} // namespace

class TestVw3RenderArea : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    void firstClickOnlyActivates_data() { addVariants(); }

    void firstClickOnlyActivates()
    {
        QFETCH(QString, variant);
        Recorder recorder;
        auto area = makeArea(variant, makeInteractor(&recorder));
        QVERIFY(area);
        QSignalSpy activated(area->object, SIGNAL(renderAreaActivated()));

        QVERIFY(!area->sendKey(Qt::Key_Q));
        QCOMPARE(recorder.keys, 0);
        area->press(Qt::LeftButton, QPoint(50, 40));
        QCOMPARE(activated.count(), 1);
        QVERIFY(!recorder.buttons.contains(QStringLiteral("1 down")));
        area->release(Qt::LeftButton, QPoint(50, 40));

        area->press(Qt::LeftButton, QPoint(60, 40));
        area->release(Qt::LeftButton, QPoint(60, 40));
        QCOMPARE(activated.count(), 1);
        QCOMPARE(recorder.buttons.count(QStringLiteral("1 down")), 1);
    }

    void keysAcceptedWhenTheSceneHandlesThem_data()
    {
        QTest::addColumn<QString>("variant");
        QTest::addColumn<bool>("handled");
        for (const char* variant : {"QWindow", "QGLWidget", "QOpenGLWidget"}) {
            QTest::addRow("%s, handled", variant) << QString::fromLatin1(variant) << true;
            QTest::addRow("%s, ignored", variant) << QString::fromLatin1(variant) << false;
        }
    }

    void keysAcceptedWhenTheSceneHandlesThem()
    {
        QFETCH(QString, variant);
        QFETCH(bool, handled);
        Recorder recorder;
        recorder.handleKeys = handled;
        auto area = makeArea(variant, makeInteractor(&recorder));
        QVERIFY(area);
        area->setActivated(true);
        QCOMPARE(area->sendKey(Qt::Key_Q), handled);
        QCOMPARE(recorder.keys, 1);
    }

    void rightClickContextMenu_data()
    {
        QTest::addColumn<QString>("variant");
        QTest::addColumn<QPoint>("moveBy");
        QTest::addColumn<bool>("menuShown");
        for (const char* variant : {"QWindow", "QGLWidget", "QOpenGLWidget"}) {
            QTest::addRow("%s, still", variant) << QString::fromLatin1(variant) << QPoint(0, 0) << true;
            QTest::addRow("%s, 5 right", variant) << QString::fromLatin1(variant) << QPoint(5, 0) << true;
            QTest::addRow("%s, 5 up and 5 left", variant) << QString::fromLatin1(variant) << QPoint(-5, -5) << true;
            QTest::addRow("%s, 6 right", variant) << QString::fromLatin1(variant) << QPoint(6, 0) << false;
            QTest::addRow("%s, 6 down", variant) << QString::fromLatin1(variant) << QPoint(0, 6) << false;
        }
    }

    void rightClickContextMenu()
    {
        QFETCH(QString, variant);
        QFETCH(QPoint, moveBy);
        QFETCH(bool, menuShown);
        Recorder recorder;
        auto area = makeArea(variant, makeInteractor(&recorder));
        QVERIFY(area);
        area->setActivated(true);
        int shown = 0;
        bool picked = false;
        QPoint global;
        const auto onMenu = [&](const SoPickedPoint* point, const QPoint& at) {
            ++shown;
            picked = point != nullptr;
            global = at;
        };
        if (auto w = qobject_cast<Vw3RenderAreaQWindow*>(area->object))
            QObject::connect(w, &Vw3RenderAreaQWindow::showContextMenu, onMenu);
        else if (auto g = qobject_cast<Vw3RenderAreaQGLWidget*>(area->object))
            QObject::connect(g, &Vw3RenderAreaQGLWidget::showContextMenu, onMenu);
        else if (auto o = qobject_cast<Vw3RenderAreaQOpenGLWidget*>(area->object))
            QObject::connect(o, &Vw3RenderAreaQOpenGLWidget::showContextMenu, onMenu);

        const QPoint start(100, 75);
        const QPoint end = start + moveBy;
        area->press(Qt::RightButton, start);
        area->moveWith(Qt::RightButton, end);
        area->release(Qt::RightButton, end);
        QCOMPARE(shown, menuShown ? 1 : 0);
        QCOMPARE(recorder.buttons, QStringList({"3 down", "3 up"}));
        if (menuShown) {
            QVERIFY2(picked, "the quads under the cursor are picked");
            QCOMPARE(global, area->toGlobal(end));
        }
        // A left click afterwards opens nothing.
        area->press(Qt::LeftButton, start);
        area->release(Qt::LeftButton, start);
        QCOMPARE(shown, menuShown ? 1 : 0);
    }

    void inventorRowsCountFromTheBottom_data() { addVariants(); }

    void inventorRowsCountFromTheBottom()
    {
        QFETCH(QString, variant);
        Recorder recorder;
        auto area = makeArea(variant, makeInteractor(&recorder));
        QVERIFY(area);
        area->setActivated(true);
        const QSize size = area->window ? area->window->size() : area->widget->size();
        recorder.positions.clear();
        area->press(Qt::LeftButton, QPoint(7, 0));
        QVERIFY(!recorder.positions.isEmpty());
        QCOMPARE(recorder.positions.last(), SbVec2s(7, short(size.height() - 1)));
        area->release(Qt::LeftButton, QPoint(7, size.height() - 1));
        QCOMPARE(recorder.positions.last(), SbVec2s(7, 0));
    }

    void imageShowsTheScene_data() { addVariants(); }

    void imageShowsTheScene()
    {
        QFETCH(QString, variant);
        Recorder recorder;
        auto area = makeArea(variant, makeInteractor(&recorder));
        QVERIFY(area);
        QTRY_VERIFY(area->isInitialized());
        const QImage image = area->getImage(100, 80);
        QCOMPARE(image.size(), QSize(100, 80));
        QVERIFY(near(image.pixel(25, 20), qRgb(255, 0, 0)));
        QVERIFY(near(image.pixel(75, 20), qRgb(0, 255, 0)));
        QVERIFY(near(image.pixel(25, 60), qRgb(0, 0, 255)));
        QVERIFY(near(image.pixel(75, 60), qRgb(255, 255, 0)));
        QCOMPARE(qAlpha(image.pixel(0, 0)), 255);
    }

    void windowFollowsItsContainer()
    {
        Recorder recorder;
        auto area = makeArea(QStringLiteral("QWindow"), makeInteractor(&recorder), QSize(240, 130));
        QVERIFY(area);
        QTRY_COMPARE(area->renderArea->getSize(), SbVec2i32(240, 130));
        QCOMPARE(area->renderArea->getViewportRegion().getViewportSizePixels(), SbVec2s(240, 130));
        area->host->resize(160, 90);
        QTRY_COMPARE(area->renderArea->getSize(), SbVec2i32(160, 90));
        QCOMPARE(area->renderArea->render(), SiRenderArea::RENDERED);
    }

    void savedFileShowsTheScene()
    {
        Recorder recorder;
        auto area = makeArea(QStringLiteral("QWindow"), makeInteractor(&recorder), QSize(120, 90));
        QVERIFY(area);
        QTRY_COMPARE(area->renderArea->getSize(), SbVec2i32(120, 90));
        QTemporaryDir dir;
        auto window = static_cast<Vw3RenderAreaQWindow*>(area->window);
        const QString path = dir.filePath(QStringLiteral("view.png"));
        QVERIFY(window->saveToFile(path));
        const QImage read(path);
        QCOMPARE(read.size(), QSize(120, 90));
        QVERIFY(near(read.pixel(30, 20), qRgb(255, 0, 0)));
        QVERIFY(near(read.pixel(90, 70), qRgb(255, 255, 0)));
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
        const QImage image = area->getImage(64, 48);
        QVERIFY(near(image.pixel(10, 10), qRgb(255, 0, 0)));
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

    void badImageSizeIsRefused()
    {
        Recorder recorder;
        auto area = makeArea(QStringLiteral("QWindow"), makeInteractor(&recorder));
        QVERIFY(area);
        QTRY_VERIFY(area->isInitialized());
        QTest::ignoreMessage(QtWarningMsg, "Vw3RenderAreaQWindow::getImage: invalid image size 0x10");
        QVERIFY(area->getImage(0, 10).isNull());
    }
};

QTEST_MAIN(TestVw3RenderArea)
#include "tst_gl_vw3renderarea.moc"
