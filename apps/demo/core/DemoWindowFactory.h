#pragma once
// Makes the demo's windows for the registry: the Reporter, messages and debug windows of
// the library and the demo's displays, by class id and by scene type.

#include <VugESceneType.h>
#include <VwwIWindowFactory.h>

#include <QSet>
#include <QString>

class DemoWindowFactory : public VwwIWindowFactory
{
public:
    VwwAWindow* createWindow(const QString& classId) override;
    VwwAWindow* createToolWindow(const QString& name) override;
    VwwAWindow* createReporterWindow() override;
    VwwAWindow* createBatchEditor(const QString& scriptPath) override;
    VwwASceneWindow* create2DDisplay(const VsoSceneIdentifier& scene) override;
    VwwASceneWindow* create3DDisplay(const VsoSceneIdentifier& scene) override;
    VwwASceneWindow* createSceneType4Display(const VsoSceneIdentifier& scene) override;
    VwwAWindow* createSpreadsheet(const QString& datasetKey) override;

private:
    VwwASceneWindow* _createDisplay(const VugESceneType& type, const VsoSceneIdentifier& scene);
    QSet<QString> _unknownClassIds;
};
