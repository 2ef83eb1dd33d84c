#include "Demo3DWindow.h"

#include "DemoMapData.h"
#include "DemoSampleProject.h"

#include <KbbDebug.h>
#include <KbbStringFormat.h>
#include <KbgRotation.h>
#include <KbgVector3D.h>
#include <Vg3GridSurfaceNode.h>
#include <Vg3PointSetNode.h>
#include <Vg3Ruler.h>
#include <VsdGrid.h>
#include <VsdPointSet.h>
#include <VsmModelScene.h>
#include <VsoSceneIdentifier.h>
#include <VuaResourceProvider.h>
#include <VugCameraState.h>
#include <VugColorScale.h>
#include <VugDatasetStore.h>
#include <Vw3ExaminerView.h>

#include <Inventor/SoPickedPoint.h>

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <QtMath>

#include <algorithm>

namespace {

const QString kCameraField = QStringLiteral("camera");
const QString kZScaleField = QStringLiteral("zScale");
const QString kSamplesItem = QStringLiteral("Samples (porosity)");
const QString kSurfaceItem = QStringLiteral("Thickness surface");
// The field is 1 km wide and some 30 m thick: without exaggeration the surface is flat.
constexpr float kDefaultZScale = 10.0f;
constexpr float kZScales[] = {1.0f, 2.0f, 5.0f, 10.0f, 20.0f, 50.0f};

// The thickness grid as the depth of the reservoir's base, which is where the samples lie.
VsdGrid baseSurface(const VsdGrid& thickness)
{
    VsdGrid base(thickness);
    QVector<double> values = thickness.values();
    for (double& v : values)
        if (!VugColorScale::isUndefinedValue(v))
            v = -1200.0 - v;
    base.setValues(values);
    return base;
}

} // namespace

Demo3DWindow::Demo3DWindow(VssProject* project, QWidget* parent)
    : VwwASceneWindow(VstTransactableInfo{project, tr("3D display")}, VugESceneType::VIEW_3D, tr("3D display"),
                      Vua::Resource::HelpId(QStringLiteral("display")), Vua::Resource::iconDisplay3D(), true, parent)
{
    _view = new Vw3ExaminerView;
    // Near the field's centre, so that Inventor's floats keep the samples' centimetres.
    const QPointF centre = DemoSampleProject::fieldExtent().center();
    _view->setOffset(KbgVector3D(centre.x(), centre.y(), -1200.0));
    // A first look from the south-south-east, 35 degrees above the field, reads as 3D at
    // once; a saved camera replaces it.
    const KbgRotation tilt(KbgVector3D(1, 0, 0), qDegreesToRadians(55.0));
    const KbgRotation turn(KbgVector3D(0, 0, 1), qDegreesToRadians(25.0));
    _view->setCameraOrientation(turn * tilt);
    _items = new QListWidget;
    _items->setObjectName(QStringLiteral("SCENE_ITEMS"));
    _items->setToolTip(tr("Tick an item to show it."));

    auto* sidePanel = new QWidget;
    auto* side = new QVBoxLayout(sidePanel);
    side->setContentsMargins(0, 0, 0, 0);
    side->addWidget(new QLabel(tr("Items:")));
    side->addWidget(_items, 1);
    // What the ruler measured, in the field's metres, or what a pick found.
    auto* readout = new QLabel;
    readout->setObjectName(QStringLiteral("VIEW_READOUT"));
    readout->setWordWrap(true);
    readout->setTextInteractionFlags(Qt::TextSelectableByMouse);
    side->addWidget(readout);
    connect(_view->getRuler(), &Vg3Ruler::measured, readout,
            [readout](const Vg3Ruler::Measure& m) { readout->setText(m.toText(tr("m"))); });
    connect(_view->getRuler(), &Vg3Ruler::visibilityChanged, readout, [readout](bool visible) {
        if (!visible)
            readout->clear();
    });
    connect(_view, &Vw3AView::picked, readout, [this, readout](Vu::SelectionFlag, const SoPickedPoint* point, bool&) {
        readout->setText(_view->describePick(point).join(QLatin1Char('\n')));
    });
    auto* help = new QLabel(Vw3AView::getBindingsHelp());
    help->setWordWrap(true);
    side->addWidget(help);
    sidePanel->setFixedWidth(fontMetrics().horizontalAdvance(QLatin1Char('x')) * 28);
    auto* layout = new QHBoxLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_view, 1);
    layout->addWidget(sidePanel);
    setMainView(layout);

    for (auto action : {Vw3AView::VIEW_ALL, Vw3AView::VIEW_TOP, Vw3AView::VIEW_BOTTOM, Vw3AView::VIEW_EAST,
                        Vw3AView::VIEW_WEST, Vw3AView::VIEW_NORTH, Vw3AView::VIEW_SOUTH, Vw3AView::PROJECTION,
                        Vw3AView::FULLSCREEN})
        addToolbarAction(VIEW_TOOLBAR, _view->getAction(action));
    for (auto action : {Vw3AView::AXES, Vw3AView::GNOMON, Vw3AView::COMPASS, Vw3AView::LEGEND, Vw3AView::INVERT_COLORS})
        addToolbarAction(TOOLS_TOOLBAR, _view->getAction(action));
    addToolbarSeparator(TOOLS_TOOLBAR);
    for (auto mode : {Vw3AView::VIEWING_MODE, Vw3AView::PICKING_MODE, Vw3AView::RULER_MODE})
        addToolbarAction(TOOLS_TOOLBAR, _view->getMode(mode));
    addToolbarSeparator(TOOLS_TOOLBAR);
    for (auto action : {Vw3AView::IMAGE, Vw3AView::CLIPBOARD, Vw3AView::SAVE_IV_FILE})
        addToolbarAction(TOOLS_TOOLBAR, _view->getAction(action));

    _exaggeration = new QComboBox;
    _exaggeration->setObjectName(QStringLiteral("Z_SCALE"));
    _exaggeration->setToolTip(tr("Vertical exaggeration"));
    for (float z : kZScales)
        _exaggeration->addItem(tr("z × %1").arg(double(z)), double(z));
    addToolbarWidget(TOOLS_TOOLBAR, _exaggeration);
    connect(_exaggeration, QOverload<int>::of(&QComboBox::activated), this,
            [this](int index) { _setZScale(float(_exaggeration->itemData(index).toDouble())); });
    _setZScale(kDefaultZScale);

    connect(_items, &QListWidget::itemChanged, this, &Demo3DWindow::_itemChanged);
    connect(DemoMapData::getInstance(), &DemoMapData::aboutToRelease, this, &Demo3DWindow::_release);
    _sceneChanged();
}

Demo3DWindow::~Demo3DWindow()
{
    _release();
}

QString Demo3DWindow::getClassID() const
{
    return QStringLiteral("Display3D");
}

VwwAWindow::Fields Demo3DWindow::serialize() const
{
    Fields fields = VwwASceneWindow::serialize();
    fields.insert(kCameraField, _view->getCameraState().toString());
    fields.insert(kZScaleField, QString::number(double(_view->getZScale())));
    return fields;
}

bool Demo3DWindow::unserialize(const Fields& fields)
{
    bool ok = false;
    const double zScale = fields.value(kZScaleField).toDouble(&ok);
    if (ok && zScale > 0)
        _setZScale(float(zScale));
    Vug::CameraState camera;
    const QString cameraText = fields.value(kCameraField);
    if (!cameraText.isEmpty() && !Vug::CameraState::fromString(cameraText, camera))
        KbbDebug::printWarning(tr("The saved camera of the 3D display cannot be read ('%1'); the scene is framed "
                                  "instead.").arg(cameraText));
    // The scene is set below and frames itself; the saved camera goes over that.
    const bool restored = VwwASceneWindow::unserialize(fields);
    if (camera.isValid() && !cameraText.isEmpty())
        _view->setCameraState(camera);
    return restored;
}

QStringList Demo3DWindow::shownItems() const
{
    QStringList names;
    for (int i = 0; i < _items->count(); ++i)
        if (_items->item(i)->checkState() == Qt::Checked)
            names.append(_items->item(i)->text());
    return names;
}

void Demo3DWindow::_release()
{
    for (auto& entry : _nodes)
        _view->removeNode(entry.second.get());
    _nodes.clear();
    const QSignalBlocker quiet(_items);
    _items->clear();
}

void Demo3DWindow::_sceneChanged()
{
    _release();
    const VsoSceneIdentifier& id = getScene();
    const VsmModelScene* model = id.getModel();
    const VsmScene* scene = model ? model->getScene(id.getId()) : nullptr;
    VugDatasetStore* datasets = scene ? DemoMapData::getInstance()->getDatasets() : nullptr;
    if (!scene || !datasets) {
        showStatusMessage(tr("No scene is shown. Open one from the Scenes menu."));
        return;
    }
    const VsdPointSet* samples = datasets->pointSet(DemoMapData::SAMPLES_KEY);
    const VsdGrid* thickness = datasets->grid(DemoMapData::GRID_KEY);
    for (const QString& name : scene->items) {
        std::unique_ptr<Vg3ANode> node;
        if (name == kSurfaceItem && thickness) {
            VugColorScale scale = VugColorScale::rainbow();
            scale.fitTo(thickness->values());
            auto surface = std::make_unique<Vg3GridSurfaceNode>(tr("Thickness surface"));
            surface->setData(baseSurface(*thickness), *thickness, scale);
            node = std::move(surface);
        } else if (name == kSamplesItem && samples) {
            const QString variable = QStringLiteral("porosity");
            VugColorScale scale = VugColorScale::viridis();
            scale.fitTo(samples->variable(variable));
            auto points = std::make_unique<Vg3PointSetNode>(tr("Samples (porosity)"));
            points->setData(*samples, variable, scale);
            node = std::move(points);
            _view->setLegend(scale, tr("Porosity"), KbbStringFormat(KbbStringFormat::FIXED, 3));
        }
        auto* row = new QListWidgetItem(name, _items);
        if (!node) {
            // An item the demo cannot draw stays listed, greyed, so the scene reads whole.
            row->setFlags(row->flags() & ~Qt::ItemIsEnabled);
            row->setToolTip(tr("The 3D display cannot draw this item."));
            continue;
        }
        row->setFlags(row->flags() | Qt::ItemIsUserCheckable);
        {
            const QSignalBlocker quiet(_items);
            row->setCheckState(Qt::Checked);
        }
        _view->addNode(node.get(), true);
        _nodes.emplace_back(name, std::move(node));
    }
    _view->setZScale(_view->getZScale());
    _view->viewAll();
    showStatusMessage(QString());
    setContentName(id.getName());
}

void Demo3DWindow::_itemChanged(QListWidgetItem* row)
{
    for (auto& entry : _nodes)
        if (entry.first == row->text())
            _view->setNodeVisibility(entry.second.get(), row->checkState() == Qt::Checked);
}

void Demo3DWindow::_setZScale(float zScale)
{
    _view->setZScale(zScale);
    const QSignalBlocker quiet(_exaggeration);
    int best = 0;
    for (int i = 0; i < _exaggeration->count(); ++i)
        if (std::abs(_exaggeration->itemData(i).toDouble() - zScale) <
            std::abs(_exaggeration->itemData(best).toDouble() - zScale))
            best = i;
    _exaggeration->setCurrentIndex(best);
}

bool Demo3DWindow::exportImage(const QString& fileName)
{
    return _view->saveImage(fileName);
}
