#include "DataRow.h"
#include "MessageCatcher.h"
#include "TestWindows.h"
#include "WindowFileHelpers.h"

#include <KbbDebug.h>
#include <VwwReporterWindow.h>

#include <QAction>
#include <QRegularExpression>
#include <QTextBrowser>
#include <QtTest>

namespace {

// Two colours split left and right, so that a mirrored or rescaled image shows.
QImage twoColourImage(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(QColor(200, 30, 40));
    for (int y = 0; y < size.height(); ++y)
        for (int x = size.width() / 2; x < size.width(); ++x)
            image.setPixelColor(x, y, QColor(20, 90, 220));
    return image;
}

QList<QImage> embeddedImages(const QString& html)
{
    QList<QImage> images;
    static const QRegularExpression uri(QStringLiteral("src=\"data:image/png;base64,([^\"]*)\""));
    for (auto it = uri.globalMatch(html); it.hasNext();)
        images << QImage::fromData(QByteArray::fromBase64(it.next().captured(1).toLatin1()), "PNG");
    return images;
}

QTextBrowser* view(const VwwReporterWindow& window)
{
    return window.findChild<QTextBrowser*>(QStringLiteral("REPORTER_VIEW"));
}

} // namespace

// The column types of the tables below.
using ImageSurvivesRoundTripsRow = Row<QSize, QString>;
using ToolbarActionsRow = Row<QByteArray, QString, QString, QByteArray>;
using UnwritablePathThrowsRow = Row<bool, QString>;
using BadReportStartsEmptyRow = Row<QByteArray, qint64, QString>;

class TestReporterWindow : public QObject
{
    Q_OBJECT

    QTemporaryDir _dir;

    std::unique_ptr<VssProject> newProject() { return VssProject::open(WindowFiles::makeProject(_dir, true)); }

private Q_SLOTS:
    void init() { resetWindowFramework(); }
    void cleanup() { resetWindowFramework(); }

    void textIsShownAsTyped()
    {
        VwwReporterWindow window;
        window.appendText(QStringLiteral("a < b & <b>c</b>\nsecond line"));
        window.appendHtml(QStringLiteral("<h2>Summary</h2><p>3 <i>scenes</i></p>"));
        const QString shown = QStringLiteral("a < b & <b>c</b>\nsecond line\nSummary\n3 scenes");
        QCOMPARE(view(window)->toPlainText(), shown);
        QTextDocument reread;
        reread.setHtml(window.toHtml());
        QCOMPARE(reread.toPlainText(), shown);
    }

    void imageSurvivesRoundTrips_data()
    {
        ImageSurvivesRoundTripsRow::addColumns(); // size, caption
        QTest::newRow("one pixel") << QSize(1, 1) << QString();
        QTest::newRow("screenshot, with a caption") << QSize(640, 480) << "Map of porosity";
    }

    // One image, of the size and with the colour at the far corner of `image`.
    static bool sameImage(const QList<QImage>& images, const QImage& image)
    {
        const QPoint corner(image.width() - 1, image.height() - 1);
        return images.size() == 1 && images.first().size() == image.size()
               && images.first().pixelColor(corner) == image.pixelColor(corner);
    }

    void imageSurvivesRoundTrips()
    {
        const auto [size, caption] = ImageSurvivesRoundTripsRow::fetch();
        const QImage image = twoColourImage(size);
        std::unique_ptr<VssProject> project = newProject();
        VwwReporterWindow window;
        window.projectOpened(*project);
        window.appendText(QStringLiteral("Before"));
        window.appendImage(image, caption);

        // The saved page holds the image itself, not a name only this process knows.
        const QString saved = _dir.filePath(QStringLiteral("out.html"));
        window.saveAsHtml(saved);
        QVERIFY(sameImage(embeddedImages(QString::fromUtf8(WindowFiles::read(saved))), image));

        // Saved with the project, gone when it closes, back when it opens.
        window.saveInProject();
        window.projectAboutToClose();
        QVERIFY(window.isEmpty());
        window.appendText(QStringLiteral("typed with no project"));
        window.saveInProject();
        window.projectOpened(*project);
        QCOMPARE(view(window)->toPlainText().trimmed(), (QStringLiteral("Before\n\uFFFC\n") + caption).trimmed());
        QVERIFY(sameImage(embeddedImages(window.toHtml()), image)); // made from what the view holds
    }

    void toolbarActions_data()
    {
        ToolbarActionsRow::addColumns(); // action, typed, written, start
        const QByteArray html("REPORTER_SAVE_HTML"), pdf("REPORTER_SAVE_PDF");
        QTest::newRow("html") << html << "out.html" << "out.html" << QByteArray("<!DOCTYPE");
        QTest::newRow("pdf, suffix added") << pdf << "doc" << "doc.pdf" << QByteArray("%PDF");
        QTest::newRow("clear") << QByteArray("REPORTER_CLEAR") << QString() << QString() << QByteArray();
    }

    void toolbarActions()
    {
        const auto [action, typed, written, start] = ToolbarActionsRow::fetch();
        QTemporaryDir dir;
        VwwReporterWindow window;
        auto* triggered = window.findChild<QAction*>(QLatin1String(action));
        QVERIFY(window.getToolbarActions(VwwAWindow::MAIN_TOOLBAR).contains(triggered));
        QVERIFY(!triggered->isEnabled()); // nothing to save or clear yet
        window.appendText(QStringLiteral("Kriging done"));
        window.appendImage(twoColourImage(QSize(32, 32)));
        QVERIFY(triggered->isEnabled());

        if (!typed.isEmpty())
            WindowFiles::answerFileDialog(dir.filePath(typed));
        triggered->trigger();
        if (written.isEmpty()) {
            QVERIFY(window.isEmpty() && view(window)->toPlainText().isEmpty() && !triggered->isEnabled());
        } else {
            QVERIFY(WindowFiles::read(dir.filePath(written)).startsWith(start));
        }
    }

    void unwritablePathThrows_data()
    {
        // relative: empty: the temporary folder itself
        UnwritablePathThrowsRow::addColumns(); // pdf, relative
        QTest::newRow("pdf in a missing folder") << true << "missing/report.pdf";
        QTest::newRow("html over a folder") << false << QString();
    }

    void unwritablePathThrows()
    {
        const auto [pdf, relative] = UnwritablePathThrowsRow::fetch();
        QTemporaryDir dir;
        const QString path = relative.isEmpty() ? dir.path() : dir.filePath(relative);
        VwwReporterWindow window;
        window.appendText(QStringLiteral("text"));
        try {
            pdf ? window.saveAsPdf(path) : window.saveAsHtml(path);
            QFAIL("no exception");
        } catch (const KbeError& e) {
            QVERIFY2(e.getMessage().contains(QDir::toNativeSeparators(path)), qPrintable(e.getMessage()));
        }
    }

    void badReportStartsEmpty_data()
    {
        // size: when larger than content: the file is grown to it
        BadReportStartsEmptyRow::addColumns(); // content, size, reason
        static const char garbage[] = "\x89PNG\0\0\xff\xfe garbage";
        const QByteArray image("<p>text</p><img src=\"data:image/png;base64,");
        QTest::newRow("binary garbage") << QByteArray(garbage, sizeof(garbage) - 1) << qint64(0) << "UTF-8";
        QTest::newRow("truncated image") << image + "iVBORw0KGgoAAAANSUhEUgAA\">" << qint64(0) << "image";
        QTest::newRow("huge") << QByteArray("<html><body>") << qint64(65) * 1024 * 1024 << "MB";
    }

    void badReportStartsEmpty()
    {
        const auto [content, size, reason] = BadReportStartsEmptyRow::fetch();
        std::unique_ptr<VssProject> project = newProject();
        const QString path = project->getDatabaseDirectory() + QStringLiteral("/report.html");
        QVERIFY(WindowFiles::write(path, content) && QFile::resize(path, qMax(size, qint64(content.size()))));
        const QByteArray onDisk = WindowFiles::read(path);

        MessageCatcher caught;
        VwwReporterWindow window;
        window.appendText(QStringLiteral("left from before"));
        window.projectOpened(*project);
        caught.stop();
        QVERIFY(window.isEmpty());
        // Named with its reason; the damaged file is kept aside whole for the user to rescue,
        // and the new report is saved in its place.
        QCOMPARE(caught.warnings.size(), 1);
        const QString& warning = caught.warnings.first();
        QVERIFY2(warning.contains(reason) && warning.contains(QDir::toNativeSeparators(path + ".bad")), qPrintable(warning));
        QCOMPARE(WindowFiles::read(path + ".bad"), onDisk);
        window.appendText(QStringLiteral("new start"));
        window.saveInProject();
        window.projectAboutToClose();
        window.projectOpened(*project);
        QCOMPARE(view(window)->toPlainText(), QStringLiteral("new start"));
    }
};

QTEST_MAIN(TestReporterWindow)
#include "tst_vwwreporterwindow.moc"
