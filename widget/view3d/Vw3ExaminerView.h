#pragma once
// The plain 3D view of a scene: a perspective camera that orbits freely about the scene
// (left drag), pans (right drag, or left drag with Ctrl or Shift) and zooms (wheel). The
// scene is framed the first time the view is shown. Its toolbar holds view all, the six
// presets, the projection switch, fullscreen, image export, clipboard and the legend
// switch; a right click opens the view's menu.

#include <velmora_widget_export.h>

#include <Vw3AView.h>

class VELMORA_WIDGET_EXPORT Vw3ExaminerView : public Vw3AView
{
    Q_OBJECT
public:
    explicit Vw3ExaminerView(QWidget* parent = nullptr);
    ~Vw3ExaminerView() override;

protected:
    void _initialized() override;

private:
    bool _framed = false;
};
