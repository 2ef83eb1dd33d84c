// The check of the OpenGL format a 3D viewer got against the one it asked for: each shortfall
// named, in a fixed order, and the one-line report the log shows.

#include <Vw3OivViewer.h>

#include <QSurfaceFormat>
#include <QtTest>
#include <functional>

Q_DECLARE_METATYPE(QSurfaceFormat)

class TestVw3RenderFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void compareAndReport_data()
    {
        QTest::addColumn<QSurfaceFormat>("format");
        QTest::addColumn<bool>("direct");
        QTest::addColumn<QStringList>("failures");
        using F = QSurfaceFormat&;
        const auto row = [](const char* name, const std::function<void(F)>& change, const QStringList& failures,
                            bool direct = true) {
            QSurfaceFormat format = Vw3OivViewer::requestedRenderFormat();
            change(format);
            QTest::newRow(name) << format << direct << failures;
        };
        row("as requested", [](F) {}, {});
        row("core profile", [](F f) { f.setProfile(QSurfaceFormat::CoreProfile); }, {"Wrong profile"});
        row("single buffer", [](F f) { f.setSwapBehavior(QSurfaceFormat::SingleBuffer); }, {"No double buffer"});
        row("no alpha", [](F f) { f.setAlphaBufferSize(0); }, {"No alpha buffer", "Alpha buffer size < 8"});
        row("shallow depth", [](F f) { f.setDepthBufferSize(16); }, {"Depth buffer size < 24"});
        row("no depth", [](F f) { f.setDepthBufferSize(0); }, {"No depth buffer", "Depth buffer size < 24"});
        row("indirect", [](F) {}, {"No direct rendering"}, false);
        row("no stencil", [](F f) { f.setStencilBufferSize(0); }, {"No stencil buffer", "Stencil buffer size < 8"});
        row("16-bit colour", [](F f) { f.setRedBufferSize(5), f.setBlueBufferSize(5), f.setGreenBufferSize(6); },
            {"Red buffer size < 8", "Green buffer size < 8", "Blue buffer size < 8"});
        row("no vsync", [](F f) { f.setSwapInterval(0); }, {"No vertical synchronization"});
        row("three failures in order", [](F f) { f.setProfile(QSurfaceFormat::CoreProfile), f.setSwapInterval(0); },
            {"Wrong profile", "No direct rendering", "No vertical synchronization"}, false);
    }

    void compareAndReport()
    {
        QFETCH(QSurfaceFormat, format);
        QFETCH(bool, direct);
        QFETCH(QStringList, failures);
        const QStringList found = Vw3OivViewer::compareRenderFormat(format, direct);
        QCOMPARE(found, failures);
        const QString report = Vw3OivViewer::renderFormatReport(found);
        QVERIFY(report.startsWith(QStringLiteral("OpenGL pixel format check : ")));
        QCOMPARE(report.contains(QStringLiteral("OK")), failures.isEmpty());
        QCOMPARE(report.contains(QStringLiteral("Failed")), !failures.isEmpty());
        for (const QString& text : failures) QVERIFY(report.contains(text));
    }
};

QTEST_MAIN(TestVw3RenderFormat)
#include "tst_vw3renderformat.moc"
