#include "VsoSceneIdentifier.h"

#include "VsmModelScene.h"

VsoSceneIdentifier::VsoSceneIdentifier(const VsmModelScene* model, int id)
    : _model(model ? model->_lifeToken() : std::weak_ptr<VsmModelScene* const>())
    , _id(id)
{
}

bool VsoSceneIdentifier::isNull() const
{
    return _id < 1 || !getModel();
}

VsmModelScene* VsoSceneIdentifier::getModel() const
{
    const auto model = _model.lock();
    return model ? *model : nullptr;
}

bool VsoSceneIdentifier::exists() const
{
    const VsmModelScene* model = getModel();
    return model && model->exists(_id);
}

int VsoSceneIdentifier::getSceneType() const
{
    const VsmModelScene* model = getModel();
    const VsmScene* scene = model ? model->getScene(_id) : nullptr;
    return scene ? scene->type : 0;
}

KbgEDimension VsoSceneIdentifier::getDimension() const
{
    const VsmModelScene* model = getModel();
    const VsmScene* scene = model ? model->getScene(_id) : nullptr;
    return scene ? scene->dimension : KbgEDimension::DIM_2D;
}

QString VsoSceneIdentifier::getName() const
{
    const VsmModelScene* model = getModel();
    const VsmScene* scene = model ? model->getScene(_id) : nullptr;
    return scene ? scene->name : QString();
}

bool VsoSceneIdentifier::operator==(const VsoSceneIdentifier& o) const
{
    return _id == o._id && !_model.owner_before(o._model) && !o._model.owner_before(_model);
}
