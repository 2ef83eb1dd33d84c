#include "VuaResourceProvider.h"

#include <QDebug>
#include <QFile>
#include <QGuiApplication>
#include <QPixmap>
#include <QHash>

namespace {

struct ProviderState
{
    bool useTheme = true;
    VuaResourceProvider::HelpHandler help;
    QHash<QString, QIcon> cache;
};

ProviderState& state()
{
    static ProviderState s;
    return s;
}

} // namespace

namespace Vua {
namespace Resource {
IconId iconReporter() { return {QStringLiteral("reporter"), QStringLiteral("x-office-document")}; }
IconId iconDisplay2D() { return {QStringLiteral("display-2d"), QStringLiteral("applications-graphics")}; }
IconId iconDisplay3D() { return {QStringLiteral("display-3d"), QString()}; }
IconId iconSection() { return {QStringLiteral("section"), QString()}; }
IconId iconMessages() { return {QStringLiteral("messages"), QStringLiteral("dialog-information")}; }
IconId iconDebug() { return {QStringLiteral("debug"), QStringLiteral("utilities-terminal")}; }
IconId iconSpreadsheet() { return {QStringLiteral("spreadsheet"), QStringLiteral("x-office-spreadsheet")}; }
IconId iconWindow() { return {QStringLiteral("window"), QStringLiteral("window-new")}; }
IconId iconHelp() { return {QStringLiteral("help"), QStringLiteral("help-contents")}; }
IconId iconOpen() { return {QStringLiteral("open"), QStringLiteral("document-open")}; }
IconId iconSave() { return {QStringLiteral("save"), QStringLiteral("document-save")}; }
IconId iconClose() { return {QStringLiteral("close"), QStringLiteral("window-close")}; }
IconId iconClear() { return {QStringLiteral("clear"), QStringLiteral("edit-clear")}; }
IconId iconExport() { return {QStringLiteral("export"), QStringLiteral("document-save-as")}; }
IconId iconApply() { return {QStringLiteral("apply"), QStringLiteral("dialog-ok-apply")}; }
IconId iconInfo() { return {QStringLiteral("info"), QStringLiteral("dialog-information")}; }
IconId iconWarning() { return {QStringLiteral("warning"), QStringLiteral("dialog-warning")}; }
IconId iconError() { return {QStringLiteral("error"), QStringLiteral("dialog-error")}; }
// No theme names: the desktop themes have no icon that means "automatic value", and a
// theme's padlock would not match the other two.
IconId iconAutomaticState() { return {QStringLiteral("automatic-state"), QString()}; }
IconId iconAutomaticSetValue() { return {QStringLiteral("automatic-set-value"), QString()}; }
IconId iconLockState() { return {QStringLiteral("lock-state"), QString()}; }
IconId iconStyleSheet() { return {QStringLiteral("css"), QStringLiteral("text-css")}; }
CursorId cursorSelectVisor() { return {QStringLiteral("cursor-select-visor"), QPoint(16, 16)}; }
CursorId cursorZoomIn() { return {QStringLiteral("cursor-zoom-in"), QPoint(13, 13)}; }
CursorId cursorZoomOut() { return {QStringLiteral("cursor-zoom-out"), QPoint(13, 13)}; }
CursorId cursorZoomBox() { return {QStringLiteral("cursor-zoom-box"), QPoint(4, 4)}; }
CursorId cursorDefault() { return CursorId(Qt::ArrowCursor); }
IconId iconFileNew() { return {QStringLiteral("new"), QStringLiteral("document-new")}; }
// Only the theme icons that mean exactly the command; the zoom undo and redo are not the
// edit undo and redo, and the modes without a standard icon keep the set's own.
IconId iconZoomHand() { return {QStringLiteral("zoom-hand"), QString()}; }
IconId iconZoomBox() { return {QStringLiteral("zoom-box"), QString()}; }
IconId iconZoomIn() { return {QStringLiteral("zoom-in"), QStringLiteral("zoom-in")}; }
IconId iconZoomOut() { return {QStringLiteral("zoom-out"), QStringLiteral("zoom-out")}; }
IconId iconZoomCenterView() { return {QStringLiteral("zoom-center-view"), QString()}; }
IconId iconZoomViewAll() { return {QStringLiteral("zoom-view-all"), QStringLiteral("zoom-fit-best")}; }
IconId iconZoomOnLayer() { return {QStringLiteral("zoom-on-layer"), QString()}; }
IconId iconZoomUndo() { return {QStringLiteral("zoom-undo"), QString()}; }
IconId iconZoomRedo() { return {QStringLiteral("zoom-redo"), QString()}; }
IconId iconViewerLineRuler() { return {QStringLiteral("viewer-line-ruler"), QString()}; }
IconId iconViewerPolygonRuler() { return {QStringLiteral("viewer-polygon-ruler"), QString()}; }
IconId iconViewerCompass() { return {QStringLiteral("viewer-compass"), QString()}; }
IconId iconViewerScaleBar() { return {QStringLiteral("viewer-scale-bar"), QString()}; }
IconId iconViewerGrid() { return {QStringLiteral("viewer-grid"), QString()}; }
IconId iconViewerAxes() { return {QStringLiteral("viewer-axes"), QString()}; }
} // namespace Resource
} // namespace Vua

QIcon VuaResourceProvider::getIcon(const Vua::Resource::IconId& id)
{
    if (id.isNull())
        return QIcon();
    auto& s = state();
    const auto cached = s.cache.constFind(id.getName());
    if (cached != s.cache.cend())
        return *cached;

    QIcon icon;
    if (s.useTheme && !id.getThemeName().isEmpty() && QIcon::hasThemeIcon(id.getThemeName()))
        icon = QIcon::fromTheme(id.getThemeName());
    if (icon.isNull()) {
        const QString path = QStringLiteral(":/velmora/icons/%1.svg").arg(id.getName());
        if (QFile::exists(path))
            icon = QIcon(path);
        else
            qDebug() << "VuaResourceProvider::getIcon: no icon for" << id.getName();
    }
    s.cache.insert(id.getName(), icon);
    return icon;
}

QCursor VuaResourceProvider::getCursor(const Vua::Resource::CursorId& id)
{
    if (id.getName().isEmpty())
        return QCursor(id.getShape());
    const QString path = QStringLiteral(":/velmora/icons/%1.svg").arg(id.getName());
    if (!QFile::exists(path)) {
        qDebug() << "VuaResourceProvider::getCursor: no cursor for" << id.getName();
        return QCursor(Qt::ArrowCursor);
    }
    // Sharp on high-DPI screens: drawn at the device size, hot spot in logical units.
    const qreal ratio = qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
    QPixmap pixmap = QIcon(path).pixmap(QSize(32, 32) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    return QCursor(pixmap, id.getHotSpot().x(), id.getHotSpot().y());
}

void VuaResourceProvider::setUseThemeIcons(bool use)
{
    if (state().useTheme == use)
        return;
    state().useTheme = use;
    state().cache.clear();
}

void VuaResourceProvider::setHelpHandler(HelpHandler handler)
{
    state().help = std::move(handler);
}

void VuaResourceProvider::showHelp(const Vua::Resource::HelpId& id)
{
    if (state().help)
        state().help(id);
    else
        qInfo() << "VuaResourceProvider::showHelp: no help viewer for" << id.getTopic();
}
