#pragma once
// The demo's 3D display: the sampled points coloured by porosity and the thickness surface
// of the open project, in an examiner view with its presets, projection, decorations and
// legend in the window's tool bars, and the scene's items beside it (tick to show). The
// camera and the vertical exaggeration are saved with the window and come back with the
// project.

#include <VwwASceneWindow.h>

#include <memory>

class QComboBox;
class QListWidget;
class QListWidgetItem;
class Vg3ANode;
class Vw3ExaminerView;

class Demo3DWindow : public VwwASceneWindow
{
    Q_OBJECT
public:
    explicit Demo3DWindow(VssProject* project, QWidget* parent = nullptr);
    ~Demo3DWindow() override;

    QString getClassID() const override;
    Fields serialize() const override;
    bool unserialize(const Fields& fields) override;
    // The 3D display has no GPS marker.
    void connectGps(QObject*, const char*, const char*, const char*, const char*, bool) override {}

    Vw3ExaminerView* getView() const { return _view; }
    // The names of the items shown, as the list gives them.
    QStringList shownItems() const;

    // Writes the view as an image whose format follows the file's suffix (PNG when there
    // is none); the view's "Save as image" asks for the name.
    bool exportImage(const QString& fileName);

protected:
    void _sceneChanged() override;

private:
    void _release();
    void _setZScale(float zScale);
    void _itemChanged(QListWidgetItem* row);

    Vw3ExaminerView* _view = nullptr;
    QListWidget* _items = nullptr;
    QComboBox* _exaggeration = nullptr;
    // The scene's nodes by item name; the view shows them, the window owns them.
    std::vector<std::pair<QString, std::unique_ptr<Vg3ANode>>> _nodes;
    QString _pendingCamera;
};
