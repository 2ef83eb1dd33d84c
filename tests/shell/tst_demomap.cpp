// The demo's map as a user meets it: the sample field drawn in its three layers with the
// overview and the view tools, the position under the mouse in the status bar, items
// ticked off the list, the generated point set added on request and made again when the
// project reopens (never written to disk), point files dropped on the map, pictures
// exported, and damaged sample files reported while the rest of the map is drawn.

#include "DataRow.h"
#include "MessageCatcher.h"
#include "DemoMapData.h"
#include "DemoMapWindow.h"
#include "DemoSession.h"
#include "WindowFileHelpers.h"

#include <KbbDebug.h>
#include <VsdPointSet.h>
#include <VugDatasetStore.h>
#include <VugScene.h>
#include <Vwv2DOverView.h>
#include <VwqBasemapPlot.h>
#include <VwvBasemapLayer.h>
#include <VwvBasemapView.h>

#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QUrl>
#include <QtTest>

// The column types of the tables below.
using PointFilesDroppedOnTheMapRow = Row<QString, QByteArray, bool, QString, QString>;
using DamagedSampleFilesAreReportedRow = Row<QString, QByteArray, int, QString>;

class TestDemoMap : public QObject
{
    Q_OBJECT
    DemoSession _demo;

    static DemoMapWindow* map() { return DemoSession::window<DemoMapWindow>(); }

private Q_SLOTS:
    void init() { QVERIFY(_demo.start()); }
    void cleanup() { _demo.stop(); }

    void theSampleFieldIsDrawn()
    {
        QVERIFY(_demo.open());
        DemoMapWindow* window = map();
        QVERIFY(window);
        _demo.main->setActiveWindow(window);
        QTRY_VERIFY(!window->visibleRegion().isEmpty());
        VwvBasemapView* view = window->getView();
        QCOMPARE(view->getLayerCount(), 3);
        QVERIFY(view->getLayer(0) && view->getLayer(1) && view->getLayer(2));
        QCOMPARE(view->getCoordSystem().getCode(), QStringLiteral("EPSG:32631"));
        // The whole field is in view, and in the overview's rectangle.
        QTRY_VERIFY(view->getCurrentZoom().contains(DemoSampleProject::fieldExtent()));
        QCOMPARE(window->getOverview()->getZoomArea(), view->getCurrentZoom());
        // The view tools are in the tool bar.
        QStringList texts;
        for (QAction* action : window->getToolbarActions(VwwAWindow::VIEW_TOOLBAR))
            texts << action->text();
        for (const char* text : {"Pan", "Zoom box", "View all", "Undo zoom", "Redo zoom", "Measure length"})
            QVERIFY2(texts.contains(QLatin1String(text)), text);

        // The position under the mouse, in the status bar.
        QWidget* canvas = view->getPlot()->canvas();
        const QPointF middle = view->getPlot()->pixelToView(QPointF(canvas->width() / 2, canvas->height() / 2));
        QMouseEvent move(QEvent::MouseMove, QPointF(canvas->width() / 2, canvas->height() / 2), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(canvas, &move);
        auto* tracker = window->findChild<QLabel*>(QStringLiteral("STATUS_INDICATOR_1"));
        QTRY_VERIFY2(tracker->text().contains(QString::number(middle.x(), 'f', 0).left(5))
                         && tracker->text().endsWith(QLatin1String(" m")),
                     qPrintable(tracker->text()));

        // Unticking an item hides its layer; the scene keeps the choice.
        auto* items = window->findChild<QListWidget*>(QStringLiteral("SCENE_ITEMS"));
        QCOMPARE(items->count(), 3);
        items->item(0)->setCheckState(Qt::Unchecked); // the samples, on top
        QVERIFY(!view->getLayer(2)->isVisible());
        QVERIFY(_demo.reopen());
        QVERIFY(!map()->getView()->getLayer(2)->isVisible());
        QCOMPARE(map()->findChild<QListWidget*>(QStringLiteral("SCENE_ITEMS"))->item(0)->checkState(), Qt::Unchecked);
    }

    void generatedPointsAreMadeAgainNotSaved()
    {
        QVERIFY(_demo.open());
        QVERIFY(map()->addLargePointSet(200000));
        // Again: the set is replaced, not added twice.
        QVERIFY(map()->addLargePointSet(100000));
        QCOMPARE(map()->getView()->getLayerCount(), 4);
        QCOMPARE(map()->shownItems().first(), QStringLiteral("Generated points (%L1)").arg(100000));

        QVERIFY(_demo.reopen());
        QCOMPARE(map()->getView()->getLayerCount(), 4);
        QVERIFY(map()->getView()->getLayer(3));
        VugDatasetStore* datasets = DemoMapData::getInstance()->getDatasets();
        QCOMPARE(datasets->pointSet(DemoMapData::LARGE_SET_KEY)->size(), 100000);
        const QDir folder(datasets->getDirectory());
        QVERIFY(!QFileInfo::exists(folder.filePath(VugDatasetStore::fileName(DemoMapData::LARGE_SET_KEY))));
        QVERIFY(QFileInfo::exists(folder.filePath(VugDatasetStore::fileName(QStringLiteral("samples")))));

        // The tool bar's switch shows it, and takes it out for good.
        auto* generated = map()->findChild<QAction*>(QStringLiteral("GENERATE_POINTS"));
        QVERIFY(generated && generated->isChecked());
        generated->trigger();
        QCOMPARE(map()->getView()->getLayerCount(), 3);
        QVERIFY(!DemoMapData::getInstance()->getDatasets()->contains(DemoMapData::LARGE_SET_KEY));
        QVERIFY(_demo.reopen());
        QCOMPARE(map()->getView()->getLayerCount(), 3);
        QVERIFY(!map()->findChild<QAction*>(QStringLiteral("GENERATE_POINTS"))->isChecked());
    }

    void pointFilesDroppedOnTheMap_data()
    {
        PointFilesDroppedOnTheMapRow::addColumns(); // name, content, accepted, item, warning
        QTest::newRow("CSV") << "wells.csv" << QByteArray("x,y,z,porosity\n431100,6541100,0,0.2\n431900,6541900,0,0.3\n")
                             << true << "wells" << "";
        QTest::newRow("damaged CSV") << "broken.csv" << QByteArray("x,y,z\n1,2,oops\n") << true << ""
                                     << "\"oops\" at line 2, field 3";
        QTest::newRow("not a point file") << "notes.txt" << QByteArray("hello") << false << "" << "";
    }

    void pointFilesDroppedOnTheMap()
    {
        const auto [name, content, accepted, item, warning] = PointFilesDroppedOnTheMapRow::fetch();
        QVERIFY(_demo.open());
        const QString path = _demo.dir.filePath(name);
        QVERIFY(WindowFiles::write(path, content));
        MessageCatcher caught;
        VwvBasemapView* view = map()->getView();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        const QPoint at = view->rect().center();
        QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view, &enter);
        QCOMPARE(enter.isAccepted(), accepted);
        if (accepted) {
            QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(view, &drop);
        }
        caught.stop();
        QCOMPARE(view->getLayerCount(), item.isEmpty() ? 3 : 4);
        if (!item.isEmpty()) {
            QCOMPARE(map()->shownItems().first(), item);
            QVERIFY(view->getLayer(3)->boundingRect().contains(QPointF(431500, 6541500)));
        }
        // Only what names the file counts: the 3D display may say meanwhile that it has no OpenGL.
        const QStringList told = caught.warnings.filter(name);
        QCOMPARE(told.size(), warning.isEmpty() ? 0 : 1);
        QVERIFY2(warning.isEmpty() || told.first().contains(warning), qPrintable(told.join('\n')));
    }

    // The picture's format follows the name's suffix.
    void picturesAreExported()
    {
        QVERIFY(_demo.open());
        for (const char* name : {"map.png", "map.svg"}) {
            const QString path = _demo.dir.filePath(QLatin1String(name));
            QVERIFY(map()->exportImage(path));
            QVERIFY2(WindowFiles::read(path).startsWith(path.endsWith(".png") ? "\x89PNG" : "<?xml"), name);
        }
    }

    void damagedSampleFilesAreReported_data()
    {
        DamagedSampleFilesAreReportedRow::addColumns(); // file, content, missingRank, message
        QTest::newRow("boundary, a word") << "boundary.csv" << QByteArray("x,y\n1,2\nthree,4\n5,6\n") << 1
                                          << "boundary.csv', line 3: 'three' is not a number";
        QTest::newRow("boundary, empty") << "boundary.csv" << QByteArray() << 1 << "holds no polygon";
        QTest::newRow("boundary, a vertex at infinity") << "boundary.csv" << QByteArray("x,y\n1,2\n3,inf\n5,6\n") << 1
                                                        << "line 3: 'inf' is not a finite coordinate";
        QTest::newRow("grid, no header") << "thickness-grid.csv" << QByteArray("1,2\n3,4\n") << 0
                                         << "line 1: the grid header is missing";
        QTest::newRow("grid, short row")
            << "thickness-grid.csv" << QByteArray("# origin 0 0, cell 1 1, 2 x 2 nodes\n1,2\n3\n") << 0
            << "line 3: 2 values are expected";
        QTest::newRow("grid, huge") << "thickness-grid.csv"
                                    << QByteArray("# origin 0 0, cell 1 1, 100000 x 100000 nodes\n") << 0
                                    << "100000 x 100000 nodes is not a grid";
    }

    void damagedSampleFilesAreReported()
    {
        const auto [file, content, missingRank, message] = DamagedSampleFilesAreReportedRow::fetch();
        QVERIFY(WindowFiles::write(QDir(_demo.folder).filePath(QStringLiteral("data/") + file), content));
        MessageCatcher caught;
        QVERIFY(_demo.open());
        caught.stop();
        QVERIFY2(caught.warnings.join('\n').contains(message), qPrintable(caught.warnings.join('\n')));
        // The item goes without a layer; the others are drawn.
        VwvBasemapView* view = map()->getView();
        QCOMPARE(view->getLayerCount(), 3);
        for (int rank = 0; rank < 3; ++rank)
            QCOMPARE(view->getLayer(rank) == nullptr, rank == missingRank);
    }
};

QTEST_MAIN(TestDemoMap)
#include "tst_demomap.moc"
