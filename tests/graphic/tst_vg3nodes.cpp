// The graphic nodes as a 3D view receives them: a named sub-graph root that stays the same
// object across rebuilds, bounding boxes that follow the vertical scale, the colours and
// shapes Inventor generates from the data (read back with a callback action, as a renderer
// would see them), holes in grids, bad data refused with a warning; the legend's ticks and
// labels.

#include "ImageChecks.h"
#include "InventorScenes.h"
#include <KbbGlobal.h>
#include <KbbStringFormat.h>
#include <Vg3Annotation.h>
#include <Vg3ColorLegend.h>
#include <Vg3Compass.h>
#include <Vg3Gnomon.h>
#include <Vg3GridSurfaceNode.h>
#include <Vg3OpenInventor.h>
#include <Vg3PointSetNode.h>
#include <Vg3PolylineNode.h>
#include <VsdGrid.h>
#include <VsdPointSet.h>
#include <VsdPolylineSet.h>
#include <VugColorScale.h>
#include <VupPreferenceRegistry.h>

#include <Inventor/SoPrimitiveVertex.h>
#include <Inventor/actions/SoCallbackAction.h>
#include <Inventor/nodes/SoDirectionalLight.h>
#include <Inventor/nodes/SoNormal.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoText2.h>

#include <QTemporaryDir>
#include <QtTest>

#include <limits>

using namespace InventorScenes;

namespace {

const QSize kSquare(200, 200);



// Grey, so the gnomon's saturated colours and the compass's yellow stand out.
const QColor kSceneGrey(128, 128, 128);




const double U = KbbGlobal::D_FFFF;

// What a renderer draws from a sub-graph: vertices in world coordinates with their colours.
struct Drawn
{
    QVector<SbVec3f> points, triangleCorners;
    QVector<QRgb> pointColors, triangleColors;
    int lineSegments = 0;
    QVector<float> lineZ;

    void add(SoCallbackAction* action, const SoPrimitiveVertex* v, QVector<SbVec3f>& where, QVector<QRgb>& colors)
    {
        SbColor ambient, diffuse, specular, emission;
        float shininess = 0, transparency = 0;
        action->getMaterial(ambient, diffuse, specular, emission, shininess, transparency, v->getMaterialIndex());
        colors << qRgb(qRound(diffuse[0] * 255), qRound(diffuse[1] * 255), qRound(diffuse[2] * 255));
        where << worldOf(action, v);
    }
    static SbVec3f worldOf(SoCallbackAction* action, const SoPrimitiveVertex* v)
    {
        SbVec3f p;
        action->getModelMatrix().multVecMatrix(v->getPoint(), p);
        return p;
    }
};

Drawn draw(SoNode* root)
{
    using V = const SoPrimitiveVertex*;
    Drawn drawn;
    SoCallbackAction action;
    const SoType shape = SoShape::getClassTypeId();
    action.addPointCallback(shape, [](void* d, SoCallbackAction* a, V v) {
        static_cast<Drawn*>(d)->add(a, v, static_cast<Drawn*>(d)->points, static_cast<Drawn*>(d)->pointColors);
    }, &drawn);
    action.addTriangleCallback(shape, [](void* d, SoCallbackAction* a, V v1, V v2, V v3) {
        for (V v : {v1, v2, v3})
            static_cast<Drawn*>(d)->add(a, v, static_cast<Drawn*>(d)->triangleCorners, static_cast<Drawn*>(d)->triangleColors);
    }, &drawn);
    action.addLineSegmentCallback(shape, [](void* d, SoCallbackAction* a, V v1, V v2) {
        ++static_cast<Drawn*>(d)->lineSegments;
        static_cast<Drawn*>(d)->lineZ << Drawn::worldOf(a, v1)[2] << Drawn::worldOf(a, v2)[2];
    }, &drawn);
    action.apply(root);
    return drawn;
}

// Colours as the callback action reads them back: rounded once.
bool near(QRgb a, QRgb b)
{
    return ImageChecks::near(a, b, 1);
}

VugColorScale rainbow(double min, double max)
{
    VugColorScale scale = VugColorScale::rainbow();
    scale.setRange(min, max);
    return scale;
}

// A 4 x 3 grid of unit cells from the origin, values 10 i + j, some undefined.
VsdGrid smallGrid(const QVector<QPoint>& undefinedNodes)
{
    VsdGrid grid(QPointF(0, 0), 1.0, 1.0, 4, 3);
    for (int j = 0; j < 3; ++j) for (int i = 0; i < 4; ++i) grid.setValue(i, j, 10.0 * i + j);
    for (const QPoint& p : undefinedNodes) grid.setValue(p.x(), p.y(), U);
    return grid;
}

} // namespace

class TestVg3Nodes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(_dir.isValid());
        // The user's own preferences must not change what the nodes draw.
        VupPreferenceRegistry::getInstance()->setStorageFile(_dir.filePath(QStringLiteral("preferences.ini")));
        Vg3OpenInventor::getInstance()->init();
    }

    void rootIsNamedAndStaysAcrossRebuilds_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("inventorName");
        QTest::newRow("plain") << "Porosity" << "Porosity";
        QTest::newRow("spaces and signs") << "Top reservoir (m)" << "Top_reservoir__m_";
        QTest::newRow("leading digit") << "3D grid" << "_3D_grid";
        QTest::newRow("accented letters") << QString::fromUtf8("Zone é") << "Zone__";
        QTest::newRow("empty") << "" << "_";
    }
    void rootIsNamedAndStaysAcrossRebuilds()
    {
        QFETCH(QString, name);
        QFETCH(QString, inventorName);
        Vg3PointSetNode node(name);
        SoSeparator* root = node.getRoot();
        QCOMPARE(QString::fromLatin1(root->getName().getString()), inventorName);
        // A view would hold the root: it must survive rebuilds with new data.
        root->ref();
        VsdPointSet set;
        set.append(1, 2, 3);
        node.setData(set, QString(), VugColorScale());
        QCOMPARE(draw(root).points.size(), 1);
        set.append(4, 5, 6);
        node.setData(set, QString(), VugColorScale());
        QCOMPARE(node.getRoot(), root);
        QCOMPARE(draw(root).points.size(), 2);
        QCOMPARE(root->getRefCount(), 2);
        root->unref();
    }

    void boundingBoxFollowsTheVerticalScale_data()
    {
        QTest::addColumn<float>("zScale");
        QTest::addColumn<float>("expectedScale");
        QTest::newRow("unscaled") << 1.0f << 1.0f;
        QTest::newRow("exaggerated") << 5.0f << 5.0f;
        QTest::newRow("flattened") << 0.25f << 0.25f;
        QTest::newRow("negative refused") << -2.0f << 1.0f;
        QTest::newRow("nan refused") << float(qQNaN()) << 1.0f;
    }
    void boundingBoxFollowsTheVerticalScale()
    {
        QFETCH(float, zScale);
        QFETCH(float, expectedScale);
        Vg3PointSetNode points(QStringLiteral("points"));
        QVERIFY(points.getBoundingBox().isEmpty());
        VsdPointSet set;
        set.append(100, 200, -1000);
        set.append(300, 250, -400);
        points.setData(set, QString(), VugColorScale());
        Vg3GridSurfaceNode surface(QStringLiteral("surface"));
        VsdGrid grid(QPointF(100, 200), 50, 25, 5, 3);
        QVector<double> depths(15, -400.0);
        depths[7] = -1000.0;
        grid.setValues(depths);
        surface.setData(grid, rainbow(-1000, -400));

        for (Vg3ANode* node : {static_cast<Vg3ANode*>(&points), static_cast<Vg3ANode*>(&surface)}) {
            if (!(expectedScale == zScale))
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3ANode::setZScale: .* not a positive scale"));
            node->setZScale(zScale);
            const SbBox3f box = node->getBoundingBox();
            QVERIFY2(box == SbBox3f(100, 200, -1000 * expectedScale, 300, 250, -400 * expectedScale),
                     qPrintable(text(box.getMin()) + text(box.getMax())));
            // What is drawn is scaled too, not only the box.
            const Drawn d = draw(node->getRoot());
            const QVector<SbVec3f>& corners = d.points.isEmpty() ? d.triangleCorners : d.points;
            float lowest = 0;
            for (const SbVec3f& p : corners) lowest = qMin(lowest, p[2]);
            QCOMPARE(lowest, -1000.0f * expectedScale);
        }
    }

    // Samples 10 cm apart at UTM northings: floats alone would draw them on one spot.
    void offsetKeepsMapCoordinatesApart_data()
    {
        QTest::addColumn<bool>("built");
        QTest::newRow("offset set before the data") << false;
        QTest::newRow("offset set on a built node") << true;
    }
    void offsetKeepsMapCoordinatesApart()
    {
        QFETCH(bool, built);
        VsdPointSet set;
        set.append(431000.0, 6541000.0, -1200.0);
        set.append(431000.1, 6541000.1, -1200.1);
        Vg3PointSetNode points(QStringLiteral("points"));
        const KbgVector3D offset(431000.0, 6541000.0, -1200.0);
        if (!built) points.setOffset(offset);
        points.setData(set, QString(), VugColorScale());
        if (built) points.setOffset(offset);
        points.setZScale(10.0f);
        const Drawn d = draw(points.getRoot());
        QCOMPARE(d.points.size(), 2);
        const SbVec3f step = d.points.at(1) - d.points.at(0);
        QVERIFY2(qAbs(step[0] - 0.1f) < 1e-3f && qAbs(step[1] - 0.1f) < 1e-3f, "the samples run together");
        // The vertical scale works about the offset, so the first sample stays at 0.
        QVERIFY(qAbs(d.points.at(0)[2]) < 1e-3f);
        QVERIFY(qAbs(step[2] + 1.0f) < 1e-2f);

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3ANode::setOffset: .* must be finite"));
        points.setOffset(KbgVector3D(qInf(), 0, 0));
        QCOMPARE(points.getOffset(), offset);
    }

    void pointColoursFollowTheScale_data()
    {
        QTest::addColumn<QVector<double>>("values");
        QTest::addColumn<QVector<double>>("depths");
        QTest::addColumn<bool>("classed");
        QTest::addColumn<QRgb>("undefinedColor");
        QTest::addColumn<QVector<int>>("drawnRanks");

        const QVector<double> values{0, 2.5, 5, 7.5, 10, 12, -3};
        const QVector<double> flat(7, 0.0);
        const QVector<int> all{0, 1, 2, 3, 4, 5, 6};
        QTest::newRow("continuous, beyond range clamped") << values << flat << false << QRgb(0) << all;
        QTest::newRow("classed") << values << flat << true << QRgb(0) << all;
        QTest::newRow("undefined values hidden while transparent")
            << QVector<double>{1, U, 3, qQNaN(), 5, 6, 7} << flat << false << QRgb(0) << QVector<int>{0, 2, 4, 5, 6};
        QTest::newRow("undefined values in a visible colour")
            << QVector<double>{1, U, 3, qQNaN(), 5, 6, 7} << flat << false << qRgba(255, 0, 255, 255) << all;
        QTest::newRow("undefined depths skipped")
            << values << QVector<double>{0, U, 0, 0, U, 0, 0} << false << qRgba(255, 0, 255, 255)
            << QVector<int>{0, 2, 3, 5, 6};
    }
    void pointColoursFollowTheScale()
    {
        QFETCH(QVector<double>, values);
        QFETCH(QVector<double>, depths);
        QFETCH(bool, classed);
        QFETCH(QRgb, undefinedColor);
        QFETCH(QVector<int>, drawnRanks);
        VugColorScale scale = classed ? VugColorScale({0, 4, 8, 10}, {qRgb(200, 0, 0), qRgb(0, 200, 0), qRgb(0, 0, 200)})
                                      : rainbow(0, 10);
        scale.setUndefinedColor(undefinedColor);
        VsdPointSet set;
        for (int i = 0; i < values.size(); ++i) set.append(i, 2 * i, depths[i]);
        QVERIFY(set.addVariable(QStringLiteral("Porosity"), values));

        Vg3PointSetNode node(QStringLiteral("wells"));
        node.setData(set, QStringLiteral("Porosity"), scale);
        const Drawn d = draw(node.getRoot());
        QCOMPARE(d.points.size(), drawnRanks.size());
        for (int v = 0; v < drawnRanks.size(); ++v) {
            const int rank = drawnRanks[v];
            QCOMPARE(node.getSampleRank(v), rank);
            QCOMPARE(d.points[v], SbVec3f(float(rank), float(2 * rank), float(depths[rank])));
            const QRgb expected =
                VugColorScale::isUndefinedValue(values[rank]) ? undefinedColor : scale.colorAt(values[rank]);
            QVERIFY2(near(d.pointColors[v], expected),
                     qPrintable(QStringLiteral("rank %1: %2 instead of %3") .arg(rank)
                                    .arg(QColor(d.pointColors[v]).name(), QColor(expected).name())));
        }
    }

    void unknownVariableGivesOneColour()
    {
        VsdPointSet set = VsdPointSet::generate(50, 7, QRectF(0, 0, 100, 100));
        Vg3PointSetNode node(QStringLiteral("samples"));
        node.setUniformColor(QColor(10, 20, 30));
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression("Vg3PointSetNode::setData: 'samples' has no variable 'Permeability'"));
        node.setData(set, QStringLiteral("Permeability"), rainbow(0, 1));
        const Drawn d = draw(node.getRoot());
        QCOMPARE(d.points.size(), 50);
        for (const QRgb c : d.pointColors) QVERIFY(near(c, qRgb(10, 20, 30)));
        // The last good point size stays when a bad one is given.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3PointSetNode::setPointSize"));
        node.setPointSize(-1);
        QCOMPARE(node.getPointSize(), 4.0f);
    }

    void gridHolesLeaveTrianglesOut_data()
    {
        QTest::addColumn<QVector<QPoint>>("undefinedNodes");
        QTest::addColumn<int>("cells");
        QTest::newRow("no hole") << QVector<QPoint>{} << 6;
        QTest::newRow("a corner") << QVector<QPoint>{{3, 2}} << 5;
        QTest::newRow("an inner node") << QVector<QPoint>{{1, 1}} << 2;
        QTest::newRow("two edge nodes") << QVector<QPoint>{{0, 0}, {3, 0}} << 4;
        QTest::newRow("a whole row") << QVector<QPoint>{{0, 1}, {1, 1}, {2, 1}, {3, 1}} << 0;
    }
    void gridHolesLeaveTrianglesOut()
    {
        QFETCH(QVector<QPoint>, undefinedNodes);
        QFETCH(int, cells);
        const VsdGrid grid = smallGrid(undefinedNodes);
        Vg3GridSurfaceNode node(QStringLiteral("horizon"));
        const VugColorScale scale = rainbow(0, 32);
        node.setData(grid, scale);
        const Drawn d = draw(node.getRoot());
        QCOMPARE(d.triangleCorners.size(), cells * 2 * 3);
        QCOMPARE(node.getCellCount(), cells);
        for (int k = 0; k < d.triangleCorners.size(); ++k) {
            const SbVec3f& p = d.triangleCorners[k];
            const int i = qRound(p[0]);
            const int j = qRound(p[1]);
            QVERIFY2(!undefinedNodes.contains(QPoint(i, j)), "a triangle reaches an undefined node");
            // Each corner sits at its node's value and takes the scale's colour for it.
            QCOMPARE(p[2], float(grid.value(i, j)));
            QVERIFY(near(d.triangleColors[k], scale.colorAt(grid.value(i, j))));
        }
    }

    // A plane rising 1 in 1 eastwards: every normal leans west at 45 degrees, at the edges and
    // beside a hole too, except where a node has no neighbour left east or west of it.
    void surfaceNormalsFollowTheSlope_data()
    {
        QTest::addColumn<bool>("hole");
        QTest::newRow("whole") << false;
        QTest::newRow("with a hole") << true;
    }
    void surfaceNormalsFollowTheSlope()
    {
        QFETCH(bool, hole);
        VsdGrid grid(QPointF(0, 0), 1.0, 1.0, 4, 3);
        for (int j = 0; j < 3; ++j) for (int i = 0; i < 4; ++i) grid.setValue(i, j, double(i));
        if (hole) grid.setValue(1, 1, KbbGlobal::D_FFFF);
        Vg3GridSurfaceNode surface(QStringLiteral("slope"));
        surface.setData(grid, rainbow(0, 3));
        auto* normal = find<SoNormal>(surface.getRoot());
        QVERIFY(normal);
        QCOMPARE(normal->vector.getNum(), 12);
        const SbVec3f expected(-float(M_SQRT1_2), 0.0f, float(M_SQRT1_2));
        if (hole) // (0, 1) between the west edge and the hole is taken as level.
            QVERIFY((normal->vector[4] - SbVec3f(0, 0, 1)).length() < 1e-5f);
        for (int k = 0; k < 12; ++k) {
            if (hole && (k == 5 || k == 4)) continue;
            QVERIFY2((normal->vector[k] - expected).length() < 1e-5f, qPrintable(QString::number(k)));
        }
    }

    // A colour grid of another lattice is refused: the depths colour the surface.
    void colourGridOfAnotherLatticeIsRefused()
    {
        const VsdGrid depths = smallGrid({});
        Vg3GridSurfaceNode node(QStringLiteral("facies on top"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3GridSurfaceNode::setData: .* 3x4 nodes, not 4x3"));
        node.setData(depths, VsdGrid(QPointF(0, 0), 1.0, 1.0, 3, 4), rainbow(0, 32));
        const Drawn d = draw(node.getRoot());
        QCOMPARE(d.triangleCorners.size(), 36);
        for (int k = 0; k < d.triangleCorners.size(); ++k)
            QVERIFY(near(d.triangleColors[k], rainbow(0, 32).colorAt(d.triangleCorners[k][2])));
    }

    void polylinesLieAtTheirDepth_data()
    {
        QTest::addColumn<double>("z");
        QTest::addColumn<float>("expectedZ");
        QTest::newRow("at sea level") << 0.0 << 0.0f;
        QTest::newRow("at depth") << -1500.0 << -1500.0f;
        QTest::newRow("undefined refused") << U << 0.0f;
    }
    void polylinesLieAtTheirDepth()
    {
        QFETCH(double, z);
        QFETCH(float, expectedZ);
        VsdPolylineSet lines;
        lines.append(QPolygonF(QVector<QPointF>{{0, 0}, {1, 0}, {1, 1}}));
        lines.append(QPolygonF(QVector<QPointF>{{5, 5}, {6, 6}}));
        Vg3PolylineNode node(QStringLiteral("faults"));
        node.setData(lines);
        if (KbbGlobal::isUndefined(z))
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3PolylineNode::setData"));
        node.setData(lines, z);
        const Drawn d = draw(node.getRoot());
        QCOMPARE(d.lineSegments, 3);
        for (const float lz : d.lineZ) QCOMPARE(lz, expectedZ);
    }

    void legendTicksAndLabels_data()
    {
        QTest::addColumn<VugColorScale>("scale");
        QTest::addColumn<bool>("discrete");
        QTest::addColumn<QVector<double>>("ticks");
        QTest::addColumn<QStringList>("labels");
        QTest::newRow("continuous 0 to 100") << rainbow(0, 100) << false << QVector<double>{0, 25, 50, 75, 100}
                                             << QStringList{"0.0", "25.0", "50.0", "75.0", "100.0"};
        QTest::newRow("continuous, odd range") << rainbow(0.13, 0.91) << false << QVector<double>{0.2, 0.4, 0.6, 0.8}
                                               << QStringList{"0.2", "0.4", "0.6", "0.8"};
        QTest::newRow("classes at their limits")
            << VugColorScale({0, 5, 20}, {qRgb(1, 2, 3), qRgb(4, 5, 6)}) << false << QVector<double>{0, 5, 20}
            << QStringList{"0.0", "5.0", "20.0"};
        QTest::newRow("discrete codes") << VugColorScale({1, 2, 3, 4}, {qRgb(1, 2, 3), qRgb(4, 5, 6), qRgb(7, 8, 9)})
                                        << true << QVector<double>{1, 2, 3} << QStringList{"1.0", "2.0", "3.0"};
        QTest::newRow("huge values, short labels") << rainbow(0.1, 1e30) << false
                                                   << QVector<double>{0, 2.5e29, 5e29, 7.5e29, 1e30}
                                                   << QStringList{"0.0e+00", "2.5e+29", "5.0e+29", "7.5e+29", "1.0e+30"};
        QTest::newRow("tiny values told apart") << rainbow(1e-7, 3e-7) << false << QVector<double>{1e-7, 1.5e-7, 2e-7,
                                                   2.5e-7, 3e-7} << QStringList{"1.0e-07", "1.5e-07", "2.0e-07",
                                                                                "2.5e-07", "3.0e-07"};
        // Stepping a double by one far from zero would never reach the end.
        QTest::newRow("narrow range far from zero, labels unchecked")
            << VugColorScale(QVector<VugColorScale::Stop>{{1e21, 0}, {1e21 + 131072, 0}}) << false << QVector<double>{1e21, 1e21, 1e21}
            << QStringList();
    }
    void legendTicksAndLabels()
    {
        QFETCH(VugColorScale, scale);
        QFETCH(bool, discrete);
        QFETCH(QVector<double>, ticks);
        QFETCH(QStringList, labels);
        Vg3ColorLegend legend(Qt::black, Qt::white);
        legend.setColorScale(scale, QStringLiteral("Porosity"), KbbStringFormat(KbbStringFormat::FIXED, 1), discrete);
        QVERIFY(legend.isShown());
        QCOMPARE(legend.getTickValues().size(), ticks.size());
        for (int i = 0; i < ticks.size(); ++i)
            QVERIFY(qAbs(legend.getTickValues()[i] - ticks[i]) < 1e-9 * qMax(1.0, qAbs(ticks[i])));
        // The labels a user reads are the ones drawn.
        if (!labels.isEmpty()) QCOMPARE(texts(legend.getRoot()), labels + QStringList{"Porosity"});
    }

private:
    QTemporaryDir _dir;
};

QTEST_MAIN(TestVg3Nodes)
#include "tst_vg3nodes.moc"
