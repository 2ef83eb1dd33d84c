#pragma once
// The open project of the application (at most one) and the observers told of its life:
//   open:  projectOpened(project) to each observer in registration order;
//   save:  saveInProject() to each observer, then the project writes its own files; what
//          an observer throws there is the caller's failure message;
//   close: isReadyToClose() to each observer until one refuses (the project then stays
//          open), the project's files are written, projectAboutToClose() to each observer,
//          and the project is released.
// An exception from an observer is reported and the others are still told.

#include <velmora_study_export.h>

#include <QString>
#include <memory>

class VssIObserverProject;
class VssProject;

class VELMORA_STUDY_EXPORT VssProjectCollection
{
public:
    static VssProjectCollection* getInstance();

    void addObserver(VssIObserverProject* observer);
    void removeObserver(VssIObserverProject* observer);

    VssProject* getCurrentProject() const;

    // Closes the current project first; false (and the message) when that was refused
    // or the folder cannot be opened. Nothing changes then.
    bool openProject(const QString& folder, QString* message = nullptr);
    bool createProject(const QString& folder, const QString& name, QString* message = nullptr);
    // Every observer saves, then the project writes its files; false with every failure
    // in message (what could be written is written).
    bool saveProject(QString* message = nullptr);
    // True when no project is open afterwards.
    bool closeProject(QString* message = nullptr);

private:
    VssProjectCollection();
    ~VssProjectCollection();
    bool _install(std::unique_ptr<VssProject> project);
    std::unique_ptr<class VssProjectCollectionPrivate> const _d;
};
