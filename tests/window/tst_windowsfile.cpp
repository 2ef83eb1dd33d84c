#include "DataRow.h"
#include "MessageCatcher.h"
#include "FakeMainWindow.h"
#include "TestWindows.h"
#include "WindowFileHelpers.h"

#include <KbbDebug.h>

#include <QtTest>
#include <sys/stat.h>
#include <cerrno>
#include <cstring>

// The column types of the tables below.
using SomethingElseInTheFilesPlaceRow = Row<QString, bool>;
using BadFilesRow = Row<QByteArray, bool, QString>;

// "windows.xml" as found on disk: good, damaged or hostile.
class TestWindowsFile : public QObject
{
    Q_OBJECT

    QTemporaryDir _dir;
    std::unique_ptr<MessageCatcher> _caught;

    QString newProject() { return WindowFiles::makeProject(_dir, true); } // with a map scene

    QString projectWith(const QByteArray& windowsFileContent)
    {
        const QString folder = newProject();
        if (!WindowFiles::write(windowsFile(folder), windowsFileContent))
            qFatal("cannot write the windows file");
        return folder;
    }

    static QString windowsFile(const QString& folder) { return WindowFiles::windowsFile(folder); }
    static QByteArray readAll(const QString& path) { return WindowFiles::read(path); }

private Q_SLOTS:
    void init()
    {
        resetWindowFramework();
        _caught = std::make_unique<MessageCatcher>();
    }
    void cleanup()
    {
        _caught.reset();
        resetWindowFramework();
    }

    void badFiles_data()
    {
        // A display that is dropped is named in a warning of its own. The reader's limits
        // (depth, entities, size) are the scene files' too; two rows show this file is read
        // through them.
        BadFilesRow::addColumns(); // content, warns, dropped

        const QByteArray head = "<?xml version=\"1.0\"?>\n<!DOCTYPE windows>\n";
        QTest::newRow("wrong root") << head + "<layout><window-list><window class-id=\"Test2D\"/></window-list></layout>" << true << QString();
        QTest::newRow("unknown class ids")
            << head + "<windows><window-list><window class-id=\"Nope\"/><window class-id=\"\"/></window-list></windows>"
            << false << QString();
        QTest::newRow("missing attributes")
            << head + "<windows><window-list><window/><window class-id=\"Test2D\"/></window-list><workspace/></windows>"
            << false << "no scene ''";
        QTest::newRow("scene that is gone")
            << head + "<windows><window-list><window class-id=\"Test2D\"><field name=\"scene-id\">77</field></window>"
                      "</window-list></windows>"
            << false << "no scene '77'";
        // Without a window list reading stops: the workspace is not taken either.
        QTest::newRow("no window list") << head + "<windows><workspace text=\"orphan\"/></windows>" << false
                                        << QString();
        QTest::newRow("empty file") << QByteArray() << true << QString();
        QTest::newRow("truncated")
            << head + "<windows><window-list><window class-id=\"Test2D\"><field name=\"scene-id\">1</fi" << true << QString();
        QTest::newRow("binary garbage") << QByteArray("\x00\xff\xfe<\x01\x02windows>", 12) << true << QString();
        QTest::newRow("entity expansion")
            << QByteArray("<?xml version=\"1.0\"?><!DOCTYPE windows [<!ENTITY a \"aaaaaaaaaa\">"
                          "<!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\"><!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">"
                          "<!ENTITY d \"&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;\"><!ENTITY e \"&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;\">]>"
                          "<windows><window-list><window class-id=\"&e;&e;&e;&e;&e;&e;\"/></window-list></windows>")
            << true << QString();
        QByteArray huge = head + "<windows><window-list><window class-id=\"Test2D\"><field name=\"x\">";
        huge += QByteArray(50 * 1024 * 1024, 'x');
        huge += "</field></window></window-list></windows>";
        QTest::newRow("50 MB") << huge << true << QString();
    }

    void badFiles()
    {
        const auto [content, warns, dropped] = BadFilesRow::fetch();
        const QString folder = projectWith(content);
        auto* factory = new TestFactory;
        VwwWindowRegistry::setWindowFactory(factory);
        FakeMainWindow main;
        VwwWindowRegistry::setMainWindow(&main);

        QVERIFY(VssProjectCollection::getInstance()->openProject(folder));

        // The default windows are there, whatever the file held.
        QCOMPARE(factory->calls.filter(QRegularExpression(QStringLiteral("^create(Reporter|[23]D)"))),
                 QStringList({"createReporterWindow", "create3DDisplay:0", "create2DDisplay:0"}));
        QCOMPARE(main.calls.count(QStringLiteral("restore")), 1);
        // Only a readable file with a window list gives its workspace back.
        const bool workspaceTaken = !warns && content.contains("<window-list") && content.contains("<workspace");
        QCOMPARE(main.restoredText != QLatin1String("<null>"), workspaceTaken);
        if (warns) {
            QCOMPARE(_caught->told.size(), 1);
            QVERIFY2(_caught->told.first().contains(QStringLiteral("cannot be restored")), qPrintable(_caught->told.first()));
            QVERIFY(_caught->told.first().contains(QStringLiteral("Field ")));
            QCOMPARE(readAll(windowsFile(folder) + QStringLiteral(".bad")), content);
        } else if (!dropped.isEmpty()) {
            QCOMPARE(_caught->told.size(), 1);
            QVERIFY2(_caught->told.first().contains(dropped), qPrintable(_caught->told.first()));
        } else {
            QVERIFY2(_caught->told.isEmpty(), qPrintable(_caught->told.join('\n')));
        }

        // Closing writes a good file in its place.
        QVERIFY(VssProjectCollection::getInstance()->closeProject());
        QDomElement workspace;
        WindowFiles::saved(windowsFile(folder), &workspace);
        QVERIFY(!workspace.isNull());
    }

    void somethingElseInTheFilesPlace_data()
    {
        SomethingElseInTheFilesPlaceRow::addColumns(); // name, fifo
        QTest::newRow("a folder named windows.xml") << "windows.xml" << false;
        QTest::newRow("a FIFO named windows.xml") << "windows.xml" << true;
        QTest::newRow("a folder named windows.xml.bad") << "windows.xml.bad" << false;
    }

    // What the program did not write is never opened, moved or deleted; a FIFO is refused
    // without waiting on it.
    void somethingElseInTheFilesPlace()
    {
        const auto [name, fifo] = SomethingElseInTheFilesPlaceRow::fetch();
        const QString folder = newProject();
        const QString path = QDir(folder).filePath(QStringLiteral("database/") + name);
        if (fifo) {
            QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        } else {
            QVERIFY(QDir().mkpath(path));
            QFile inside(path + QStringLiteral("/inside"));
            QVERIFY(inside.open(QIODevice::WriteOnly) && inside.write("mine") == 4);
        }
        // Beside a folder named windows.xml.bad, a damaged windows.xml is kept under the next name.
        const bool besideBad = name.endsWith(QLatin1String(".bad"));
        if (besideBad)
            QVERIFY(WindowFiles::write(windowsFile(folder), "<windows><window-list>"));
        VwwWindowRegistry::setWindowFactory(new TestFactory);
        QVERIFY(VssProjectCollection::getInstance()->openProject(folder));
        QCOMPARE(_caught->told.size(), 1);
        if (besideBad)
            QVERIFY2(_caught->told.first().contains(QStringLiteral("windows.xml.bad.2")), qPrintable(_caught->told.first()));
        VssProject* project = VssProjectCollection::getInstance()->getCurrentProject();
        auto* map = new TestSceneWindow(VugESceneType::MAP);
        map->setScene(project->getModelScene().getIdentifier(1));
        _caught->clear();
        QVERIFY(VssProjectCollection::getInstance()->closeProject());

        if (fifo) {
            struct stat st;
            QVERIFY(lstat(QFile::encodeName(path).constData(), &st) == 0 && S_ISFIFO(st.st_mode));
        } else {
            QCOMPARE(readAll(path + QStringLiteral("/inside")), QByteArray("mine"));
        }
        if (besideBad) {
            QCOMPARE(readAll(windowsFile(folder) + QStringLiteral(".bad.2")), QByteArray("<windows><window-list>"));
            QVERIFY(readAll(windowsFile(folder)).contains("window-list"));
        } else {
            QVERIFY2(_caught->told.size() == 1 && _caught->told.first().contains(QDir::toNativeSeparators(path)),
                     qPrintable(_caught->told.join('\n')));
        }
    }

    // A file listing far more windows than anyone opens (damaged, or generated) restores the
    // first ones and says so once; how long that takes grows linearly (bench_windows_file). A
    // window the factory throws on is skipped alone, and the maps after it are restored.
    void manyWindowsAreCappedAndAThrowingFactorySkipsOne()
    {
        const QString folder = projectWith(
            "<windows><window-list><window class-id=\"Throwing\"/>"
            + QByteArray("<window class-id=\"Test2D\"><field name=\"scene-id\">1</field></window>").repeated(1000)
            + "</window-list></windows>");
        auto* factory = new TestFactory;
        VwwWindowRegistry::setWindowFactory(factory);
        QVERIFY(VssProjectCollection::getInstance()->openProject(folder));
        int maps = 0;
        for (const auto& entry : VwwWindowRegistry::getInstance()->getWindows())
            if (auto* display = qobject_cast<TestSceneWindow*>(entry.second.data()))
                maps += display->getSceneType() == VugESceneType::MAP ? 1 : 0;
        QCOMPARE(maps, VwwWindowRegistry::MAX_RESTORED_WINDOWS - 1);
        QCOMPARE(_caught->told.size(), 2);
        QVERIFY2(_caught->told.first().contains(QStringLiteral("1001")), qPrintable(_caught->told.first()));
        QCOMPARE(_caught->told.last(), QStringLiteral("Restoring window 'Throwing' failed: std::exception: cannot make it"));
        // The restored maps stand for the default 2D display; the Reporter is still made.
        QVERIFY(!factory->calls.contains(QStringLiteral("create2DDisplay:0")));
        QVERIFY(factory->calls.contains(QStringLiteral("createReporterWindow")));
    }

    void roundTripKeepsOrderAndTextAndAFailedWriteKeepsIt()
    {
        const QString folder = newProject();
        VwwWindowRegistry::setWindowFactory(new TestFactory);
        QVERIFY(VssProjectCollection::getInstance()->openProject(folder));
        QStringList texts{QStringLiteral("plain"), QStringLiteral("<tag> & \"quotes\" 'x'"),
                          QStringLiteral("line\nbreak\ttab\r\nend\r"), QStringLiteral("Ünïcødé ∑ 日本 😀"), QString(),
                          QStringLiteral("bell\x07")};
        for (const QString& text : qAsConst(texts)) {
            auto* w = new TestWindow(QStringLiteral("w"), VwwEWindowType::DISPLAY);
            w->fields.insert(QStringLiteral("text"), text);
            w->fields.insert(QStringLiteral("second"), QStringLiteral("2"));
        }
        texts.last() = QStringLiteral("bell\uFFFD"); // XML cannot hold it
        QVERIFY(VssProjectCollection::getInstance()->closeProject());

        QStringList read;
        for (const auto& entry : WindowFiles::saved(windowsFile(folder)))
            if (entry.first == QLatin1String("TestWindow")) {
                read << entry.second.value(QStringLiteral("text"));
                QCOMPARE(entry.second.keys(), QStringList({"text", "second"}));
            }
        QCOMPARE(read, texts);

        // A write that fails keeps that file whole, says why, and leaves no temporary file.
        const QByteArray before = readAll(windowsFile(folder));
        QVERIFY(VssProjectCollection::getInstance()->openProject(folder));
        auto* big = new TestWindow(QStringLiteral("big"), VwwEWindowType::DISPLAY);
        big->fields.insert(QStringLiteral("blob"), QString(256 * 1024, QLatin1Char('b')));
        _caught->clear();
        // The process may not write files over 64 KB: the new file cannot be written whole.
        QVERIFY(WindowFiles::withFileSizeLimit(64 * 1024, [] { return VssProjectCollection::getInstance()->closeProject(); }));
        QCOMPARE(readAll(windowsFile(folder)), before);
        QVERIFY2(!_caught->told.isEmpty() && _caught->told.last().contains(QStringLiteral("could not be saved"))
                     && _caught->told.last().contains(QString::fromLocal8Bit(strerror(EFBIG))),
                 qPrintable(_caught->told.join('\n')));
        QCOMPARE(QDir(folder + QStringLiteral("/database")).entryList(QDir::Files).filter(QStringLiteral("windows")),
                 QStringList({"windows.xml"}));
    }
};

QTEST_MAIN(TestWindowsFile)
#include "tst_windowsfile.moc"
