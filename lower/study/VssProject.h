#pragma once
// A project: a folder on disk holding "project.xml" and a database folder where the
// project's models and the application's files ("scenes.xml", "windows.xml") live.

#include <velmora_study_export.h>

#include <QObject>
#include <QString>
#include <memory>

class VsmModelScene;

class VELMORA_STUDY_EXPORT VssProject : public QObject
{
    Q_OBJECT
public:
    // Both throw KbeError with a message for the user when the folder cannot be used.
    // open() reads what it can of a damaged project file or list of scenes: it warns
    // (KbbDebug) with what was lost and moves the damaged file aside ("<file>.bad").
    static std::unique_ptr<VssProject> create(const QString& folder, const QString& name);
    static std::unique_ptr<VssProject> open(const QString& folder);
    static bool isProjectFolder(const QString& folder);

    ~VssProject() override;

    QString getName() const;
    QString getFolder() const;
    QString getDatabaseDirectory() const;
    VsmModelScene& getModelScene() const;
    // The coordinate system the project's data are stored in, as VuuCoordSystem::toString()
    // gives it ("EPSG:32631", "local:m"); empty for a local system in metres.
    QString getCoordSystemText() const;
    void setCoordSystemText(const QString& text);

    // Writes the project file and its scenes; throws KbeError.
    void save();

private:
    VssProject(const QString& folder, const QString& name);
    void _saveProjectFile() const;
    std::unique_ptr<class VssProjectPrivate> const _d;
};
