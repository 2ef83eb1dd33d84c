#include "DemoMainWindow.h"

#include "DemoDisplayWindow.h"
#include "DemoParametersWindow.h"
#include "DemoSampleProject.h"

#include <KbbDebug.h>
#include <VsmModelScene.h>
#include <VssProject.h>
#include <VssProjectCollection.h>
#include <VuaResourceProvider.h>
#include <VwwMessagesWindow.h>
#include <VwwReporterWindow.h>
#include <VwwWindowRegistry.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDebug>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSet>
#include <QToolBar>

DemoMainWindow::DemoMainWindow(QWidget* parent)
    : VwmMainWindow(parent)
{
    setObjectName(QStringLiteral("DEMO_MAIN_WINDOW"));
    using namespace Vua::Resource;

    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* newProject = file->addAction(tr("&New Project..."), this, [this] {
        const QString folder = QFileDialog::getSaveFileName(this, tr("New Project Folder"), QDir::homePath());
        if (folder.isEmpty())
            return;
        QString message;
        if (!VssProjectCollection::getInstance()->createProject(folder, QFileInfo(folder).fileName(), &message))
            _failed(message, false);
        _updateTitle();
    });
    newProject->setShortcut(QKeySequence::New);
    QAction* open = file->addAction(VuaResourceProvider::getIcon(iconOpen()), tr("&Open Project..."), this, [this] {
        const QString folder = QFileDialog::getExistingDirectory(this, tr("Open Project"), QDir::homePath());
        if (!folder.isEmpty())
            openProject(folder);
    });
    open->setShortcut(QKeySequence::Open);
    file->addAction(tr("Open the &Sample Project"), this, [this] {
        QString message;
        if (!DemoSampleProject::ensure(DemoSampleProject::defaultFolder(), &message))
            _failed(message, false);
        else
            openProject(DemoSampleProject::defaultFolder());
    });
    QAction* save = file->addAction(VuaResourceProvider::getIcon(iconSave()), tr("&Save Project"), this, [this] {
        QString message;
        if (!VssProjectCollection::getInstance()->saveProject(&message) && !message.isEmpty())
            _failed(message, false);
    });
    save->setShortcut(QKeySequence::Save);
    file->addAction(VuaResourceProvider::getIcon(iconClose()), tr("&Close Project"), this, [this] { closeProject(); });
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    quit->setMenuRole(QAction::QuitRole);

    _scenesMenu = menuBar()->addMenu(tr("&Scenes"));
    connect(_scenesMenu, &QMenu::aboutToShow, this, &DemoMainWindow::_updateScenesMenu);

    QMenu* report = menuBar()->addMenu(tr("&Report"));
    report->addAction(VuaResourceProvider::getIcon(iconReporter()), tr("Add a Project &Summary"), this,
                      &DemoMainWindow::_addSummaryToReport);

    QMenu* toolsMenu = menuBar()->addMenu(tr("&Tools"));
    QAction* parameters = toolsMenu->addAction(VuaResourceProvider::getIcon(iconSpreadsheet()), tr("&Parameters"), this,
                                               &DemoMainWindow::showParameters);
    parameters->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));

    menuBar()->addMenu(windowMenu());

    QToolBar* tools = addToolBar(tr("Project"));
    tools->setObjectName(QStringLiteral("DEMO_TOOLBAR"));
    tools->addActions({open, save});
    tools->addSeparator();
    tools->addAction(VuaResourceProvider::getIcon(iconReporter()), tr("Add a project summary to the Reporter"), this,
                     &DemoMainWindow::_addSummaryToReport);
    tools->addAction(VuaResourceProvider::getIcon(iconMessages()), tr("Messages"), this,
                     [this] { setActiveWindow(VwwWindowRegistry::getMessagesWindow(true)); });
    tools->addAction(parameters);

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("&About"), this, [this] {
        QMessageBox::about(this, tr("About the demo"),
                           tr("<p>The demo of the velmora widget library: its window framework, with the "
                              "windows of a project saved in the project and brought back when it "
                              "reopens.</p>"));
    });
    _updateTitle();
}

DemoMainWindow::~DemoMainWindow() = default;

DemoParametersWindow* DemoMainWindow::showParameters()
{
    auto* window = qobject_cast<DemoParametersWindow*>(VwwWindowRegistry::createWindow(DemoParametersWindow::classId()));
    if (window)
        setActiveWindow(window);
    return window;
}

bool DemoMainWindow::openProject(const QString& folder, bool quiet)
{
    // What opening reports (a damaged file kept aside, a display not restored) is shown
    // once, together, besides the Messages window.
    _quiet = quiet;
    QStringList reports;
    const int sink = KbbDebug::addSink([&reports](KbbDebug::Level level, const QString& text) {
        if (level == KbbDebug::Level::Warning || level == KbbDebug::Level::Error)
            reports.append(text);
    });
    QString message;
    const bool opened = VssProjectCollection::getInstance()->openProject(folder, &message);
    if (opened)
        _showFirstScenes();
    KbbDebug::removeSink(sink);
    _updateTitle();
    if (!opened) {
        _failed(message, quiet);
        return false;
    }
    if (!reports.isEmpty()) {
        const QString text = tr("The project opened, but not all of it could be read:");
        if (quiet) {
            qWarning().noquote() << text << reports.join(QLatin1Char('\n'));
        } else {
            QMessageBox box(QMessageBox::Warning, tr("Project"), text, QMessageBox::Ok, this);
            box.setInformativeText(reports.first().left(600));
            box.setDetailedText(reports.join(QStringLiteral("\n\n")));
            box.exec();
        }
    }
    return true;
}

bool DemoMainWindow::closeProject()
{
    const bool quiet = _quiet;
    auto* collection = VssProjectCollection::getInstance();
    const VssProject* project = collection->getCurrentProject();
    if (!project)
        return true;
    // Closing saves too, but a failure there could only be reported once it is too late.
    QString message;
    if (!collection->saveProject(&message)) {
        if (quiet) {
            qWarning().noquote() << message;
        } else {
            QMessageBox box(QMessageBox::Warning, tr("Project"),
                            tr("The project '%1' could not be saved. Close it anyway and lose the changes that "
                               "were not saved?")
                                .arg(project->getName()),
                            QMessageBox::Cancel, this);
            box.setObjectName(QStringLiteral("DEMO_SAVE_FAILED"));
            box.setInformativeText(message.left(600));
            box.setDetailedText(message);
            QPushButton* close = box.addButton(tr("Close Without Saving"), QMessageBox::DestructiveRole);
            box.setDefaultButton(QMessageBox::Cancel);
            box.exec();
            if (box.clickedButton() != close)
                return false;
        }
    }
    const bool closed = collection->closeProject(&message);
    if (!closed && !message.isEmpty())
        _failed(message, quiet);
    _updateTitle();
    return closed;
}

void DemoMainWindow::closeEvent(QCloseEvent* event)
{
    if (!closeProject()) {
        event->ignore();
        return;
    }
    VwmMainWindow::closeEvent(event);
}

void DemoMainWindow::_failed(const QString& message, bool quiet)
{
    if (quiet)
        qWarning().noquote() << message;
    else
        QMessageBox::warning(this, tr("Project"), message);
}

void DemoMainWindow::_updateTitle()
{
    const VssProject* project = VssProjectCollection::getInstance()->getCurrentProject();
    setWindowTitle(project ? tr("%1 - Velmora demo").arg(project->getName()) : tr("Velmora demo"));
}

void DemoMainWindow::_showFirstScenes()
{
    const VssProject* project = VssProjectCollection::getInstance()->getCurrentProject();
    if (!project)
        return;
    // Empty displays are never saved, so every empty one here is a default display: it
    // shows the first scene of its kind that no other display shows.
    VsmModelScene& scenes = project->getModelScene();
    QList<VwwASceneWindow*> empty;
    QSet<int> shown;
    for (const auto& entry : VwwWindowRegistry::getInstance()->getWindows()) {
        if (auto* display = qobject_cast<VwwASceneWindow*>(entry.second.data())) {
            if (display->getScene().isNull())
                empty.append(display);
            else
                shown.insert(display->getScene().getId());
        }
    }
    for (VwwASceneWindow* display : qAsConst(empty)) {
        for (int id : scenes.getSceneIds()) {
            if (!shown.contains(id) && scenes.getScene(id)->type == display->getSceneType().getValue()) {
                display->setScene(scenes.getIdentifier(id));
                shown.insert(id);
                break;
            }
        }
    }
}

void DemoMainWindow::_updateScenesMenu()
{
    _scenesMenu->clear();
    const VssProject* project = VssProjectCollection::getInstance()->getCurrentProject();
    if (!project) {
        _scenesMenu->addAction(tr("No project is open"))->setEnabled(false);
        return;
    }
    VsmModelScene* scenes = &project->getModelScene();
    for (int id : scenes->getSceneIds()) {
        const VsmScene* scene = scenes->getScene(id);
        const VugESceneType type = VugESceneType::fromValue(scene->type, VugESceneType::MAP);
        QAction* action = _scenesMenu->addAction(tr("%1 (%2)").arg(scene->name, type.getLabel()));
        connect(action, &QAction::triggered, this, [scenes, id] { scenes->requestOpen(id); });
    }
    _scenesMenu->addSeparator();
    QAction* close = _scenesMenu->addAction(tr("Close the Active Display"), this, [this] {
        if (auto* display = qobject_cast<VwwASceneWindow*>(activeWindow()))
            if (VsmModelScene* model = display->getScene().getModel())
                model->requestClose(display->getScene().getId());
    });
    close->setEnabled(qobject_cast<VwwASceneWindow*>(activeWindow()) != nullptr);
}

void DemoMainWindow::_addSummaryToReport()
{
    const VssProject* project = VssProjectCollection::getInstance()->getCurrentProject();
    VwwReporterWindow* reporter = VwwWindowRegistry::getReporterWindow();
    if (!project) {
        reporter->appendText(tr("No project is open."));
    } else {
        const VsmModelScene& scenes = project->getModelScene();
        QString html = tr("<h2>%1</h2><p>%2 scenes:</p><ul>").arg(project->getName().toHtmlEscaped()).arg(scenes.getSceneIds().size());
        for (int id : scenes.getSceneIds())
            html += QStringLiteral("<li>%1</li>").arg(scenes.getScene(id)->name.toHtmlEscaped());
        reporter->appendHtml(html + QStringLiteral("</ul>"));
        if (QWidget* active = activeWindow())
            reporter->appendImage(active->grab().toImage(), tr("The active window"));
    }
    setActiveWindow(reporter);
}
