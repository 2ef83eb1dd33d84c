#pragma once
// Observer of the project collection: told when a project has opened, is saved, and in
// two steps when it closes (asked first, then told).

class VssProject;

class VssIObserverProject
{
public:
    virtual ~VssIObserverProject() = default;
    // Whether the project may close now; an observer may save its state here.
    virtual bool isReadyToClose() = 0;
    virtual void projectAboutToClose() = 0;
    virtual void saveInProject() = 0;
    virtual void projectOpened(VssProject& project) = 0;
};
