#include "VsmModifScene.h"

void VsmModifScene::add(int reason, const VsoSceneIdentifier& scene)
{
    _entries.append({reason, scene});
}

bool VsmModifScene::hasModifsForReason(int reasons) const
{
    return (getReasons() & reasons) != 0;
}

QList<VsoSceneIdentifier> VsmModifScene::getIdentsForReasons(int reasons) const
{
    QList<VsoSceneIdentifier> idents;
    for (const auto& e : _entries)
        if ((e.first & reasons) != 0 && !idents.contains(e.second))
            idents.append(e.second);
    return idents;
}

int VsmModifScene::getReasons() const
{
    int reasons = 0;
    for (const auto& e : _entries)
        reasons |= e.first;
    return reasons;
}
