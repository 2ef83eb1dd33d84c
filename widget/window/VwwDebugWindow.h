#pragma once
// The Qt log of the running application. installMessageHandler() keeps the last
// MAX_LINES lines of the log in a process-wide buffer (and still passes every message to
// the handler installed before, so stderr keeps it); the window shows that buffer and
// then each new line, whatever thread logged it.

#include <velmora_widget_export.h>

#include <VwwAWindow.h>

#include <QStringList>
#include <memory>

class VELMORA_WIDGET_EXPORT VwwDebugWindow : public VwwAWindow
{
    Q_OBJECT
public:
    static constexpr int MAX_LINES = 5000;

    explicit VwwDebugWindow(QWidget* parent = nullptr);
    ~VwwDebugWindow() override;

    // Installs the handler once; later calls do nothing. Safe before QApplication exists.
    static void installMessageHandler();
    // The buffered lines, oldest first: "<type>: <text>" or "<type> [<category>]: <text>".
    static QStringList logLines();

    // The lines shown, as a text file; throws KbeError when it cannot be written.
    void saveLog(const QString& path) const;
    // Empties the window and the buffer.
    void clear();

    QString getClassID() const override;
    bool askForSave() override;
    void projectAboutToClose() override;
    void saveInProject() override;
    void projectOpened(VssProject& project) override;

private:
    void _appendLines(const QStringList& lines);

    std::unique_ptr<class VwwDebugWindowPrivate> const _d;
};
