#include "Vg3Ruler.h"

#include <Vg3ANode.h>
#include <Vg3SceneInteractor.h>

#include <Inventor/SoPickedPoint.h>
#include <Inventor/events/SoLocation2Event.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoAnnotation.h>
#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoEventCallback.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoLineSet.h>
#include <Inventor/nodes/SoPickStyle.h>
#include <Inventor/nodes/SoPointSet.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>

#include <QCoreApplication>
#include <QLocale>

#include <cmath>

namespace {

constexpr double kDegrees = 180.0 / 3.141592653589793;

} // namespace

Vg3Ruler::Measure Vg3Ruler::measure(const KbgVector3D& from, const KbgVector3D& to)
{
    Measure m;
    m.from = from;
    m.to = to;
    const KbgVector3D d = to - from;
    m.horizontalLength = std::hypot(d.x(), d.y());
    m.length = std::hypot(m.horizontalLength, d.z());
    if (m.horizontalLength > 0.0) {
        m.azimuth = std::atan2(d.x(), d.y()) * kDegrees;
        if (m.azimuth < 0.0)
            m.azimuth += 360.0;
    }
    if (m.length > 0.0)
        m.dip = std::atan2(-d.z(), m.horizontalLength) * kDegrees;
    return m;
}

QString Vg3Ruler::Measure::toText(const QString& unit) const
{
    const QLocale locale;
    const auto number = [&](double v) { return locale.toString(v, 'f', 1); };
    const QString suffix = unit.isEmpty() ? QString() : QLatin1Char(' ') + unit;
    return QCoreApplication::translate("Vg3Ruler", "Length %1, horizontal %2, azimuth %3°, dip %4°")
        .arg(number(length) + suffix, number(horizontalLength) + suffix, number(azimuth), number(dip));
}

Vg3Ruler::Vg3Ruler(Vg3SceneInteractor* interactor, QObject* parent)
    : QObject(parent)
    , Vg3ATool(QStringLiteral("ruler"))
    , _interactor(interactor)
{
    // Queued connections and signal spies carry measures by value.
    qRegisterMetaType<Vg3Ruler::Measure>();
    auto events = new SoEventCallback;
    events->addEventCallback(SoMouseButtonEvent::getClassTypeId(), &Vg3Ruler::_mouseCallback, this);
    events->addEventCallback(SoLocation2Event::getClassTypeId(), &Vg3Ruler::_mouseCallback, this);
    getRoot()->addChild(events);

    // Drawn over the data, unlit, and never picked itself.
    _visibility = new SoSwitch;
    _visibility->whichChild = SO_SWITCH_NONE;
    getRoot()->addChild(_visibility);
    auto overlay = new SoAnnotation;
    _visibility->addChild(overlay);
    auto pickStyle = new SoPickStyle;
    pickStyle->style = SoPickStyle::UNPICKABLE;
    overlay->addChild(pickStyle);
    auto light = new SoLightModel;
    light->model = SoLightModel::BASE_COLOR;
    overlay->addChild(light);
    auto color = new SoBaseColor;
    color->rgb.setValue(1.0f, 0.85f, 0.0f);
    overlay->addChild(color);
    auto style = new SoDrawStyle;
    style->lineWidth = 2.0f;
    style->pointSize = 7.0f;
    overlay->addChild(style);
    _points = new SoCoordinate3;
    _points->point.setNum(2);
    overlay->addChild(_points);
    overlay->addChild(new SoLineSet);
    overlay->addChild(new SoPointSet);
}

Vg3Ruler::~Vg3Ruler() = default;

void Vg3Ruler::setFrame(float zScale, const KbgVector3D& offset)
{
    if (!std::isfinite(zScale) || zScale <= 0.0f || !offset.isFinite()) {
        qWarning("Vg3Ruler::setFrame: the vertical scale must be positive and the offset finite");
        return;
    }
    _zScale = zScale;
    _offset = offset;
    _redraw();
}

void Vg3Ruler::start(const KbgVector3D& point)
{
    if (!point.isFinite()) {
        qWarning("Vg3Ruler::start: the point is not finite");
        return;
    }
    _drawing = true;
    _measure = measure(point, point);
    setVisible(true);
    _redraw();
    Q_EMIT measured(_measure);
}

void Vg3Ruler::moveTo(const KbgVector3D& point)
{
    if (_drawing)
        _setEnd(point);
}

void Vg3Ruler::stop(const KbgVector3D& point)
{
    if (!_drawing)
        return;
    _drawing = false;
    _setEnd(point);
}

void Vg3Ruler::setVisible(bool visible)
{
    if (!visible)
        _drawing = false;
    if (isVisible() == visible)
        return;
    _visibility->whichChild = visible ? 0 : SO_SWITCH_NONE;
    Q_EMIT visibilityChanged(visible);
}

bool Vg3Ruler::isVisible() const { return _visibility->whichChild.getValue() == 0; }

void Vg3Ruler::_setEnd(const KbgVector3D& end)
{
    if (!end.isFinite()) {
        qWarning("Vg3Ruler: the end point is not finite");
        return;
    }
    _measure = measure(_measure.from, end);
    _redraw();
    Q_EMIT measured(_measure);
}

KbgVector3D Vg3Ruler::_toData(const SbVec3f& scene) const
{
    return Vg3ANode::toData(scene, _zScale, _offset);
}

SbVec3f Vg3Ruler::_toScene(const KbgVector3D& data) const
{
    const KbgVector3D d = data - _offset;
    return SbVec3f(float(d.x()), float(d.y()), float(d.z() * _zScale));
}

KbgVector3D Vg3Ruler::_snapped(const KbgVector3D& end, bool snap) const
{
    if (!snap)
        return end;
    const KbgVector3D& from = _measure.from;
    const Measure m = measure(from, end);
    // Steeper than 45 degrees: straight down or up; otherwise level with the start.
    return std::fabs(m.dip) > 45.0 ? KbgVector3D(from.x(), from.y(), end.z()) : KbgVector3D(end.x(), end.y(), from.z());
}

void Vg3Ruler::_redraw()
{
    _points->point.set1Value(0, _toScene(_measure.from));
    _points->point.set1Value(1, _toScene(_measure.to));
}

void Vg3Ruler::_mouseCallback(void* data, SoEventCallback* node)
{
    auto self = static_cast<Vg3Ruler*>(data);
    if (self->_interactor->getInteractionMode() != Vg3SceneInteractor::RULER)
        return;
    const SoEvent* event = node->getEvent();
    const bool snap = self->_snap || event->wasShiftDown();
    if (event->isOfType(SoLocation2Event::getClassTypeId())) {
        if (!self->_drawing)
            return;
        if (const SoPickedPoint* picked = node->getPickedPoint())
            self->moveTo(self->_snapped(self->_toData(picked->getPoint()), snap));
        node->setHandled();
        return;
    }
    if (!SoMouseButtonEvent::isButtonPressEvent(event, SoMouseButtonEvent::BUTTON1))
        return;
    const SoPickedPoint* picked = node->getPickedPoint();
    if (!picked)
        self->setVisible(false);
    else if (self->_drawing)
        self->stop(self->_snapped(self->_toData(picked->getPoint()), snap));
    else
        self->start(self->_toData(picked->getPoint()));
    node->setHandled();
}
