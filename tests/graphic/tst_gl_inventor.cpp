#include <SoRenderAreaCore.h>
#include <Vg3OpenInventor.h>

#include <Inventor/SoDB.h>
#include <Inventor/SoOffscreenRenderer.h>
#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCube.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoTranslation.h>
#include <Inventor/sensors/SoSensorManager.h>

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QtTest>

#include <memory>

namespace {

const int Width = 64;
const int Height = 48;

// An orthographic view two units high of a flat coloured box: `width` wide, `height`
// high, centred at x. Unlit, so that the colours on screen are the colours set.
SoSeparator* makeScene(float x, float width, float height, const SbColor& color, SoBaseColor** colorNode = nullptr,
                       float transparency = 0.0f)
{
    auto root = new SoSeparator;
    root->ref();
    auto camera = new SoOrthographicCamera;
    camera->position.setValue(0.0f, 0.0f, 5.0f);
    camera->height = 2.0f;
    camera->nearDistance = 1.0f;
    camera->farDistance = 10.0f;
    root->addChild(camera);
    auto lightModel = new SoLightModel;
    lightModel->model = SoLightModel::BASE_COLOR;
    root->addChild(lightModel);
    auto material = new SoMaterial;
    material->diffuseColor = color;
    material->transparency = transparency;
    root->addChild(material);
    auto baseColor = new SoBaseColor;
    baseColor->rgb = color;
    root->addChild(baseColor);
    if (colorNode)
        *colorNode = baseColor;
    auto translation = new SoTranslation;
    translation->translation.setValue(x, 0.0f, 0.0f);
    root->addChild(translation);
    auto cube = new SoCube;
    cube->width = width;
    cube->height = height;
    cube->depth = 1.0f;
    root->addChild(cube);
    return root;
}

struct Unref
{
    void operator()(SoNode* node) const { node->unref(); }
};
using NodeHolder = std::unique_ptr<SoSeparator, Unref>;

bool near(QRgb actual, QRgb expected, int tolerance = 3)
{
    return qAbs(qRed(actual) - qRed(expected)) <= tolerance && qAbs(qGreen(actual) - qGreen(expected)) <= tolerance &&
           qAbs(qBlue(actual) - qBlue(expected)) <= tolerance;
}

QString describe(QRgb c)
{
    return QStringLiteral("(%1, %2, %3)").arg(qRed(c)).arg(qGreen(c)).arg(qBlue(c));
}

// A pixel of Coin's buffer: rows bottom to top, `components` bytes a pixel.
QRgb bufferPixel(const unsigned char* buffer, int components, int x, int yFromBottom)
{
    const unsigned char* p = buffer + (yFromBottom * Width + x) * components;
    return components >= 3 ? qRgb(p[0], p[1], p[2]) : qRgb(p[0], p[0], p[0]);
}

} // namespace

class TestGlInventor : public QObject
{
    Q_OBJECT

    QOffscreenSurface _surface;
    QOpenGLContext _context;
    std::unique_ptr<QOpenGLFramebufferObject> _fbo;

    QOpenGLFunctions* gl() { return _context.functions(); }

    void fillFramebuffer(QRgb color, float depth)
    {
        gl()->glClearColor(qRed(color) / 255.0f, qGreen(color) / 255.0f, qBlue(color) / 255.0f, 1.0f);
        gl()->glClearDepthf(depth);
        gl()->glDepthMask(GL_TRUE);
        gl()->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    }

private slots:
    void initTestCase()
    {
        Vg3OpenInventor::getInstance()->init();
        QVERIFY(Vg3OpenInventor::getInstance()->isInitialized());

        QSurfaceFormat format;
        format.setProfile(QSurfaceFormat::CompatibilityProfile);
        format.setDepthBufferSize(24);
        _surface.setFormat(format);
        _surface.create();
        _context.setFormat(format);
        QVERIFY(_context.create());
        QVERIFY(_context.makeCurrent(&_surface));
        _fbo = std::make_unique<QOpenGLFramebufferObject>(QSize(Width, Height),
                                                          QOpenGLFramebufferObject::CombinedDepthStencil);
        QVERIFY(_fbo->isValid());
    }

    void cleanupTestCase()
    {
        _context.makeCurrent(&_surface);
        _fbo.reset();
        _context.doneCurrent();
    }

    void offscreenRenderer_data()
    {
        QTest::addColumn<int>("components");
        QTest::newRow("rgb") << int(SoOffscreenRenderer::RGB);
        QTest::newRow("rgb with alpha") << int(SoOffscreenRenderer::RGB_TRANSPARENCY);
    }

    void offscreenRenderer()
    {
        QFETCH(int, components);
        // A red box over the left half of a 4:3 view (x from -4/3 to 0), on blue.
        NodeHolder scene(makeScene(-2.0f / 3.0f, 4.0f / 3.0f, 2.0f, SbColor(1, 0, 0)));

        // The caller's context stays current across the offscreen render.
        QVERIFY(_context.makeCurrent(&_surface));
        SoOffscreenRenderer renderer{SbViewportRegion(Width, Height)};
        renderer.setComponents(SoOffscreenRenderer::Components(components));
        renderer.setBackgroundColor(SbColor(0, 0, 1));
        QVERIFY(renderer.render(scene.get()));
        QCOMPARE(QOpenGLContext::currentContext(), &_context);
        QCOMPARE(QOpenGLContext::currentContext()->surface(), &_surface);

        const unsigned char* buffer = renderer.getBuffer();
        QVERIFY(buffer);
        const struct
        {
            int x, y;
            QRgb expected;
        } probes[] = {{4, 4, qRgb(255, 0, 0)},   {28, 24, qRgb(255, 0, 0)}, {4, 44, qRgb(255, 0, 0)},
                      {36, 24, qRgb(0, 0, 255)}, {60, 4, qRgb(0, 0, 255)},  {60, 44, qRgb(0, 0, 255)}};
        for (const auto& probe : probes) {
            const QRgb actual = bufferPixel(buffer, components, probe.x, probe.y);
            QVERIFY2(near(actual, probe.expected),
                     qPrintable(QStringLiteral("pixel %1,%2 is %3").arg(probe.x).arg(probe.y).arg(describe(actual))));
        }
    }

    void renderAreaCoreClearing_data()
    {
        QTest::addColumn<int>("policy");
        QTest::addColumn<bool>("backgroundCleared");
        QTest::addColumn<bool>("boxVisible");

        // The framebuffer starts magenta with every depth at the near plane: without a
        // depth clear the box fails the depth test.
        QTest::newRow("colour and depth") << int(SiRenderArea::COLOR_DEPTH) << true << true;
        QTest::newRow("colour only") << int(SiRenderArea::COLOR) << true << false;
        QTest::newRow("depth only") << int(SiRenderArea::DEPTH) << false << true;
        QTest::newRow("nothing") << int(SiRenderArea::NONE) << false << false;
    }

    void renderAreaCoreClearing()
    {
        QFETCH(int, policy);
        QFETCH(bool, backgroundCleared);
        QFETCH(bool, boxVisible);

        QVERIFY(_context.makeCurrent(&_surface));
        QVERIFY(_fbo->bind());
        fillFramebuffer(qRgb(255, 0, 255), 0.0f);

        auto core = new SoRenderAreaCore;
        core->ref();
        NodeHolder scene(makeScene(-2.0f / 3.0f, 0.5f, 0.5f, SbColor(1, 0, 0)));
        core->setSceneGraph(scene.get());
        core->setSize(SbVec2i32(Width, Height));
        core->setClearColor(SbColorRGBA(0, 1, 0, 1));
        core->setClearDepth(1.0f);
        core->setClearPolicy(SiRenderArea::ClearPolicy(policy));
        QCOMPARE(core->render(), SiRenderArea::RENDERED);
        gl()->glFinish();
        const QImage image = _fbo->toImage();
        core->unref();

        const QRgb background = image.pixel(56, 24);
        const QRgb box = image.pixel(16, 24);
        const QRgb backgroundExpected = backgroundCleared ? qRgb(0, 255, 0) : qRgb(255, 0, 255);
        const QRgb boxExpected = boxVisible ? qRgb(255, 0, 0) : backgroundExpected;
        QVERIFY2(near(background, backgroundExpected), qPrintable(describe(background)));
        QVERIFY2(near(box, boxExpected), qPrintable(describe(box)));
    }

    void renderAreaCoreTransparency_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QRgb>("expected");
        // Both faces of the box are blended over the blue: a quarter of blue is left.
        QTest::newRow("blended") << int(SoGLRenderAction::SORTED_OBJECT_BLEND) << qRgb(191, 0, 64);
        QTest::newRow("ignored") << int(SoGLRenderAction::NONE) << qRgb(255, 0, 0);
    }

    void renderAreaCoreTransparency()
    {
        QFETCH(int, type);
        QFETCH(QRgb, expected);

        QVERIFY(_context.makeCurrent(&_surface));
        QVERIFY(_fbo->bind());
        auto core = new SoRenderAreaCore;
        core->ref();
        NodeHolder scene(makeScene(0.0f, 1.0f, 1.0f, SbColor(1, 0, 0), nullptr, 0.5f));
        core->setSceneGraph(scene.get());
        core->setSize(SbVec2i32(Width, Height));
        core->setClearColor(SbColorRGBA(0, 0, 1, 1));
        core->setTransparencyType(SoGLRenderAction::TransparencyType(type));
        QCOMPARE(core->render(), SiRenderArea::RENDERED);
        const QImage image = _fbo->toImage();
        core->unref();
        const QRgb centre = image.pixel(Width / 2, Height / 2);
        QVERIFY2(near(centre, expected, 4), qPrintable(describe(centre)));
    }

    void renderAreaCoreRefusesNothingToDraw()
    {
        QVERIFY(_context.makeCurrent(&_surface));
        QVERIFY(_fbo->bind());
        fillFramebuffer(qRgb(255, 0, 255), 1.0f);
        auto core = new SoRenderAreaCore;
        core->ref();
        core->setSize(SbVec2i32(Width, Height));
        QCOMPARE(core->render(), SiRenderArea::NOT_RENDERED);

        NodeHolder scene(makeScene(0.0f, 1.0f, 1.0f, SbColor(1, 0, 0)));
        core->setSceneGraph(scene.get());
        core->setSize(SbVec2i32(0, Height));
        QCOMPARE(core->render(), SiRenderArea::NOT_RENDERED);
        core->unref();
        // Nothing rendered means nothing cleared either.
        QVERIFY(near(_fbo->toImage().pixel(1, 1), qRgb(255, 0, 255)));
    }

    void startRenderHandlerFollowsSceneChanges()
    {
        auto core = new SoRenderAreaCore;
        core->ref();
        SoBaseColor* color = nullptr;
        NodeHolder scene(makeScene(0.0f, 1.0f, 1.0f, SbColor(1, 0, 0), &color));
        core->setSceneGraph(scene.get());
        core->setSize(SbVec2i32(Width, Height));
        SoDB::getSensorManager()->processDelayQueue(TRUE);

        int calls = 0;
        SiRenderArea* source = nullptr;
        core->setStartRenderHandler([&](SiRenderArea::RenderEventArg& arg) {
            ++calls;
            source = arg.source;
        });
        color->rgb = SbColor(0, 1, 0);
        SoDB::getSensorManager()->processDelayQueue(TRUE);
        QCOMPARE(calls, 1);
        QCOMPARE(source, static_cast<SiRenderArea*>(core));

        // Once gone, the core is not called back.
        core->unref();
        color->rgb = SbColor(0, 0, 1);
        SoDB::getSensorManager()->processDelayQueue(TRUE);
        QCOMPARE(calls, 1);
    }
};

QTEST_MAIN(TestGlInventor)
#include "tst_gl_inventor.moc"
