#pragma once
// Accepts the existing scenes of some scene types (of every type when none is given).

#include <velmora_study_export.h>

#include <QList>

class VsoSceneIdentifier;

class VELMORA_STUDY_EXPORT VsoSceneFilter
{
public:
    VsoSceneFilter() = default;
    explicit VsoSceneFilter(const QList<int>& sceneTypes)
        : _types(sceneTypes)
    {
    }

    bool check(const VsoSceneIdentifier& scene) const;

private:
    QList<int> _types;
};
