#include "VwwASceneWindow.h"

#include <KbbDebug.h>
#include <VsmModelScene.h>
#include <VssProject.h>

namespace {
const QString kSceneId = QStringLiteral("scene-id");
}

class VwwASceneWindowPrivate
{
public:
    VugESceneType sceneType;
    VsoSceneIdentifier scene;
    int updateLocks = 0;
};

VwwASceneWindow::VwwASceneWindow(const VstTransactableInfo& info, const VugESceneType& sceneType,
                                 const QString& title, const Vua::Resource::HelpId& helpId,
                                 const Vua::Resource::IconId& iconId, bool removable, QWidget* parent)
    : VstATransactable<VwwAWindow>(info, VwwEWindowType::DISPLAY, title, helpId,
                                   removable ? WindowFlags(REMOVABLE | DOCKED) : WindowFlags(DOCKED), QSize(),
                                   iconId, parent)
    , _d(std::make_unique<VwwASceneWindowPrivate>())
{
    _d->sceneType = sceneType;
}

VwwASceneWindow::~VwwASceneWindow() = default;

const VugESceneType& VwwASceneWindow::getSceneType() const { return _d->sceneType; }
const VsoSceneIdentifier& VwwASceneWindow::getScene() const { return _d->scene; }

KbgEDimension VwwASceneWindow::getDimension() const
{
    return _d->sceneType == VugESceneType::VIEW_3D ? KbgEDimension::DIM_3D : KbgEDimension::DIM_2D;
}

bool VwwASceneWindow::askForClose()
{
    return askForSave();
}

bool VwwASceneWindow::askForSave()
{
    return saveData();
}

bool VwwASceneWindow::saveData() { return true; }
QRectF VwwASceneWindow::getZoom() const { return QRectF(); }

void VwwASceneWindow::projectAboutToClose()
{
    setScene(VsoSceneIdentifier());
    _setProject(nullptr, false);
}

void VwwASceneWindow::saveInProject()
{
    saveData();
}

void VwwASceneWindow::projectOpened(VssProject& project)
{
    _setProject(&project, true);
}

void VwwASceneWindow::_setProject(VssProject* project, bool)
{
    setTransactableProject(project);
}

void VwwASceneWindow::lockModifyUpdate()
{
    ++_d->updateLocks;
    setUpdatesEnabled(false);
}

void VwwASceneWindow::unlockModifyUpdate()
{
    if (_d->updateLocks == 0)
        return;
    if (--_d->updateLocks == 0) {
        setUpdatesEnabled(true);
        _sceneChanged();
    }
}

bool VwwASceneWindow::_isUpdateLocked() const
{
    return _d->updateLocks > 0;
}

VwwAWindow::Fields VwwASceneWindow::serialize() const
{
    Fields fields;
    fields.insert(kSceneId, QString::number(_d->scene.getId()));
    return fields;
}

bool VwwASceneWindow::unserialize(const Fields& fields)
{
    bool ok = false;
    const int id = fields.value(kSceneId).toInt(&ok);
    VsmModelScene* model = getModelScene();
    if (!model)
        return false;
    // Told, because the display the user left open does not come back.
    if (!ok || !model->exists(id)) {
        KbbDebug::printWarning(tr("The saved display '%1' is not restored: the project has no scene '%2'.")
                                   .arg(getTitle(), fields.value(kSceneId)));
        return false;
    }
    const VsoSceneIdentifier scene = model->getIdentifier(id);
    if (scene.getSceneType() != _d->sceneType.getValue()) {
        KbbDebug::printWarning(tr("The saved display '%1' is not restored: the scene '%2' is not of its kind.")
                                   .arg(getTitle(), model->getScene(id)->name));
        return false;
    }
    setScene(scene);
    return true;
}

void VwwASceneWindow::setScene(const VsoSceneIdentifier& scene)
{
    if (_d->scene == scene)
        return;
    _d->scene = scene;
    setContentName(scene.getName());
    if (!_isUpdateLocked())
        _sceneChanged();
    Q_EMIT sceneChanged(scene);
}

void VwwASceneWindow::_sceneChanged() {}
