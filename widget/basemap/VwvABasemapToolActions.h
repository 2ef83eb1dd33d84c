#pragma once
// The base of every group of map commands: a set of QActions, plain commands and
// checkable modes, attached to one map view. The group follows the view's scene, current
// layer, zoom and mode, and re-enables its actions after each change (_update()). A mode
// carries what choosing it does: a view mode handed to the view, or, for a mode the group
// handles itself, no view mode and the _modeActivated() / _modeDeactivated() hooks.
//
// Shortcuts: every command and mode has Qt::WidgetWithChildrenShortcut and is added to the
// view widget, so a shortcut works while the focus is in that map and nowhere else. A
// window may put the same actions in its tool bars and menus (they show the shortcut
// there), and several map windows may be open at once without ambiguous shortcuts.

#include <velmora_widget_export.h>

#include <VuaResource.h>
#include <VwViewMode.h>

#include <QKeySequence>
#include <QObject>
#include <QStringList>
#include <memory>

class QAction;
class QWidget;
class VugScene;
class VwvBasemapView;

class VELMORA_WIDGET_EXPORT VwvABasemapToolActions : public QObject
{
    Q_OBJECT
public:
    ~VwvABasemapToolActions() override;

    virtual QString getId() const = 0;

    // Null detaches the group; its actions are then disabled. An active group stops first.
    void setView(VwvBasemapView* view);
    VwvBasemapView* getView() const;
    VugScene* getScene() const;
    // The view's current layer, by scene item id; empty, and rank -1, when there is none.
    QString getCurrentLayerId() const;
    int getCurrentLayerRank() const;

    // Commands and widget actions, in the order they were made.
    QAction* getAction(const QString& id) const;
    QStringList getActionIds() const;
    // The checkable modes, in the order they were made.
    QAction* getMode(const QString& id) const;
    QStringList getModeIds() const;
    // The view mode the mode hands to the view; NO_MODE for a mode the group handles itself.
    Vw::ViewMode getModeViewMode(const QString& modeId) const;
    // The group's mode that hands this view mode to the view; empty when none does.
    QString findModeForViewMode(Vw::ViewMode mode) const;
    // The mode activate() chooses when it is given none; empty by default.
    virtual QString getDefaultStartMode() const;

    bool isActive() const;
    QString getActiveMode() const;
    // Chooses the mode (the default start mode for an empty id): its action is checked, its
    // view mode goes to the view, and started() is sent when the group was inactive. An
    // unknown id is refused with a warning and false.
    bool activate(const QString& modeId = QString());
    // Ends the active mode and sends stopped(); nothing happens when the group is inactive.
    void deactivate();

Q_SIGNALS:
    // Sent by activate() before anything changes, so that other groups can end their modes
    // first (the tool manager listens).
    void activationRequested(const QString& modeId);
    void started();
    void stopped();

protected:
    explicit VwvABasemapToolActions(QObject* parent = nullptr);

    // The tool tip gets the shortcut appended. An id already used in the group is refused
    // with a warning and null.
    QAction* _addAction(const QString& id, const Vua::Resource::IconId& icon, const QString& text,
                        const QString& toolTip, const QKeySequence& shortcut = QKeySequence());
    QAction* _addMode(const QString& id, Vw::ViewMode viewMode, const Vua::Resource::IconId& icon,
                      const QString& text, const QString& toolTip, const QKeySequence& shortcut = QKeySequence());
    // A mode the group handles itself in _modeActivated() / _modeDeactivated().
    QAction* _addMode(const QString& id, const Vua::Resource::IconId& icon, const QString& text,
                      const QString& toolTip, const QKeySequence& shortcut = QKeySequence());
    // The action takes the widget; it is placed in tool bars only and has no shortcut.
    QAction* _addWidgetAction(const QString& id, QWidget* widget);

    virtual void _currentLayerAboutToChange();
    virtual void _currentLayerChanged();
    virtual void _modeActivated(const QString& modeId);
    virtual void _modeDeactivated(const QString& modeId);
    // After any change of view, scene, current layer, zoom or mode; the base has already
    // enabled every action when there is a view (disabled them otherwise) and checked the
    // active mode.
    virtual void _update();

private:
    QAction* _register(const QString& id, QAction* action, bool isMode, const QKeySequence& shortcut,
                       const QString& toolTip);
    void _followView();
    void _viewDestroyed();
    void _setScene(VugScene* scene);
    void _refresh();

    std::unique_ptr<class VwvABasemapToolActionsPrivate> const _d;
};
