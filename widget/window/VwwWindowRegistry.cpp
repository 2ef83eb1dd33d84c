#include "VwwWindowRegistry.h"

#include "VwwASceneWindow.h"
#include "VwwAWindow.h"
#include "VwwDebugWindow.h"
#include "VwwIWindowFactory.h"
#include "VwwMessagesWindow.h"
#include "VwwReporterWindow.h"
#include "VwwWindowModel.h"

#include <KbbDebug.h>
#include <KbeError.h>
#include <VsmModelScene.h>
#include <VsoSceneFilter.h>
#include <VssProject.h>
#include <VssProjectCollection.h>
#include <VuaApplication.h>
#include <VuoUpdateModifyLock.h>
#include <VusFileUtils.h>
#include <VuxXml.h>
#include <VuxXmlReader.h>
#include <VuxXmlWriter.h>
#include <VwdGpsDialog.h>
#include <VwmAMainWindow.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

const QString kFileName = QStringLiteral("windows.xml");
const QLatin1String kDocType("windows");
const QLatin1String kRoot("windows");
const QLatin1String kWindowList("window-list");
const QLatin1String kWindow("window");
const QLatin1String kClassId("class-id");
const QLatin1String kWorkspace("workspace");

QString tr(const char* text)
{
    return QCoreApplication::translate("VwwWindowRegistry", text);
}

} // namespace

class VwwWindowRegistryPrivate
{
public:
    VwwWindowRegistry::WindowMap windows;
    QPointer<VwmAMainWindow> mainWindow;
    QPointer<VwwWindowModel> windowModel;
    QPointer<VwwDebugWindow> debugWindow;
    QPointer<VwwReporterWindow> reporterWindow;
    QPointer<VwwMessagesWindow> messagesWindow;
    VsmModelScene* sceneModel = nullptr;
    std::unique_ptr<VwwIWindowFactory> factory;
    QPointer<VwdGpsDialog> gpsDialog;
    bool userCanChangeWindows = true;

    // A snapshot of guarded pointers: a window deleted by the code a walk calls reads as null.
    QList<QPointer<VwwAWindow>> liveWindows() const
    {
        QList<QPointer<VwwAWindow>> list;
        for (const auto& e : windows)
            if (e.second)
                list.append(e.second);
        return list;
    }
};

VwwWindowRegistry::VwwWindowRegistry()
    : _d(std::make_unique<VwwWindowRegistryPrivate>())
{
    _d->windowModel = new VwwWindowModel;
    VssProjectCollection::getInstance()->addObserver(this);
    VuoUpdateModifyLock::addListener(this);
}

VwwWindowRegistry::~VwwWindowRegistry()
{
    VuoUpdateModifyLock::removeListener(this);
    VssProjectCollection::getInstance()->removeObserver(this);
    if (_d->sceneModel)
        _d->sceneModel->removeObserver(this);
}

VwwWindowRegistry*& VwwWindowRegistry::_instance()
{
    // Never destroyed at exit: windows and observables that outlive main() still call it.
    static VwwWindowRegistry* instance = new VwwWindowRegistry;
    return instance;
}

VwwWindowRegistry* VwwWindowRegistry::getInstance()
{
    return _instance();
}

void VwwWindowRegistry::reset()
{
    clear();
    VwwWindowRegistry*& instance = _instance();
    delete instance;
    instance = new VwwWindowRegistry;
}

const VwwWindowRegistry::WindowMap& VwwWindowRegistry::getWindows() const
{
    return _d->windows;
}

void VwwWindowRegistry::add(VwwAWindow* window, bool docked)
{
    if (!window)
        return;
    auto& d = *getInstance()->_d;
    if (d.windows.contains(window->getWindowID()))
        return;
    d.windows.insert(window->getWindowID(), window);
    if (d.mainWindow)
        d.mainWindow->addWindow(window, docked);
    if (d.windowModel)
        d.windowModel->addWindow(window);
}

VwwAWindow* VwwWindowRegistry::remove(int id)
{
    auto& d = *getInstance()->_d;
    if (!d.windows.contains(id))
        return nullptr;
    VwwAWindow* window = d.windows.take(id);
    if (!window)
        return nullptr;
    if (d.mainWindow)
        d.mainWindow->removeWindow(window);
    if (d.windowModel)
        d.windowModel->removeWindow(window);
    return window;
}

VwwAWindow* VwwWindowRegistry::getWindow(int id)
{
    return getInstance()->_d->windows.value(id);
}

VwwAWindow* VwwWindowRegistry::widgetToWindow(const QWidget* widget)
{
    if (!widget)
        return nullptr;
    for (const QPointer<VwwAWindow>& window : getInstance()->_d->liveWindows())
        if (window && (window == widget || window->isAncestorOf(widget)))
            return window;
    return nullptr;
}

VwwAWindow* VwwWindowRegistry::createWindow(const QString& classId)
{
    auto* self = getInstance();
    if (!self->_d->factory)
        return nullptr;
    VwwAWindow* window = self->_d->factory->createWindow(classId);
    if (auto* scene = qobject_cast<VwwASceneWindow*>(window))
        self->_connectGps(scene);
    return window;
}

void VwwWindowRegistry::_connectGps(VwwASceneWindow* window)
{
    if (!window || !_d->gpsDialog)
        return;
    window->connectGps(_d->gpsDialog, SIGNAL(gpsEnabled(bool)), SIGNAL(gpsVisibleOnMap(bool)),
                       SIGNAL(gpsCenteredOnMap(bool)), SIGNAL(gpsPositionChanged(const QPointF&, bool)), true);
}

void VwwWindowRegistry::openDisplay(const VsoSceneIdentifier& scene)
{
    auto* self = getInstance();
    auto& d = *self->_d;
    if (scene.isNull() || !scene.exists() || scene.getModel() != d.sceneModel)
        return;
    for (const QPointer<VwwAWindow>& window : d.liveWindows()) {
        auto* sceneWindow = qobject_cast<VwwASceneWindow*>(window.data());
        if (sceneWindow && sceneWindow->getScene() == scene) {
            if (d.mainWindow)
                d.mainWindow->setActiveWindow(sceneWindow);
            sceneWindow->raise();
            return;
        }
    }
    if (!d.factory)
        return;
    VwwASceneWindow* window = nullptr;
    switch (scene.getSceneType()) {
    case 2: window = d.factory->create2DDisplay(scene); break;
    case 3: window = d.factory->create3DDisplay(scene); break;
    case 4: window = d.factory->createSceneType4Display(scene); break;
    default: break;
    }
    self->_connectGps(window);
}

void VwwWindowRegistry::closeDisplay(const VsoSceneIdentifier& scene)
{
    auto& d = *getInstance()->_d;
    if (scene.isNull() || !scene.exists() || scene.getModel() != d.sceneModel)
        return;
    for (const QPointer<VwwAWindow>& window : d.liveWindows()) {
        auto* sceneWindow = qobject_cast<VwwASceneWindow*>(window.data());
        if (!sceneWindow || sceneWindow->getScene() != scene)
            continue;
        if (sceneWindow->isRemovable()) {
            remove(sceneWindow->getWindowID());
            delete sceneWindow;
        } else {
            sceneWindow->setScene(VsoSceneIdentifier());
        }
        return;
    }
}

VsoSceneIdentifier VwwWindowRegistry::getOpenedDisplay(const VsoSceneFilter& filter)
{
    for (const QPointer<VwwAWindow>& window : getInstance()->_d->liveWindows()) {
        auto* sceneWindow = qobject_cast<VwwASceneWindow*>(window.data());
        if (sceneWindow && sceneWindow->isVisible() && filter.check(sceneWindow->getScene()))
            return sceneWindow->getScene();
    }
    return VsoSceneIdentifier();
}

void VwwWindowRegistry::clear()
{
    auto& d = *getInstance()->_d;
    delete d.windowModel.data();
    for (const QPointer<VwwAWindow>& window : d.liveWindows()) {
        if (!window)
            continue;
        if (d.mainWindow)
            d.mainWindow->removeWindow(window);
        delete window.data();
    }
    d.windows.clear();
    d.mainWindow = nullptr;
}

VwwDebugWindow* VwwWindowRegistry::getDebugWindow()
{
    auto& d = *getInstance()->_d;
    if (!d.debugWindow)
        d.debugWindow = new VwwDebugWindow;
    return d.debugWindow;
}

VwwReporterWindow* VwwWindowRegistry::getReporterWindow()
{
    auto& d = *getInstance()->_d;
    if (!d.reporterWindow)
        d.reporterWindow = new VwwReporterWindow;
    return d.reporterWindow;
}

VwwMessagesWindow* VwwWindowRegistry::getMessagesWindow(bool create)
{
    auto& d = *getInstance()->_d;
    if (!d.messagesWindow && create)
        d.messagesWindow = new VwwMessagesWindow;
    return d.messagesWindow;
}

QWidget* VwwWindowRegistry::getMainWindow()
{
    return getInstance()->_d->mainWindow.data();
}

void VwwWindowRegistry::setMainWindow(VwmAMainWindow* mainWindow)
{
    getInstance()->_d->mainWindow = mainWindow;
}

VwwWindowModel* VwwWindowRegistry::getWindowModel()
{
    return getInstance()->_d->windowModel;
}

void VwwWindowRegistry::setWindowFactory(VwwIWindowFactory* factory)
{
    auto& d = *getInstance()->_d;
    if (d.factory.get() == factory)
        return;
    d.factory.reset(factory);
}

VwwIWindowFactory* VwwWindowRegistry::getWindowFactory()
{
    return getInstance()->_d->factory.get();
}

void VwwWindowRegistry::setGpsDialog(VwdGpsDialog* dialog)
{
    getInstance()->_d->gpsDialog = dialog;
}

void VwwWindowRegistry::enableUserToChangeWindows(bool enable)
{
    getInstance()->_d->userCanChangeWindows = enable;
}

bool VwwWindowRegistry::userCanChangeWindows()
{
    return getInstance()->_d->userCanChangeWindows;
}

template <class F>
QStringList VwwWindowRegistry::_forEachWindow(F&& call)
{
    QStringList failures;
    for (const QPointer<VwwAWindow>& window : _d->liveWindows()) {
        if (!window)
            continue;
        const QString title = window->getTitle();
        try {
            call(window.data());
        } catch (...) {
            failures.append(tr("Error occurred in window '%1': %2").arg(title, KbbDebug::describeCurrentException()));
            KbbDebug::printError(failures.last());
        }
    }
    return failures;
}

// --- the windows file ---------------------------------------------------------------------

QString VwwWindowRegistry::windowsFilePath(const VssProject& project)
{
    return QDir(project.getDatabaseDirectory()).filePath(kFileName);
}

void VwwWindowRegistry::_saveWindows(const VwwWindowTypeFlags& types)
{
    VssProject* project = VssProjectCollection::getInstance()->getCurrentProject();
    if (!project) {
        qDebug("VwwWindowRegistry::_saveWindows: no project is open");
        return;
    }
    const QString path = windowsFilePath(*project);
    // Written as UTF-8 straight into one buffer, which goes whole into the temporary file:
    // the save costs little more than the bytes and the atomic replace.
    QByteArray content;
    content.reserve(4096);
    VuxXmlWriter xml(content);
    xml.writeStartDocument(kDocType);
    xml.writeStartElement(kRoot);
    xml.writeStartElement(kWindowList);
    for (const QPointer<VwwAWindow>& window : _d->liveWindows()) {
        if (!window || !types.testFlag(window->whichWindowType()))
            continue;
        const auto* sceneWindow = qobject_cast<const VwwASceneWindow*>(window.data());
        if (sceneWindow && sceneWindow->getScene().getId() < 1)
            continue;
        const QString title = window->getTitle(); // the calls below may delete the window
        try {
            // Both calls may throw: nothing is written for the window until they are done.
            const QString classId = window->getClassID();
            const Fields fields = window->serialize();
            xml.writeStartElement(kWindow);
            xml.writeAttribute(kClassId, classId);
            xml.writeFields(fields);
            xml.writeEndElement();
        } catch (...) {
            KbbDebug::printWarning(tr("Saving window '%1' failed: %2").arg(title, KbbDebug::describeCurrentException()));
        }
    }
    xml.writeEndElement();

    // The main window's layout comes as a DOM element; without one the element stays empty.
    if (_d->mainWindow) {
        QDomDocument workspaceDocument;
        QDomElement workspace = workspaceDocument.createElement(kWorkspace);
        workspaceDocument.appendChild(workspace);
        _d->mainWindow->saveWorkspaceToXml(workspace);
        xml.writeElement(workspace);
    } else {
        xml.writeStartElement(kWorkspace);
        xml.writeEndElement();
    }
    xml.writeEndDocument();

    try {
        VuxXml::saveXml(path, content);
    } catch (const KbeError& e) {
        throw KbeError(tr("The windows of the project '%1' could not be saved: %2").arg(project->getName(), e.getMessage()));
    }
}

void VwwWindowRegistry::readWindowsFile(const QString& path, WindowData& windowsData, QDomElement& workspace)
{
    if (!QFileInfo::exists(path))
        return;
    const VuxXml::Limits limits;
    VuxXmlReader xml(VuxXml::readFile(path, limits), QDir::toNativeSeparators(path), limits);
    if (!xml.readNextStartElement())
        xml.fail(tr("it has no root element"));
    if (xml.name() != kRoot)
        throw KbeError(tr("'%1' does not hold saved windows (its root element is '%2').")
                           .arg(QDir::toNativeSeparators(path), xml.name().toString()));
    WindowData data;
    QDomDocument document(kDocType);
    QDomElement ws;
    bool listSeen = false;
    while (xml.readNextStartElement()) {
        if (xml.name() == kWindowList && !listSeen) {
            listSeen = true;
            while (xml.readNextStartElement()) {
                if (xml.name() != kWindow) {
                    xml.skipCurrentElement();
                    continue;
                }
                const QString classId = xml.attribute(kClassId).toString();
                data.append({classId, xml.readFields()});
            }
        } else if (xml.name() == kWorkspace && ws.isNull()) {
            ws = xml.readSubtree(document);
            document.appendChild(ws);
        } else {
            xml.skipCurrentElement();
        }
    }
    // A damaged tail makes the whole file unreadable: no half of it is restored.
    xml.finish();
    // Without a window list the file holds no saved windows, and its workspace, made for
    // windows that are not there, is not taken either.
    if (!listSeen)
        return;
    windowsData.append(data);
    if (!ws.isNull())
        workspace = ws;
}

void VwwWindowRegistry::_loadWindowsData(VssProject& project, WindowData& windowsData, QDomElement& workspace)
{
    const QString path = windowsFilePath(project);
    try {
        readWindowsFile(path, windowsData, workspace);
    } catch (const KbeError& e) {
        // The unreadable file goes aside, so that the next save writes a new one beside it.
        const QString kept = VusFileUtils::keepAside(path);
        const QString fate = kept.isEmpty()
                                 ? tr("It is left where it is, and the windows are not saved over it.")
                                 : tr("The unreadable file is kept as '%1'.").arg(QDir::toNativeSeparators(kept));
        KbbDebug::printWarning(tr("The windows of the project '%1' cannot be restored; it opens with its default "
                                  "windows. %2\n%3")
                                   .arg(project.getName(), fate, e.getMessage()));
        windowsData.clear();
        workspace = QDomElement();
    }
}

// --- project observer ---------------------------------------------------------------------

void VwwWindowRegistry::projectOpened(VssProject& project)
{
    _forEachWindow([&project](VwwAWindow* w) { w->projectOpened(project); });
    const QList<QPointer<VwwAWindow>> snapshot = _d->liveWindows();

    if (_d->sceneModel)
        _d->sceneModel->removeObserver(this);
    _d->sceneModel = &project.getModelScene();
    _d->sceneModel->addObserver(this);

    WindowData windowsData;
    QDomElement workspace;
    _loadWindowsData(project, windowsData, workspace);

    if (windowsData.size() > MAX_RESTORED_WINDOWS) {
        KbbDebug::printWarning(tr("The project '%1' lists %2 saved windows; the first %3 are restored and the "
                                  "others left out.")
                                   .arg(project.getName())
                                   .arg(windowsData.size())
                                   .arg(MAX_RESTORED_WINDOWS));
        windowsData.erase(windowsData.begin() + MAX_RESTORED_WINDOWS, windowsData.end());
    }
    if (_d->userCanChangeWindows) {
        for (const auto& entry : qAsConst(windowsData)) {
            // Each new window posts its layout and polish requests, and Qt compares every
            // new request with all those pending: flushed here, the queue stays short and
            // restoring n windows costs n times one, not n squared.
            QCoreApplication::sendPostedEvents();
            QPointer<VwwAWindow> window;
            bool restored = false;
            try {
                window = createWindow(entry.first);
                if (!window) {
                    qDebug() << "VwwWindowRegistry::projectOpened: no window for the class id" << entry.first;
                    continue;
                }
                if (!snapshot.contains(window))
                    window->projectOpened(project);
                restored = window && window->unserialize(entry.second);
            } catch (...) {
                KbbDebug::printWarning(tr("Restoring window '%1' failed: %2")
                                           .arg(window ? window->getTitle() : entry.first,
                                                KbbDebug::describeCurrentException()));
            }
            if (!restored)
                delete window.data();
        }
    }

    if (_d->factory) {
        bool needReporter = true;
        bool need2D = true;
        bool need3D = VuaApplication::shouldSpawnDefault3DV();
        for (const QPointer<VwwAWindow>& window : _d->liveWindows()) {
            if (!window)
                continue;
            if (auto* sceneWindow = qobject_cast<VwwASceneWindow*>(window.data())) {
                const KbgEDimension dim = sceneWindow->getDimension();
                if (dim == KbgEDimension::DIM_2D)
                    need2D = false;
                else if (dim == KbgEDimension::DIM_3D)
                    need3D = false;
            } else if (window->whichWindowType() == VwwEWindowType::REPORTER) {
                needReporter = false;
            }
        }
        // The defaults are made after the project opened: each new one is told of it too.
        auto opened = [&](VwwAWindow* made) {
            QPointer<VwwAWindow> window = made;
            if (!window || snapshot.contains(window))
                return;
            try {
                window->projectOpened(project);
            } catch (...) {
                KbbDebug::printError(tr("Error occurred in window '%1': %2")
                                         .arg(window ? window->getTitle() : QString(), KbbDebug::describeCurrentException()));
            }
        };
        if (needReporter)
            opened(_d->factory->createReporterWindow());
        if (need3D)
            opened(_d->factory->create3DDisplay(VsoSceneIdentifier()));
        if (need2D) {
            VwwASceneWindow* display = _d->factory->create2DDisplay(VsoSceneIdentifier());
            _connectGps(display);
            opened(display);
        }
    }

    if (_d->mainWindow)
        _d->mainWindow->restoreWorkspaceFromXml(workspace);
}

bool VwwWindowRegistry::isReadyToClose()
{
    for (const QPointer<VwwAWindow>& window : _d->liveWindows())
        if (window && !window->isReadyToClose())
            return false;
    try {
        saveInProject();
    } catch (const KbeError&) {
        // Printed already; the project closes all the same, its previous files whole.
    }
    return true;
}

void VwwWindowRegistry::saveInProject()
{
    QStringList failures = _forEachWindow([](VwwAWindow* w) { w->saveInProject(); });
    try {
        _saveWindows(VwwWindowTypeFlags{VwwEWindowType::DISPLAY, VwwEWindowType::REPORTER});
    } catch (const KbeError& e) {
        failures.append(e.getMessage());
        KbbDebug::printError(e.getMessage());
    }
    // The caller of a save learns what was not saved; each failure is printed as well.
    if (!failures.isEmpty())
        throw KbeError(failures.join(QLatin1Char('\n')));
}

void VwwWindowRegistry::projectAboutToClose()
{
    if (_d->sceneModel) {
        _d->sceneModel->removeObserver(this);
        _d->sceneModel = nullptr;
    }
    for (const QPointer<VwwAWindow>& window : _d->liveWindows()) {
        if (!window)
            continue;
        const QString title = window->getTitle();
        try {
            window->projectAboutToClose();
        } catch (...) {
            KbbDebug::printError(tr("Error occurred in window '%1': %2").arg(title, KbbDebug::describeCurrentException()));
        }
        // A removable window goes also when it failed to close cleanly.
        if (window && window->isRemovable()) {
            remove(window->getWindowID());
            delete window.data();
        }
    }
    if (_d->mainWindow)
        _d->mainWindow->clearHiddenWindows();
}

// --- scene model observer -----------------------------------------------------------------

void VwwWindowRegistry::update(const VsmModifScene& modif)
{
    if (modif.hasModifsForReason(VsmModifScene::SCENE_OPEN_REQUESTED))
        for (const VsoSceneIdentifier& scene : modif.getIdentsForReasons(VsmModifScene::SCENE_OPEN_REQUESTED))
            openDisplay(scene);
    if (modif.hasModifsForReason(VsmModifScene::SCENE_CLOSE_REQUESTED))
        for (const VsoSceneIdentifier& scene : modif.getIdentsForReasons(VsmModifScene::SCENE_CLOSE_REQUESTED))
            closeDisplay(scene);
}

void VwwWindowRegistry::destroyed(const VuoAObservable<VsmModifScene>* observable)
{
    if (observable == _d->sceneModel)
        _d->sceneModel = nullptr;
}

void VwwWindowRegistry::lockModifyUpdate()
{
    for (const QPointer<VwwAWindow>& window : _d->liveWindows())
        if (window)
            window->lockModifyUpdate();
}

void VwwWindowRegistry::unlockModifyUpdate()
{
    for (const QPointer<VwwAWindow>& window : _d->liveWindows())
        if (window)
            window->unlockModifyUpdate();
}

// --- iterator -----------------------------------------------------------------------------

VwwWindowRegistryIterator::VwwWindowRegistryIterator(VwwWindowRegistry* registry, const VwwEWindowType& type)
    : _windows(registry ? registry->getWindows() : VwwWindowRegistry::WindowMap())
    , _type(type)
{
}

VwwWindowRegistryIterator::VwwWindowRegistryIterator(const VwwWindowRegistryIterator& other) = default;
VwwWindowRegistryIterator& VwwWindowRegistryIterator::operator=(const VwwWindowRegistryIterator& other) = default;
VwwWindowRegistryIterator::~VwwWindowRegistryIterator() = default;

bool VwwWindowRegistryIterator::hasNext()
{
    while (_cursor < _windows.size()) {
        const QPointer<VwwAWindow>& window = _windows.at(_cursor).second;
        if (window && window->whichWindowType() == _type)
            return true;
        ++_cursor;
    }
    return false;
}

VwwAWindow* VwwWindowRegistryIterator::next()
{
    if (!hasNext())
        return nullptr;
    return _windows.at(_cursor++).second.data();
}
