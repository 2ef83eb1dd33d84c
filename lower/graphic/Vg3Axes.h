#pragma once
// Axes drawn around a box of the scene: three titled axes along the box's lower edges
// meeting at its (xmin, ymin, zmin) corner, with ticks at round steps (1, 2 or 5 times a
// power of ten) and number labels, and an optional grid on the bottom face and on the two
// far sides (x = xmax, y = ymax). The box is in scene coordinates, where heights are
// multiplied by the vertical scale; the labels show unscaled values. The sub-graph is never
// pickable, and hiding it keeps getRoot() in whatever graph holds it.

#include <velmora_graphic_export.h>

#include <Inventor/SbBox3f.h>
#include <Inventor/SbVec3d.h>

#include <QColor>
#include <QString>
#include <QVector>

#include <memory>

class SoSeparator;

class VELMORA_GRAPHIC_EXPORT Vg3Axes
{
public:
    enum Axis { X_AXIS = 0, Y_AXIS = 1, Z_AXIS = 2 };

    Vg3Axes();
    ~Vg3Axes();

    // Referenced for the life of the object; its content is rebuilt when the box, scale,
    // offset or titles change, the root itself stays the same node.
    SoSeparator* getRoot() const;

    // An empty box draws nothing; a box with a non-finite coordinate is refused.
    void setBox(const SbBox3f& box);
    SbBox3f getBox() const;

    void setVisible(bool visible);
    bool isVisible() const;
    void setGridVisible(bool visible);
    bool isGridVisible() const;

    // Lines, ticks, labels and titles; typically the view's foreground colour.
    void setColor(const QColor& color);
    QColor getColor() const;

    // The vertical scale applied to the box's z; non-positive or non-finite is refused.
    void setZScale(float zScale);
    float getZScale() const;

    // Added to the shown values, for scenes moved near the origin to keep float precision:
    // a point p of the scene is labelled (p.x + o.x, p.y + o.y, p.z / zScale + o.z).
    void setLabelOffset(const SbVec3d& offset);
    SbVec3d getLabelOffset() const;

    // Defaults: "Easting", "Northing", "Elevation".
    void setTitle(Axis axis, const QString& title);
    QString getTitle(Axis axis) const;

    // The round step (1, 2 or 5 times a power of ten) giving fewer than eight intervals
    // over [min, max]; 0 when the range is empty, reversed, not finite or too narrow for
    // the precision of its values.
    static double tickStep(double min, double max);
    // The multiples of tickStep(min, max) inside [min, max]; a zero-size range gives the
    // single value, an invalid one nothing.
    static QVector<double> tickValues(double min, double max);
    // A tick value as labelled: as many decimals as the step needs, no "-0".
    static QString formatTick(double value, double step);

private:
    Vg3Axes(const Vg3Axes&) = delete;
    Vg3Axes& operator=(const Vg3Axes&) = delete;
    void _rebuild();
    std::unique_ptr<class Vg3AxesPrivate> const _d;
};
