#pragma once
// Gives an object (usually a window) access to the project it works in, the project's
// models and its transaction. Base is the class it extends; its constructor arguments
// follow the info record.

#include <VssProject.h>
#include <VstTransactableInfo.h>
#include <VstTransaction.h>

#include <QPointer>
#include <utility>

class VsmModelScene;

template <class Base>
class VstATransactable : public Base
{
public:
    template <class... Args>
    explicit VstATransactable(const VstTransactableInfo& info, Args&&... args)
        : Base(std::forward<Args>(args)...)
        , _project(info.project)
        , _transaction(info.name)
    {
    }

    VssProject* getProject() const { return _project.data(); }
    VsmModelScene* getModelScene() const { return _project ? &_project->getModelScene() : nullptr; }
    VstTransaction& getTransaction() { return _transaction; }

protected:
    void setTransactableProject(VssProject* project) { _project = project; }

private:
    QPointer<VssProject> _project;
    VstTransaction _transaction;
};
