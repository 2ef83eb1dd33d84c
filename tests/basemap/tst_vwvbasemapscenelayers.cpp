// The layers of a scene following the dataset store: a layer's sample selection kept in
// its point set (shown by the other layers of the set and by a second plot's layers, still
// there when the layer is rebuilt), a replaced dataset redrawing
// only the layers that draw it, a removed one leaving its items without a layer until it
// comes back, and a reloaded store redrawn.

#include <VsdPointSet.h>
#include <VssProject.h>
#include <VugDatasetStore.h>
#include <VugERendering.h>
#include <VugScene.h>
#include <VugSceneItem.h>
#include <VwqBasemapPlot.h>
#include <VwvBasemapLayer.h>
#include <VwvBasemapSceneLayers.h>

#include <QtTest>
#include <memory>

namespace {

// count samples on the diagonal from (start, start), one unit apart, with a "Thickness".
VsdPointSet diagonal(double start, int count)
{
    VsdPointSet set;
    for (int i = 0; i < count; ++i)
        set.append(start + i, start + i);
    QVector<double> thickness(count, 2.0);
    set.addVariable(QStringLiteral("Thickness"), thickness);
    return set;
}

// A project holding a (samples 0..4), b (10..12) and c (20..21), and a scene whose items
// X, Y, Z draw the given keys, laid out on a plot.
struct World
{
    QTemporaryDir dir;
    std::unique_ptr<VssProject> project;
    std::unique_ptr<VugDatasetStore> store;
    VugScene scene{1};
    VwqBasemapPlot plot;
    VwvBasemapSceneLayers layers{&plot};

    explicit World(const QStringList& keys)
    {
        project = VssProject::create(dir.filePath(QStringLiteral("p")), QStringLiteral("P"));
        store = std::make_unique<VugDatasetStore>(*project);
        store->setPointSet(QStringLiteral("a"), diagonal(0, 5));
        store->setPointSet(QStringLiteral("b"), diagonal(10, 3));
        store->setPointSet(QStringLiteral("c"), diagonal(20, 2));
        const QStringList ids = {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")};
        for (int i = 0; i < keys.size(); ++i)
            scene.appendItem(VugSceneItem(ids.at(i), ids.at(i).toUpper(), VugERendering::POINTS, keys.at(i)));
        layers.setScene(&scene, store.get());
    }

    QList<double> zOrder() const
    {
        QList<double> z;
        for (int rank = 0; rank < layers.count(); ++rank)
            z << (layers.getLayer(rank) ? layers.getLayer(rank)->getZ() : -1.0);
        return z;
    }
};

} // namespace

class TestVwvBasemapSceneLayers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSelectionIsKeptInThePointSet()
    {
        World w({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("a")});
        VwqBasemapPlot overviewPlot;
        VwvBasemapSceneLayers overview(&overviewPlot);
        overview.setScene(&w.scene, w.store.get());
        QSignalSpy selection(&w.layers, &VwvBasemapSceneLayers::selectionChanged);
        QSignalSpy rebuilt(&w.layers, &VwvBasemapSceneLayers::layersChanged);
        QSignalSpy stored(w.store.get(), &VugDatasetStore::datasetChanged);
        const QPointer<VwvBasemapLayer> x = w.layers.getLayer(0);
        const QPointer<VwvBasemapLayer> y = w.layers.getLayer(1);
        const QPointer<VwvBasemapLayer> z = w.layers.getLayer(2);

        x->mask(KbiIntervalIntSmallDisjoint(1, 2), Vu::SELECT);
        QCOMPARE(w.store->pointSet(QStringLiteral("a"))->selection().toString(), QStringLiteral("1-2"));
        QCOMPARE(selection.count(), 1);
        QCOMPARE(stored.count(), 1);
        // The layer that was masked stays; Z, drawing the same set, is redrawn with it.
        QCOMPARE(w.layers.getLayer(0), x.data());
        QCOMPARE(x->getSelection().toString(), QStringLiteral("1-2"));
        QCOMPARE(w.layers.getLayer(1), y.data());
        QVERIFY(!z);
        QCOMPARE(w.layers.getLayer(2)->getSelection().toString(), QStringLiteral("1-2"));
        QCOMPARE(rebuilt.count(), 1);
        QCOMPARE(overview.getLayer(0)->getSelection().toString(), QStringLiteral("1-2"));
        QCOMPARE(w.zOrder(), (QList<double>{1, 2, 3}));

        // Nothing new: nothing written.
        x->mask(2, Vu::SELECT);
        QCOMPARE(selection.count(), 1);
        QCOMPARE(stored.count(), 1);

        // A layer made again for the item reads the selection from the set.
        QVERIFY(w.scene.setItemSource(0, QStringLiteral("a"), QStringLiteral("Thickness")));
        QVERIFY(!x);
        QCOMPARE(w.layers.getLayer(0)->getSelection().toString(), QStringLiteral("1-2"));

        // Loading the store again puts the saved set, with its selection, back on the map.
        w.store->save();
        w.layers.getLayer(0)->mask(4, Vu::REPLACE);
        QCOMPARE(w.store->pointSet(QStringLiteral("a"))->selection().toString(), QStringLiteral("4"));
        w.store->load();
        const KbiIntervalIntSmallDisjoint loaded = w.store->pointSet(QStringLiteral("a"))->selection();
        QCOMPARE(loaded.toString(), QStringLiteral("1-2"));
        QCOMPARE(w.layers.getLayer(0)->getSelection(), loaded);
        QCOMPARE(w.layers.getLayer(2)->getSelection(), loaded);
        QCOMPARE(w.zOrder(), (QList<double>{1, 2, 3}));
    }

    void layersFollowTheirDatasets_data()
    {
        QTest::addColumn<QStringList>("events");
        QTest::addColumn<bool>("yRebuilt");
        QTest::addColumn<QRectF>("yBounds"); // null: Y has no layer
        QTest::addColumn<int>("rebuilds");

        const QRectF before(10, 10, 2, 2);
        const QRectF after(50, 50, 3, 3);
        QTest::newRow("its set replaced") << QStringList{"set b"} << true << after << 1;
        QTest::newRow("its set removed") << QStringList{"remove b"} << true << QRectF() << 1;
        QTest::newRow("its set removed and put back") << QStringList{"remove b", "set b"} << true << after << 2;
        QTest::newRow("a set no item draws") << QStringList{"set d", "remove d"} << false << before << 0;
        QTest::newRow("another item's set replaced") << QStringList{"set c"} << false << before << 1;
    }
    void layersFollowTheirDatasets()
    {
        QFETCH(QStringList, events);
        QFETCH(bool, yRebuilt);
        QFETCH(QRectF, yBounds);
        QFETCH(int, rebuilds);

        World w({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
        w.scene.renameItem(1, QStringLiteral("Wells"));
        w.scene.setItemActive(1, false);
        const QPointer<VwvBasemapLayer> x = w.layers.getLayer(0);
        const QPointer<VwvBasemapLayer> y = w.layers.getLayer(1);
        QSignalSpy rebuilt(&w.layers, &VwvBasemapSceneLayers::layersChanged);

        for (const QString& event : events) {
            const QString key = event.section(QLatin1Char(' '), 1);
            if (event.startsWith(QLatin1String("set"))) {
                QVERIFY(w.store->setPointSet(key, diagonal(50, 4)));
            } else {
                if (key == QLatin1String("b"))
                    QTest::ignoreMessage(QtWarningMsg, "VwvBasemapView: cannot create render layer 'Wells': The item "
                                                       "'Wells' needs the point set 'b', which the project does not hold.");
                QVERIFY(w.store->remove(key));
            }
        }

        QCOMPARE(rebuilt.count(), rebuilds);
        QCOMPARE(w.layers.getLayer(0), x.data());
        QCOMPARE(w.layers.count(), 3);
        QCOMPARE(!y, yRebuilt);
        VwvBasemapLayer* layer = w.layers.getLayer(1);
        QCOMPARE(layer != nullptr, !yBounds.isNull());
        if (layer) {
            QCOMPARE(layer->boundingRect(), yBounds);
            QCOMPARE(layer->getTitle(), QStringLiteral("Wells"));
            QVERIFY(!layer->isVisible());
        }
        QCOMPARE(w.zOrder(), (QList<double>{1, layer ? 2.0 : -1.0, 3}));
        // The third layer is only made again when its own set changed.
        const bool zOwnSet = events.contains(QStringLiteral("set c"));
        QCOMPARE(w.layers.getLayer(2)->boundingRect(), zOwnSet ? QRectF(50, 50, 3, 3) : QRectF(20, 20, 1, 1));
    }
};

QTEST_MAIN(TestVwvBasemapSceneLayers)
#include "tst_vwvbasemapscenelayers.moc"
