#pragma once
// Keeps the modes of all the map's command groups exclusive: choosing a mode of one group
// ends the active mode of any other (which sends stopped()) before the chosen group starts.
// When the view's mode changes by itself (Escape goes back to panning), the mode that
// hands that view mode to the view is chosen; when none does, every group stops.
// The manager belongs to its view; it does not own the groups.

#include <velmora_widget_export.h>

#include <QObject>
#include <memory>

class QAction;
class VwvABasemapToolActions;
class VwvBasemapView;

class VELMORA_WIDGET_EXPORT VwvBasemapToolManager : public QObject
{
    Q_OBJECT
public:
    // The view is the manager's parent.
    explicit VwvBasemapToolManager(VwvBasemapView* view);
    ~VwvBasemapToolManager() override;

    VwvBasemapView* getView() const;

    // Attaches the group to the view and takes up the view's current mode. Refused with a
    // warning (false) for null, a group already added, or a group whose id or one of whose
    // action or mode ids another group already uses.
    bool addTool(VwvABasemapToolActions* tool);
    QList<VwvABasemapToolActions*> getTools() const;
    // Search every group; null for an unknown id.
    QAction* getToolAction(const QString& id) const;
    QAction* getToolMode(const QString& id) const;
    // The group whose mode is chosen; null when none is.
    VwvABasemapToolActions* getActiveTool() const;

private:
    void _toolActivating(VwvABasemapToolActions* tool);
    void _followViewMode();

    std::unique_ptr<class VwvBasemapToolManagerPrivate> const _d;
};
