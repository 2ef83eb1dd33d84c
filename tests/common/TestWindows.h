#pragma once
// Windows and a factory for the window-framework tests: they record the calls the
// registry makes, and can be told to throw or to delete another window while called.

#include <KbeError.h>
#include <VsmModelScene.h>
#include <VssProject.h>
#include <VssProjectCollection.h>
#include <VwwASceneWindow.h>
#include <VwwAWindow.h>
#include <VwwIWindowFactory.h>
#include <VwwWindowRegistry.h>

#include <QPointer>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <new>
#include <stdexcept>

// Every call any test window receives, as "title:operation", in order.
inline QStringList& callLog()
{
    static QStringList log;
    return log;
}

class TestWindow : public VwwAWindow
{
    Q_OBJECT
public:
    TestWindow(const QString& title, const VwwEWindowType& type = VwwEWindowType::SPREADSHEET,
               VwwAWindow::WindowFlags flags = VwwAWindow::DOCKED,
               QSize size = QSize())
        : VwwAWindow(type, title, Vua::Resource::HelpId(), flags, size, Vua::Resource::iconWindow())
    {
    }

    QString classId = QStringLiteral("TestWindow");
    std::function<void(const char*)> onCall; // may throw or delete windows
    bool readyToClose = true;
    Fields fields;

    QString getClassID() const override { return classId; }
    bool askForSave() override { return true; }
    bool isReadyToClose() override
    {
        const bool ready = readyToClose; // the call may delete this window
        _called("isReadyToClose");
        return ready;
    }
    void projectAboutToClose() override { _called("projectAboutToClose"); }
    void saveInProject() override { _called("saveInProject"); }
    void projectOpened(VssProject&) override { _called("projectOpened"); }
    Fields serialize() const override
    {
        const Fields copy = fields; // the call may delete this window
        const_cast<TestWindow*>(this)->_called("serialize");
        return copy;
    }
    bool unserialize(const Fields& f) override
    {
        fields = f;
        return !f.contains(QStringLiteral("fail"));
    }

private:
    void _called(const char* what)
    {
        callLog().append(getTitle() + QLatin1Char(':') + QLatin1String(what));
        if (onCall)
            onCall(what);
    }
};

class TestSceneWindow : public VwwASceneWindow
{
    Q_OBJECT
public:
    TestSceneWindow(const VugESceneType& type, bool removable = true)
        : VwwASceneWindow(VstTransactableInfo{VssProjectCollection::getInstance()->getCurrentProject(), QString()},
                          type, QStringLiteral("Scene window"), Vua::Resource::HelpId(), Vua::Resource::iconDisplay2D(),
                          removable)
    {
    }
    QString getClassID() const override
    {
        return getSceneType() == VugESceneType::VIEW_3D ? QStringLiteral("Test3D") : QStringLiteral("Test2D");
    }
    void connectGps(QObject* dialog, const char* enabled, const char*, const char*, const char*, bool connect) override
    {
        gpsConnections += connect ? 1 : -1;
        if (connect)
            QObject::connect(dialog, enabled, this, SLOT(gpsEnabledChanged(bool)));
    }
    int gpsConnections = 0;
    int gpsEnabledCalls = 0;

public Q_SLOTS:
    void gpsEnabledChanged(bool) { ++gpsEnabledCalls; }
};

// Records the factory calls; makes TestWindow and TestSceneWindow.
class TestFactory : public VwwIWindowFactory
{
public:
    QStringList calls;

    VwwAWindow* createWindow(const QString& classId) override
    {
        calls << QStringLiteral("createWindow:") + classId;
        if (classId == QLatin1String("TestWindow"))
            return new TestWindow(QStringLiteral("restored"));
        if (classId == QLatin1String("TestReporter")) {
            auto* w = new TestWindow(QStringLiteral("reporter"), VwwEWindowType::REPORTER);
            w->classId = classId;
            return w;
        }
        if (classId == QLatin1String("Test2D"))
            return new TestSceneWindow(VugESceneType::MAP);
        if (classId == QLatin1String("Test3D"))
            return new TestSceneWindow(VugESceneType::VIEW_3D);
        if (classId == QLatin1String("Throwing"))
            throw std::runtime_error("cannot make it");
        return nullptr;
    }
    VwwAWindow* createToolWindow(const QString&) override { return nullptr; }
    VwwAWindow* createReporterWindow() override
    {
        calls << QStringLiteral("createReporterWindow");
        auto* w = new TestWindow(QStringLiteral("reporter"), VwwEWindowType::REPORTER);
        w->classId = QStringLiteral("TestReporter");
        return w;
    }
    VwwAWindow* createBatchEditor(const QString&) override { return nullptr; }
    VwwASceneWindow* create2DDisplay(const VsoSceneIdentifier& scene) override
    {
        calls << QStringLiteral("create2DDisplay:%1").arg(scene.getId());
        auto* w = new TestSceneWindow(VugESceneType::MAP);
        w->setScene(scene);
        return w;
    }
    VwwASceneWindow* create3DDisplay(const VsoSceneIdentifier& scene) override
    {
        calls << QStringLiteral("create3DDisplay:%1").arg(scene.getId());
        auto* w = new TestSceneWindow(VugESceneType::VIEW_3D);
        w->setScene(scene);
        return w;
    }
    VwwASceneWindow* createSceneType4Display(const VsoSceneIdentifier& scene) override
    {
        calls << QStringLiteral("createSceneType4Display:%1").arg(scene.getId());
        auto* w = new TestSceneWindow(VugESceneType::SECTION);
        w->setScene(scene);
        return w;
    }
    VwwAWindow* createSpreadsheet(const QString&) override { return nullptr; }
};

// Puts the registry and the project collection back to their first state.
inline void resetWindowFramework()
{
    VssProjectCollection::getInstance()->closeProject();
    VwwWindowRegistry::reset();
    callLog().clear();
}

// The ids of the live registered windows, in registry order.
inline QList<int> registeredIds()
{
    QList<int> ids;
    for (const auto& e : VwwWindowRegistry::getInstance()->getWindows())
        if (e.second)
            ids.append(e.first);
    return ids;
}
