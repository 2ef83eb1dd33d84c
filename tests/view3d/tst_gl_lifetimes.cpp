// Who holds what in the 3D views: every holder of a scene graph swapped for a graph that
// lives only inside the old one (the new graph must be held before the old one goes, or it
// dies with it); nodes and projects that end while a view shows them, and views that end
// before their nodes.

#include <SoRef.h>
#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>
#include <Vg3PolylineNode.h>
#include <VssProject.h>
#include <VssProjectCollection.h>
#include <Vw3ExaminerView.h>
#include <Vw3OivViewer.h>
#include <Vw3RenderAreaSupport.h>

#include <Inventor/actions/SoSearchAction.h>
#include <Inventor/nodes/SoCube.h>
#include <Inventor/nodes/SoSeparator.h>

#include <QTemporaryDir>
#include <QtTest>

#include <functional>

using Setter = std::function<void(SoNode*)>;
using Getter = std::function<SoNode*()>;
Q_DECLARE_METATYPE(Setter)
Q_DECLARE_METATYPE(Getter)

class TestLifetimes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        Vg3OpenInventor::getInstance()->init();
        qRegisterMetaType<Vg3ANode*>();
    }

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

    void nodeDestroyedWhileShown()
    {
        // Two views share the nodes; each forgets a node that ends, as if it were removed.
        Vw3ExaminerView first, second;
        auto* ending = new Vg3PolylineNode(QStringLiteral("ending"));
        Vg3PolylineNode staying(QStringLiteral("staying"));
        for (Vw3AView* view : {&first, &second}) {
            view->addNode(ending);
            view->addNode(&staying);
        }
        QSignalSpy removed(&first, &Vw3AView::nodeRemoved);
        const SoSeparator* shownRoot = ending->getRoot();
        const int children = first.getRoot()->getNumChildren();
        delete ending;

        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.at(0).at(1).value<Vg3ANode*>(), static_cast<Vg3ANode*>(ending));
        for (Vw3AView* view : {&first, &second}) {
            QCOMPARE(view->getVisibleNodesCount(), 1);
            QVERIFY(!view->isNodeVisible(ending));
            QVERIFY(view->isNodeVisible(&staying));
            SoSearchAction search;
            search.setNode(const_cast<SoSeparator*>(shownRoot));
            search.apply(view->getRoot());
            QVERIFY(!search.getPath());
        }
        QCOMPARE(first.getRoot()->getNumChildren(), children);
        // The view no longer knows it: a late removal is refused, not a crash.
        QTest::ignoreMessage(QtWarningMsg, "Vw3AView::removeNode: the node is not in the view");
        first.removeNode(ending);
    }

    void viewEndsBeforeItsNode()
    {
        Vg3PolylineNode node(QStringLiteral("outliving"));
        {
            Vw3ExaminerView view;
            view.addNode(&node);
        }
        // The node's end must not reach the view that has gone (a sanitizer build sees it).
        Vw3ExaminerView later;
        later.addNode(&node);
        later.removeNode(&node);
        QCOMPARE(later.getVisibleNodesCount(), 0);
    }

    void projectClosedWhileShown()
    {
        QTemporaryDir folder;
        VssProjectCollection* projects = VssProjectCollection::getInstance();
        QVERIFY(projects->createProject(folder.path(), QStringLiteral("Field")));
        Vw3ExaminerView view;
        QVERIFY(view.getProject());
        QVERIFY(projects->closeProject());
        QVERIFY(!view.getProject());
    }
};

QTEST_MAIN(TestLifetimes)
#include "tst_gl_lifetimes.moc"
