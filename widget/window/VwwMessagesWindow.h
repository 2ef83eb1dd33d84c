#pragma once
// The application's messages: every information, warning and error printed through
// KbbDebug, with its time and level, from any thread. The toolbar filters by level and
// clears the list; Ctrl+C copies the selected rows as tab-separated text.

#include <velmora_widget_export.h>

#include <KbbDebug.h>
#include <VwwAWindow.h>

#include <memory>

class VELMORA_WIDGET_EXPORT VwwMessagesWindow : public VwwAWindow
{
    Q_OBJECT
public:
    // The oldest messages are dropped beyond this count.
    static constexpr int MAX_MESSAGES = 10000;

    explicit VwwMessagesWindow(QWidget* parent = nullptr);
    ~VwwMessagesWindow() override;

    // Debug messages are not shown and are ignored.
    void addMessage(KbbDebug::Level level, const QString& text);
    // All kept messages, whatever the filter shows.
    int messageCount() const;
    void clear();

    // The least severe level shown; Debug and Info both show everything.
    void setMinimumLevel(KbbDebug::Level level);
    KbbDebug::Level minimumLevel() const;

    // The selected rows, one per line: time, level and text separated by tabs.
    QString selectedText() const;
    void copySelection() const;

    QString getClassID() const override;
    bool askForSave() override;
    void projectAboutToClose() override;
    void saveInProject() override;
    void projectOpened(VssProject& project) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::unique_ptr<class VwwMessagesWindowPrivate> const _d;
};
