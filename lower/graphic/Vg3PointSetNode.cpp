#include <Vg3PointSetNode.h>

#include <KbbGlobal.h>
#include <KbcValueRange.h>
#include <VsdPointSet.h>
#include <VugColorScale.h>
#include <VupPreferencesGraphic.h>

#include <Inventor/SoPickedPoint.h>
#include <Inventor/details/SoPointDetail.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoMaterialBinding.h>
#include <Inventor/nodes/SoPointSet.h>
#include <Inventor/nodes/SoSeparator.h>

#include <QCoreApplication>
#include <QLocale>

#include <cmath>

namespace {

bool isDefined(double v)
{
    return !VugColorScale::isUndefinedValue(v);
}

SbColor toSbColor(QRgb rgb)
{
    return SbColor(qRed(rgb) / 255.0f, qGreen(rgb) / 255.0f, qBlue(rgb) / 255.0f);
}

} // namespace

class Vg3PointSetNodePrivate
{
public:
    VsdPointSet pointSet;
    QString variableName;
    VugColorScale colorScale;
    float pointSize = VupPreferencesGraphic::getPointSize();
    QColor uniformColor = QColor(0xd0, 0xd0, 0xd0);
    QVector<int> ranks;
    // Of the coordinates the set had at setData().
    KbcValueRange xRange;
    KbcValueRange yRange;
    KbcValueRange zRange;
};

Vg3PointSetNode::Vg3PointSetNode(const QString& name)
    : Vg3ANode(name)
    , _d(std::make_unique<Vg3PointSetNodePrivate>())
{
}

Vg3PointSetNode::~Vg3PointSetNode() = default;

void Vg3PointSetNode::setData(const VsdPointSet& pointSet, const QString& variableName,
                              const VugColorScale& colorScale)
{
    if (!variableName.isEmpty() && !pointSet.hasVariable(variableName))
        qWarning("Vg3PointSetNode::setData: '%s' has no variable '%s', the points take one colour",
                 qPrintable(getName()), qPrintable(variableName));
    _d->pointSet = pointSet;
    _d->xRange = KbcValueRange::of(pointSet.x());
    _d->yRange = KbcValueRange::of(pointSet.y());
    _d->zRange = KbcValueRange::of(pointSet.z());
    _d->variableName = variableName;
    _d->colorScale = colorScale;
    rebuild();
}

float Vg3PointSetNode::getPointSize() const
{
    return _d->pointSize;
}

void Vg3PointSetNode::setPointSize(float size)
{
    if (!std::isfinite(size) || size <= 0.0f) {
        qWarning("Vg3PointSetNode::setPointSize: %g is not a positive size, %g is kept", double(size),
                 double(_d->pointSize));
        return;
    }
    _d->pointSize = size;
    rebuild();
}

QColor Vg3PointSetNode::getUniformColor() const
{
    return _d->uniformColor;
}

void Vg3PointSetNode::setUniformColor(const QColor& color)
{
    if (!color.isValid()) {
        qWarning("Vg3PointSetNode::setUniformColor: invalid colour, %s is kept", qPrintable(_d->uniformColor.name()));
        return;
    }
    _d->uniformColor = color;
    rebuild();
}

int Vg3PointSetNode::getSampleRank(int vertex) const
{
    return _d->ranks.value(vertex, -1);
}

int Vg3PointSetNode::getDrawnCount() const
{
    return _d->ranks.size();
}

QStringList Vg3PointSetNode::describe(const SoPickedPoint& picked) const
{
    const SoDetail* detail = picked.getDetail();
    const int rank = detail && detail->isOfType(SoPointDetail::getClassTypeId())
                         ? getSampleRank(static_cast<const SoPointDetail*>(detail)->getCoordinateIndex())
                         : -1;
    const VsdPointSet& set = _d->pointSet;
    if (rank < 0 || rank >= set.size())
        return Vg3ANode::describe(picked);
    const QLocale locale;
    const auto value = [&](double v) {
        return KbbGlobal::isUndefined(v) || !std::isfinite(v)
                   ? QCoreApplication::translate("Vg3PointSetNode", "undefined")
                   : locale.toString(v, 'g', 8);
    };
    QStringList lines{QCoreApplication::translate("Vg3PointSetNode", "%1, sample %2").arg(getName()).arg(rank + 1)};
    lines << QStringLiteral("x: ") + value(set.x().at(rank)) << QStringLiteral("y: ") + value(set.y().at(rank))
          << QStringLiteral("z: ") + value(set.z().at(rank));
    for (const QString& name : set.variableNames())
        lines << name + QStringLiteral(": ") + value(set.variable(name).at(rank));
    return lines;
}

void Vg3PointSetNode::_build(SoSeparator* parent)
{
    const VsdPointSet& set = _d->pointSet;
    const QVector<double>& xs = set.x();
    const QVector<double>& ys = set.y();
    const QVector<double>& zs = set.z();
    const QVector<double> values = _d->variableName.isEmpty() ? QVector<double>() : set.variable(_d->variableName);
    const bool colored = values.size() == set.size() && !values.isEmpty();
    const VugColorScale& scale = _d->colorScale;
    const bool undefinedShown = qAlpha(scale.getUndefinedColor()) != 0;

    QVector<SbVec3f> points;
    QVector<SbColor> colors;
    _d->ranks.clear();
    points.reserve(set.size());
    if (colored)
        colors.reserve(set.size());
    for (int i = 0; i < set.size(); ++i) {
        if (!isDefined(xs[i]) || !isDefined(ys[i]) || !isDefined(zs[i]))
            continue;
        // Single precision is enough once drawn; the view offsets large coordinates.
        SbVec3f local;
        if (!_d->xRange.contains(xs[i]) || !_d->yRange.contains(ys[i]) || !_d->zRange.contains(zs[i])
            || !_toDrawable(xs[i], ys[i], zs[i], local))
            continue;
        if (colored) {
            const bool defined = isDefined(values[i]);
            if (!defined && !undefinedShown)
                continue;
            colors.append(toSbColor(defined ? scale.colorAt(values[i]) : scale.getUndefinedColor()));
        }
        points.append(local);
        _d->ranks.append(i);
    }
    if (points.isEmpty())
        return;

    // Points carry no normals: their colour is drawn as is.
    auto lightModel = new SoLightModel;
    lightModel->model = SoLightModel::BASE_COLOR;
    parent->addChild(lightModel);
    auto style = new SoDrawStyle;
    style->pointSize = _d->pointSize;
    parent->addChild(style);
    auto material = new SoMaterial;
    auto binding = new SoMaterialBinding;
    if (colored) {
        material->diffuseColor.setValues(0, colors.size(), colors.constData());
        binding->value = SoMaterialBinding::PER_VERTEX;
    } else {
        material->diffuseColor.setValue(toSbColor(_d->uniformColor.rgb()));
        binding->value = SoMaterialBinding::OVERALL;
    }
    parent->addChild(material);
    parent->addChild(binding);
    auto coords = new SoCoordinate3;
    coords->point.setValues(0, points.size(), points.constData());
    parent->addChild(coords);
    auto shape = new SoPointSet;
    shape->numPoints = points.size();
    parent->addChild(shape);
}
