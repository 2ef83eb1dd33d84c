#include "DemoDisplayWindow.h"

#include <VsmModelScene.h>
#include <VuaResourceProvider.h>

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace {
Vua::Resource::IconId iconFor(const VugESceneType& type)
{
    if (type == VugESceneType::VIEW_3D)
        return Vua::Resource::iconDisplay3D();
    if (type == VugESceneType::SECTION)
        return Vua::Resource::iconSection();
    return Vua::Resource::iconDisplay2D();
}

QString titleFor(const VugESceneType& type)
{
    if (type == VugESceneType::VIEW_3D)
        return DemoDisplayWindow::tr("3D display");
    if (type == VugESceneType::SECTION)
        return DemoDisplayWindow::tr("Section display");
    return DemoDisplayWindow::tr("2D display");
}
} // namespace

DemoDisplayWindow::DemoDisplayWindow(const VugESceneType& sceneType, VssProject* project, QWidget* parent)
    : VwwASceneWindow(VstTransactableInfo{project, titleFor(sceneType)}, sceneType, titleFor(sceneType),
                      Vua::Resource::HelpId(QStringLiteral("display")), iconFor(sceneType), true, parent)
{
    auto* view = new QWidget;
    auto* layout = new QVBoxLayout(view);
    _heading = new QLabel(view);
    _heading->setObjectName(QStringLiteral("SCENE_NAME"));
    _heading->setWordWrap(true);
    _items = new QListWidget(view);
    _items->setObjectName(QStringLiteral("SCENE_ITEMS"));
    layout->addWidget(_heading);
    layout->addWidget(_items, 1);
    setMainView(view);
    _sceneChanged();
}

DemoDisplayWindow::~DemoDisplayWindow() = default;

QString DemoDisplayWindow::classIdFor(const VugESceneType& sceneType)
{
    if (sceneType == VugESceneType::VIEW_3D)
        return QStringLiteral("Display3D");
    if (sceneType == VugESceneType::SECTION)
        return QStringLiteral("DisplaySection");
    return QStringLiteral("Display2D");
}

QString DemoDisplayWindow::getClassID() const
{
    return classIdFor(getSceneType());
}

QStringList DemoDisplayWindow::shownItems() const
{
    QStringList items;
    for (int i = 0; i < _items->count(); ++i)
        items.append(_items->item(i)->text());
    return items;
}

void DemoDisplayWindow::_sceneChanged()
{
    _items->clear();
    const VsoSceneIdentifier& scene = getScene();
    const VsmModelScene* model = scene.getModel();
    const VsmScene* data = model ? model->getScene(scene.getId()) : nullptr;
    if (!data) {
        _heading->setText(tr("No scene is shown. Open one from the Scenes menu."));
        showStatusMessage(QString());
        return;
    }
    _heading->setText(tr("<b>%1</b> (%2)").arg(data->name.toHtmlEscaped(), getSceneType().getLabel()));
    for (const QString& item : data->items)
        _items->addItem(new QListWidgetItem(VuaResourceProvider::getIcon(getIconId()), item));
    const int count = data->items.size();
    showStatusMessage(count == 1 ? tr("1 item in the scene") : tr("%1 items in the scene").arg(count));
}

void DemoDisplayWindow::connectGps(QObject* gpsDialog, const char* enabledSignal, const char*, const char*,
                                   const char* positionSignal, bool connect)
{
    if (!gpsDialog)
        return;
    if (connect) {
        QObject::connect(gpsDialog, enabledSignal, this, SLOT(_gpsEnabled(bool)));
        QObject::connect(gpsDialog, positionSignal, this, SLOT(_gpsPosition(QPointF, bool)));
    } else {
        QObject::disconnect(gpsDialog, enabledSignal, this, SLOT(_gpsEnabled(bool)));
        QObject::disconnect(gpsDialog, positionSignal, this, SLOT(_gpsPosition(QPointF, bool)));
    }
}

void DemoDisplayWindow::_gpsEnabled(bool enabled)
{
    showStatusIndicator(enabled ? tr("GPS on") : QString(), 0);
}

void DemoDisplayWindow::_gpsPosition(const QPointF& position, bool valid)
{
    showStatusIndicator(valid ? tr("GPS %1, %2").arg(position.x(), 0, 'f', 1).arg(position.y(), 0, 'f', 1)
                              : tr("GPS: no fix"),
                        1);
}
