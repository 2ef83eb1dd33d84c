#include "VsmModelScene.h"

#include <KbeError.h>

#include <QCoreApplication>
#include <algorithm>

VsmModelScene::VsmModelScene()
    : _self(std::make_shared<VsmModelScene* const>(this))
{
}

VsmModelScene::~VsmModelScene() = default;

static KbgEDimension dimensionOfType(int type)
{
    return type == VsmModelScene::SCENE_3D ? KbgEDimension::DIM_3D : KbgEDimension::DIM_2D;
}

int VsmModelScene::createScene(const QString& name, int type, const QStringList& items)
{
    VsmScene scene;
    scene.id = _nextId++;
    scene.name = name;
    scene.type = type;
    scene.dimension = dimensionOfType(type);
    scene.items = items;
    _scenes.push_back(scene);
    _notify(VsmModifScene::SCENE_CREATED, scene.id);
    return scene.id;
}

bool VsmModelScene::removeScene(int id)
{
    const auto it = std::find_if(_scenes.begin(), _scenes.end(), [id](const VsmScene& s) { return s.id == id; });
    if (it == _scenes.end())
        return false;
    // The displays are told while the scene still exists, so that they can let it go.
    _notify(VsmModifScene::SCENE_CLOSE_REQUESTED, id);
    _scenes.erase(std::find_if(_scenes.begin(), _scenes.end(), [id](const VsmScene& s) { return s.id == id; }));
    _notify(VsmModifScene::SCENE_REMOVED, id);
    return true;
}

bool VsmModelScene::renameScene(int id, const QString& name)
{
    for (VsmScene& s : _scenes) {
        if (s.id == id) {
            if (s.name == name)
                return true;
            s.name = name;
            _notify(VsmModifScene::SCENE_RENAMED, id);
            return true;
        }
    }
    return false;
}

bool VsmModelScene::setItems(int id, const QStringList& items)
{
    for (VsmScene& s : _scenes) {
        if (s.id == id) {
            s.items = items;
            _notify(VsmModifScene::SCENE_CONTENT_CHANGED, id);
            return true;
        }
    }
    return false;
}

bool VsmModelScene::exists(int id) const
{
    return getScene(id) != nullptr;
}

const VsmScene* VsmModelScene::getScene(int id) const
{
    for (const VsmScene& s : _scenes)
        if (s.id == id)
            return &s;
    return nullptr;
}

QList<int> VsmModelScene::getSceneIds() const
{
    QList<int> ids;
    for (const VsmScene& s : _scenes)
        ids.append(s.id);
    return ids;
}

void VsmModelScene::requestOpen(int id)
{
    if (exists(id))
        _notify(VsmModifScene::SCENE_OPEN_REQUESTED, id);
}

void VsmModelScene::requestClose(int id)
{
    if (exists(id))
        _notify(VsmModifScene::SCENE_CLOSE_REQUESTED, id);
}

void VsmModelScene::_notify(int reason, int id)
{
    notify(VsmModifScene(reason, getIdentifier(id)));
}

QStringList VsmModelScene::load(const QDomElement& element)
{
    QStringList lost;
    std::vector<VsmScene> scenes;
    int nextId = 1;
    for (QDomElement e = element.firstChildElement(QStringLiteral("scene")); !e.isNull();
         e = e.nextSiblingElement(QStringLiteral("scene"))) {
        VsmScene s;
        bool ok = false;
        s.id = e.attribute(QStringLiteral("id")).toInt(&ok);
        if (!ok || s.id < 1 || std::any_of(scenes.begin(), scenes.end(), [&](const VsmScene& o) { return o.id == s.id; })) {
            lost.append(QCoreApplication::translate("VsmModelScene", "The scene '%1' has a missing or repeated id ('%2').")
                            .arg(e.attribute(QStringLiteral("name")), e.attribute(QStringLiteral("id"))));
            // Its number stays used: a new scene must not take the files it may have.
            if (ok)
                nextId = std::max(nextId, s.id + 1);
            continue;
        }
        s.name = e.attribute(QStringLiteral("name"));
        s.type = e.attribute(QStringLiteral("type")).toInt();
        s.dimension = KbgEDimension::fromKey(e.attribute(QStringLiteral("dimension")), dimensionOfType(s.type));
        for (QDomElement i = e.firstChildElement(QStringLiteral("item")); !i.isNull();
             i = i.nextSiblingElement(QStringLiteral("item")))
            s.items.append(i.text());
        nextId = std::max(nextId, s.id + 1);
        scenes.push_back(s);
    }
    nextId = std::max(nextId, element.attribute(QStringLiteral("next-id")).toInt());
    _scenes = scenes;
    _nextId = nextId;
    return lost;
}

void VsmModelScene::reserveIdsBelow(int id)
{
    _nextId = std::max(_nextId, id);
}

void VsmModelScene::save(QDomDocument& document, QDomElement& element) const
{
    element.setAttribute(QStringLiteral("next-id"), _nextId);
    for (const VsmScene& s : _scenes) {
        QDomElement e = document.createElement(QStringLiteral("scene"));
        e.setAttribute(QStringLiteral("id"), s.id);
        e.setAttribute(QStringLiteral("name"), s.name);
        e.setAttribute(QStringLiteral("type"), s.type);
        e.setAttribute(QStringLiteral("dimension"), QLatin1String(s.dimension.getKey()));
        for (const QString& item : s.items) {
            QDomElement i = document.createElement(QStringLiteral("item"));
            i.appendChild(document.createTextNode(item));
            e.appendChild(i);
        }
        element.appendChild(e);
    }
}
