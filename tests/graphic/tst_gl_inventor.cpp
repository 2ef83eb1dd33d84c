// Coin drawing through our offscreen hooks and the render-area core: what lands in the
// buffer and the framebuffer for each clear policy and transparency type, and the start-
// render callback as the scene changes.

#include "ImageChecks.h"
#include "InventorScenes.h"
#include <SoRenderAreaCore.h>
#include <Vg3OpenInventor.h>

#include <Inventor/SoDB.h>
#include <Inventor/sensors/SoSensorManager.h>

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QtTest>

using namespace InventorScenes;

namespace {

const QSize kSize(64, 48);

// A red box seen unlit by a camera two units high, on the view's x axis.
SoRef<SoSeparator> redBox(float x, float side, float transparency = 0.0f, SoBaseColor** color = nullptr)
{
    return SoRef(unlitScene(orthoCamera(SbVec3f(0, 0, 5), 2.0f),
                           {flatBox(SbVec3f(x, 0, 0), SbVec3f(side, side, 1), SbColor(1, 0, 0), transparency, color)}));
}

} // namespace

class TestGlInventor : public QObject
{
    Q_OBJECT

    QOffscreenSurface _surface;
    QOpenGLContext _context;
    std::unique_ptr<QOpenGLFramebufferObject> _fbo;

    // The framebuffer bound and filled with `color`, every depth at `depth`.
    void fillFramebuffer(QRgb color, float depth)
    {
        QVERIFY(_context.makeCurrent(&_surface));
        QVERIFY(_fbo->bind());
        QOpenGLFunctions* gl = _context.functions();
        gl->glClearColor(qRed(color) / 255.0f, qGreen(color) / 255.0f, qBlue(color) / 255.0f, 1.0f);
        gl->glClearDepthf(depth);
        gl->glDepthMask(GL_TRUE);
        gl->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    }

    static SoRef<SoRenderAreaCore> core(SoNode* scene)
    {
        auto core = SoRef(new SoRenderAreaCore);
        core->setSceneGraph(scene);
        core->setSize(SbVec2i32(kSize.width(), kSize.height()));
        return core;
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
        _fbo = std::make_unique<QOpenGLFramebufferObject>(kSize, QOpenGLFramebufferObject::CombinedDepthStencil);
        QVERIFY(_fbo->isValid());
    }

    void cleanupTestCase()
    {
        _context.makeCurrent(&_surface);
        _fbo.reset();
        _context.doneCurrent();
    }

    // Red over the left half of the 4:3 view (x from -4/3 to 0), on blue; the caller's
    // context stays current across the offscreen render.
    void offscreenRenderer()
    {
        auto scene = SoRef(unlitScene(orthoCamera(SbVec3f(0, 0, 5), 2.0f),
                                     {flatBox(SbVec3f(-2.0f / 3, 0, 0), SbVec3f(4.0f / 3, 2, 1), SbColor(1, 0, 0))}));
        QVERIFY(_context.makeCurrent(&_surface));
        const QImage image = render(scene.get(), kSize, SbColor(0, 0, 1));
        QCOMPARE(QOpenGLContext::currentContext(), &_context);
        QCOMPARE(QOpenGLContext::currentContext()->surface(), &_surface);
        QVERIFY2(ImageChecks::near(image.pixel(4, 44), qRgb(255, 0, 0), 3), qPrintable(ImageChecks::toString(image.pixel(4, 44))));
        QVERIFY2(ImageChecks::near(image.pixel(60, 4), qRgb(0, 0, 255), 3), qPrintable(ImageChecks::toString(image.pixel(60, 4))));
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
        fillFramebuffer(qRgb(255, 0, 255), 0.0f);
        auto scene = redBox(-2.0f / 3.0f, 0.5f);
        auto area = core(scene.get());
        area->setClearColor(SbColorRGBA(0, 1, 0, 1));
        area->setClearDepth(1.0f);
        area->setClearPolicy(SiRenderArea::ClearPolicy(policy));
        QCOMPARE(area->render(), SiRenderArea::RENDERED);
        _context.functions()->glFinish();
        const QImage image = _fbo->toImage();
        const QRgb background = backgroundCleared ? qRgb(0, 255, 0) : qRgb(255, 0, 255);
        QVERIFY2(ImageChecks::near(image.pixel(56, 24), background, 3), qPrintable(ImageChecks::toString(image.pixel(56, 24))));
        QVERIFY2(ImageChecks::near(image.pixel(16, 24), boxVisible ? qRgb(255, 0, 0) : background, 3),
                 qPrintable(ImageChecks::toString(image.pixel(16, 24))));
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
        fillFramebuffer(qRgb(0, 0, 0), 1.0f);
        auto scene = redBox(0.0f, 1.0f, 0.5f);
        auto area = core(scene.get());
        area->setClearColor(SbColorRGBA(0, 0, 1, 1));
        area->setTransparencyType(SoGLRenderAction::TransparencyType(type));
        QCOMPARE(area->render(), SiRenderArea::RENDERED);
        const QRgb centre = _fbo->toImage().pixel(kSize.width() / 2, kSize.height() / 2);
        QVERIFY2(ImageChecks::near(centre, expected, 4), qPrintable(ImageChecks::toString(centre)));
    }

    void renderAreaCoreRefusesNothingToDraw()
    {
        fillFramebuffer(qRgb(255, 0, 255), 1.0f);
        auto area = core(nullptr);
        QCOMPARE(area->render(), SiRenderArea::NOT_RENDERED);
        auto scene = redBox(0.0f, 1.0f);
        area->setSceneGraph(scene.get());
        area->setSize(SbVec2i32(0, kSize.height()));
        QCOMPARE(area->render(), SiRenderArea::NOT_RENDERED);
        // Nothing rendered means nothing cleared either.
        QVERIFY(ImageChecks::near(_fbo->toImage().pixel(1, 1), qRgb(255, 0, 255), 3));
    }

    void startRenderHandlerFollowsSceneChanges()
    {
        SoBaseColor* color = nullptr;
        auto scene = redBox(0.0f, 1.0f, 0.0f, &color);
        auto area = core(scene.get());
        SoDB::getSensorManager()->processDelayQueue(TRUE);
        int calls = 0;
        SiRenderArea* source = nullptr;
        area->setStartRenderHandler([&](SiRenderArea::RenderEventArg& arg) {
            ++calls;
            source = arg.source;
        });
        color->rgb = SbColor(0, 1, 0);
        SoDB::getSensorManager()->processDelayQueue(TRUE);
        QCOMPARE(calls, 1);
        QCOMPARE(source, static_cast<SiRenderArea*>(area.get()));
        // Once gone, the core is not called back.
        area.reset();
        color->rgb = SbColor(0, 0, 1);
        SoDB::getSensorManager()->processDelayQueue(TRUE);
        QCOMPARE(calls, 1);
    }
};

QTEST_MAIN(TestGlInventor)
#include "tst_gl_inventor.moc"
