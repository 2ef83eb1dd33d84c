#pragma once
// Identifiers of the application's resources: help topics, icons and cursors. An icon id
// names an icon of the library's own set and, where it has one, the desktop theme's icon
// for the same thing, which VuaResourceProvider prefers. A cursor id names a cursor image
// of the set with its hot spot, or a standard cursor shape.

#include <velmora_util_export.h>

#include <QPoint>
#include <QString>
#include <Qt>

namespace Vua {
namespace Resource {

class HelpId
{
public:
    HelpId() = default;
    explicit HelpId(const QString& topic)
        : _topic(topic)
    {
    }
    const QString& getTopic() const { return _topic; }
    bool isNull() const { return _topic.isEmpty(); }
    bool operator==(const HelpId& o) const { return _topic == o._topic; }
    bool operator!=(const HelpId& o) const { return _topic != o._topic; }

private:
    QString _topic;
};

class IconId
{
public:
    IconId() = default;
    IconId(const QString& name, const QString& themeName)
        : _name(name)
        , _themeName(themeName)
    {
    }
    const QString& getName() const { return _name; }
    const QString& getThemeName() const { return _themeName; }
    bool isNull() const { return _name.isEmpty(); }
    bool operator==(const IconId& o) const { return _name == o._name; }
    bool operator!=(const IconId& o) const { return _name != o._name; }

private:
    QString _name;
    QString _themeName;
};

class CursorId
{
public:
    CursorId() = default;
    // An image of the set, 32 x 32 units, with its hot spot in those units.
    CursorId(const QString& name, const QPoint& hotSpot)
        : _name(name)
        , _hotSpot(hotSpot)
    {
    }
    // A standard cursor.
    explicit CursorId(Qt::CursorShape shape)
        : _shape(shape)
    {
    }
    const QString& getName() const { return _name; }
    const QPoint& getHotSpot() const { return _hotSpot; }
    Qt::CursorShape getShape() const { return _shape; }
    bool operator==(const CursorId& o) const { return _name == o._name && _shape == o._shape; }
    bool operator!=(const CursorId& o) const { return !(*this == o); }

private:
    QString _name;
    QPoint _hotSpot;
    Qt::CursorShape _shape = Qt::ArrowCursor;
};

// The cursors of the map's interaction modes.
VELMORA_UTIL_EXPORT CursorId cursorSelectVisor();
VELMORA_UTIL_EXPORT CursorId cursorZoomIn();
VELMORA_UTIL_EXPORT CursorId cursorZoomOut();
VELMORA_UTIL_EXPORT CursorId cursorZoomBox();
VELMORA_UTIL_EXPORT CursorId cursorDefault();

// The icons of the library's own set.
VELMORA_UTIL_EXPORT IconId iconReporter();
VELMORA_UTIL_EXPORT IconId iconDisplay2D();
VELMORA_UTIL_EXPORT IconId iconDisplay3D();
VELMORA_UTIL_EXPORT IconId iconSection();
VELMORA_UTIL_EXPORT IconId iconMessages();
VELMORA_UTIL_EXPORT IconId iconDebug();
VELMORA_UTIL_EXPORT IconId iconSpreadsheet();
VELMORA_UTIL_EXPORT IconId iconWindow();
VELMORA_UTIL_EXPORT IconId iconHelp();
VELMORA_UTIL_EXPORT IconId iconOpen();
VELMORA_UTIL_EXPORT IconId iconSave();
VELMORA_UTIL_EXPORT IconId iconClose();
VELMORA_UTIL_EXPORT IconId iconClear();
VELMORA_UTIL_EXPORT IconId iconExport();
VELMORA_UTIL_EXPORT IconId iconApply();
VELMORA_UTIL_EXPORT IconId iconInfo();
VELMORA_UTIL_EXPORT IconId iconWarning();
VELMORA_UTIL_EXPORT IconId iconError();
VELMORA_UTIL_EXPORT IconId iconAutomaticState();
VELMORA_UTIL_EXPORT IconId iconAutomaticSetValue();
VELMORA_UTIL_EXPORT IconId iconLockState();
VELMORA_UTIL_EXPORT IconId iconStyleSheet();
VELMORA_UTIL_EXPORT IconId iconFileNew();

// The map view's tools: its modes and zoom commands, and its decoration switches.
VELMORA_UTIL_EXPORT IconId iconZoomHand();
VELMORA_UTIL_EXPORT IconId iconZoomBox();
VELMORA_UTIL_EXPORT IconId iconZoomIn();
VELMORA_UTIL_EXPORT IconId iconZoomOut();
VELMORA_UTIL_EXPORT IconId iconZoomCenterView();
VELMORA_UTIL_EXPORT IconId iconZoomViewAll();
VELMORA_UTIL_EXPORT IconId iconZoomOnLayer();
VELMORA_UTIL_EXPORT IconId iconZoomUndo();
VELMORA_UTIL_EXPORT IconId iconZoomRedo();
VELMORA_UTIL_EXPORT IconId iconViewerLineRuler();
VELMORA_UTIL_EXPORT IconId iconViewerPolygonRuler();
VELMORA_UTIL_EXPORT IconId iconViewerCompass();
VELMORA_UTIL_EXPORT IconId iconViewerScaleBar();
VELMORA_UTIL_EXPORT IconId iconViewerGrid();
VELMORA_UTIL_EXPORT IconId iconViewerAxes();

} // namespace Resource
} // namespace Vua
