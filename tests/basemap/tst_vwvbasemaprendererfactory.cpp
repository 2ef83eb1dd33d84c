// The renderer a scene item gets on the map, by its rendering: the right kind over the
// right dataset, the error for renderings the map does not draw, and a clear error for
// a dataset that is missing or of another kind.

#include <KbeError.h>
#include <KbeProgrammingError.h>
#include <VsdGrid.h>
#include <VsdPointSet.h>
#include <VsdPolygonSet.h>
#include <VsdPolylineSet.h>
#include <VssProject.h>
#include <VugDatasetStore.h>
#include <VugERendering.h>
#include <VugSceneItem.h>
#include <VwvBasemapRenderer.h>
#include <VwvBasemapRendererFactory.h>
#include <VwvBasemapRendererGridWire.h>
#include <VwvBasemapRendererPolygon.h>
#include <VwvBasemapRendererPolyline.h>
#include <VwvBasemapRendererRaster.h>

#include <QtTest>
#include <typeinfo>

class TestVwvBasemapRendererFactory : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;
    std::unique_ptr<VssProject> _project;
    std::unique_ptr<VugDatasetStore> _datasets;

private Q_SLOTS:
    void initTestCase()
    {
        _project = VssProject::create(_dir.filePath(QStringLiteral("p")), QStringLiteral("P"));
        QVERIFY(_project);
        _datasets = std::make_unique<VugDatasetStore>(*_project);
        VsdPointSet points;
        points.append(1, 2);
        points.addVariable(QStringLiteral("Porosity"), {0.2});
        VsdPolygonSet polygons;
        polygons.append(QPolygonF({{0, 0}, {10, 0}, {10, 10}}));
        VsdPolylineSet lines;
        lines.append(QPolygonF(QVector<QPointF>{{0, 0}, {10, 10}}));
        QVERIFY(_datasets->setPointSet(QStringLiteral("samples"), points));
        QVERIFY(_datasets->setPolygonSet(QStringLiteral("boundary"), polygons));
        QVERIFY(_datasets->setPolylineSet(QStringLiteral("faults"), lines));
        QVERIFY(_datasets->setGrid(QStringLiteral("thickness"), VsdGrid::generate(20, 10, 3)));
    }

    void renderingPicksTheRenderer_data()
    {
        QTest::addColumn<int>("rendering");
        QTest::addColumn<QString>("dataset");
        QTest::addColumn<QString>("type"); // the renderer's class, or the error's text

        const auto type = [](const auto& renderer) { return QString::fromLatin1(typeid(renderer).name()); };
        const VsdPointSet noPoints;
        const VsdGrid grid = VsdGrid::generate(2, 2, 1);
        QTest::newRow("points") << int(VugERendering::POINTS_V) << "samples"
                                << type(VwvBasemapRenderer(noPoints));
        QTest::newRow("point symbols") << int(VugERendering::POINT_SYMBOLS_V) << "samples"
                                       << type(VwvBasemapRenderer(noPoints));
        QTest::newRow("point labels") << int(VugERendering::POINT_LABELS_V) << "samples"
                                      << type(VwvBasemapRenderer(noPoints));
        QTest::newRow("raster") << int(VugERendering::RASTER_V) << "thickness"
                                << type(VwvBasemapRendererRaster(grid, VugColorScale::rainbow()));
        QTest::newRow("polygons") << int(VugERendering::POLYGONS_V) << "boundary"
                                  << type(VwvBasemapRendererPolygon(VsdPolygonSet()));
        QTest::newRow("grid wireframe") << int(VugERendering::GRID_WIRE_V) << "thickness"
                                        << type(VwvBasemapRendererGridWire(grid));
        QTest::newRow("polylines") << int(VugERendering::POLYLINES_V) << "faults"
                                   << type(VwvBasemapRendererPolyline(VsdPolylineSet()));
        QTest::newRow("tiled map: not on the map yet") << int(VugERendering::TILED_RASTER_MAP_V) << "samples"
                                                       << "No 2D renderer for rendering '2'.";
        QTest::newRow("surface: 3D only") << int(VugERendering::SURFACE_V) << "thickness"
                                          << "No 2D renderer for rendering '16'.";
        QTest::newRow("missing dataset") << int(VugERendering::POINTS_V) << "nowhere"
                                         << "The item 'Item' needs the point set 'nowhere', which the project does "
                                            "not hold.";
        QTest::newRow("another kind of dataset") << int(VugERendering::POLYGONS_V) << "samples"
                                                 << "The item 'Item' needs the polygon set 'samples', which the "
                                                    "project does not hold.";
    }
    void renderingPicksTheRenderer()
    {
        QFETCH(int, rendering);
        QFETCH(QString, dataset);
        QFETCH(QString, type);

        const VugSceneItem item(QStringLiteral("i1"), QStringLiteral("Item"), VugERendering::fromValue(rendering),
                                dataset, QStringLiteral("Porosity"));
        try {
            const auto renderer = VwvBasemapRendererFactory::create(item, *_datasets);
            QVERIFY(renderer);
            QCOMPARE(QString::fromLatin1(typeid(*renderer).name()), type);
            // Over the item's dataset: it has an extent (a single sample's is a point).
            QVERIFY(renderer->boundingRect() != QRectF());
        } catch (const KbeError& error) {
            QCOMPARE(error.getMessage(), type);
        }
    }
};

QTEST_MAIN(TestVwvBasemapRendererFactory)
#include "tst_vwvbasemaprendererfactory.moc"
