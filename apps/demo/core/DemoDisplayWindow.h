#pragma once
// The demo's display of a scene: until the map and 3D views come, it lists the items of
// its scene. Without a scene it says how to open one.

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
