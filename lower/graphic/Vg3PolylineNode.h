#pragma once
// The lines of a polyline set (faults, contours) drawn in one colour at one depth: the
// lines are 2D, so they lie flat at the z given with them. A vertex far outside the others
// (KbcValueRange) is left out and its line drawn in the parts around it, so that the
// view's frame keeps to the lines.

#include <velmora_graphic_export.h>

#include <Vg3ANode.h>

#include <QColor>
#include <memory>

class VsdPolylineSet;

class VELMORA_GRAPHIC_EXPORT Vg3PolylineNode : public Vg3ANode
{
public:
    explicit Vg3PolylineNode(const QString& name);
    ~Vg3PolylineNode() override;

    // A non-finite or undefined z is refused with a warning and nothing changes.
    void setData(const VsdPolylineSet& lines, double z = 0.0);

    QColor getColor() const;
    // An invalid colour is refused with a warning.
    void setColor(const QColor& color);
    // Pixels; the graphic preference until set. Non-positive widths are refused.
    float getLineWidth() const;
    void setLineWidth(float width);

protected:
    void _build(SoSeparator* parent) override;

private:
    std::unique_ptr<class Vg3PolylineNodePrivate> const _d;
};
