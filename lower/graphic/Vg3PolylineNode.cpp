#include <Vg3PolylineNode.h>

#include <KbcValueRange.h>
#include <VsdGeometry.h>
#include <VsdPolylineSet.h>
#include <VugColorScale.h>
#include <VupPreferencesGraphic.h>

#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoLineSet.h>
#include <Inventor/nodes/SoSeparator.h>

#include <cmath>

class Vg3PolylineNodePrivate
{
public:
    VsdPolylineSet lines;
    double z = 0.0;
    QColor color = QColor(0xff, 0xff, 0xff);
    float lineWidth = VupPreferencesGraphic::getLineWidth();
};

Vg3PolylineNode::Vg3PolylineNode(const QString& name)
    : Vg3ANode(name)
    , _d(std::make_unique<Vg3PolylineNodePrivate>())
{
}

Vg3PolylineNode::~Vg3PolylineNode() = default;

void Vg3PolylineNode::setData(const VsdPolylineSet& lines, double z)
{
    if (VugColorScale::isUndefinedValue(z)) {
        qWarning("Vg3PolylineNode::setData: %g is not a depth for '%s', the lines are unchanged", z,
                 qPrintable(getName()));
        return;
    }
    _d->lines = lines;
    _d->z = z;
    rebuild();
}

QColor Vg3PolylineNode::getColor() const
{
    return _d->color;
}

void Vg3PolylineNode::setColor(const QColor& color)
{
    if (!color.isValid()) {
        qWarning("Vg3PolylineNode::setColor: invalid colour, %s is kept", qPrintable(_d->color.name()));
        return;
    }
    _d->color = color;
    rebuild();
}

float Vg3PolylineNode::getLineWidth() const
{
    return _d->lineWidth;
}

void Vg3PolylineNode::setLineWidth(float width)
{
    if (!std::isfinite(width) || width <= 0.0f) {
        qWarning("Vg3PolylineNode::setLineWidth: %g is not a positive width, %g is kept", double(width),
                 double(_d->lineWidth));
        return;
    }
    _d->lineWidth = width;
    rebuild();
}

void Vg3PolylineNode::_build(SoSeparator* parent)
{
    const QVector<QPolygonF>& lines = _d->lines.polylines();
    if (lines.isEmpty())
        return;
    QVector<double> xs;
    QVector<double> ys;
    VsdGeometry::coordinates(lines, xs, ys);
    const KbcValueRange xRange = KbcValueRange::of(xs);
    const KbcValueRange yRange = KbcValueRange::of(ys);
    QVector<SbVec3f> points;
    QVector<int32_t> counts;
    counts.reserve(lines.size());
    // The parts of two vertices or more between the vertices left out.
    const auto endPart = [&points, &counts](int32_t& run) {
        if (run == 1)
            points.removeLast();
        else if (run > 1)
            counts.append(run);
        run = 0;
    };
    for (const QPolygonF& line : lines) {
        int32_t run = 0;
        for (const QPointF& p : line) {
            SbVec3f local;
            if (xRange.contains(p.x()) && yRange.contains(p.y()) && _toDrawable(p.x(), p.y(), _d->z, local)) {
                points.append(local);
                ++run;
            } else {
                endPart(run);
            }
        }
        endPart(run);
    }
    if (counts.isEmpty())
        return;
    auto lightModel = new SoLightModel;
    lightModel->model = SoLightModel::BASE_COLOR;
    parent->addChild(lightModel);
    auto style = new SoDrawStyle;
    style->lineWidth = _d->lineWidth;
    parent->addChild(style);
    auto color = new SoBaseColor;
    color->rgb.setValue(float(_d->color.redF()), float(_d->color.greenF()), float(_d->color.blueF()));
    parent->addChild(color);
    auto coords = new SoCoordinate3;
    coords->point.setValues(0, points.size(), points.constData());
    parent->addChild(coords);
    auto shape = new SoLineSet;
    shape->numVertices.setValues(0, counts.size(), counts.constData());
    parent->addChild(shape);
}
