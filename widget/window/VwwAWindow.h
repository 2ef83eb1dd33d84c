#pragma once
// Base of every top-level window: an identity (a process-unique id, a kind, a title, a
// help id and an icon id), the common frame (toolbar rows above the main view, a status
// bar below), registration with the window registry for its whole life, and the hooks
// through which the registry drives it when projects open, save and close and when its
// state is written to or read from the project's "windows.xml".
//
// Closing the window deletes it. F1 (the help action) opens the window's help topic.

#include <velmora_widget_export.h>

#include <KbbOrderedMap.h>
#include <VuaResource.h>
#include <VuoICalculatorListener.h>
#include <VwwEWindowType.h>

#include <QFrame>
#include <memory>

class QAbstractButton;
class QAction;
class QLayout;
class QMenu;
class QPushButton;
class QStatusBar;
class QToolBar;
class QToolButton;
class VssProject;
class VupPreferenceModif;

class VELMORA_WIDGET_EXPORT VwwAWindow : public QFrame, public VuoICalculatorListener
{
    Q_OBJECT
public:
    enum WindowFlag {
        REMOVABLE = 0x1, // the registry may delete it with its scene's display or the project
        DOCKED = 0x2,    // the main window docks it in the workspace; otherwise it floats
    };
    Q_DECLARE_FLAGS(WindowFlags, WindowFlag)

    // The toolbars. The first three share the top row, the last has a row of its own.
    enum ToolBarIdD {
        MAIN_TOOLBAR,
        VIEW_TOOLBAR,
        TOOLS_TOOLBAR,
        SECOND_ROW_TOOLBAR,
    };

    using Fields = KbbOrderedMap<QString, QString>;

    VwwAWindow(const VwwEWindowType& type, const QString& title, const Vua::Resource::HelpId& helpId,
               const QFlags<WindowFlag>& flags, const QSize& size, const Vua::Resource::IconId& iconId,
               QWidget* parent = nullptr);
    ~VwwAWindow() override;

    int getWindowID() const;
    const VwwEWindowType& whichWindowType() const;
    // With decorated, the title as shown: with the content's name and a modified mark.
    QString getTitle(bool decorated = false) const;
    const Vua::Resource::IconId& getIconId() const;
    const Vua::Resource::HelpId& getHelpId() const;
    bool isRemovable() const;
    bool isDockedByDefault() const;
    QSize sizeHint() const override;

    void setHelpId(const Vua::Resource::HelpId& helpId);
    QAction* getHelpAction() const;

    void setMainView(QWidget* view);
    void setMainView(QLayout* layout);
    QWidget* getMainView() const;

    QAction* addToolbarAction(ToolBarIdD id, QAction* action);
    void addToolbarActions(ToolBarIdD id, const QList<QAction*>& actions);
    // A tool button with the action and a drop-down menu; returns the button.
    QToolButton* addToolbarActionMenu(ToolBarIdD id, QAction* action, QMenu* menu);
    QAction* addToolbarSeparator(ToolBarIdD id);
    QAction* addToolbarSpacing(ToolBarIdD id, int pixels);
    QAction* addToolbarStretch(ToolBarIdD id);
    QAction* addToolbarWidget(ToolBarIdD id, QWidget* widget);
    QList<QAction*> getToolbarActions(ToolBarIdD id) const;
    QWidget* getWidgetFromAction(ToolBarIdD id, QAction* action) const;
    void hideToolbar(ToolBarIdD id, bool hide = true);
    // Takes the toolbar out of the frame; the caller owns it. Null when it has none.
    QToolBar* takeToolbar(ToolBarIdD id);
    void setToolBarIconSize(int size);

    void enableStatusBar(bool enable);
    void enableApply(bool enable);
    void enableAutoApply(bool enable);
    QPushButton* getApplyButton() const;
    QToolButton* getAutoApplyButton() const;

    // The hooks the registry calls.
    virtual const Vua::Resource::HelpId& getLayerPropertiesHelpId() const;
    virtual QString getClassID() const = 0;
    virtual void postGui();
    virtual bool askForClose();
    virtual bool askForSave() = 0;
    virtual bool isReadyToClose();
    virtual void projectAboutToClose() = 0;
    virtual void saveInProject() = 0;
    virtual void projectOpened(VssProject& project) = 0;
    virtual Fields serialize() const;
    virtual bool unserialize(const Fields& fields);
    virtual void lockModifyUpdate();
    virtual void unlockModifyUpdate();
    virtual void stylePreferenceChanged();
    virtual void unitPreferencesChanged();

    void calculatorHasStarted(KbcAProgress* progress) override;
    void calculatorHasFinished() override;

    QString getContentName() const;
    bool isContentModified() const;

public Q_SLOTS:
    void showStatusMessage(const QString& text, Qt::TextFormat format = Qt::AutoText);
    // Slots 0 to 3; an empty text hides the slot.
    void showStatusIndicator(const QString& text, int id);
    void showStatusIndicator1(const QString& text);
    void showStatusIndicator2(const QString& text);
    void showStatusIndicator3(const QString& text);
    void showStatusIndicator4(const QString& text);
    void updatePreference(const VupPreferenceModif& modif);
    void help();
    void setContentName(const QString& name);
    void setContentModified(bool modified);

Q_SIGNALS:
    void windowTitleUpdated();
    void closeWindow(VwwAWindow* window);
    void applyRequested();
    void autoApplyToggled(bool on);

protected:
    virtual QString _getUpdatedTitle(const QString& title) const;
    void closeEvent(QCloseEvent* event) override;

private:
    void _updateTitle();
    QToolBar* _toolbar(ToolBarIdD id);

    static int _count;
    std::unique_ptr<class VwwAWindowPrivate> const _d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(VwwAWindow::WindowFlags)
