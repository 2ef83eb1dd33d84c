#include "VwvBasemapLayer.h"

#include "VwqBasemapPlot.h"
#include "VwvBasemapImageItem.h"

#include <cmath>

class VwvBasemapLayerPrivate
{
public:
    QPointer<VwqBasemapPlot> plot;
    VwvBasemapImageItem* item = nullptr; // attached to the plot while both live
    QString itemId;
    QString datasetKey;
    QString subDatasetKey;
    QString subItemId;
    bool labelVisible = false;
    VuuCoordSystem viewSystem = VuuCoordSystem::local();
    VuuCoordSystem datasetSystem = VuuCoordSystem::local();
};

VwvBasemapLayer::VwvBasemapLayer(VwqBasemapPlot* plot, std::shared_ptr<const VwvIBasemapRenderer> renderer,
                                 QObject* parent)
    : QObject(parent)
    , _d(new VwvBasemapLayerPrivate)
{
    _d->plot = plot;
    _d->item = new VwvBasemapImageItem;
    _d->item->setRenderer(std::move(renderer));
    if (plot)
        plot->addPlotItem(_d->item);
}

VwvBasemapLayer::~VwvBasemapLayer()
{
    // The plot deletes the items still attached when it goes first.
    if (_d->plot) {
        _d->item->detach();
        delete _d->item;
    }
}

VwqBasemapPlot* VwvBasemapLayer::getPlot() const
{
    return _d->plot;
}

VwvBasemapImageItem* VwvBasemapLayer::getPlotItem() const
{
    return _d->plot ? _d->item : nullptr;
}

std::shared_ptr<const VwvIBasemapRenderer> VwvBasemapLayer::getRenderer() const
{
    return _d->plot ? _d->item->getRenderer() : nullptr;
}

void VwvBasemapLayer::setRenderer(std::shared_ptr<const VwvIBasemapRenderer> renderer)
{
    if (!_d->plot)
        return;
    _d->item->setRenderer(std::move(renderer));
    draw();
}

QString VwvBasemapLayer::getTitle() const
{
    return _d->plot ? _d->item->title().text() : QString();
}

void VwvBasemapLayer::setTitle(const QString& title)
{
    if (_d->plot)
        _d->item->setTitle(title);
}

bool VwvBasemapLayer::isVisible() const
{
    return _d->plot && _d->item->isVisible();
}

void VwvBasemapLayer::setVisible(bool visible)
{
    if (!_d->plot || _d->item->isVisible() == visible)
        return;
    _d->item->setVisible(visible);
    draw();
}

double VwvBasemapLayer::getZ() const
{
    return _d->plot ? _d->item->z() : 0.0;
}

void VwvBasemapLayer::setZ(double z)
{
    if (_d->plot)
        _d->item->setZ(z);
}

const QString& VwvBasemapLayer::getSceneItemId() const { return _d->itemId; }
void VwvBasemapLayer::setSceneItemId(const QString& itemId) { _d->itemId = itemId; }
const QString& VwvBasemapLayer::getDatasetKey() const { return _d->datasetKey; }
const QString& VwvBasemapLayer::getSubDatasetKey() const { return _d->subDatasetKey; }

void VwvBasemapLayer::setDatasetKeys(const QString& datasetKey, const QString& subDatasetKey)
{
    _d->datasetKey = datasetKey;
    _d->subDatasetKey = subDatasetKey;
}

bool VwvBasemapLayer::isLabelVisible() const { return _d->labelVisible; }

void VwvBasemapLayer::setLabelVisible(bool visible)
{
    if (_d->labelVisible == visible)
        return;
    _d->labelVisible = visible;
    draw();
}

const QString& VwvBasemapLayer::getCurrentSubItemId() const { return _d->subItemId; }

void VwvBasemapLayer::setCurrentSubItemId(const QString& subItemId)
{
    if (_d->subItemId == subItemId)
        return;
    _d->subItemId = subItemId;
    emit highlightChanged(this);
}

void VwvBasemapLayer::setCoordinateSystems(const VuuCoordSystem& view, const VuuCoordSystem& dataset)
{
    _d->viewSystem = view;
    _d->datasetSystem = dataset;
}

const VuuCoordSystem& VwvBasemapLayer::getViewCoordSystem() const { return _d->viewSystem; }
const VuuCoordSystem& VwvBasemapLayer::getDatasetCoordSystem() const { return _d->datasetSystem; }

bool VwvBasemapLayer::_toDataset(QPointF& point) const
{
    return _d->viewSystem == _d->datasetSystem || VuuCoordSystem::convert(_d->viewSystem, _d->datasetSystem, point);
}

bool VwvBasemapLayer::_toView(QPointF& point) const
{
    return _d->viewSystem == _d->datasetSystem || VuuCoordSystem::convert(_d->datasetSystem, _d->viewSystem, point);
}

double VwvBasemapLayer::_toleranceInDataset(const QPointF& viewPoint) const
{
    const double inView = PICK_TOLERANCE_PIXELS * (_d->plot ? _d->plot->getFactorPixelToSize() : 0.0);
    if (_d->viewSystem == _d->datasetSystem)
        return inView;
    // The same distance measured in the dataset's system, where the point is.
    QPointF a = viewPoint;
    QPointF b = viewPoint + QPointF(inView, 0.0);
    if (!_toDataset(a) || !_toDataset(b))
        return -1.0;
    return std::hypot(b.x() - a.x(), b.y() - a.y());
}

QRectF VwvBasemapLayer::boundingRect() const
{
    const auto renderer = getRenderer();
    QRectF rect = renderer ? renderer->boundingRect() : QRectF();
    if (rect.isNull() || _d->viewSystem == _d->datasetSystem)
        return rect;
    return VuuCoordSystem::convert(_d->datasetSystem, _d->viewSystem, rect) ? rect : QRectF();
}

int VwvBasemapLayer::pointToRank(const QPointF& viewPoint) const
{
    const auto renderer = getRenderer();
    QPointF point = viewPoint;
    const double tolerance = _toleranceInDataset(viewPoint);
    if (!renderer || tolerance < 0.0 || !_toDataset(point))
        return -1;
    return renderer->pointToRank(point, tolerance);
}

KbiIntervalIntSmallDisjoint VwvBasemapLayer::rectangleToRank(const QRectF& viewRect) const
{
    const auto renderer = getRenderer();
    QRectF rect = viewRect.normalized();
    if (!renderer)
        return {};
    if (_d->viewSystem != _d->datasetSystem && !VuuCoordSystem::convert(_d->viewSystem, _d->datasetSystem, rect))
        return {};
    return renderer->rectangleToRank(rect);
}

KbiIntervalIntSmallDisjoint VwvBasemapLayer::polygonToRanks(const QPolygonF& viewPolygon) const
{
    const auto renderer = getRenderer();
    if (!renderer)
        return {};
    QPolygonF polygon = viewPolygon;
    for (QPointF& p : polygon)
        if (!_toDataset(p))
            return {};
    return renderer->polygonToRanks(polygon);
}

bool VwvBasemapLayer::snapToPoints(QPointF& viewPoint) const
{
    const int rank = pointToRank(viewPoint);
    if (rank < 0)
        return false;
    QPointF snapped = getRenderer()->rankPosition(rank);
    if (!std::isfinite(snapped.x()) || !std::isfinite(snapped.y()) || !_toView(snapped))
        return false;
    viewPoint = snapped;
    return true;
}

KbiIntervalIntSmallDisjoint VwvBasemapLayer::getSelection() const
{
    const auto renderer = getRenderer();
    return renderer ? renderer->selection() : KbiIntervalIntSmallDisjoint();
}

void VwvBasemapLayer::mask(int rank, Vu::SelectionFlag flag)
{
    if (rank < 0) {
        qWarning("VwvBasemapLayer::mask: the rank %d is refused", rank);
        return;
    }
    mask(KbiIntervalIntSmallDisjoint(rank), flag);
}

void VwvBasemapLayer::mask(const KbiIntervalIntSmallDisjoint& ranks, Vu::SelectionFlag flag)
{
    const auto renderer = getRenderer();
    if (!renderer)
        return;
    // The renderer keeps the ranks it has samples for: those are the ones that count.
    auto replaced = renderer->withSelection(ranks);
    if (!replaced)
        return;
    const KbiIntervalIntSmallDisjoint valid = replaced->selection();
    if (valid != ranks) {
        qWarning("VwvBasemapLayer::mask: the ranks %s are beyond the layer's samples and left out",
                 qUtf8Printable((ranks - valid).toString()));
        if (valid.isEmpty())
            return;
    }

    const KbiIntervalIntSmallDisjoint current = renderer->selection();
    KbiIntervalIntSmallDisjoint next;
    switch (flag) {
    case Vu::SELECT: next = current | valid; break;
    case Vu::DESELECT: next = current - valid; break;
    case Vu::TOGGLE: next = (current - valid) | (valid - current); break;
    case Vu::REPLACE: next = valid; break;
    default:
        qWarning("VwvBasemapLayer::mask: unknown selection flag %d", int(flag));
        return;
    }
    if (next == current)
        return;
    if (flag != Vu::REPLACE)
        replaced = renderer->withSelection(next);
    setRenderer(std::move(replaced));
    emit sampleSelectionChanged(this);
}

void VwvBasemapLayer::clearSelection()
{
    mask(KbiIntervalIntSmallDisjoint(), Vu::REPLACE);
}

void VwvBasemapLayer::draw()
{
    if (_d->plot)
        _d->plot->replot();
}
