#include "Vw3ExaminerView.h"

#include <Vg3SceneInteractor.h>

#include <QAction>
#include <QToolBar>

Vw3ExaminerView::Vw3ExaminerView(QWidget* parent)
    : Vw3AView(parent)
{
    getSceneInteractor()->setCameraMode(Vg3SceneInteractor::EXAMINER);
    getSceneInteractor()->setProjectionType(Vg3SceneInteractor::PERSPECTIVE);

    QToolBar* toolbar = getToolbar();
    const Action groups[][8] = {
        {VIEW_ALL, VIEW_TOP, VIEW_BOTTOM, VIEW_EAST, VIEW_WEST, VIEW_NORTH, VIEW_SOUTH, PROJECTION},
        {FULLSCREEN, IMAGE, CLIPBOARD, LEGEND, ACTION_COUNT, ACTION_COUNT, ACTION_COUNT, ACTION_COUNT},
    };
    for (int g = 0; g < 2; ++g) {
        if (g > 0)
            toolbar->addSeparator();
        for (Action a : groups[g])
            if (a != ACTION_COUNT)
                toolbar->addAction(getAction(a));
    }
}

Vw3ExaminerView::~Vw3ExaminerView() = default;

void Vw3ExaminerView::_initialized()
{
    // A look-at asked before the first frame wins over the framing of the first show, and a
    // camera state given before it (a window restored with its project) is kept.
    if (!_framed && !_isCameraSet()) {
        _framed = true;
        viewAll();
    }
    Vw3AView::_initialized();
}
