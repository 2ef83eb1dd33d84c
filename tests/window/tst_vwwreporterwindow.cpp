#include "MessageCatcher.h"
#include "TestWindows.h"

#include <KbbDebug.h>
#include <VwwReporterWindow.h>

#include <QAction>
#include <QFileDialog>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTextBlock>
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

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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

// The images the view shows, as its document holds them.
QList<QImage> shownImages(const VwwReporterWindow& window)
{
    QList<QImage> images;
    const QTextDocument* document = view(window)->document();
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next())
        for (auto it = block.begin(); !it.atEnd(); ++it)
            if (it.fragment().charFormat().isImageFormat())
                images << document->resource(QTextDocument::ImageResource,
                                             QUrl(it.fragment().charFormat().toImageFormat().name()))
                              .value<QImage>();
    return images;
}

// Answers the next file dialog as a user does: types the path and presses Return.
void answerFileDialog(const QString& path)
{
    auto* poll = new QTimer;
    poll->setInterval(10);
    QObject::connect(poll, &QTimer::timeout, [poll, path]() {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        poll->deleteLater();
        auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        QVERIFY(edit);
        edit->setText(path);
        QTest::keyClick(edit, Qt::Key_Return);
        if (dialog->isVisible()) // not accepted: give up rather than hang
            dialog->reject();
    });
    poll->start();
}

} // namespace

class TestReporterWindow : public QObject
{
    Q_OBJECT

    QTemporaryDir _dir;
    int _projects = 0;

    std::unique_ptr<VssProject> newProject()
    {
        return VssProject::create(_dir.filePath(QStringLiteral("project%1").arg(++_projects)), QStringLiteral("Test"));
    }

    static QString reportPath(const VssProject& project)
    {
        return QDir(project.getDatabaseDirectory()).filePath(QStringLiteral("report.html"));
    }

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
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("caption");
        QTest::newRow("one pixel") << QSize(1, 1) << QString();
        QTest::newRow("screenshot, with a caption") << QSize(640, 480) << "Map of porosity";
    }

    void imageSurvivesRoundTrips()
    {
        QFETCH(QSize, size);
        QFETCH(QString, caption);
        const QImage image = twoColourImage(size);
        const QPoint right(size.width() - 1, size.height() - 1);
        std::unique_ptr<VssProject> project = newProject();
        VwwReporterWindow window;
        window.projectOpened(*project);
        window.appendText(QStringLiteral("Before"));
        window.appendImage(image, caption);

        // The saved page holds the image itself, not a name only this process knows.
        const QString saved = _dir.filePath(QStringLiteral("out.html"));
        window.saveAsHtml(saved);
        const QList<QImage> embedded = embeddedImages(QString::fromUtf8(readAll(saved)));
        QCOMPARE(embedded.size(), 1);
        QCOMPARE(embedded.first().size(), size);
        QCOMPARE(embedded.first().pixelColor(right), image.pixelColor(right));

        // Saved with the project, gone when it closes, back when it opens.
        window.saveInProject();
        window.projectAboutToClose();
        QVERIFY(window.isEmpty());
        window.appendText(QStringLiteral("typed with no project"));
        window.saveInProject();
        window.projectOpened(*project);
        const QList<QImage> shown = shownImages(window);
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.first().size(), size);
        QCOMPARE(shown.first().pixelColor(right), image.pixelColor(right));
        QCOMPARE(view(window)->toPlainText().trimmed(), (QStringLiteral("Before\n\uFFFC\n") + caption).trimmed());
        QCOMPARE(embeddedImages(window.toHtml()).size(), 1);
    }

    void toolbarActions_data()
    {
        QTest::addColumn<QByteArray>("action");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QByteArray>("start");
        const QByteArray html("REPORTER_SAVE_HTML"), pdf("REPORTER_SAVE_PDF");
        QTest::newRow("html") << html << "out.html" << "out.html" << QByteArray("<!DOCTYPE");
        QTest::newRow("pdf") << pdf << "out.pdf" << "out.pdf" << QByteArray("%PDF");
        QTest::newRow("pdf, suffix added") << pdf << "doc" << "doc.pdf" << QByteArray("%PDF");
        QTest::newRow("clear") << QByteArray("REPORTER_CLEAR") << QString() << QString() << QByteArray();
    }

    void toolbarActions()
    {
        QFETCH(QByteArray, action);
        QFETCH(QString, typed);
        QFETCH(QString, written);
        QFETCH(QByteArray, start);
        QTemporaryDir dir;
        VwwReporterWindow window;
        auto* triggered = window.findChild<QAction*>(QLatin1String(action));
        QVERIFY(window.getToolbarActions(VwwAWindow::MAIN_TOOLBAR).contains(triggered));
        QVERIFY(!triggered->isEnabled()); // nothing to save or clear yet
        window.appendText(QStringLiteral("Kriging done"));
        window.appendImage(twoColourImage(QSize(32, 32)));
        QVERIFY(triggered->isEnabled());

        if (!typed.isEmpty())
            answerFileDialog(dir.filePath(typed));
        triggered->trigger();
        if (written.isEmpty()) {
            QVERIFY(window.isEmpty());
            QVERIFY(view(window)->toPlainText().isEmpty());
            QVERIFY(!triggered->isEnabled());
        } else {
            QVERIFY(readAll(dir.filePath(written)).startsWith(start));
        }
    }

    void unwritablePathThrows_data()
    {
        QTest::addColumn<bool>("pdf");
        QTest::addColumn<QString>("relative"); // empty: the temporary folder itself
        QTest::newRow("html in a missing folder") << false << "missing/report.html";
        QTest::newRow("pdf in a missing folder") << true << "missing/report.pdf";
        QTest::newRow("html over a folder") << false << QString();
    }

    void unwritablePathThrows()
    {
        QFETCH(bool, pdf);
        QFETCH(QString, relative);
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
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<qint64>("size"); // when larger than content: the file is grown to it
        QTest::addColumn<QString>("reason");
        static const char garbage[] = "\x89PNG\0\0\xff\xfe garbage";
        const QByteArray image("<p>text</p><img src=\"data:image/png;base64,");
        QTest::newRow("binary garbage") << QByteArray(garbage, sizeof(garbage) - 1) << qint64(0) << "UTF-8";
        QTest::newRow("image not base64") << image + "@@\">" << qint64(0) << "image";
        QTest::newRow("truncated image") << image + "iVBORw0KGgoAAAANSUhEUgAA\">" << qint64(0) << "image";
        QTest::newRow("huge") << QByteArray("<html><body>") << qint64(65) * 1024 * 1024 << "MB";
    }

    void badReportStartsEmpty()
    {
        QFETCH(QByteArray, content);
        QFETCH(qint64, size);
        QFETCH(QString, reason);
        std::unique_ptr<VssProject> project = newProject();
        const QString path = reportPath(*project);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        QVERIFY(file.resize(qMax(size, qint64(content.size()))));
        file.close();
        const QByteArray onDisk = readAll(path);

        MessageCatcher caught;
        QStringList& warnings = caught.warnings;
        VwwReporterWindow window;
        window.appendText(QStringLiteral("left from before"));
        window.projectOpened(*project);
        caught.stop();
        QVERIFY(window.isEmpty());
        QCOMPARE(warnings.size(), 1);
        QVERIFY2(warnings.first().contains(QDir::toNativeSeparators(path)), qPrintable(warnings.first()));
        QVERIFY2(warnings.first().contains(reason), qPrintable(warnings.first()));

        // The damaged file is kept aside whole for the user to rescue, and the new report
        // is saved in its place.
        QVERIFY2(warnings.first().contains(QDir::toNativeSeparators(path + ".bad")), qPrintable(warnings.first()));
        QCOMPARE(readAll(path + ".bad"), onDisk);
        window.appendText(QStringLiteral("new start"));
        window.saveInProject();
        window.projectAboutToClose();
        window.projectOpened(*project);
        QCOMPARE(view(window)->toPlainText(), QStringLiteral("new start"));
    }
};

QTEST_MAIN(TestReporterWindow)
#include "tst_vwwreporterwindow.moc"
