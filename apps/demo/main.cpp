// velmora-demo: a sample project in the library's windows. With no argument it creates
// (once) and opens the sample project in the user's data folder.
//   --project DIR      open another project
//   --screenshot FILE  render the main window to a PNG and quit
//   --parameters       show the form of value editors (Tools > Parameters)
//   --large-points     add 10,000,000 generated points to the map (as its tool bar does)
//   --3d               bring the 3D display to the front

#include "Demo3DWindow.h"
#include "DemoMainWindow.h"
#include "DemoMapWindow.h"
#include "DemoSampleProject.h"
#include "DemoWindowFactory.h"

#include <VuaResourceProvider.h>
#include <Vw3AView.h>
#include <VwwDebugWindow.h>
#include <VwwMessagesWindow.h>
#include <VwwWindowRegistry.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <QPainter>
#include <QTimer>

int main(int argc, char** argv)
{
    VwwDebugWindow::installMessageHandler();
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Velmora"));
    QApplication::setApplicationName(QStringLiteral("velmora-demo"));
    QApplication::setApplicationDisplayName(QObject::tr("Velmora demo"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QObject::tr("The demo of the velmora widget library."));
    parser.addHelpOption();
    const QCommandLineOption projectOption(QStringLiteral("project"), QObject::tr("Open the project in <dir>."),
                                           QObject::tr("dir"));
    const QCommandLineOption screenshotOption(QStringLiteral("screenshot"),
                                              QObject::tr("Save the main window to <file> (PNG) and quit."),
                                              QObject::tr("file"));
    const QCommandLineOption parametersOption(QStringLiteral("parameters"),
                                              QObject::tr("Show the form of value editors."));
    parser.addOption(projectOption);
    parser.addOption(screenshotOption);
    const QCommandLineOption largeOption(QStringLiteral("large-points"),
                                         QObject::tr("Add 10,000,000 generated points to the map."));
    const QCommandLineOption show3dOption(QStringLiteral("3d"), QObject::tr("Bring the 3D display to the front."));
    parser.addOption(parametersOption);
    parser.addOption(largeOption);
    parser.addOption(show3dOption);
    parser.process(app);

    VuaResourceProvider::setHelpHandler([](const Vua::Resource::HelpId& id) {
        QMessageBox::information(QApplication::activeWindow(), QObject::tr("Help"),
                                 QObject::tr("Help on '%1' comes with the application.").arg(id.getTopic()));
    });

    VwwWindowRegistry::setWindowFactory(new DemoWindowFactory);
    DemoMainWindow window;
    VwwWindowRegistry::setMainWindow(&window);
    window.resize(1280, 800);
    window.show();
    // Made before the project opens, so that what opening it reports (a damaged
    // windows.xml, say) is listed there.
    VwwWindowRegistry::getMessagesWindow(true);

    QString folder = parser.value(projectOption);
    if (folder.isEmpty()) {
        folder = DemoSampleProject::defaultFolder();
        QString message;
        if (!DemoSampleProject::ensure(folder, &message)) {
            QMessageBox::critical(&window, QObject::tr("Sample project"), message);
            return 1;
        }
    }
    const bool quiet = parser.isSet(screenshotOption);
    if (!window.openProject(folder, quiet) && quiet)
        return 1;
    if (parser.isSet(parametersOption))
        window.showParameters();
    if (parser.isSet(largeOption))
        for (const auto& entry : VwwWindowRegistry::getInstance()->getWindows())
            if (auto* map = qobject_cast<DemoMapWindow*>(entry.second.data())) {
                map->addLargePointSet();
                window.setActiveWindow(map);
                break;
            }

    if (parser.isSet(show3dOption))
        for (const auto& entry : VwwWindowRegistry::getInstance()->getWindows())
            if (auto* display = qobject_cast<Demo3DWindow*>(entry.second.data())) {
                window.setActiveWindow(display);
                break;
            }
    if (parser.isSet(screenshotOption)) {
        const QString file = parser.value(screenshotOption);
        QTimer::singleShot(500, &window, [&window, file] {
            // A widget grab leaves the GL windows of 3D views out: their own images go over.
            QPixmap shot = window.grab();
            QPainter painter(&shot);
            for (Vw3AView* view : window.findChildren<Vw3AView*>())
                if (!view->visibleRegion().isEmpty())
                    painter.drawImage(QRect(view->mapTo(&window, QPoint()), view->size()),
                                      view->getImage(1.0));
            painter.end();
            if (!shot.save(file, "PNG")) {
                qCritical("velmora-demo: cannot write the screenshot '%s'", qPrintable(file));
                QApplication::exit(1);
                return;
            }
            window.close();
            QApplication::exit(0);
        });
    }
    return app.exec();
}
