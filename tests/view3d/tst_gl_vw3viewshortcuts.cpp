// The single-key shortcuts of a 3D view that act on its clip plane, modes and fullscreen
// state, pressed on the render area as a user would.

#include <KbgClipPlaneDefinition.h>
#include <KbgVector3D.h>
#include <Vg3SceneInteractor.h>
#include <Vg3SectionModel.h>
#include <Vw3AView.h>
#include <Vw3ExaminerView.h>
#include <Vw3OivViewer.h>
#include <Vw3RenderAreaQWindow.h>

#include <Inventor/nodes/SoCamera.h>

#include <QAction>
#include <QtTest>
#include <cmath>
#include <memory>

class TestVw3ViewShortcuts : public QObject
{
    Q_OBJECT

private:
    // A shown view with a horizontal clip plane through the origin, taking keys.
    static std::unique_ptr<Vw3ExaminerView> makeShownView()
    {
        std::unique_ptr<Vw3ExaminerView> view(new Vw3ExaminerView);
        view->resize(200, 160);
        view->setAlwaysActivated(true);
        view->setPlane(KbgVector3D(0, 0, 0), KbgVector3D(0, 0, 1));
        view->show();
        if (!QTest::qWaitForWindowExposed(view.get())) return nullptr;
        Vw3RenderAreaQWindow* area = view->getViewer()->getRenderArea();
        if (!QTest::qWaitFor([area] { return area->isInitialized(); })) return nullptr;
        return view;
    }
    static double clipHeight(const Vw3AView& view) { return view.getSectionModel()->getClipPosition().z(); }
    static double sliceWidth(const Vw3AView& view)
    {
        return view.getSectionModel()->getClipPlaneDefinition().getSliceWidth();
    }

private Q_SLOTS:
    void clipKeysMoveAndResizeThePlane_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        // Expected change of the plane height, in steps, and of the slice width, as a factor.
        QTest::addColumn<int>("steps");
        QTest::addColumn<double>("widthFactor");

        const double f = Vg3SectionModel::SLICE_WIDTH_FACTOR;
        QTest::newRow("+ steps forward") << int(Qt::Key_Plus) << int(Qt::NoModifier) << 1 << 1.0;
        QTest::newRow("- steps backward") << int(Qt::Key_Minus) << int(Qt::NoModifier) << -1 << 1.0;
        QTest::newRow("Shift + widens the slice") << int(Qt::Key_Plus) << int(Qt::ShiftModifier) << 0 << f;
        QTest::newRow("Shift - narrows the slice") << int(Qt::Key_Minus) << int(Qt::ShiftModifier) << 0 << 1.0 / f;
        QTest::newRow("an unbound key leaves the plane") << int(Qt::Key_Q) << int(Qt::NoModifier) << 0 << 1.0;
    }

    void clipKeysMoveAndResizeThePlane()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(int, steps);
        QFETCH(double, widthFactor);
        auto view = makeShownView();
        QVERIFY(view);
        const double step = view->getSectionModel()->getClipPlaneDefinition().getStepSize();
        const double height = clipHeight(*view);
        const double width = sliceWidth(*view);

        QTest::keyClick(view->getViewer()->getRenderArea(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QVERIFY2(std::abs(clipHeight(*view) - (height + steps * step)) < 1e-9,
                 qPrintable(QString::number(clipHeight(*view))));
        QVERIFY2(std::abs(sliceWidth(*view) - width * widthFactor) < 1e-9, qPrintable(QString::number(sliceWidth(*view))));
    }

    void shiftLReversesThePlane()
    {
        auto view = makeShownView();
        QVERIFY(view);
        Vw3RenderAreaQWindow* area = view->getViewer()->getRenderArea();
        QTest::keyClick(area, Qt::Key_L, Qt::ShiftModifier);
        QVERIFY(std::abs(view->getSectionModel()->getPlaneNormal().z() + 1.0) < 1e-9);
        QTest::keyClick(area, Qt::Key_L, Qt::ShiftModifier);
        QVERIFY(std::abs(view->getSectionModel()->getPlaneNormal().z() - 1.0) < 1e-9);
    }

    void lLooksAlongThePlaneNormal()
    {
        auto view = makeShownView();
        QVERIFY(view);
        view->setPlane(KbgVector3D(0, 0, 0), KbgVector3D(1, 0, 0));
        QTest::keyClick(view->getViewer()->getRenderArea(), Qt::Key_L);
        SbVec3f direction;
        view->getSceneInteractor()->getCamera()->orientation.getValue().multVec(SbVec3f(0, 0, -1), direction);
        QVERIFY2((direction - SbVec3f(1, 0, 0)).length() < 1e-3f,
                 qPrintable(QStringLiteral("%1 %2 %3").arg(direction[0]).arg(direction[1]).arg(direction[2])));
    }

    void cSwitchesToKnifeMode()
    {
        auto view = makeShownView();
        QVERIFY(view);
        QTest::keyClick(view->getViewer()->getRenderArea(), Qt::Key_C);
        QVERIFY(view->getKnifeMode()->isChecked());
        QVERIFY(!view->getViewingMode()->isChecked());
        QCOMPARE(view->getSceneInteractor()->getInteractionMode(), Vg3SceneInteractor::PICKING);
    }

    void altReturnLeavesFullScreen_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("stillFullScreen");

        QTest::newRow("Alt+Return leaves") << int(Qt::Key_Return) << int(Qt::AltModifier) << false;
        QTest::newRow("Alt+Enter leaves") << int(Qt::Key_Enter) << int(Qt::AltModifier | Qt::KeypadModifier) << false;
        QTest::newRow("Return alone stays") << int(Qt::Key_Return) << int(Qt::NoModifier) << true;
    }

    void altReturnLeavesFullScreen()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(bool, stillFullScreen);
        auto view = makeShownView();
        QVERIFY(view);
        view->setFullScreen(true);
        QVERIFY(view->getAction(Vw3AView::FULLSCREEN)->isChecked());
        QTest::keyClick(view->getViewer()->getRenderArea(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(view->isFullScreen(), stillFullScreen);
        QCOMPARE(view->getAction(Vw3AView::FULLSCREEN)->isChecked(), stillFullScreen);
        view->setFullScreen(false);
    }

    void aReleaseAloneDoesNothing()
    {
        auto view = makeShownView();
        QVERIFY(view);
        const double height = clipHeight(*view);
        QTest::keyRelease(view->getViewer()->getRenderArea(), Qt::Key_Plus);
        QTest::keyRelease(view->getViewer()->getRenderArea(), Qt::Key_C);
        QCOMPARE(clipHeight(*view), height);
        QVERIFY(view->getViewingMode()->isChecked());
    }
};

QTEST_MAIN(TestVw3ViewShortcuts)
#include "tst_gl_vw3viewshortcuts.moc"
