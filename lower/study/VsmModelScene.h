#pragma once
// The scenes of a project: each has an id that is never reused, a name, a scene type
// (2 map, 3 3D view, 4 section), a dimension and the names of the items it shows.
// Every change is published to the observers as a VsmModifScene.

#include <velmora_study_export.h>

#include <KbgEDimension.h>
#include <VsmModifScene.h>
#include <VuoAObservable.h>

#include <QDomElement>
#include <QStringList>
#include <memory>
#include <vector>

struct VsmScene
{
    int id = 0;
    QString name;
    int type = 0;
    KbgEDimension dimension;
    QStringList items;
};

class VELMORA_STUDY_EXPORT VsmModelScene : public VuoAObservable<VsmModifScene>
{
public:
    enum SceneType { SCENE_2D = 2, SCENE_3D = 3, SCENE_SECTION = 4 };

    VsmModelScene();
    ~VsmModelScene() override;

    // The new scene's id. Types 3 are 3D, the others 2D.
    int createScene(const QString& name, int type, const QStringList& items = QStringList());
    bool removeScene(int id);
    bool renameScene(int id, const QString& name);
    bool setItems(int id, const QStringList& items);

    bool exists(int id) const;
    const VsmScene* getScene(int id) const;
    QList<int> getSceneIds() const;
    VsoSceneIdentifier getIdentifier(int id) const { return VsoSceneIdentifier(this, id); }

    // Ask the application to show or to stop showing a scene.
    void requestOpen(int id);
    void requestClose(int id);

    // Reads the scenes written by save(); ids are kept. A scene without a valid, unique id
    // is left out: the returned texts say which.
    QStringList load(const QDomElement& element);
    // New scenes get ids from id on: those below may still name files of the project.
    void reserveIdsBelow(int id);
    void save(QDomDocument& document, QDomElement& element) const;

private:
    friend class VsoSceneIdentifier;
    std::weak_ptr<VsmModelScene* const> _lifeToken() const { return _self; }
    void _notify(int reason, int id);

    std::vector<VsmScene> _scenes;
    int _nextId = 1;
    std::shared_ptr<VsmModelScene* const> _self;
};
