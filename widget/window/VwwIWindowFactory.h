#pragma once
// Makes the application's windows: by the class id written in "windows.xml", the default
// Reporter, and the displays of scenes by scene type. Installed in the window registry.

#include <QString>

class VwwAWindow;
class VwwASceneWindow;
class VsoSceneIdentifier;

class VwwIWindowFactory
{
public:
    virtual ~VwwIWindowFactory() = default;

    // A new window for a class id as written in "windows.xml"; null when unknown.
    virtual VwwAWindow* createWindow(const QString& classId) = 0;
    // A window of a kind the registry does not handle itself (a task, a spreadsheet).
    virtual VwwAWindow* createToolWindow(const QString& name) = 0;
    virtual VwwAWindow* createReporterWindow() = 0;
    // The batch editor, opened on a script file (empty for a new one).
    virtual VwwAWindow* createBatchEditor(const QString& scriptPath) = 0;
    // Displays of scenes of types 2, 3 and 4; a null identifier makes an empty display.
    virtual VwwASceneWindow* create2DDisplay(const VsoSceneIdentifier& scene) = 0;
    virtual VwwASceneWindow* create3DDisplay(const VsoSceneIdentifier& scene) = 0;
    virtual VwwASceneWindow* createSceneType4Display(const VsoSceneIdentifier& scene) = 0;
    // A spreadsheet of a dataset.
    virtual VwwAWindow* createSpreadsheet(const QString& datasetKey) = 0;
};
