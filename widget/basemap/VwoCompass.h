#pragma once
// A north arrow with an "N" in the canvas's top-right corner. On a projected map it
// points to true north at the canvas's centre, which leans away from the grid's up by the
// meridian convergence (west of up east of the central meridian in the northern
// hemisphere); on geographic and local maps, and wherever the point does not convert, it
// points straight up.

#include <VwoADecoration.h>

#include <KbuUnit.h>
#include <VuuCoordSystem.h>

#include <QCoreApplication>

#include <memory>

class VELMORA_WIDGET_EXPORT VwoCompass : public VwoADecoration
{
    Q_DECLARE_TR_FUNCTIONS(VwoCompass)

public:
    // The height of the arrow with its letter, in logical pixels.
    static constexpr double HEIGHT = 40.0;

    // `unit` is the unit of the map's coordinates, which may differ from the system's
    // own (a UTM map shown in kilometres).
    explicit VwoCompass(const VuuCoordSystem& system = VuuCoordSystem(),
                        const KbuUnit& unit = KbuUnit::fromKey(QStringLiteral("m")));
    ~VwoCompass() override;

    int rtti() const override;

    void setCoordSystem(const VuuCoordSystem& system);
    const VuuCoordSystem& getCoordSystem() const;
    void setUnit(const KbuUnit& unit);
    const KbuUnit& getUnit() const;

    // The direction of true north at a point of the map, in degrees clockwise from the
    // map's up (the y axis); 0 when it cannot be told.
    double northAngleAt(const QPointF& mapPoint) const;

    void render(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                const QRectF& canvasRect) const override;

private:
    bool _pointNorthOf(const QPointF& mapPoint, QPointF& north) const;

    std::unique_ptr<class VwoCompassPrivate> const _d;
};
