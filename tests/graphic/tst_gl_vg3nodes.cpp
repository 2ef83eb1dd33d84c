// The graphic nodes as the user sees them: surfaces rendered from above and lit from either
// side, samples framed and coloured apart whatever huge or non-finite value one holds; the
// legend's bar in its corner; annotations in their place; the gnomon and compass in their
// corner over a scene filling the window, and nowhere else.

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

// The box of the pixels a predicate picks, in image coordinates.
template <class F> QRect boxOf(const QImage& image, F pick)
{
    QRect box;
    for (int row = 0; row < image.height(); ++row) for (int col = 0; col < image.width(); ++col)
            if (pick(image.pixel(col, row))) box |= QRect(col, row, 1, 1);
    return box;
}

bool drawn(QRgb c)
{
    return c != qRgb(0, 0, 0);
}

// Far from any grey: the legend's rainbow, the gnomon's axes, the compass.
bool saturated(QRgb c, int by)
{
    return std::max({qRed(c), qGreen(c), qBlue(c)}) - std::min({qRed(c), qGreen(c), qBlue(c)}) > by;
}

// Grey, so the gnomon's saturated colours and the compass's yellow stand out.
const QColor kSceneGrey(128, 128, 128);

// Pixels clearly of a decoration in `area`.
int decorationPixels(const QImage& image, const QRect& area)
{
    return ImageChecks::count(image.copy(area), [](QRgb p) { return saturated(p, 80); });
}

// The square of `side` pixels in a corner of the picture, y counted from the top.
QRect cornerRect(const QSize& size, int position, int side)
{
    return QRect((position & Vu::RIGHT) ? size.width() - side : 0, (position & Vu::TOP) ? 0 : size.height() - side,
                 side, side);
}


const double U = KbbGlobal::D_FFFF;



VugColorScale rainbow(double min, double max)
{
    VugColorScale scale = VugColorScale::rainbow();
    scale.setRange(min, max);
    return scale;
}


} // namespace

class TestGlVg3Nodes : public QObject
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

    void gridSurfaceSeenFromAbove_data()
    {
        QTest::addColumn<QPointF>("at");
        QTest::addColumn<QRgb>("expected");
        // Grey levels follow x: the colour grid holds i at node (i, j), the scale spans 0 to 4.
        const auto grey = [](double x) { return qRgb(qRound(x * 63.75), qRound(x * 63.75), qRound(x * 63.75)); };
        QTest::newRow("west cell") << QPointF(0.5, 0.5) << grey(0.5);
        QTest::newRow("middle") << QPointF(2.0, 2.0) << grey(2.0);
        QTest::newRow("east cell") << QPointF(3.5, 0.5) << grey(3.5);
        QTest::newRow("beside the hole") << QPointF(2.5, 3.5) << grey(2.5);
        QTest::newRow("the hole") << QPointF(3.5, 3.5) << qRgb(0, 0, 0);
    }
    void gridSurfaceSeenFromAbove()
    {
        QFETCH(QPointF, at);
        QFETCH(QRgb, expected);
        VsdGrid depths(QPointF(0, 0), 1.0, 1.0, 5, 5);
        depths.setValues(QVector<double>(25, 0.0));
        depths.setValue(4, 4, KbbGlobal::D_FFFF);
        VsdGrid codes(QPointF(0, 0), 1.0, 1.0, 5, 5);
        for (int j = 0; j < 5; ++j) for (int i = 0; i < 5; ++i) codes.setValue(i, j, i);
        VugColorScale scale = VugColorScale::grayscale();
        scale.setRange(0, 4);
        Vg3GridSurfaceNode node(QStringLiteral("horizon"));
        node.setTransparency(0.0f);
        node.setData(depths, codes, scale);

        const auto scene = SoRef(unlitScene(orthoCamera(SbVec3f(2, 2, 10), 4.0f), {node.getRoot()}));
        const QImage image = render(scene.get(), kSquare);
        QVERIFY2(!image.isNull(), "offscreen rendering failed");
        // 50 pixels per unit, y up.
        const QRgb seen = image.pixel(qRound(at.x() * 50), 199 - qRound(at.y() * 50));
        QVERIFY2(ImageChecks::near(seen, expected, 4), qPrintable(ImageChecks::toString(seen)));
    }

    // Lit by a light shining from the camera, a surface shows its own colour from above and
    // from below, with or without holes, however much it is exaggerated.
    void litSurfaceFacesTheLight_data()
    {
        QTest::addColumn<float>("zScale");
        QTest::addColumn<bool>("hole");
        QTest::addColumn<bool>("below");
        QTest::newRow("flat") << 1.0f << false << false;
        QTest::newRow("exaggerated ten times") << 10.0f << false << false;
        QTest::newRow("exaggerated, with a hole") << 10.0f << true << false;
        QTest::newRow("from below") << 10.0f << false << true;
        QTest::newRow("from below, with a hole") << 10.0f << true << true;
    }
    void litSurfaceFacesTheLight()
    {
        QFETCH(float, zScale);
        QFETCH(bool, hole);
        QFETCH(bool, below);
        VsdGrid depths(QPointF(0, 0), 1.0, 1.0, 5, 5);
        for (int j = 0; j < 5; ++j) for (int i = 0; i < 5; ++i) depths.setValue(i, j, 0.01 * i);
        if (hole) depths.setValue(4, 4, KbbGlobal::D_FFFF);
        VugColorScale white;
        white.setStops({{0.0, qRgb(255, 255, 255)}, {1.0, qRgb(255, 255, 255)}});
        Vg3GridSurfaceNode node(QStringLiteral("horizon"));
        node.setTransparency(0.0f);
        node.setData(depths, white);
        node.setZScale(zScale);

        auto light = new SoDirectionalLight;
        light->direction.setValue(0, 0, below ? 1 : -1);
        auto camera = orthoCamera(SbVec3f(2, 2, below ? -10 : 10), 4.0f);
        if (below) camera->orientation.setValue(SbRotation(SbVec3f(1, 0, 0), float(M_PI)));
        const auto scene = SoRef(separator({camera, light, node.getRoot()}));
        const QImage image = render(scene.get(), kSquare);
        const QRgb seen = image.pixel(100, 100);
        QVERIFY2(qGreen(seen) > 180, qPrintable(QColor(seen).name()));
    }

    // Samples valued 0 to 99 on a 10 x 10 lattice, a grid under them and a line across, one
    // of them given a bad value or coordinate, framed as a view frames (the camera's
    // viewAll): the bad one is left out of the frame, the samples' colours stay apart.
    void outliersStayFramedAndApart_data()
    {
        QTest::addColumn<int>("column"); // a sample's x, y, z or value; 4: a grid node; 5: a line vertex
        QTest::addColumn<double>("bad");
        QTest::newRow("sample value 1e30") << 3 << 1e30;
        QTest::newRow("sample value NaN") << 3 << qQNaN();
        QTest::newRow("sample x 1e30") << 0 << 1e30;
        QTest::newRow("sample z 1e308") << 2 << 1e308;
        QTest::newRow("grid node -1e30") << 4 << -1e30;
        QTest::newRow("line vertex y -DBL_MAX") << 5 << -std::numeric_limits<double>::max();
    }
    void outliersStayFramedAndApart()
    {
        QFETCH(int, column);
        QFETCH(double, bad);
        VsdPointSet set;
        QVector<double> values;
        for (int i = 0; i <= 100; ++i) {
            QVector<double> sample{double(i % 10), double(i / 10), 0.0, double(i % 100)};
            sample[column % 4] = i == 100 && column < 4 ? bad : sample[column % 4];
            set.append(sample[0], sample[1], sample[2]);
            values << sample[3];
        }
        QVERIFY(set.addVariable(QStringLiteral("v"), values));
        VugColorScale scale = VugColorScale::viridis();
        scale.fitTo(values);
        Vg3PointSetNode points(QStringLiteral("samples"));
        points.setPointSize(4.0f);
        points.setData(set, QStringLiteral("v"), scale);
        VsdGrid depths(QPointF(0, 0), 1.0, 1.0, 10, 10);
        depths.setValues(QVector<double>(100, -1.0));
        depths.setValue(5, 5, column == 4 ? bad : -1.0);
        Vg3GridSurfaceNode surface(QStringLiteral("base"));
        surface.setData(depths, VugColorScale()); // one grey: the samples' colours stand out
        VsdPolylineSet lines;
        QVERIFY(lines.append(QPolygonF(QVector<QPointF>{{0, 0}, {5, column == 5 ? bad : 5}, {9, 9}})));
        Vg3PolylineNode line(QStringLiteral("fault"));
        line.setData(lines, -0.5);

        auto camera = new SoOrthographicCamera;
        const auto scene = SoRef(separator({camera, points.getRoot(), surface.getRoot(), line.getRoot()}));
        camera->viewAll(scene.get(), SbViewportRegion(200, 200));
        const QImage image = render(scene.get(), kSquare);
        const int lit = ImageChecks::count(image, drawn);
        QImage coarse = image; // near colours as one
        for (int row = 0; row < image.height(); ++row) for (int col = 0; col < image.width(); ++col)
                coarse.setPixel(col, row, image.pixel(col, row) & 0xf0f0f0);
        const int colors = ImageChecks::distinctColors(coarse) - 1;
        // The lattice fills a good part of the picture, in the scale's colours.
        QVERIFY2(lit >= 10000 && colors >= 20, qPrintable(QStringLiteral("%1 %2").arg(lit).arg(colors)));
    }

    void legendBarInItsCorner_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("alignment");
        QTest::newRow("square, lower right") << QSize(300, 300) << int(Vu::BOTTOM_RIGHT);
        QTest::newRow("wide, lower right") << QSize(600, 300) << int(Vu::BOTTOM_RIGHT);
        QTest::newRow("tall, upper left") << QSize(200, 400) << int(Vu::TOP_LEFT);
        QTest::newRow("wide, upper right") << QSize(500, 250) << int(Vu::TOP_RIGHT);
        QTest::newRow("square, lower left") << QSize(300, 300) << int(Vu::BOTTOM_LEFT);
    }
    void legendBarInItsCorner()
    {
        QFETCH(QSize, size);
        QFETCH(int, alignment);
        const VugColorScale scale = rainbow(0, 100);
        Vg3ColorLegend legend(QColor(40, 40, 40), Qt::white, Vu::Position(alignment));
        // Nothing is drawn before there is a scale to show.
        QCOMPARE(ImageChecks::count(render(legend.getRoot(), size), drawn), 0);
        legend.setColorScale(scale, QStringLiteral("Porosity"), KbbStringFormat(), false);
        const QImage image = render(legend.getRoot(), size);

        // The rainbow's colours are the only saturated ones in the picture.
        const QRect bar = boxOf(image, [](QRgb c) { return saturated(c, 120); });
        QVERIFY(!bar.isEmpty());
        const int h = size.height();
        QVERIFY2(qAbs(bar.height() - 0.4 * h) <= 3, qPrintable(QString::number(bar.height())));
        QVERIFY(bar.width() >= 0.02 * h && bar.width() <= 0.05 * h);
        // In the aligned corner, within a tenth of the height of both edges.
        const int fromSide = (alignment & Vu::RIGHT) ? size.width() - 1 - bar.right() : bar.left();
        const int fromEdge = (alignment & Vu::BOTTOM) ? h - 1 - bar.bottom() : bar.top();
        QVERIFY2(fromSide >= 0 && fromSide <= 0.1 * h, qPrintable(QString::number(fromSide)));
        QVERIFY2(fromEdge >= 0 && fromEdge <= 0.25 * h, qPrintable(QString::number(fromEdge)));

        // Colours from the minimum at the bottom to the maximum at the top.
        const int col = bar.center().x();
        for (const double f : {0.1, 0.3, 0.5, 0.7, 0.9}) {
            const int row = bar.bottom() - qRound(f * (bar.height() - 1));
            const QRgb seen = image.pixel(col, row);
            // Rasterising may shift the ramp by a pixel or so.
            bool matches = false;
            for (int shift = -2; shift <= 2 && !matches; ++shift)
                matches = ImageChecks::near(seen, scale.colorAt(100.0 * (f + double(shift) / bar.height())));
            QVERIFY2(matches, qPrintable(QString::number(f) + ": " + ImageChecks::toString(seen)));
        }
        // Refused input keeps the last good state.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3ColorLegend::setAlignment: 5 is not an alignment"));
        legend.setAlignment(Vu::Position(Vu::LEFT | Vu::RIGHT));
        QCOMPARE(int(legend.getAlignment()), alignment);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3ColorLegend::setColors: invalid colour"));
        legend.setColors(QColor(), Qt::red);
        QCOMPARE(legend.getForegroundColor(), QColor(Qt::white));
        // Hidden, nothing of it is drawn; shown again, it is back.
        legend.setVisible(false);
        QCOMPARE(ImageChecks::count(render(legend.getRoot(), size), drawn), 0);
        legend.setVisible(true);
        QVERIFY(ImageChecks::count(render(legend.getRoot(), size), drawn) > 0);
    }

    // An annotation's two lines in the third across and the half its position names, wholly
    // inside the window, with the justification that keeps them there (a picture cannot
    // tell text pushed past the edge from text at the edge); nothing drawn while hidden or
    // empty.
    void annotationInItsPlace_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("third");
        QTest::addColumn<bool>("top");
        QTest::addColumn<int>("justification");
        QTest::newRow("top left") << int(Vg3Annotation::TOP_LEFT) << 0 << true << int(SoText2::LEFT);
        QTest::newRow("top center") << int(Vg3Annotation::TOP_CENTER) << 1 << true << int(SoText2::CENTER);
        QTest::newRow("top right") << int(Vg3Annotation::TOP_RIGHT) << 2 << true << int(SoText2::RIGHT);
        QTest::newRow("bottom left") << int(Vg3Annotation::BOTTOM_LEFT) << 0 << false << int(SoText2::LEFT);
        QTest::newRow("bottom center") << int(Vg3Annotation::BOTTOM_CENTER) << 1 << false << int(SoText2::CENTER);
        QTest::newRow("bottom right") << int(Vg3Annotation::BOTTOM_RIGHT) << 2 << false << int(SoText2::RIGHT);
    }
    void annotationInItsPlace()
    {
        QFETCH(int, position);
        QFETCH(int, third);
        QFETCH(bool, top);
        QFETCH(int, justification);
        Vg3Annotation annotation;
        annotation.setText(QStringLiteral("Top\nreservoir"));
        annotation.setColor(Qt::red);
        annotation.setSize(16);
        annotation.setPosition(Vg3Annotation::AnnotationPosition(position));
        const QStringList lines{"Top", "reservoir"};
        QCOMPARE(texts(annotation.getRoot()), lines);
        QCOMPARE(int(find<SoText2>(annotation.getRoot())->justification.getValue()), justification);
        const QImage image = render(annotation.getRoot(), QSize(480, 240));
        const QRect text = boxOf(image, [](QRgb c) { return qRed(c) > 128 && qGreen(c) < 64; });
        QVERIFY2(!text.isEmpty(), "no text drawn");
        QVERIFY2(text.left() >= third * 160 && text.right() < (third + 1) * 160,
                 qPrintable(QStringLiteral("%1..%2").arg(text.left()).arg(text.right())));
        QVERIFY(top ? text.bottom() < 120 : text.top() >= 120);
        // Both lines are drawn: the text is taller than one line.
        QVERIFY(text.height() > 20);

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3Annotation::setPosition: 9 is not a position"));
        annotation.setPosition(Vg3Annotation::AnnotationPosition(9));
        QCOMPARE(int(annotation.getPosition()), position);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3Annotation::setSize: 0 is not a font size"));
        annotation.setSize(0);
        QCOMPARE(annotation.getSize(), 16);
        // Hidden, the lines are kept for later; emptied, nothing is drawn.
        annotation.setVisible(false);
        QVERIFY(texts(annotation.getRoot()).isEmpty());
        QCOMPARE(texts(annotation.getRoot(), true), lines);
        annotation.setVisible(true);
        annotation.setText(QString());
        QVERIFY(texts(annotation.getRoot()).isEmpty());
        QCOMPARE(ImageChecks::count(render(annotation.getRoot(), QSize(480, 240)), drawn), 0);
    }

    void overlayInCorner_data()
    {
        QTest::addColumn<bool>("compass");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("position");
        QTest::addColumn<bool>("visible");

        const int bottomLeft = Vu::LEFT | Vu::BOTTOM;
        const int topRight = Vu::RIGHT | Vu::TOP;
        QTest::newRow("gnomon bottom-left") << false << QSize(256, 256) << bottomLeft << true;
        QTest::newRow("gnomon bottom-left, wide window") << false << QSize(400, 240) << bottomLeft << true;
        QTest::newRow("gnomon top-right, tall window") << false << QSize(200, 320) << topRight << true;
        QTest::newRow("gnomon hidden") << false << QSize(256, 256) << bottomLeft << false;
        QTest::newRow("compass top-right") << true << QSize(256, 256) << topRight << true;
        QTest::newRow("compass bottom-left, wide window") << true << QSize(400, 240) << bottomLeft << true;
        QTest::newRow("compass hidden") << true << QSize(256, 256) << topRight << false;
    }

    void overlayInCorner()
    {
        QFETCH(bool, compass);
        QFETCH(QSize, size);
        QFETCH(int, position);
        QFETCH(bool, visible);

        const int side = 100;
        // A grey wall filling the window just beyond the near plane, nearer in depth than
        // anything of an overlay: an overlay that does not clear the depth in its corner is
        // hidden by it.
        auto camera = new SoPerspectiveCamera;
        camera->position.setValue(0.0f, 0.0f, 0.6f);
        camera->nearDistance = 0.5f;
        camera->farDistance = 10.0f;
        auto root = SoRef(unlitScene(camera, {flatBox(SbVec3f(0, 0, 0), SbVec3f(50, 50, 0.1f), sb(kSceneGrey))}));
        Vg3Gnomon gnomon;
        Vg3Compass north;
        north.setColor(QColor(255, 255, 0));
        const auto place = [&](auto& overlay) {
            overlay.setPosition(position);
            overlay.setSize(side);
            overlay.connectCamera(camera);
            overlay.setVisible(visible);
            root->addChild(overlay.getRoot());
        };
        if (compass) place(north);
        else place(gnomon);
        // A turned camera, so no arrow of the gnomon is seen end-on.
        camera->orientation = SbRotation(SbVec3f(1.0f, 1.0f, 0.0f), 0.5f);
        const QImage image = render(root.get(), size);

        // The scene itself is drawn: the centre shows the wall's grey.
        const QRgb centre = image.pixel(size.width() / 2, size.height() / 2);
        QVERIFY2(ImageChecks::near(centre, kSceneGrey, 3), qPrintable(ImageChecks::toString(centre)));

        const int opposite = ((position & Vu::RIGHT) ? Vu::LEFT : Vu::RIGHT) |
                             ((position & Vu::TOP) ? Vu::BOTTOM : Vu::TOP);
        const int inCorner = decorationPixels(image, cornerRect(size, position, side));
        const int elsewhere = decorationPixels(image, QRect(QPoint(0, 0), size)) - inCorner;
        QCOMPARE(decorationPixels(image, cornerRect(size, opposite, side)), 0);
        QCOMPARE(elsewhere, 0);
        if (visible) QVERIFY2(inCorner >= 150 && inCorner <= side * side / 2, qPrintable(QString::number(inCorner)));
        else QCOMPARE(inCorner, 0);
    }

private:
    QTemporaryDir _dir;
};

QTEST_MAIN(TestGlVg3Nodes)
#include "tst_gl_vg3nodes.moc"
