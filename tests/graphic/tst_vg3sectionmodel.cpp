// The section model as a view and its clipping panel use it: what listeners receive for
// each operation, and which points the Inventor clip planes keep afterwards.

#include <Vg3OpenInventor.h>
#include <Vg3SectionModel.h>

#include <Inventor/SbPlane.h>
#include <Inventor/nodes/SoClipPlane.h>
#include <Inventor/nodes/SoGroup.h>

#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

#include "VectorCompare.h"

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

using M = Vg3SectionModel&;
using Operation = std::function<void(M)>;
Q_DECLARE_METATYPE(Operation)

namespace {

constexpr double PI = 3.14159265358979323846;
const double NaN = std::numeric_limits<double>::quiet_NaN();
const double INF = std::numeric_limits<double>::infinity();

// Whether the model's clip node lets the point through: inside every plane that is on.
bool passesClipNode(const Vg3SectionModel& model, const KbgVector3D& p)
{
    SoGroup* group = model.getClipNode();
    const SbVec3f point(float(p.x()), float(p.y()), float(p.z()));
    for (int i = 0; i < group->getNumChildren(); ++i) {
        auto* clip = static_cast<SoClipPlane*>(group->getChild(i));
        if (clip->on.getValue() && !clip->plane.getValue().isInHalfSpace(point)) return false;
    }
    return true;
}

// The clip planes as drawn: on or off, normal and distance.
QStringList clipPlanes(const Vg3SectionModel& model)
{
    QStringList planes;
    SoGroup* group = model.getClipNode();
    for (int i = 0; i < group->getNumChildren(); ++i) {
        auto* clip = static_cast<SoClipPlane*>(group->getChild(i));
        const SbVec3f n = clip->plane.getValue().getNormal();
        planes << QStringLiteral("%1 %2 %3 %4 %5").arg(clip->on.getValue()).arg(n[0]).arg(n[1]).arg(n[2]).arg(
                      clip->plane.getValue().getDistanceFromOrigin());
    }
    return planes;
}

int planesOn(const Vg3SectionModel& model)
{
    return clipPlanes(model).filter(QRegularExpression(QStringLiteral("^1 "))).size();
}

} // namespace

class TestVg3SectionModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    // Each operation on a slab of width 3 that clips: one signal with the new state when
    // something changed; otherwise none, and the same definition and clip planes.
    void emitsOncePerChange_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<int>("emissions");
        QTest::addColumn<QString>("warning");
        const auto row = [](const char* name, Operation op, int count, const QString& warning = {}) {
            QTest::newRow(name) << op << count << (warning.isEmpty() ? warning : "^Vg3SectionModel::" + warning + ": ");
        };
        row("flip", [](M m) { m.flipPlane(); }, 1);
        row("step forward", [](M m) { m.stepForward(); }, 1);
        row("step backward", [](M m) { m.stepBackward(); }, 1);
        row("increase width", [](M m) { m.increaseSliceWidth(); }, 1);
        row("decrease width", [](M m) { m.decreaseSliceWidth(); }, 1);
        row("new position", [](M m) { m.setClipPosition({1, 2, 3}); }, 1);
        row("same position", [](M m) { m.setClipPosition({0, 0, 0}); }, 0);
        row("NaN position", [](M m) { m.setClipPosition({NaN, 0, 0}); }, 0, "setClipPosition");
        row("same normal, other length", [](M m) { m.setPlaneNormal({0, 5, 0}); }, 0);
        row("zero normal", [](M m) { m.setPlaneNormal({0, 0, 0}); }, 0, "setPlaneNormal");
        row("plane with zero normal", [](M m) { m.setPlane({1, 1, 1}, {}); }, 0, "setPlane");
        row("new plane", [](M m) { m.setPlane({1, 1, 1}, {0, 0, 1}); }, 1);
        row("clip plane, the default one", [](M m) { m.setClipPlane(KbgPlane({0, 0, 0}, {0, 1, 0})); }, 0);
        row("identity orientation", [](M m) { m.setClipOrientation({}); }, 0);
        row("turned orientation", [](M m) { m.setClipOrientation(KbgRotation({0, 0, 1}, 0.3)); }, 1);
        row("same mode", [](M m) { m.setClippingMode(KbgClipPlaneDefinition::SLICE); }, 0);
        row("half-space mode", [](M m) { m.setClippingMode(KbgClipPlaneDefinition::HALF_SPACE); }, 1);
        row("same width", [](M m) { m.setSliceWidth(3.0); }, 0);
        row("zero width", [](M m) { m.setSliceWidth(0.0); }, 0, "setSliceWidth");
        row("negative width", [](M m) { m.setSliceWidth(-2.0); }, 0, "setSliceWidth");
        row("NaN width", [](M m) { m.setSliceWidth(NaN); }, 0, "setSliceWidth");
        row("infinite width", [](M m) { m.setSliceWidth(INF); }, 0, "setSliceWidth");
        row("zero step", [](M m) { m.setStepSize(0.0); }, 0, "setStepSize");
        row("new step", [](M m) { m.setStepSize(2.5); }, 1);
        row("disable", [](M m) { m.setClippingEnabled(false); }, 1);
        row("enable while enabled", [](M m) { m.setClippingEnabled(true); }, 0);
        row("fence", [](M m) { m.setFence(KbgFence({{0, 0, 0}, {1, 0, 0}}, 5)); }, 1);
        row("unfold", [](M m) { m.setUnfoldFence(true); }, 1);
        row("fold while folded", [](M m) { m.setUnfoldFence(false); }, 0);
        row("reset to an empty box", [](M m) { m.reset(KbgBox()); }, 0, "reset");
        row("reset to a box", [](M m) { m.reset(KbgBox({0, 0, 0}, {10, 10, 10})); }, 1);
        row("whole definition, unchanged", [](M m) { m.setSectionDefinition(m.getSectionDefinition()); }, 0);
    }

    void emitsOncePerChange()
    {
        QFETCH(Operation, operation);
        QFETCH(int, emissions);
        QFETCH(QString, warning);
        Vg3SectionModel model;
        model.setClippingMode(KbgClipPlaneDefinition::SLICE);
        model.setClippingEnabled(true);
        model.setSliceWidth(3.0);
        const VugSectionDefinition before = model.getSectionDefinition();
        const QStringList planes = clipPlanes(model);
        QSignalSpy spy(&model, &Vg3SectionModel::sectionDefinitionChanged);
        if (!warning.isEmpty())
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
        operation(model);
        QCOMPARE(spy.count(), emissions);
        if (emissions == 0) {
            QCOMPARE(model.getSectionDefinition(), before);
            QCOMPARE(clipPlanes(model), planes);
            return;
        }
        // The listener receives the new state, not the old one.
        const auto received = spy.first().first().value<VugSectionDefinition>();
        QCOMPARE(received, model.getSectionDefinition());
        QVERIFY(received != before);
    }

    // Aligned, flipped and flipped back: the normal, the side kept and the orientation a
    // rotation widget reloads follow; a slab stays the same slab.
    void alignAndFlip_data()
    {
        QTest::addColumn<Operation>("align");
        QTest::addColumn<KbgVector3D>("normal");
        QTest::addColumn<bool>("slice");
        const auto row = [](const char* name, Operation align, const KbgVector3D& normal, bool slice = false) {
            QTest::newRow(name) << align << normal << slice;
        };
        row("X", [](M m) { m.setPlaneNormal({-1, 0, 0}); }, {-1, 0, 0});
        row("Y", [](M m) { m.setPlaneNormal({0, 1, 0}); }, {0, 1, 0});
        row("Z", [](M m) { m.setPlaneNormal({0, 0, -1}); }, {0, 0, -1});
        row("oblique", [](M m) { m.setPlaneNormal({0.6, 0, -0.8}); }, {0.6, 0, -0.8});
        row("oblique slice", [](M m) { m.setPlaneNormal({0.6, 0, -0.8}); }, {0.6, 0, -0.8}, true);
        row("quarter turn about z", [](M m) { m.setClipOrientation(KbgRotation({0, 0, 1}, PI / 2)); }, {-1, 0, 0});
        row("quarter turn about x", [](M m) { m.setClipOrientation(KbgRotation({1, 0, 0}, PI / 2)); }, {0, 0, 1});
        row("turn about y keeps north", [](M m) { m.setClipOrientation(KbgRotation({0, 1, 0}, 1.0)); }, {0, 1, 0});
    }

    void alignAndFlip()
    {
        QFETCH(Operation, align);
        QFETCH(KbgVector3D, normal);
        QFETCH(bool, slice);
        Vg3SectionModel model;
        model.setClipPosition({5, 5, 5});
        align(model);
        model.setClippingMode(slice ? KbgClipPlaneDefinition::SLICE : KbgClipPlaneDefinition::HALF_SPACE);
        model.setClippingEnabled(true);
        COMPARE_VEC(model.getPlaneNormal(), normal);
        const VugSectionDefinition start = model.getSectionDefinition();
        const KbgVector3D ahead = KbgVector3D(5, 5, 5) + normal * 0.25;
        QVERIFY(passesClipNode(model, ahead));

        QSignalSpy spy(&model, &Vg3SectionModel::sectionDefinitionChanged);
        model.flipPlane();
        COMPARE_VEC(model.getPlaneNormal(), -normal);
        QCOMPARE(passesClipNode(model, ahead), slice);
        COMPARE_VEC(model.getClipPlaneDefinition().getOrientation().apply({0, 1, 0}), -normal);
        model.flipPlane();
        QCOMPARE(spy.count(), 2);
        QCOMPARE(model.getSectionDefinition(), start);
        QVERIFY(passesClipNode(model, ahead));
    }

    void clipPlanesKeepPoints_data()
    {
        QTest::addColumn<Operation>("setup");
        QTest::addColumn<KbgVector3D>("point");
        QTest::addColumn<bool>("kept");
        QTest::addColumn<int>("planes");
        const auto row = [](const char* name, const std::vector<Operation>& steps, const KbgVector3D& point, bool kept,
                            int planes) {
            QTest::newRow(name) << Operation([steps](M m) { for (const Operation& step : steps) step(m); }) << point
                                << kept << planes;
        };
        // Each setup starts from the plane through (10, 20, 30) facing east, width 4.
        const Operation on = [](M m) { m.setClippingEnabled(true); };
        const Operation off = [](M m) { m.setClippingEnabled(false); };
        const Operation slice = [](M m) { m.setClippingMode(KbgClipPlaneDefinition::SLICE); };
        const Operation flip = [](M m) { m.flipPlane(); };
        const Operation fence = [](M m) { m.setFence(KbgFence({{0, 0, 0}, {100, 0, 0}}, 50)); };
        const Operation plane = [](M m) { m.setClipPlane(KbgPlane({10, 20, 30}, {1, 0, 0})); };
        const Operation wider = [](M m) { m.increaseSliceWidth(); };
        const Operation narrower = [](M m) { m.decreaseSliceWidth(); };
        row("off: behind kept", {}, {0, 0, 0}, true, 0);
        row("half: ahead kept", {on}, {11, 0, 0}, true, 1);
        row("half: behind cut", {on}, {9, 99, -99}, false, 1);
        row("flipped: behind kept", {on, flip}, {9, 0, 0}, true, 1);
        row("flipped: ahead cut", {on, flip}, {11, 0, 0}, false, 1);
        row("slice: centre kept", {slice, on}, {10, 20, 30}, true, 2);
        row("slice: inside back face kept", {slice, on}, {8.5, 0, 0}, true, 2);
        row("slice: inside front face kept", {slice, on}, {11.5, 0, 0}, true, 2);
        row("slice: beyond front cut", {slice, on}, {12.5, 0, 0}, false, 2);
        row("slice: beyond back cut", {slice, on}, {7.5, 0, 0}, false, 2);
        row("widened slice: beyond the old front kept", {slice, on, wider}, {12.4, 0, 0}, true, 2);
        row("narrowed slice: inside the old front cut", {slice, on, narrower}, {11.8, 0, 0}, false, 2);
        row("widened and narrowed: beyond front cut", {slice, on, wider, narrower}, {12.1, 0, 0}, false, 2);
        row("slice not enabled: far kept", {slice}, {100, 0, 0}, true, 0);
        row("slice turned off: far kept", {slice, on, off}, {100, 0, 0}, true, 0);
        row("fence: no plane", {on, fence}, {0, 0, 0}, true, 0);
        row("back to a plane: behind cut", {on, fence, plane}, {9, 0, 0}, false, 1);
    }

    void clipPlanesKeepPoints()
    {
        QFETCH(Operation, setup);
        QFETCH(KbgVector3D, point);
        QFETCH(bool, kept);
        QFETCH(int, planes);
        Vg3SectionModel model;
        model.setPlane({10, 20, 30}, {1, 0, 0});
        model.setSliceWidth(4.0);
        setup(model);
        QCOMPARE(planesOn(model), planes);
        QCOMPARE(passesClipNode(model, point), kept);
        // The Inventor planes and the definition agree whenever clipping applies.
        if (planes > 0) QCOMPARE(model.getClipPlaneDefinition().isKept(point), kept);
    }

    void resetCentresOnTheScene()
    {
        Vg3SectionModel model;
        model.setPlane({1, 1, 1}, {0, 0, 1});
        model.setClippingMode(KbgClipPlaneDefinition::SLICE);
        model.setClippingEnabled(true);
        model.reset(KbgBox({100, 200, 0}, {300, 400, 50}));
        COMPARE_VEC(model.getClipPosition(), KbgVector3D(200, 300, 25));
        COMPARE_VEC(model.getPlaneNormal(), KbgVector3D(0, 1, 0));
        // A tenth of the depth along y: the slab spans y 290 to 310.
        QVERIFY(passesClipNode(model, {120, 309, 1}));
        QVERIFY(!passesClipNode(model, {120, 311, 1}));
        QVERIFY(!passesClipNode(model, {120, 289, 1}));
        model.stepForward();
        COMPARE_VEC(model.getClipPosition(), KbgVector3D(200, 310, 25));

        QSignalSpy spy(&model, &Vg3SectionModel::sectionDefinitionChanged);
        model.resetPosition(KbgBox({100, 200, 0}, {300, 400, 50}));
        QCOMPARE(spy.count(), 1);
        COMPARE_VEC(model.getClipPosition(), KbgVector3D(200, 300, 25));
    }

    void clipNodeOutlivesItsUsers()
    {
        Vg3SectionModel model;
        SoGroup* clip = model.getClipNode();
        {
            // A view's graph holding the node and dropping it must not free it.
            SoGroup* viewRoot = new SoGroup;
            viewRoot->ref();
            viewRoot->addChild(clip);
            viewRoot->unref();
        }
        model.setClippingEnabled(true);
        QCOMPARE(planesOn(model), 1);
        QVERIFY(!passesClipNode(model, {0, -1, 0}));
    }
};

QTEST_MAIN(TestVg3SectionModel)
#include "tst_vg3sectionmodel.moc"
