#pragma once
// One notification of the scene model: for each reason, the scenes it concerns.

#include <velmora_study_export.h>

#include <VsoSceneIdentifier.h>

#include <QList>
#include <QVector>

class VELMORA_STUDY_EXPORT VsmModifScene
{
public:
    enum Reason {
        SCENE_CREATED = 0x01,
        SCENE_REMOVED = 0x02,
        SCENE_RENAMED = 0x04,
        SCENE_CONTENT_CHANGED = 0x08,
        // Asks the application to show the scene (open or activate its display).
        SCENE_OPEN_REQUESTED = 0x40,
        // Asks the application to stop showing the scene.
        SCENE_CLOSE_REQUESTED = 0x80,
    };

    VsmModifScene() = default;
    VsmModifScene(int reason, const VsoSceneIdentifier& scene) { add(reason, scene); }

    void add(int reason, const VsoSceneIdentifier& scene);
    // Whether any of the reasons' bits is present.
    bool hasModifsForReason(int reasons) const;
    // The scenes of the reasons, in the order they were added, each once.
    QList<VsoSceneIdentifier> getIdentsForReasons(int reasons) const;
    int getReasons() const;

private:
    QVector<QPair<int, VsoSceneIdentifier>> _entries;
};
