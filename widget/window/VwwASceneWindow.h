#pragma once
// Base of the windows that display one scene of the project (the 2D and 3D displays).
// It keeps the scene shown, its project, and its place in "windows.xml" (the scene id);
// a display without a scene is an empty display and is not saved.

#include <velmora_widget_export.h>

#include <KbgEDimension.h>
#include <VsoSceneIdentifier.h>
#include <VstATransactable.h>
#include <VugESceneType.h>
#include <VwwAWindow.h>

#include <QRectF>

class VELMORA_WIDGET_EXPORT VwwASceneWindow : public VstATransactable<VwwAWindow>
{
    Q_OBJECT
public:
    VwwASceneWindow(const VstTransactableInfo& info, const VugESceneType& sceneType, const QString& title,
                    const Vua::Resource::HelpId& helpId, const Vua::Resource::IconId& iconId, bool removable,
                    QWidget* parent = nullptr);
    ~VwwASceneWindow() override;

    const VugESceneType& getSceneType() const;
    KbgEDimension getDimension() const;
    const VsoSceneIdentifier& getScene() const;

    bool askForClose() override;
    bool askForSave() override;
    void projectAboutToClose() override;
    void saveInProject() override;
    void projectOpened(VssProject& project) override;
    void lockModifyUpdate() override;
    void unlockModifyUpdate() override;

    // The scene id is written as "scene-id"; a window whose scene is gone is not restored.
    Fields serialize() const override;
    bool unserialize(const Fields& fields) override;

    virtual bool saveData();
    // The part of the scene shown, in scene coordinates; empty when unknown.
    virtual QRectF getZoom() const;
    virtual void setScene(const VsoSceneIdentifier& scene);

    // Connects (or disconnects) the GPS dialog's four signals, given in SIGNAL() form, to
    // the window's handlers.
    virtual void connectGps(QObject* gpsDialog, const char* enabledSignal, const char* visibleSignal,
                            const char* centeredSignal, const char* positionSignal, bool connect) = 0;

Q_SIGNALS:
    void sceneChanged(const VsoSceneIdentifier& scene);

protected:
    virtual void _setProject(VssProject* project, bool opened);
    // Called after the scene changed; the display shows the new one.
    virtual void _sceneChanged();
    bool _isUpdateLocked() const;

private:
    std::unique_ptr<class VwwASceneWindowPrivate> const _d;
};
