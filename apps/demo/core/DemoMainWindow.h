#pragma once
// The demo's main window: the library's main window with the menus that open, save and
// close projects, open the scenes of the project, add to the Reporter and show the
// form of value editors.

#include <VwmMainWindow.h>

class DemoParametersWindow;
class QMenu;

class DemoMainWindow : public VwmMainWindow
{
    Q_OBJECT
public:
    explicit DemoMainWindow(QWidget* parent = nullptr);
    ~DemoMainWindow() override;

    // Opens the project in the folder; the empty displays show the project's first scenes.
    // False, with a message box unless quiet, when it cannot be opened; what could not be
    // read of it is shown once too.
    bool openProject(const QString& folder, bool quiet = false);
    // Saves and closes the project. When saving fails, asks whether to close all the same
    // (a project opened quietly closes, with a warning); false when the user keeps it open.
    bool closeProject();
    // Opens the form of value editors, or brings it to the front.
    DemoParametersWindow* showParameters();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void _updateScenesMenu();
    void _updateTitle();
    void _showFirstScenes();
    void _addSummaryToReport();
    void _failed(const QString& message, bool quiet);

    QMenu* _scenesMenu = nullptr;
    bool _quiet = false;
};
