#pragma once
// The map data of the open project, for the demo's map displays: the datasets the scenes
// draw and one VugScene per map scene. The sample's files are imported on first use (the
// point sets are then kept in the project's database); each scene is read from the
// project, or built from the scene's item names the first time. Scenes and point sets are
// saved with the project, and released when it closes, after the displays let go.

#include <QMap>
#include <QObject>
#include <VssIObserverProject.h>
#include <memory>

class VssProject;
class VugDatasetStore;
class VugScene;

class DemoMapData : public QObject, public VssIObserverProject
{
    Q_OBJECT
public:
    // The key of the point set generateLargePointSet() adds; it is made again, not saved.
    static const QString LARGE_SET_KEY;
    // The sample's point set and thickness grid, which the 3D display shows too.
    static const QString SAMPLES_KEY;
    static const QString GRID_KEY;

    // Observes the project collection from the first call on.
    static DemoMapData* getInstance();

    // Null without an open project.
    VugDatasetStore* getDatasets();
    VugScene* getScene(int sceneId);

    // Adds to the scene a point set of `count` samples over the field, coloured by its
    // thickness, or replaces the one added before. False with a message when it cannot.
    bool addLargePointSet(int sceneId, int count, QString* message);
    // Takes the generated set out of the scene and the project again.
    void removeLargePointSet(int sceneId);
    bool hasLargePointSet(int sceneId);

    // Reads a point-set file (CSV or binary) into the project and adds it to the scene,
    // coloured by its first variable. False with a message naming the file when it cannot.
    bool addPointFile(int sceneId, const QString& path, QString* message);

    // Writes every scene and the changed point sets; false with the reasons.
    bool save(QString* message);

    bool isReadyToClose() override;
    void projectAboutToClose() override;
    void saveInProject() override;
    void projectOpened(VssProject& project) override;

Q_SIGNALS:
    // The scenes and datasets are about to go: displays drop their pointers now.
    void aboutToRelease();

private:
    DemoMapData();
    ~DemoMapData() override;
    bool _attach();
    void _release();
    void _importSampleFiles();
    void _buildScene(VugScene& scene) const;

    VssProject* _project = nullptr;
    std::unique_ptr<VugDatasetStore> _datasets;
    QMap<int, VugScene*> _scenes;
};
