#pragma once
// Render areas as the 3D views use them, shown in a host window: a scene of four coloured
// quadrants seen from above (red, green / blue, yellow), and a recorder of every event that
// reaches the scene.

#include "InventorScenes.h"
#include <Vg3SceneInteractor.h>
#include <Vw3RenderAreaQWindow.h>

#include <Inventor/events/SoKeyboardEvent.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoEventCallback.h>

#include <QSharedPointer>
#include <QStringList>
#include <QVBoxLayout>

namespace RenderAreas {

using namespace InventorScenes;

// What reached the scene: one line per button event, the positions of all, the keys.
struct Recorder
{
    QStringList buttons;
    QList<SbVec2s> positions;
    int keys = 0;
    bool handleKeys = false;

    static void record(void* data, SoEventCallback* callback)
    {
        auto recorder = static_cast<Recorder*>(data);
        const SoEvent* event = callback->getEvent();
        recorder->positions << event->getPosition();
        if (event->isOfType(SoMouseButtonEvent::getClassTypeId())) {
            auto button = static_cast<const SoMouseButtonEvent*>(event);
            recorder->buttons << QStringLiteral("%1 %2").arg(int(button->getButton())).arg(
                button->getState() == SoButtonEvent::DOWN ? "down" : "up");
        } else if (event->isOfType(SoKeyboardEvent::getClassTypeId())) {
            ++recorder->keys;
            if (recorder->handleKeys) callback->setHandled();
        }
    }
};

// Four coloured quadrants seen from above, a recorder of every event reaching the scene.
inline QSharedPointer<Vg3SceneInteractor> makeInteractor(Recorder* recorder)
{
    QSharedPointer<Vg3SceneInteractor> interactor(new Vg3SceneInteractor);
    auto callback = new SoEventCallback;
    callback->addEventCallback(SoEvent::getClassTypeId(), &Recorder::record, recorder);
    const auto quadrant = [](float x, float y, const SbColor& color) {
        return flatBox(SbVec3f(x, y, 0), SbVec3f(50, 50, 0.1f), color);
    };
    interactor->setSceneGraph(unlitScene(callback, {quadrant(-25, 25, SbColor(1, 0, 0)), quadrant(25, 25, SbColor(0, 1, 0)),
                                                    quadrant(-25, -25, SbColor(0, 0, 1)), quadrant(25, -25, SbColor(1, 1, 0))}));
    interactor->setProjectionType(Vg3SceneInteractor::ORTHOGRAPHIC);
    auto camera = static_cast<SoOrthographicCamera*>(interactor->getCamera());
    camera->position.setValue(0, 0, 10);
    camera->orientation.setValue(SbRotation::identity());
    camera->height = 2.0f;
    return interactor;
}

inline QWidget* widgetOf(QWidget* area)
{
    return area;
}
inline QWidget* widgetOf(Vw3RenderAreaQWindow* area)
{
    return area->getContainerWidget();
}

// An area of kind A filling `host`, shown and drawn; null if it never drew.
template <class A> A* showArea(QWidget& host, Recorder& recorder, const QSize& size = QSize(200, 150))
{
    auto layout = new QVBoxLayout(&host);
    layout->setContentsMargins(0, 0, 0, 0);
    auto area = new A(&host);
    area->setSceneInteractor(makeInteractor(&recorder));
    layout->addWidget(widgetOf(area));
    host.resize(size);
    return showAndWait(host, area) ? area : nullptr;
}

} // namespace RenderAreas
