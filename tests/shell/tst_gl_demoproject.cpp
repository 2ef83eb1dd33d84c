// The demo's project as a user's data: its windows and workspace come back when it reopens,
// damaged files are kept aside and the project opens with what can be read, a save that
// fails is said (with the system's reason) and asked about before closing, and nothing that
// is not a regular file is ever opened.

#include "MessageCatcher.h"
#include "DemoMapData.h"
#include "DemoMapWindow.h"
#include "DemoSession.h"
#include "WindowFileHelpers.h"

#include <KbbDebug.h>
#include <VssProjectCollection.h>
#include <VugSceneStore.h>
#include <VwvBasemapView.h>

#include <QAction>
#include <QDockWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QDockWidget* dockOf(QWidget* window)
{
    return window ? qobject_cast<QDockWidget*>(window->parentWidget()) : nullptr;
}

// "classId:scene name" of each window, in registry order.
QStringList windowSummary()
{
    QStringList summary;
    for (const auto& e : VwwWindowRegistry::getInstance()->getWindows()) {
        if (!e.second)
            continue;
        auto* display = qobject_cast<VwwASceneWindow*>(e.second.data());
        summary << e.second->getClassID() + (display ? QLatin1Char(':') + display->getScene().getName() : QString());
    }
    return summary;
}

VwwASceneWindow* displayOf(const QString& classId)
{
    for (const auto& e : VwwWindowRegistry::getInstance()->getWindows())
        if (e.second && e.second->getClassID() == classId)
            return qobject_cast<VwwASceneWindow*>(e.second.data());
    return nullptr;
}

} // namespace

class TestDemoProject : public QObject
{
    Q_OBJECT
    DemoSession _demo;
    std::unique_ptr<MessageCatcher> _caught;

    static DemoMapWindow* map() { return DemoSession::window<DemoMapWindow>(); }

    QString databaseFile(const QString& name) const
    {
        return QDir(_demo.folder).filePath(QStringLiteral("database/") + name);
    }

    // File > Save, as Ctrl+S gives it (shortcuts need an active window, which Xvfb without a
    // window manager never has).
    void save()
    {
        for (QAction* action : _demo.main->findChildren<QAction*>())
            if (action->shortcut() == QKeySequence(QKeySequence::Save))
                return action->trigger();
        QFAIL("no Save action");
    }

    // Answers the next message box with the button of that text; its text is kept.
    QString _boxText;
    void answerNextBox(const QString& button)
    {
        _boxText.clear();
        auto* poll = new QTimer(this);
        connect(poll, &QTimer::timeout, this, [this, poll, button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            _boxText = box->text() + QLatin1Char('\n') + box->informativeText();
            for (QAbstractButton* b : box->buttons())
                if (b->text().remove(QLatin1Char('&')) == button)
                    b->click();
            poll->deleteLater();
        });
        poll->start(20);
    }

private Q_SLOTS:
    void init()
    {
        QVERIFY(_demo.start());
        _caught = std::make_unique<MessageCatcher>();
    }

    void cleanup()
    {
        _caught.reset();
        _demo.stop();
    }

    // The same windows and scenes and the workspace (a floating dock) come back when the
    // project reopens, through the demo's own class ids.
    void sameWindowsAndWorkspaceComeBack()
    {
        QVERIFY(_demo.open());
        // A first opening shows the first map and 3D scene in the default displays.
        QCOMPARE(windowSummary(), QStringList({"Reporter", "Display3D:Field in 3D", "Display2D:Field map"}));
        VssProjectCollection::getInstance()->getCurrentProject()->getModelScene().requestOpen(3); // the section
        QVERIFY(displayOf(QStringLiteral("DisplaySection")));

        // The user floats the section.
        QDockWidget* sectionDock = dockOf(displayOf(QStringLiteral("DisplaySection")));
        QVERIFY(sectionDock);
        sectionDock->setFloating(true);
        sectionDock->setGeometry(QRect(150, 160, 420, 310));
        const QStringList before = windowSummary();

        QVERIFY(_demo.main->closeProject());
        QCOMPARE(windowSummary(), QStringList({"Reporter"})); // the displays were removable

        QVERIFY(_demo.open());
        QCOMPARE(windowSummary(), before);
        sectionDock = dockOf(displayOf(QStringLiteral("DisplaySection")));
        QVERIFY(sectionDock && sectionDock->isFloating());
        QCOMPARE(sectionDock->size(), QSize(420, 310));
    }

    // One item the reader refuses: the others come back, the file is kept aside whole,
    // and closing writes a sound file beside it.
    void aDamagedSceneFileIsKeptAndTheMapOpens()
    {
        QVERIFY(_demo.open());
        QVERIFY(_demo.main->closeProject());
        QVERIFY(_demo.open());
        const QString path = VugSceneStore::filePath(*VssProjectCollection::getInstance()->getCurrentProject(),
                                                     map()->getScene().getId());
        QVERIFY(_demo.main->closeProject());
        QByteArray bytes = WindowFiles::read(path);
        const int at = bytes.indexOf("active=\"true\"");
        QVERIFY(at > 0);
        bytes.replace(at, 13, "active=\"yes\"");
        QVERIFY(WindowFiles::write(path, bytes));

        _caught->clear();
        QVERIFY(_demo.open());
        QCOMPARE(map()->getView()->getLayerCount(), 2);
        const QStringList told = _caught->told.filter(QDir::toNativeSeparators(path + ".bad"));
        QCOMPARE(told.size(), 1);
        QVERIFY2(told.first().contains(QStringLiteral("neither 'true' nor 'false'")), qPrintable(told.first()));
        QVERIFY(_demo.main->closeProject());
        QCOMPARE(WindowFiles::read(path + ".bad"), bytes);
        QVERIFY(WindowFiles::read(path).contains("active=\"true\""));
        QVERIFY(_demo.open());
        QCOMPARE(map()->getView()->getLayerCount(), 2);
    }

    void unknownWindowsAreNamedOnce()
    {
        QVERIFY(WindowFiles::write(databaseFile(QStringLiteral("windows.xml")),
              "<windows><window-list><window class-id=\"Spreadsheet9\"/><window class-id=\"Spreadsheet9\"/>"
              "<window class-id=\"Display2D\"><field name=\"scene-id\">99</field></window></window-list></windows>"));
        QVERIFY(_demo.open());
        QCOMPARE(_caught->told.filter(QStringLiteral("'Spreadsheet9'")).size(), 1);
        QCOMPARE(_caught->told.filter(QStringLiteral("'99'")).size(), 1);
    }

    // Something in the file's place: Save says so, and closing asks before it loses the
    // session's changes.
    void aFailedSaveIsSaidAndAskedAboutBeforeClosing()
    {
        QVERIFY(_demo.main->openProject(_demo.folder, false));
        QVERIFY(QDir().mkpath(databaseFile(QStringLiteral("windows.xml/kept"))));
        answerNextBox(QStringLiteral("OK"));
        save();
        QVERIFY2(_boxText.contains(QDir::toNativeSeparators(databaseFile(QStringLiteral("windows.xml")))),
                 qPrintable(_boxText));

        answerNextBox(QStringLiteral("Cancel"));
        QVERIFY(!_demo.main->closeProject());
        QVERIFY(_boxText.contains(QStringLiteral("could not be saved")));
        QVERIFY(VssProjectCollection::getInstance()->getCurrentProject());
        answerNextBox(QStringLiteral("Close Without Saving"));
        QVERIFY(_demo.main->closeProject());
        QVERIFY(!VssProjectCollection::getInstance()->getCurrentProject());
        QVERIFY(QFileInfo(databaseFile(QStringLiteral("windows.xml/kept"))).isDir());
    }

    // A point set that cannot be written whole says why, in the system's words, and the
    // file saved before stays.
    void aFullDiskIsNamed()
    {
        QVERIFY(_demo.open());
        QByteArray csv = "x,y,z,porosity\n";
        for (int i = 0; i < 20000; ++i)
            csv += QByteArray::number(431000 + i % 1000) + ',' + QByteArray::number(6541000 + i / 20) + ",0,0.2\n";
        QVERIFY(WindowFiles::write(_demo.dir.filePath(QStringLiteral("wells.csv")), csv));
        QString message;
        QVERIFY(DemoMapData::getInstance()->addPointFile(map()->getScene().getId(),
                                                        _demo.dir.filePath(QStringLiteral("wells.csv")), &message));

        QVERIFY(!WindowFiles::withFileSizeLimit(64 * 1024, [&] {
            return VssProjectCollection::getInstance()->saveProject(&message);
        }));
        QVERIFY2(message.contains(QString::fromLocal8Bit(strerror(EFBIG))) && message.contains(QStringLiteral(".vpts")),
                 qPrintable(message));
        QVERIFY(VssProjectCollection::getInstance()->saveProject(&message));
    }

    // A FIFO named like a sample file, in the project or dropped on the map, is refused at
    // once; the alarm ends the test if anything waits on it.
    void aFifoIsNeverOpened()
    {
        const QString samples = QDir(_demo.folder).filePath(QStringLiteral("data/samples.csv"));
        QVERIFY(QFile::remove(samples));
        QCOMPARE(mkfifo(QFile::encodeName(samples).constData(), 0600), 0);
        alarm(60);
        QVERIFY(_demo.open());
        QVERIFY2(_caught->told.join(QLatin1Char('\n')).contains(QStringLiteral("not a regular file")),
                 qPrintable(_caught->told.join(QLatin1Char('\n'))));
        QString message;
        QVERIFY(!DemoMapData::getInstance()->addPointFile(map()->getScene().getId(), samples, &message));
        alarm(0);
        QVERIFY2(message.contains(QStringLiteral("not a regular file")), qPrintable(message));
    }
};

QTEST_MAIN(TestDemoProject)
#include "tst_gl_demoproject.moc"
