// What a pick on a node reads: the sample under the ray with its coordinates and every
// variable (an undefined value said so), in the data's coordinates whatever the view's
// offset and exaggeration; elsewhere the picked point itself.

#include "InventorScenes.h"
#include <KbbGlobal.h>
#include <Vg3OpenInventor.h>
#include <Vg3PointSetNode.h>
#include <VsdPointSet.h>
#include <VugColorScale.h>

#include <Inventor/SoPickedPoint.h>
#include <Inventor/actions/SoRayPickAction.h>

#include <QtTest>

class TestVg3Picks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        Vg3OpenInventor::getInstance()->init();
        QLocale::setDefault(QLocale::c());
    }

    void aSampleReadsItsValues()
    {
        VsdPointSet set;
        set.addVariable(QStringLiteral("porosity"));
        set.addVariable(QStringLiteral("facies"));
        // The second sample is the one drawn at the centre of the view.
        QVERIFY(set.append(1000.0, 2000.0, -50.0, {0.1, 1.0}));
        QVERIFY(set.append(1005.0, 2005.0, -40.0, {0.25, KbbGlobal::D_FFFF}));
        Vg3PointSetNode node(QStringLiteral("Wells"));
        node.setOffset(KbgVector3D(1005.0, 2005.0, -40.0));
        node.setZScale(10.0f);
        node.setData(set, QStringLiteral("porosity"), VugColorScale());
        SoOrthographicCamera* camera = InventorScenes::orthoCamera(SbVec3f(0, 0, 500), 40.0f);
        camera->farDistance = 1000.0f;
        const auto scene = SoRef(InventorScenes::separator({camera, node.getRoot()}));

        const auto pickAt = [&](short x, short y) {
            SoRayPickAction pick(SbViewportRegion(100, 100));
            pick.setPoint(SbVec2s(x, y));
            pick.setRadius(3.0f);
            pick.apply(scene);
            QStringList lines;
            if (const SoPickedPoint* picked = pick.getPickedPoint())
                lines = node.describe(*picked);
            return lines;
        };
        QCOMPARE(pickAt(50, 50), QStringList({"Wells, sample 2", "x: 1005", "y: 2005", "z: -40", "porosity: 0.25",
                                              "facies: undefined"}));
        QCOMPARE(pickAt(5, 95), QStringList());
    }
};

QTEST_MAIN(TestVg3Picks)
#include "tst_vg3picks.moc"
