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

    // Opens the project in the folder; on a first opening (no saved windows) the empty
    // displays show the project's first scenes. False, with a message box unless quiet,
    // when it cannot be opened.
    bool openProject(const QString& folder, bool quiet = false);
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
};
