#pragma once
// The application's main window: every registered window lives in a dock of its own,
// docked windows tabbed together on the right and the others floating; the layout is
// kept in the project's workspace element, keyed by class id and rank so that it survives
// new window ids. Keys: Ctrl+F6 / Ctrl+Shift+F6 the next / previous window, Ctrl+W closes
// the active one; a dock's close button closes its window.

#include <velmora_widget_export.h>

#include <VwmAMainWindow.h>

#include <memory>

class QMenu;

class VELMORA_WIDGET_EXPORT VwmMainWindow : public VwmAMainWindow
{
    Q_OBJECT
public:
    explicit VwmMainWindow(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    // Detaches from the registry first, then deletes the windows it holds.
    ~VwmMainWindow() override;

    void addWindow(VwwAWindow* window, bool docked) override;
    void removeWindow(VwwAWindow* window) override;
    void setActiveWindow(VwwAWindow* window) override;
    void clearHiddenWindows() override;
    void saveWorkspaceToXml(QDomElement& workspace) const override;
    void restoreWorkspaceFromXml(const QDomElement& workspace) override;

    // The window that last had the focus or was activated; null when none is.
    VwwAWindow* activeWindow() const;
    // The "Window" menu: the open windows, cycling, closing, the messages and debug windows.
    QMenu* windowMenu() const;

Q_SIGNALS:
    void activeWindowChanged(VwwAWindow* window);

private:
    void _setActive(VwwAWindow* window);
    void _activateNext(int step);
    void _closeActive();
    void _connectModel();
    void _rebuildWindowList();
    void _syncWindowActions();
    void _updatePlaceholder();
    void _placeFloating(class QDockWidget* dock, const QSize& size);
    void _discardDock(class QDockWidget* dock);
    class QDockWidget* _tabAnchor() const;
    class QDockWidget* _dockOf(const VwwAWindow* window) const;

    std::unique_ptr<class VwmMainWindowPrivate> const _d;
};
