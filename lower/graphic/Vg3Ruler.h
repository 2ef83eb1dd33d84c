#pragma once
// A ruler in a 3D scene, used while the scene interactor is in RULER mode:
//   left press on the data    starts the ruler there, or ends it there when it is drawing
//   move while drawing        the end follows the data under the cursor
//   left press on nothing     hides the ruler
//   Shift held (or setSnap)   the segment snaps to the horizontal or to the vertical,
//                             whichever is nearer
// Measures are in the data's own coordinates: the view's offset is added back and its
// vertical exaggeration taken out, so the length and dip are true ones.

#include <velmora_graphic_export.h>

#include <KbgVector3D.h>
#include <Vg3ATool.h>

#include <Inventor/SbLinear.h>

#include <QObject>

class SoCoordinate3;
class SoEventCallback;
class SoSwitch;
class Vg3SceneInteractor;

class VELMORA_GRAPHIC_EXPORT Vg3Ruler : public QObject, public Vg3ATool
{
    Q_OBJECT
public:
    struct Measure
    {
        KbgVector3D from;
        KbgVector3D to;
        double length = 0.0;
        double horizontalLength = 0.0;
        // Degrees clockwise from north (the y axis), in [0, 360); 0 for a vertical segment.
        double azimuth = 0.0;
        // Degrees below the horizontal, from `from` toward `to` (negative when it rises).
        double dip = 0.0;

        // "Length 12.5 m, horizontal 12.0 m, azimuth 45.0°, dip 16.3°", in `unit`.
        QString toText(const QString& unit) const;
    };
    static Measure measure(const KbgVector3D& from, const KbgVector3D& to);

    explicit Vg3Ruler(Vg3SceneInteractor* interactor, QObject* parent = nullptr);
    ~Vg3Ruler() override;

    // How the scene's coordinates relate to the data's: scene = (data - offset), with z
    // multiplied by zScale. Non-finite or non-positive values are refused with a warning.
    void setFrame(float zScale, const KbgVector3D& offset);

    // Points in the data's coordinates; a point that is not finite is refused with a warning.
    void start(const KbgVector3D& point);
    void moveTo(const KbgVector3D& point);
    void stop(const KbgVector3D& point);
    bool isDrawing() const { return _drawing; }
    void setVisible(bool visible);
    bool isVisible() const;
    void setSnap(bool snap) { _snap = snap; }
    bool isSnapping() const { return _snap; }
    // Valid once the ruler has been started.
    const Measure& getMeasure() const { return _measure; }

Q_SIGNALS:
    // At every change of the end, while drawing and when it stops.
    void measured(const Vg3Ruler::Measure& measure);
    void visibilityChanged(bool visible);

private:
    static void _mouseCallback(void* data, SoEventCallback* node);
    KbgVector3D _toData(const SbVec3f& scene) const;
    SbVec3f _toScene(const KbgVector3D& data) const;
    KbgVector3D _snapped(const KbgVector3D& end, bool snap) const;
    void _setEnd(const KbgVector3D& end);
    void _redraw();

    Vg3SceneInteractor* const _interactor;
    SoSwitch* _visibility = nullptr;
    SoCoordinate3* _points = nullptr;
    float _zScale = 1.0f;
    KbgVector3D _offset;
    bool _drawing = false;
    bool _snap = false;
    Measure _measure;
};

Q_DECLARE_METATYPE(Vg3Ruler::Measure)
