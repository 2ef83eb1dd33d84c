#pragma once
// What the window registry asks of the application's main window: to take windows in
// (docked in the workspace or floating), to let them go, to bring one forward, and to
// keep its layout in the "workspace" element of "windows.xml".

#include <velmora_widget_export.h>

#include <QMainWindow>

class QDomElement;
class VwwAWindow;

class VELMORA_WIDGET_EXPORT VwmAMainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit VwmAMainWindow(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    ~VwmAMainWindow() override;

    // Takes the window in: docked in the workspace, or floating.
    virtual void addWindow(VwwAWindow* window, bool docked) = 0;
    // Lets the window go without deleting it; nothing happens for a window it does not hold.
    virtual void removeWindow(VwwAWindow* window) = 0;
    // Shows the window, brings it to the front and gives it the focus.
    virtual void setActiveWindow(VwwAWindow* window) = 0;
    // Forgets the places of windows that are gone or were hidden.
    virtual void clearHiddenWindows() = 0;
    // Writes the layout into the element, which belongs to a document.
    virtual void saveWorkspaceToXml(QDomElement& workspace) const = 0;
    // Restores a layout written by saveWorkspaceToXml(); a null or bad element keeps the
    // current layout.
    virtual void restoreWorkspaceFromXml(const QDomElement& workspace) = 0;
};
