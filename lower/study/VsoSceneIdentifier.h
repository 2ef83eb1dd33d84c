#pragma once
// Names one scene of a scene model by the model and the scene's id. It does not keep the
// model alive: once the model is gone the identifier has no model and no scene.

#include <velmora_study_export.h>

#include <KbgEDimension.h>

#include <QMetaType>
#include <QString>
#include <memory>

class VsmModelScene;

class VELMORA_STUDY_EXPORT VsoSceneIdentifier
{
public:
    VsoSceneIdentifier() = default;
    VsoSceneIdentifier(const VsmModelScene* model, int id);

    // True without a model or with an id below 1.
    bool isNull() const;
    bool exists() const;
    VsmModelScene* getModel() const;
    int getId() const { return _id; }

    // Of the scene while it exists; 0, DIM_2D and an empty name otherwise.
    int getSceneType() const;
    KbgEDimension getDimension() const;
    QString getName() const;

    bool operator==(const VsoSceneIdentifier& o) const;
    bool operator!=(const VsoSceneIdentifier& o) const { return !(*this == o); }

private:
    std::weak_ptr<VsmModelScene* const> _model;
    int _id = 0;
};

Q_DECLARE_METATYPE(VsoSceneIdentifier)
