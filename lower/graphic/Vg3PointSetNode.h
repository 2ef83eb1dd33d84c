#pragma once
// The samples of a point set drawn as points coloured by one of their variables through a
// colour scale. Samples with an undefined x, y or z are not drawn (a point at a made-up
// depth would mislead), nor are samples with an undefined value (NaN and infinities
// included) while the scale's undefined colour is fully transparent; a half-transparent
// undefined colour is drawn opaque. Without a variable, or with an unknown one, every point
// takes one colour. Samples with a coordinate far outside the others (KbcValueRange: 1e30
// among UTM coordinates) are not drawn either: the frame of the view would hold them and
// show the others as one dot.

#include <velmora_graphic_export.h>

#include <Vg3ANode.h>

#include <QColor>
#include <QVector>
#include <memory>

class VsdPointSet;
class VugColorScale;

class VELMORA_GRAPHIC_EXPORT Vg3PointSetNode : public Vg3ANode
{
public:
    explicit Vg3PointSetNode(const QString& name);
    ~Vg3PointSetNode() override;

    // Rebuilds the points. An empty variable name asks for the uniform colour; a name the set
    // lacks is warned about and gives the uniform colour too.
    void setData(const VsdPointSet& pointSet, const QString& variableName, const VugColorScale& colorScale);

    // Pixels; the graphic preference until set. Non-positive or non-finite sizes are
    // refused with a warning.
    float getPointSize() const;
    void setPointSize(float size);
    QColor getUniformColor() const;
    // An invalid colour is refused with a warning.
    void setUniformColor(const QColor& color);

    // The sample rank the drawn vertex stands for (picks give vertex indices), -1 beyond.
    int getSampleRank(int vertex) const;
    int getDrawnCount() const;

    // The picked sample: its number, coordinates and every variable's value.
    QStringList describe(const SoPickedPoint& picked) const override;

protected:
    void _build(SoSeparator* parent) override;

private:
    std::unique_ptr<class Vg3PointSetNodePrivate> const _d;
};
