#pragma once
// The demo's section displays: until the section views come, they list the items of their
// scene. Without a scene they say how to open one. Maps are DemoMapWindow, 3D scenes
// Demo3DWindow.

#include <VwwASceneWindow.h>

class QLabel;
class QListWidget;

class DemoDisplayWindow : public VwwASceneWindow
{
    Q_OBJECT
public:
    DemoDisplayWindow(const VugESceneType& sceneType, VssProject* project, QWidget* parent = nullptr);
    ~DemoDisplayWindow() override;

    static QString classIdFor(const VugESceneType& sceneType);
    QString getClassID() const override;

    void connectGps(QObject* gpsDialog, const char* enabledSignal, const char* visibleSignal,
                    const char* centeredSignal, const char* positionSignal, bool connect) override;

    QStringList shownItems() const;

protected:
    void _sceneChanged() override;

private Q_SLOTS:
    void _gpsEnabled(bool enabled);
    void _gpsPosition(const QPointF& position, bool valid);

private:
    QLabel* _heading;
    QListWidget* _items;
};
