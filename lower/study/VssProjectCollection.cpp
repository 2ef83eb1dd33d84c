#include "VssProjectCollection.h"

#include "VssIObserverProject.h"
#include "VssProject.h"

#include <KbbDebug.h>
#include <KbeError.h>

#include <QCoreApplication>
#include <QStringList>
#include <QVector>

class VssProjectCollectionPrivate
{
public:
    QVector<VssIObserverProject*> observers;
    std::unique_ptr<VssProject> project;

    // What an observer throws is printed, or given to the caller in problems.
    template <class F>
    void tellAll(const char* what, F&& call, QStringList* problems = nullptr)
    {
        const auto copy = observers;
        for (VssIObserverProject* o : copy) {
            if (!observers.contains(o))
                continue;
            try {
                call(o);
            } catch (...) {
                if (problems)
                    problems->append(KbbDebug::describeCurrentException());
                else
                    KbbDebug::printError(QStringLiteral("VssProjectCollection::%1: %2")
                                             .arg(QLatin1String(what), KbbDebug::describeCurrentException()));
            }
        }
    }
};

VssProjectCollection::VssProjectCollection()
    : _d(std::make_unique<VssProjectCollectionPrivate>())
{
}

VssProjectCollection::~VssProjectCollection() = default;

VssProjectCollection* VssProjectCollection::getInstance()
{
    static VssProjectCollection instance;
    return &instance;
}

void VssProjectCollection::addObserver(VssIObserverProject* observer)
{
    if (observer && !_d->observers.contains(observer))
        _d->observers.append(observer);
}

void VssProjectCollection::removeObserver(VssIObserverProject* observer)
{
    _d->observers.removeAll(observer);
}

VssProject* VssProjectCollection::getCurrentProject() const
{
    return _d->project.get();
}

bool VssProjectCollection::openProject(const QString& folder, QString* message)
{
    std::unique_ptr<VssProject> project;
    try {
        project = VssProject::open(folder);
    } catch (const KbeError& e) {
        if (message)
            *message = e.getMessage();
        return false;
    }
    if (!closeProject(message))
        return false;
    return _install(std::move(project));
}

bool VssProjectCollection::createProject(const QString& folder, const QString& name, QString* message)
{
    if (!closeProject(message))
        return false;
    try {
        return _install(VssProject::create(folder, name));
    } catch (const KbeError& e) {
        if (message)
            *message = e.getMessage();
        return false;
    }
}

bool VssProjectCollection::_install(std::unique_ptr<VssProject> project)
{
    _d->project = std::move(project);
    VssProject& p = *_d->project;
    _d->tellAll("projectOpened", [&p](VssIObserverProject* o) { o->projectOpened(p); });
    return true;
}

bool VssProjectCollection::saveProject(QString* message)
{
    if (!_d->project)
        return false;
    QStringList problems;
    _d->tellAll("saveInProject", [](VssIObserverProject* o) { o->saveInProject(); }, &problems);
    try {
        _d->project->save();
    } catch (const KbeError& e) {
        problems.append(e.getMessage());
    }
    if (message)
        *message = problems.join(QLatin1Char('\n'));
    return problems.isEmpty();
}

bool VssProjectCollection::closeProject(QString* message)
{
    if (!_d->project)
        return true;
    const auto copy = _d->observers;
    for (VssIObserverProject* o : copy) {
        if (!_d->observers.contains(o))
            continue;
        bool ready = true;
        try {
            ready = o->isReadyToClose();
        } catch (...) {
            KbbDebug::printError(QStringLiteral("VssProjectCollection::isReadyToClose: %1")
                                     .arg(KbbDebug::describeCurrentException()));
        }
        if (!ready) {
            if (message)
                *message = QCoreApplication::translate("VssProjectCollection", "Closing the project was cancelled.");
            return false;
        }
    }
    try {
        _d->project->save();
    } catch (const KbeError& e) {
        // The project still closes: what the observers saved is on disk, and keeping a
        // project open that cannot be written would only repeat the failure.
        KbbDebug::printError(e.getMessage());
    }
    _d->tellAll("projectAboutToClose", [](VssIObserverProject* o) { o->projectAboutToClose(); });
    _d->project.reset();
    return true;
}
