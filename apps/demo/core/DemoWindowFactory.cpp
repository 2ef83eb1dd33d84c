#include "DemoWindowFactory.h"

#include "Demo3DWindow.h"
#include "DemoDisplayWindow.h"
#include "DemoMapWindow.h"
#include "DemoParametersWindow.h"

#include <QCoreApplication>

#include <KbbDebug.h>
#include <VssProjectCollection.h>
#include <VwwDebugWindow.h>
#include <VwwMessagesWindow.h>
#include <VwwReporterWindow.h>
#include <VwwWindowRegistry.h>

VwwAWindow* DemoWindowFactory::createWindow(const QString& classId)
{
    if (classId == QLatin1String("Reporter"))
        return VwwWindowRegistry::getReporterWindow();
    if (classId == QLatin1String("Messages"))
        return VwwWindowRegistry::getMessagesWindow(true);
    if (classId == QLatin1String("Debug"))
        return VwwWindowRegistry::getDebugWindow();
    if (classId == DemoParametersWindow::classId()) {
        // One form at a time: a project reopened while it is open finds it there.
        VwwWindowRegistryIterator it(VwwWindowRegistry::getInstance(), VwwEWindowType::TASK);
        while (it.hasNext())
            if (auto* window = qobject_cast<DemoParametersWindow*>(it.next()))
                return window;
        return new DemoParametersWindow;
    }
    for (auto it = VugESceneType::createIterator(); it.hasNext();) {
        const VugESceneType& type = it.next();
        if (classId == DemoDisplayWindow::classIdFor(type))
            return _createDisplay(type, VsoSceneIdentifier());
    }
    // Saved by another version of the application, say: told once, and left out.
    if (!_unknownClassIds.contains(classId)) {
        _unknownClassIds.insert(classId);
        KbbDebug::printWarning(QCoreApplication::translate("DemoWindowFactory",
                                                           "A saved window of the kind '%1' is not known to this "
                                                           "application and is not restored.")
                                   .arg(classId));
    }
    return nullptr;
}

// The demo has no task windows, batch editor or spreadsheets yet.
VwwAWindow* DemoWindowFactory::createToolWindow(const QString&) { return nullptr; }
VwwAWindow* DemoWindowFactory::createBatchEditor(const QString&) { return nullptr; }
VwwAWindow* DemoWindowFactory::createSpreadsheet(const QString&) { return nullptr; }

VwwAWindow* DemoWindowFactory::createReporterWindow()
{
    return VwwWindowRegistry::getReporterWindow();
}

VwwASceneWindow* DemoWindowFactory::_createDisplay(const VugESceneType& type, const VsoSceneIdentifier& scene)
{
    VssProject* project = VssProjectCollection::getInstance()->getCurrentProject();
    VwwASceneWindow* window = nullptr;
    if (type == VugESceneType::MAP)
        window = new DemoMapWindow(project);
    else if (type == VugESceneType::VIEW_3D)
        window = new Demo3DWindow(project);
    else
        window = new DemoDisplayWindow(type, project);
    if (!scene.isNull())
        window->setScene(scene);
    return window;
}

VwwASceneWindow* DemoWindowFactory::create2DDisplay(const VsoSceneIdentifier& scene)
{
    return _createDisplay(VugESceneType::MAP, scene);
}

VwwASceneWindow* DemoWindowFactory::create3DDisplay(const VsoSceneIdentifier& scene)
{
    return _createDisplay(VugESceneType::VIEW_3D, scene);
}

VwwASceneWindow* DemoWindowFactory::createSceneType4Display(const VsoSceneIdentifier& scene)
{
    return _createDisplay(VugESceneType::SECTION, scene);
}
