#pragma once
// A main window that only records what the registry asks of it.

#include <VwmAMainWindow.h>
#include <VwwAWindow.h>

#include <QDomElement>
#include <QStringList>

class FakeMainWindow : public VwmAMainWindow
{
    Q_OBJECT
public:
    QStringList calls;
    QString workspaceText = QStringLiteral("layout");
    QString restoredText;

    void addWindow(VwwAWindow* window, bool docked) override
    {
        calls << QStringLiteral("add:%1:%2").arg(window->getTitle()).arg(docked ? "docked" : "floating");
    }
    void removeWindow(VwwAWindow* window) override { calls << QStringLiteral("remove:%1").arg(window->getTitle()); }
    void setActiveWindow(VwwAWindow* window) override { calls << QStringLiteral("activate:%1").arg(window->getTitle()); }
    void clearHiddenWindows() override { calls << QStringLiteral("clearHidden"); }
    void saveWorkspaceToXml(QDomElement& workspace) const override
    {
        workspace.setAttribute(QStringLiteral("text"), workspaceText);
    }
    void restoreWorkspaceFromXml(const QDomElement& workspace) override
    {
        restoredText = workspace.isNull() ? QStringLiteral("<null>") : workspace.attribute(QStringLiteral("text"));
        calls << QStringLiteral("restore");
    }
};
