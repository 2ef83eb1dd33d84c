#include "VssProject.h"

#include "VsmModelScene.h"

#include <KbeError.h>
#include <VuxXml.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {
const QString kProjectFile = QStringLiteral("project.xml");
const QString kDatabase = QStringLiteral("database");
const QString kScenesFile = QStringLiteral("scenes.xml");
} // namespace

class VssProjectPrivate
{
public:
    QString folder;
    QString name;
    QString coordSystem;
    std::unique_ptr<VsmModelScene> scenes = std::make_unique<VsmModelScene>();
};

VssProject::VssProject(const QString& folder, const QString& name)
    : _d(std::make_unique<VssProjectPrivate>())
{
    _d->folder = QDir(folder).absolutePath();
    _d->name = name;
}

VssProject::~VssProject() = default;

bool VssProject::isProjectFolder(const QString& folder)
{
    return QFileInfo(QDir(folder).filePath(kProjectFile)).isFile();
}

std::unique_ptr<VssProject> VssProject::create(const QString& folder, const QString& name)
{
    if (isProjectFolder(folder))
        throw KbeError(tr("'%1' already holds a project.").arg(QDir::toNativeSeparators(folder)));
    if (!QDir().mkpath(QDir(folder).filePath(kDatabase)))
        throw KbeError(tr("The project folder '%1' cannot be created.").arg(QDir::toNativeSeparators(folder)));
    std::unique_ptr<VssProject> project(new VssProject(folder, name));
    project->save();
    return project;
}

std::unique_ptr<VssProject> VssProject::open(const QString& folder)
{
    if (!isProjectFolder(folder))
        throw KbeError(tr("'%1' is not a project folder.").arg(QDir::toNativeSeparators(folder)));
    const QDomDocument doc = VuxXml::readXml(QDir(folder).filePath(kProjectFile), QStringLiteral("project"));
    const QDomElement root = doc.documentElement();
    if (root.tagName() != QLatin1String("project"))
        throw KbeError(tr("'%1' is not a project file.").arg(QDir::toNativeSeparators(QDir(folder).filePath(kProjectFile))));
    std::unique_ptr<VssProject> project(new VssProject(folder, root.attribute(QStringLiteral("name"))));
    project->_d->coordSystem = root.attribute(QStringLiteral("coordsys"));
    QDir().mkpath(project->getDatabaseDirectory());
    const QString scenesPath = QDir(project->getDatabaseDirectory()).filePath(kScenesFile);
    if (QFileInfo::exists(scenesPath)) {
        const QDomDocument scenes = VuxXml::readXml(scenesPath, QStringLiteral("scenes"));
        project->getModelScene().load(scenes.documentElement());
    }
    return project;
}

QString VssProject::getName() const { return _d->name; }
QString VssProject::getFolder() const { return _d->folder; }
QString VssProject::getDatabaseDirectory() const { return QDir(_d->folder).filePath(kDatabase); }
VsmModelScene& VssProject::getModelScene() const { return *_d->scenes; }
QString VssProject::getCoordSystemText() const { return _d->coordSystem; }
void VssProject::setCoordSystemText(const QString& text) { _d->coordSystem = text; }

void VssProject::save()
{
    QDomDocument project(QStringLiteral("project"));
    QDomElement root = project.createElement(QStringLiteral("project"));
    root.setAttribute(QStringLiteral("name"), _d->name);
    root.setAttribute(QStringLiteral("version"), 1);
    if (!_d->coordSystem.isEmpty())
        root.setAttribute(QStringLiteral("coordsys"), _d->coordSystem);
    project.appendChild(root);
    VuxXml::saveXml(QDir(_d->folder).filePath(kProjectFile), project);

    QDomDocument scenes(QStringLiteral("scenes"));
    QDomElement scenesRoot = scenes.createElement(QStringLiteral("scenes"));
    scenes.appendChild(scenesRoot);
    _d->scenes->save(scenes, scenesRoot);
    VuxXml::saveXml(QDir(getDatabaseDirectory()).filePath(kScenesFile), scenes);
}
