// The actions of a 3D view as its owner and a user meet them: the exclusive interaction
// modes, the checkable actions kept in step with the view both ways, the section request,
// the context menu's entries and the lookups of unknown actions.

#include <Vg3SceneInteractor.h>
#include <Vg3SectionModel.h>
#include <VugSectionDefinition.h>
#include <Vw3AView.h>
#include <Vw3ExaminerView.h>

#include <QAction>
#include <QMenu>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

namespace {

// Opens the protected context-menu filling to the test.
class MenuView : public Vw3ExaminerView
{
public:
    void fill(QMenu* menu) { _fillContextMenu(menu); }
};

} // namespace

class TestVw3ViewActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void modesAreExclusive_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("interaction");

        QTest::newRow("viewing") << int(Vw3AView::VIEWING_MODE) << "Viewing mode" << int(Vg3SceneInteractor::VIEWING);
        QTest::newRow("picking") << int(Vw3AView::PICKING_MODE) << "Picking mode" << int(Vg3SceneInteractor::PICKING);
        QTest::newRow("seeking") << int(Vw3AView::SEEKING_MODE) << "Seek mode" << int(Vg3SceneInteractor::SEEKING);
        QTest::newRow("ruler") << int(Vw3AView::RULER_MODE) << "Ruler mode" << int(Vg3SceneInteractor::RULER);
        QTest::newRow("knife picks") << int(Vw3AView::KNIFE_MODE) << "Knife mode" << int(Vg3SceneInteractor::PICKING);
        QTest::newRow("fence picks") << int(Vw3AView::FENCE_MODE) << "Fence mode" << int(Vg3SceneInteractor::PICKING);
        QTest::newRow("one point picks") << int(Vw3AView::PICK_1_POINT_MODE) << "Set points from picking"
                                         << int(Vg3SceneInteractor::PICKING);
        QTest::newRow("three points pick") << int(Vw3AView::PICK_3_POINTS_MODE) << "Set the plane from points"
                                           << int(Vg3SceneInteractor::PICKING);
        QTest::newRow("several points pick") << int(Vw3AView::PICK_MULTIPLE_POINTS_MODE) << "Add fence points"
                                             << int(Vg3SceneInteractor::PICKING);
    }

    void modesAreExclusive()
    {
        QFETCH(int, mode);
        QFETCH(QString, text);
        QFETCH(int, interaction);
        Vw3ExaminerView view;
        // Start from a mode of another interaction, so that every row is a real switch.
        view.getMode(mode == Vw3AView::RULER_MODE ? Vw3AView::SEEKING_MODE : Vw3AView::RULER_MODE)->trigger();

        QAction* action = view.getMode(mode);
        QVERIFY(action);
        QCOMPARE(action->text(), text);
        action->trigger();
        QCOMPARE(int(view.getSceneInteractor()->getInteractionMode()), interaction);
        for (int m = 0; m < Vw3AView::MODE_COUNT; ++m) QCOMPARE(view.getMode(m)->isChecked(), m == mode);

        // A section mode gives way to viewing when the section modes are cancelled.
        view.cancelSectionModes();
        const bool sectionMode = mode >= Vw3AView::KNIFE_MODE;
        QCOMPARE(view.getViewingMode()->isChecked(), sectionMode || mode == Vw3AView::VIEWING_MODE);
    }

    void checkableActionsFollowTheView_data()
    {
        QTest::addColumn<int>("action");
        QTest::addColumn<bool>("fromTheView");

        for (bool fromView : {true, false}) {
            const char* how = fromView ? "set by the view" : "toggled by the user";
            QTest::addRow("axes %s", how) << int(Vw3AView::AXES) << fromView;
            QTest::addRow("axes grid %s", how) << int(Vw3AView::AXES_GRID) << fromView;
            QTest::addRow("gnomon %s", how) << int(Vw3AView::GNOMON) << fromView;
            QTest::addRow("compass %s", how) << int(Vw3AView::COMPASS) << fromView;
            QTest::addRow("inverted colours %s", how) << int(Vw3AView::INVERT_COLORS) << fromView;
        }
        QTest::newRow("section properties set by the view") << int(Vw3AView::SECTION_PROPERTIES) << true;
    }

    void checkableActionsFollowTheView()
    {
        QFETCH(int, action);
        QFETCH(bool, fromTheView);
        Vw3ExaminerView view;
        QAction* a = view.getAction(Vw3AView::Action(action));
        QVERIFY(a && a->isCheckable());
        QSignalSpy toggled(a, &QAction::toggled);
        const bool target = !a->isChecked();
        if (fromTheView) {
            switch (action) {
            case Vw3AView::AXES: view.toggleAxes(target); break;
            case Vw3AView::AXES_GRID: view.toggleAxesGrid(target); break;
            case Vw3AView::GNOMON: view.toggleGnomon(target); break;
            case Vw3AView::COMPASS: view.toggleCompass(target); break;
            case Vw3AView::INVERT_COLORS: view.setInvertColors(target); break;
            case Vw3AView::SECTION_PROPERTIES: view.toggleClippingProperties(target); break;
            default: QFAIL("no setter for this row");
            }
        } else {
            a->trigger();
        }
        QCOMPARE(a->isChecked(), target);
        QCOMPARE(toggled.count(), 1);
        // The view redraws its decorations' actions from its own state: a toggle the view did
        // not take would show here.
        view.invalidateLegend();
        QCOMPARE(a->isChecked(), target);
        if (action == Vw3AView::INVERT_COLORS) QCOMPARE(view.getInvertColors(), target);
    }

    void sectionActionRequestsTheCurrentSection()
    {
        Vw3ExaminerView view;
        view.setPlane(KbgVector3D(1, 2, 3), KbgVector3D(0, 1, 0));
        QSignalSpy requested(&view, &Vw3AView::createSectionRequest);
        view.getAction(Vw3AView::SECTION)->trigger();
        QCOMPARE(requested.count(), 1);
        const auto definition = requested.at(0).at(0).value<VugSectionDefinition>();
        QVERIFY(definition == view.getSectionModel()->getSectionDefinition());
    }

    void contextMenuListsTheViewActions()
    {
        MenuView view;
        QMenu menu;
        view.fill(&menu);
        QStringList texts;
        for (QAction* a : menu.actions()) texts << (a->isSeparator() ? QStringLiteral("|") : a->text());
        const QStringList expected = {
            "View all", "View from top (U)", "View from bottom (D)", "View from east (E)", "View from west (W)",
            "View from north (N)", "View from south (S)", "Perspective / Orthographic Projection", "|", "Show axes",
            "Show axes grid", "Show gnomon", "Show compass", "Show/hide colormap legend", "Invert colors", "|",
            "Fullscreen", "Save as image", "Copy to clipboard", "Save scene as an IV file", "Send to report.",
        };
        QCOMPARE(texts, expected);
    }

    void unknownLookupsWarnAndGiveNothing()
    {
        Vw3ExaminerView view;
        QTest::ignoreMessage(QtWarningMsg, "Vw3AView::getAction: no action 29");
        QVERIFY(!view.getAction(Vw3AView::ACTION_COUNT));
        QTest::ignoreMessage(QtWarningMsg, "Vw3AView::getMode: no mode -1");
        QVERIFY(!view.getMode(-1));
        QTest::ignoreMessage(QtWarningMsg, "Vw3AView::getMode: no mode 9");
        QVERIFY(!view.getMode(Vw3AView::MODE_COUNT));
        // The lookups that exist are still there afterwards.
        QVERIFY(view.getAction(Vw3AView::VIEW_ALL));
        QVERIFY(view.getMode(Vw3AView::VIEWING_MODE) == view.getViewingMode());
    }
};

QTEST_MAIN(TestVw3ViewActions)
#include "tst_gl_vw3viewactions.moc"
