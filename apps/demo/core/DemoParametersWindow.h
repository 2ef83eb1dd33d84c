#pragma once
// The demo's form of value editors: each kind of editor in each of its states (normal,
// embedded, read-only, automatic as a toggle, automatic as a reset button, locked), with
// bounds, undefined values and units, and a log of every signal they send. The toolbar
// switches the bounds and undefined values of the number editors, clears the log and
// opens the style-sheet inspector on the form.

#include <VwwAWindow.h>

#include <QList>

class QPlainTextEdit;
class VwaAWidget;
class VwaDouble;

class DemoParametersWindow : public VwwAWindow
{
    Q_OBJECT
public:
    explicit DemoParametersWindow(QWidget* parent = nullptr);
    ~DemoParametersWindow() override;

    static QString classId();
    QString getClassID() const override;
    bool askForSave() override { return true; }
    void projectAboutToClose() override {}
    void saveInProject() override {}
    void projectOpened(VssProject&) override {}

    // The editor in a row ("length", "variance", "azimuth", "count", "method", "variable")
    // and a column ("normal", "embedded", "readOnly", "automatic", "reset", "locked").
    VwaAWidget* editor(const QString& row, const QString& column) const;
    QPlainTextEdit* log() const;

    static const QStringList& rows();
    static const QStringList& columns();

private:
    VwaAWidget* _makeEditor(int row, int column);
    void _watch(VwaAWidget* editor);
    void _log(const VwaAWidget* editor, const QString& what);
    void _setBoundsDefined(bool defined);
    void _setUndefineEnabled(bool enabled);

    QPlainTextEdit* _logView = nullptr;
    QList<VwaDouble*> _doubles;
};
