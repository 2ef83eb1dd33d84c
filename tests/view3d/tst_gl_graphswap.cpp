// Every holder of a scene graph swapped for a graph that lives only inside the old one: the
// new graph must be held before the old one is released, or it dies with it.

#include <SoRef.h>
#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>
#include <Vw3OivViewer.h>
#include <Vw3RenderAreaSupport.h>

#include <Inventor/nodes/SoCube.h>
#include <Inventor/nodes/SoSeparator.h>

#include <QtTest>

#include <functional>

using Setter = std::function<void(SoNode*)>;
using Getter = std::function<SoNode*()>;
Q_DECLARE_METATYPE(Setter)
Q_DECLARE_METATYPE(Getter)

class TestGraphSwap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    void newGraphInsideTheOldSurvives_data()
    {
        QTest::addColumn<Setter>("set");
        QTest::addColumn<Getter>("get");

        auto held = std::make_shared<SoRef<SoNode>>();
        QTest::newRow("holder") << Setter([held](SoNode* g) { *held = g; }) << Getter([held] { return held->get(); });
        auto interactor = std::make_shared<Vg3SceneInteractor>();
        QTest::newRow("scene interactor") << Setter([interactor](SoNode* g) { interactor->setSceneGraph(g); })
                                          << Getter([interactor] { return interactor->getSceneGraph(); });
        auto support = std::make_shared<Vw3RenderAreaSupport>();
        QTest::newRow("render area") << Setter([support](SoNode* g) { support->setSceneGraph(g); })
                                     << Getter([support] { return support->sceneGraph(); });
        auto viewer = std::make_shared<Vw3OivViewer>();
        QTest::newRow("viewer") << Setter([viewer](SoNode* g) { viewer->setSceneGraph(g); })
                                << Getter([viewer] { return viewer->getSceneGraph(); });
    }

    void newGraphInsideTheOldSurvives()
    {
        QFETCH(Setter, set);
        QFETCH(Getter, get);
        auto* old = new SoSeparator;
        auto* inner = new SoSeparator;
        old->addChild(inner);
        // The cube outlives both: a freed `inner` would show as a reference lost on it.
        const SoRef<SoCube> cube = new SoCube;
        inner->addChild(cube);
        set(old);
        set(inner);
        QCOMPARE(get(), static_cast<SoNode*>(inner));
        QCOMPARE(cube->getRefCount(), 2);
        set(nullptr);
        QCOMPARE(cube->getRefCount(), 1);
    }
};

QTEST_MAIN(TestGraphSwap)
#include "tst_gl_graphswap.moc"
