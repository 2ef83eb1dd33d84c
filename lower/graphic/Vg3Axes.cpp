#include <Vg3Axes.h>

#include <SoRef.h>
#include <Vg3OpenInventor.h>

#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoFont.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoLineSet.h>
#include <Inventor/nodes/SoPickStyle.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoText2.h>
#include <Inventor/nodes/SoTranslation.h>

#include <QCoreApplication>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// A tick table longer than this comes only from a broken range; refuse it rather than
// build thousands of labels.
constexpr int kMaxTicks = 100;

bool finiteBox(const SbBox3f& box)
{
    float x0, y0, z0, x1, y1, z1;
    box.getBounds(x0, y0, z0, x1, y1, z1);
    return std::isfinite(x0) && std::isfinite(y0) && std::isfinite(z0) && std::isfinite(x1) &&
           std::isfinite(y1) && std::isfinite(z1);
}

void addLabel(SoSeparator* parent, const SbVec3f& position, const QString& text,
              SoText2::Justification justification)
{
    auto sep = new SoSeparator;
    auto translation = new SoTranslation;
    translation->translation.setValue(position);
    auto label = new SoText2;
    label->string.setValue(text.toUtf8().constData());
    label->justification = justification;
    sep->addChild(translation);
    sep->addChild(label);
    parent->addChild(sep);
}

// Segments as pairs of points, drawn with one line set.
class Segments
{
public:
    void add(const SbVec3f& a, const SbVec3f& b)
    {
        _points.push_back(a);
        _points.push_back(b);
    }
    void addTo(SoSeparator* parent) const
    {
        if (_points.empty())
            return;
        auto coords = new SoCoordinate3;
        coords->point.setValues(0, int(_points.size()), _points.data());
        auto lines = new SoLineSet;
        const std::vector<int32_t> counts(_points.size() / 2, 2);
        lines->numVertices.setValues(0, int(counts.size()), counts.data());
        parent->addChild(coords);
        parent->addChild(lines);
    }

private:
    std::vector<SbVec3f> _points;
};

} // namespace

class Vg3AxesPrivate
{
public:
    SoRef<SoSeparator> root;
    SoSwitch* visibility = nullptr;
    SoBaseColor* color = nullptr;
    SoSeparator* axes = nullptr;
    SoSwitch* gridSwitch = nullptr;
    SoSeparator* grid = nullptr;

    SbBox3f box;
    float zScale = 1.0f;
    SbVec3d offset{0.0, 0.0, 0.0};
    QString titles[3];
    QColor foreground = Qt::white;
    bool visible = true;
    bool gridVisible = false;
};

Vg3Axes::Vg3Axes()
    : _d(new Vg3AxesPrivate)
{
    _d->titles[X_AXIS] = QCoreApplication::translate("Vg3Axes", "Easting");
    _d->titles[Y_AXIS] = QCoreApplication::translate("Vg3Axes", "Northing");
    _d->titles[Z_AXIS] = QCoreApplication::translate("Vg3Axes", "Elevation");

    _d->root = new SoSeparator;
    _d->root->setName("vg3axes_root");
    auto pickStyle = new SoPickStyle;
    pickStyle->style = SoPickStyle::UNPICKABLE;
    _d->root->addChild(pickStyle);

    _d->visibility = new SoSwitch;
    _d->visibility->setName("vg3axes_visibility");
    _d->visibility->whichChild = SO_SWITCH_ALL;
    _d->root->addChild(_d->visibility);

    auto content = new SoSeparator;
    _d->visibility->addChild(content);
    // Flat colour: the axes must read the same whatever the lights.
    auto lightModel = new SoLightModel;
    lightModel->model = SoLightModel::BASE_COLOR;
    content->addChild(lightModel);
    _d->color = new SoBaseColor;
    content->addChild(_d->color);
    auto font = new SoFont;
    font->size = 12.0f;
    font->name = Vg3OpenInventor::getTextFontName();
    content->addChild(font);

    _d->axes = new SoSeparator;
    _d->axes->setName("vg3axes_lines");
    content->addChild(_d->axes);

    _d->gridSwitch = new SoSwitch;
    _d->gridSwitch->setName("vg3axes_grid_visibility");
    _d->gridSwitch->whichChild = SO_SWITCH_NONE;
    content->addChild(_d->gridSwitch);
    _d->grid = new SoSeparator;
    _d->grid->setName("vg3axes_grid");
    auto gridStyle = new SoDrawStyle;
    gridStyle->linePattern = 0xF0F0;
    _d->gridSwitch->addChild(_d->grid);
    _d->grid->addChild(gridStyle);

    setColor(_d->foreground);
}

Vg3Axes::~Vg3Axes() = default;

SoSeparator* Vg3Axes::getRoot() const
{
    return _d->root;
}

void Vg3Axes::setBox(const SbBox3f& box)
{
    if (!box.isEmpty() && !finiteBox(box)) {
        qWarning("Vg3Axes::setBox: the box has a non-finite coordinate");
        return;
    }
    if (box == _d->box)
        return;
    _d->box = box;
    _rebuild();
}

SbBox3f Vg3Axes::getBox() const
{
    return _d->box;
}

void Vg3Axes::setVisible(bool visible)
{
    _d->visible = visible;
    _d->visibility->whichChild = visible ? SO_SWITCH_ALL : SO_SWITCH_NONE;
}

bool Vg3Axes::isVisible() const
{
    return _d->visible;
}

void Vg3Axes::setGridVisible(bool visible)
{
    _d->gridVisible = visible;
    _d->gridSwitch->whichChild = visible ? SO_SWITCH_ALL : SO_SWITCH_NONE;
}

bool Vg3Axes::isGridVisible() const
{
    return _d->gridVisible;
}

void Vg3Axes::setColor(const QColor& color)
{
    if (!color.isValid()) {
        qWarning("Vg3Axes::setColor: invalid colour");
        return;
    }
    _d->foreground = color;
    _d->color->rgb.setValue(float(color.redF()), float(color.greenF()), float(color.blueF()));
}

QColor Vg3Axes::getColor() const
{
    return _d->foreground;
}

void Vg3Axes::setZScale(float zScale)
{
    if (!(zScale > 0.0f) || !std::isfinite(zScale)) {
        qWarning("Vg3Axes::setZScale: invalid vertical scale %g", double(zScale));
        return;
    }
    if (zScale == _d->zScale)
        return;
    _d->zScale = zScale;
    _rebuild();
}

float Vg3Axes::getZScale() const
{
    return _d->zScale;
}

void Vg3Axes::setLabelOffset(const SbVec3d& offset)
{
    if (!std::isfinite(offset[0]) || !std::isfinite(offset[1]) || !std::isfinite(offset[2])) {
        qWarning("Vg3Axes::setLabelOffset: the offset has a non-finite coordinate");
        return;
    }
    if (offset == _d->offset)
        return;
    _d->offset = offset;
    _rebuild();
}

SbVec3d Vg3Axes::getLabelOffset() const
{
    return _d->offset;
}

void Vg3Axes::setTitle(Axis axis, const QString& title)
{
    if (axis < X_AXIS || axis > Z_AXIS) {
        qWarning("Vg3Axes::setTitle: invalid axis %d", int(axis));
        return;
    }
    if (title == _d->titles[axis])
        return;
    _d->titles[axis] = title;
    _rebuild();
}

QString Vg3Axes::getTitle(Axis axis) const
{
    if (axis < X_AXIS || axis > Z_AXIS)
        return QString();
    return _d->titles[axis];
}

double Vg3Axes::tickStep(double min, double max)
{
    const double range = max - min;
    if (!std::isfinite(min) || !std::isfinite(max) || !std::isfinite(range) || !(range > 0.0))
        return 0.0;
    // Steps near the precision of the values would repeat the same tick.
    if (range <= std::max(std::abs(min), std::abs(max)) * 1e-12)
        return 0.0;
    // range / 8 lies in [base, 10 base), so one of these multipliers always fits.
    const double base = std::pow(10.0, std::floor(std::log10(range / 8.0)));
    for (double multiplier : {1.0, 2.0, 5.0, 10.0, 20.0}) {
        const double step = multiplier * base;
        if (range / step < 8.0)
            return step;
    }
    return 20.0 * base;
}

QVector<double> Vg3Axes::tickValues(double min, double max)
{
    QVector<double> values;
    if (!std::isfinite(min) || !std::isfinite(max) || max < min)
        return values;
    const double step = tickStep(min, max);
    if (step <= 0.0 || !std::isfinite(step)) {
        // A flat range, or one too narrow for doubles to split.
        values.append(min);
        return values;
    }
    // Tolerance for values such as 0.6 that are a hair outside after division.
    const double first = std::ceil(min / step - 1e-9);
    const double last = std::floor(max / step + 1e-9);
    if (!(last - first < kMaxTicks)) {
        values.append(min);
        return values;
    }
    const int count = int(last - first) + 1;
    for (int i = 0; i < count; ++i)
        values.append((first + i) * step);
    return values;
}

QString Vg3Axes::formatTick(double value, double step)
{
    if (!std::isfinite(value))
        return QString();
    int decimals = 0;
    if (step > 0.0 && step < 1.0 && std::isfinite(step))
        decimals = qBound(0, int(std::ceil(-std::log10(step) - 1e-9)), 15);
    if (step > 0.0 && std::abs(value) < step * 1e-6)
        value = 0.0;
    QString text = QString::number(value, 'f', decimals);
    // A small negative value rounded to zero reads "0", not "-0.00".
    if (text.toDouble() == 0.0)
        text.remove(QLatin1Char('-'));
    return text;
}

void Vg3Axes::_rebuild()
{
    _d->axes->removeAllChildren();
    // The grid keeps its draw style, its first child.
    while (_d->grid->getNumChildren() > 1)
        _d->grid->removeChild(1);
    if (_d->box.isEmpty())
        return;

    float x0, y0, z0, x1, y1, z1;
    _d->box.getBounds(x0, y0, z0, x1, y1, z1);
    const SbVec3d& o = _d->offset;
    const double zs = _d->zScale;

    // Values shown against scene coordinates, per axis.
    const double vmin[3] = {x0 + o[0], y0 + o[1], z0 / zs + o[2]};
    const double vmax[3] = {x1 + o[0], y1 + o[1], z1 / zs + o[2]};
    const auto toScene = [&](int axis, double value) {
        return axis == Z_AXIS ? float((value - o[2]) * zs) : float(value - o[axis]);
    };

    const float extent = std::max({x1 - x0, y1 - y0, z1 - z0});
    const float tick = extent > 0.0f ? extent * 0.02f : 1.0f;

    Segments lines;
    Segments gridLines;
    lines.add(SbVec3f(x0, y0, z0), SbVec3f(x1, y0, z0));
    lines.add(SbVec3f(x0, y0, z0), SbVec3f(x0, y1, z0));
    lines.add(SbVec3f(x0, y0, z0), SbVec3f(x0, y0, z1));

    auto labels = new SoSeparator;
    for (int axis = X_AXIS; axis <= Z_AXIS; ++axis) {
        const double step = tickStep(vmin[axis], vmax[axis]);
        for (double value : tickValues(vmin[axis], vmax[axis])) {
            const float s = toScene(axis, value);
            const QString text = formatTick(value, step);
            if (axis == X_AXIS) {
                lines.add(SbVec3f(s, y0, z0), SbVec3f(s, y0 - tick, z0));
                addLabel(labels, SbVec3f(s, y0 - 2.0f * tick, z0), text, SoText2::CENTER);
                gridLines.add(SbVec3f(s, y0, z0), SbVec3f(s, y1, z0));
                gridLines.add(SbVec3f(s, y1, z0), SbVec3f(s, y1, z1));
            } else if (axis == Y_AXIS) {
                lines.add(SbVec3f(x0, s, z0), SbVec3f(x0 - tick, s, z0));
                addLabel(labels, SbVec3f(x0 - 2.0f * tick, s, z0), text, SoText2::RIGHT);
                gridLines.add(SbVec3f(x0, s, z0), SbVec3f(x1, s, z0));
                gridLines.add(SbVec3f(x1, s, z0), SbVec3f(x1, s, z1));
            } else {
                lines.add(SbVec3f(x0, y0, s), SbVec3f(x0 - tick, y0 - tick, s));
                addLabel(labels, SbVec3f(x0 - 2.0f * tick, y0 - 2.0f * tick, s), text,
                         SoText2::RIGHT);
                gridLines.add(SbVec3f(x0, y1, s), SbVec3f(x1, y1, s));
                gridLines.add(SbVec3f(x1, y0, s), SbVec3f(x1, y1, s));
            }
        }
    }
    addLabel(labels, SbVec3f(0.5f * (x0 + x1), y0 - 5.0f * tick, z0), _d->titles[X_AXIS],
             SoText2::CENTER);
    addLabel(labels, SbVec3f(x0 - 5.0f * tick, 0.5f * (y0 + y1), z0), _d->titles[Y_AXIS],
             SoText2::RIGHT);
    addLabel(labels, SbVec3f(x0, y0, z1 + 2.0f * tick), _d->titles[Z_AXIS], SoText2::CENTER);

    lines.addTo(_d->axes);
    _d->axes->addChild(labels);
    gridLines.addTo(_d->grid);
}
