#pragma once
// The process-wide list of the application's top-level windows, in the order they were
// added. It hands them to the main window and the window model, makes the Reporter,
// messages and debug windows on demand, opens and closes the displays of scenes when the
// scene model asks, and writes the open windows into the project's "windows.xml" when
// the project closes, so that the same windows come back when it opens again.
//
// Every walk over the windows walks a copy, so the called code may add, remove or delete
// windows. Exceptions thrown by one window are reported and the walk goes on.

#include <velmora_widget_export.h>

#include <KbbOrderedMap.h>
#include <VsmModifScene.h>
#include <VssIObserverProject.h>
#include <VuoIObserver.h>
#include <VuoIUpdateModifyLock.h>
#include <VwwWindowTypeFlags.h>

#include <QPointer>
#include <QString>
#include <memory>

class QDomElement;
class QWidget;
class VsmModelScene;
class VsoSceneFilter;
class VwdGpsDialog;
class VwmAMainWindow;
class VwwAWindow;
class VwwASceneWindow;
class VwwDebugWindow;
class VwwIWindowFactory;
class VwwMessagesWindow;
class VwwReporterWindow;
class VwwWindowModel;

class VELMORA_WIDGET_EXPORT VwwWindowRegistry : public VssIObserverProject,
                                                public VuoIObserver<VsmModifScene>,
                                                public VuoIUpdateModifyLock
{
public:
    // Opening a project restores at most this many saved windows; a file listing more (a
    // damaged or generated one) has the rest left out, with one warning.
    static constexpr int MAX_RESTORED_WINDOWS = 100;

    using WindowMap = KbbOrderedMap<int, QPointer<VwwAWindow>>;
    using Fields = KbbOrderedMap<QString, QString>;
    using WindowData = QList<QPair<QString, Fields>>;

    static VwwWindowRegistry* getInstance();

    static void add(VwwAWindow* window, bool docked);
    static VwwAWindow* remove(int id);
    static VwwAWindow* getWindow(int id);
    static VwwAWindow* widgetToWindow(const QWidget* widget);
    static VwwAWindow* createWindow(const QString& classId);
    static void openDisplay(const VsoSceneIdentifier& scene);
    static void closeDisplay(const VsoSceneIdentifier& scene);
    static VsoSceneIdentifier getOpenedDisplay(const VsoSceneFilter& filter);
    // Deletes the window model and every window and forgets the main window; the registry
    // then has no window model (getWindowModel() is null) until reset() makes it anew.
    static void clear();
    // clear(), then the registry as on first use: a new window model, no factory, no GPS
    // dialog, and the user may change windows. For tests and for an application that starts
    // over; call it while no project is open.
    static void reset();

    static VwwDebugWindow* getDebugWindow();
    static VwwReporterWindow* getReporterWindow();
    static VwwMessagesWindow* getMessagesWindow(bool create);

    static QWidget* getMainWindow();
    static void setMainWindow(VwmAMainWindow* mainWindow);
    // The list model of the windows, made with the registry; null after clear().
    static VwwWindowModel* getWindowModel();
    static void setWindowFactory(VwwIWindowFactory* factory);
    static VwwIWindowFactory* getWindowFactory();
    static void setGpsDialog(VwdGpsDialog* dialog);
    static void enableUserToChangeWindows(bool enable);
    static bool userCanChangeWindows();

    const WindowMap& getWindows() const;

    // The path of "windows.xml" in a project.
    static QString windowsFilePath(const VssProject& project);
    // Reads "windows.xml": the saved windows in file order and the workspace element.
    // A missing file leaves both untouched; a file that cannot be read throws KbeError.
    static void readWindowsFile(const QString& path, WindowData& windowsData, QDomElement& workspace);

    // VssIObserverProject. saveInProject() lets every window save, then writes
    // "windows.xml"; a file that cannot be written throws KbeError once the windows are done.
    bool isReadyToClose() override;
    void projectAboutToClose() override;
    void saveInProject() override;
    void projectOpened(VssProject& project) override;
    // VuoIObserver<VsmModifScene>
    void update(const VsmModifScene& modif) override;
    void destroyed(const VuoAObservable<VsmModifScene>* observable) override;
    // VuoIUpdateModifyLock
    void lockModifyUpdate() override;
    void unlockModifyUpdate() override;

private:
    VwwWindowRegistry();
    ~VwwWindowRegistry() override;
    static VwwWindowRegistry*& _instance();

    // Throws KbeError when the file cannot be written; the previous file is then whole.
    void _saveWindows(const VwwWindowTypeFlags& types);
    void _loadWindowsData(VssProject& project, WindowData& windowsData, QDomElement& workspace);
    void _connectGps(VwwASceneWindow* window);
    // Calls every live window; prints the exception of each that throws, goes on, and
    // returns their texts.
    template <class F>
    QStringList _forEachWindow(F&& call);

    std::unique_ptr<class VwwWindowRegistryPrivate> const _d;
};

// Visits the windows of one kind, over a copy of the registry's list taken when made.
class VELMORA_WIDGET_EXPORT VwwWindowRegistryIterator
{
public:
    VwwWindowRegistryIterator(VwwWindowRegistry* registry, const VwwEWindowType& type);
    VwwWindowRegistryIterator(const VwwWindowRegistryIterator& other);
    VwwWindowRegistryIterator& operator=(const VwwWindowRegistryIterator& other);
    ~VwwWindowRegistryIterator();

    bool hasNext();
    VwwAWindow* next();

private:
    VwwWindowRegistry::WindowMap _windows;
    int _cursor = 0;
    VwwEWindowType _type;
};
