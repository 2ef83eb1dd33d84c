#include "VssProject.h"

#include "VsmModelScene.h"

#include <KbbDebug.h>
#include <KbeError.h>
#include <VusFileUtils.h>
#include <VuxXml.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <algorithm>

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
    // What cannot be read is reported and kept aside, and the project opens with the rest:
    // refusing the whole project would keep the user from everything else in it.
    const QString projectPath = QDir(folder).filePath(kProjectFile);
    std::unique_ptr<VssProject> project(new VssProject(folder, QFileInfo(QDir(folder).absolutePath()).fileName()));
    try {
        const QDomElement root = VuxXml::readXml(projectPath, QStringLiteral("project")).documentElement();
        if (root.tagName() != QLatin1String("project"))
            throw KbeError(tr("'%1' is not a project file.").arg(QDir::toNativeSeparators(projectPath)));
        project->_d->name = root.attribute(QStringLiteral("name"));
        project->_d->coordSystem = root.attribute(QStringLiteral("coordsys"));
    } catch (const KbeError& e) {
        const QString kept = VusFileUtils::keepAside(projectPath);
        QString fate = tr("It is left where it is.");
        if (!kept.isEmpty()) {
            fate = tr("It is kept as '%1'.").arg(QDir::toNativeSeparators(kept));
            // A folder without its project file would not open again.
            try {
                project->_saveProjectFile();
            } catch (const KbeError& failed) {
                fate += QLatin1Char(' ') + failed.getMessage();
            }
        }
        KbbDebug::printWarning(tr("The project file cannot be read: the project opens as '%1', in local "
                                  "coordinates. %2\n%3")
                                   .arg(project->_d->name, fate, e.getMessage()));
    }

    QDir().mkpath(project->getDatabaseDirectory());
    const QString scenesPath = QDir(project->getDatabaseDirectory()).filePath(kScenesFile);
    if (!QFileInfo::exists(scenesPath) && !QFileInfo(scenesPath).isSymLink())
        return project;
    QStringList lost;
    try {
        lost = project->getModelScene().load(VuxXml::readXml(scenesPath, QStringLiteral("scenes")).documentElement());
    } catch (const KbeError& e) {
        lost.append(e.getMessage());
    }
    if (!lost.isEmpty()) {
        // The files of the scenes left out stay, and keep their numbers.
        int next = 1;
        const QStringList files = QDir(QDir(project->getDatabaseDirectory()).filePath(QStringLiteral("scenes")))
                                      .entryList({QStringLiteral("*.xml*")}, QDir::Files);
        for (const QString& file : files)
            next = std::max(next, file.section(QLatin1Char('.'), 0, 0).toInt() + 1);
        project->getModelScene().reserveIdsBelow(next);
        const QString kept = VusFileUtils::keepAside(scenesPath);
        KbbDebug::printWarning(
            tr("The list of scenes of the project '%1' cannot be read whole: it opens with %n scene(s). %2\n%3", nullptr,
               project->getModelScene().getSceneIds().size())
                .arg(project->_d->name,
                     kept.isEmpty() ? tr("The file is left where it is.")
                                    : tr("The file is kept as '%1'.").arg(QDir::toNativeSeparators(kept)),
                     lost.join(QLatin1Char('\n'))));
    }
    return project;
}

QString VssProject::getName() const { return _d->name; }
QString VssProject::getFolder() const { return _d->folder; }
QString VssProject::getDatabaseDirectory() const { return QDir(_d->folder).filePath(kDatabase); }
VsmModelScene& VssProject::getModelScene() const { return *_d->scenes; }
QString VssProject::getCoordSystemText() const { return _d->coordSystem; }
void VssProject::setCoordSystemText(const QString& text) { _d->coordSystem = text; }

void VssProject::_saveProjectFile() const
{
    QDomDocument project(QStringLiteral("project"));
    QDomElement root = project.createElement(QStringLiteral("project"));
    root.setAttribute(QStringLiteral("name"), _d->name);
    root.setAttribute(QStringLiteral("version"), 1);
    if (!_d->coordSystem.isEmpty())
        root.setAttribute(QStringLiteral("coordsys"), _d->coordSystem);
    project.appendChild(root);
    VuxXml::saveXml(QDir(_d->folder).filePath(kProjectFile), project);
}

void VssProject::save()
{
    _saveProjectFile();
    QDomDocument scenes(QStringLiteral("scenes"));
    QDomElement scenesRoot = scenes.createElement(QStringLiteral("scenes"));
    scenes.appendChild(scenesRoot);
    _d->scenes->save(scenes, scenesRoot);
    VuxXml::saveXml(QDir(getDatabaseDirectory()).filePath(kScenesFile), scenes);
}
