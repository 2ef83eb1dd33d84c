#include "VwwDebugWindow.h"

#include <KbeError.h>
#include <VuaResourceProvider.h>

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QMessageBox>
#include <QMutex>
#include <QPlainTextEdit>
#include <QSaveFile>
#include <QVector>
#include <cstring>
#include <deque>
#include <functional>

namespace {

// A window that wants new lines. Lines gather in pending until the queued call that takes
// them runs on the window's thread, so a burst of log costs one call, not one per line.
struct Listener
{
    QObject* window = nullptr;
    QStringList pending;
    std::function<void(const QStringList&)> append;
};

struct LogState
{
    QMutex mutex;
    std::deque<QString> lines;
    QVector<Listener> listeners;
    bool installed = false;
    // Read and written under the mutex only (see messageHandler).
    QtMessageHandler previous = nullptr;
};

// Never destroyed: the handler may be called while static objects are torn down.
LogState& logState()
{
    static LogState* const state = new LogState;
    return *state;
}

// Set while this thread is inside the handler: something that logs from in there must not
// take the lock a second time.
thread_local bool insideHandler = false;

const char* typeName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg: return "debug";
    case QtInfoMsg: return "info";
    case QtWarningMsg: return "warning";
    case QtCriticalMsg: return "critical";
    case QtFatalMsg: return "fatal";
    }
    return "debug";
}

QString formatLine(QtMsgType type, const char* category, const QString& text)
{
    QString line = QLatin1String(typeName(type));
    if (category && std::strcmp(category, "default") != 0)
        line += QStringLiteral(" [%1]").arg(QLatin1String(category));
    return line + QStringLiteral(": ") + text;
}

void takePending(QObject* window)
{
    LogState& state = logState();
    QStringList lines;
    std::function<void(const QStringList&)> append;
    {
        QMutexLocker lock(&state.mutex);
        for (Listener& listener : state.listeners) {
            if (listener.window == window) {
                lines.swap(listener.pending);
                append = listener.append;
                break;
            }
        }
    }
    if (append && !lines.isEmpty())
        append(lines);
}

void messageHandler(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    LogState& state = logState();
    // Inside the handler already, the outer call on this thread holds the lock.
    QtMessageHandler previous = insideHandler ? state.previous : nullptr;
    if (!insideHandler) {
        insideHandler = true;
        const QString line = formatLine(type, context.category, text);
        QMutexLocker lock(&state.mutex);
        state.lines.push_back(line);
        while (state.lines.size() > size_t(VwwDebugWindow::MAX_LINES))
            state.lines.pop_front();
        for (Listener& listener : state.listeners) {
            listener.pending.append(line);
            // A busy GUI thread must not let the queue outgrow what the window keeps.
            if (listener.pending.size() > VwwDebugWindow::MAX_LINES)
                listener.pending.removeFirst();
            if (listener.pending.size() == 1) {
                QObject* window = listener.window;
                QMetaObject::invokeMethod(window, [window]() { takePending(window); }, Qt::QueuedConnection);
            }
        }
        previous = state.previous;
        lock.unlock();
        insideHandler = false;
    }
    if (previous)
        previous(type, context, text);
}

} // namespace

class VwwDebugWindowPrivate
{
public:
    QPlainTextEdit* view = nullptr;
    QAction* clear = nullptr;
    QAction* save = nullptr;
};

void VwwDebugWindow::installMessageHandler()
{
    LogState& state = logState();
    QMutexLocker lock(&state.mutex);
    if (state.installed)
        return;
    state.installed = true;
    state.previous = qInstallMessageHandler(messageHandler);
}

QStringList VwwDebugWindow::logLines()
{
    LogState& state = logState();
    QMutexLocker lock(&state.mutex);
    QStringList lines;
    lines.reserve(int(state.lines.size()));
    for (const QString& line : state.lines)
        lines.append(line);
    return lines;
}

VwwDebugWindow::VwwDebugWindow(QWidget* parent)
    : VwwAWindow(VwwEWindowType::DEBUG_WINDOW, tr("Debug"), Vua::Resource::HelpId(QStringLiteral("debug")), DOCKED,
                 QSize(640, 300), Vua::Resource::iconDebug(), parent)
    , _d(std::make_unique<VwwDebugWindowPrivate>())
{
    installMessageHandler();

    _d->view = new QPlainTextEdit(this);
    _d->view->setObjectName(QStringLiteral("DEBUG_VIEW"));
    _d->view->setReadOnly(true);
    _d->view->setLineWrapMode(QPlainTextEdit::NoWrap);
    _d->view->setMaximumBlockCount(MAX_LINES);
    _d->view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setMainView(_d->view);

    _d->save = new QAction(VuaResourceProvider::getIcon(Vua::Resource::iconSave()), tr("Save log..."), this);
    _d->save->setObjectName(QStringLiteral("DEBUG_SAVE"));
    _d->save->setToolTip(tr("Save the log shown to a text file"));
    connect(_d->save, &QAction::triggered, this, [this]() {
        QString path = QFileDialog::getSaveFileName(this, tr("Save the Log"), QString(),
                                                    tr("Log files (*.log *.txt)"));
        if (path.isEmpty())
            return;
        if (QFileInfo(path).suffix().isEmpty())
            path += QStringLiteral(".log");
        try {
            saveLog(path);
        } catch (const KbeError& e) {
            QMessageBox::warning(this, tr("Debug"), e.getMessage());
        }
    });
    addToolbarAction(MAIN_TOOLBAR, _d->save);

    _d->clear = new QAction(VuaResourceProvider::getIcon(Vua::Resource::iconClear()), tr("Clear"), this);
    _d->clear->setObjectName(QStringLiteral("DEBUG_CLEAR"));
    _d->clear->setToolTip(tr("Remove every line of the log"));
    connect(_d->clear, &QAction::triggered, this, &VwwDebugWindow::clear);
    addToolbarAction(MAIN_TOOLBAR, _d->clear);

    // The copy and the registration happen under one lock, so that no line is shown twice
    // or lost between them; the text is set after it, as setting it may log.
    QStringList lines;
    {
        LogState& state = logState();
        QMutexLocker lock(&state.mutex);
        for (const QString& line : state.lines)
            lines.append(line);
        state.listeners.append(Listener{this, QStringList(), [this](const QStringList& l) { _appendLines(l); }});
    }
    _d->view->setPlainText(lines.join(QLatin1Char('\n')));
    _d->view->moveCursor(QTextCursor::End);
}

VwwDebugWindow::~VwwDebugWindow()
{
    // Lines queued for this window are dropped with it when QObject's destructor runs.
    LogState& state = logState();
    QMutexLocker lock(&state.mutex);
    for (int i = 0; i < state.listeners.size(); ++i) {
        if (state.listeners[i].window == this) {
            state.listeners.remove(i);
            break;
        }
    }
}

void VwwDebugWindow::_appendLines(const QStringList& lines)
{
    QPlainTextEdit* view = _d->view;
    if (view->document()->isEmpty())
        view->setPlainText(lines.join(QLatin1Char('\n')));
    else
        view->appendPlainText(lines.join(QLatin1Char('\n')));
}

void VwwDebugWindow::saveLog(const QString& path) const
{
    QSaveFile file(path);
    QString text = _d->view->toPlainText();
    if (!text.isEmpty())
        text += QLatin1Char('\n');
    const QByteArray bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text) || file.write(bytes) != bytes.size() || !file.commit())
        throw KbeError(
            tr("The log cannot be saved to '%1': %2").arg(QDir::toNativeSeparators(path), file.errorString()));
}

void VwwDebugWindow::clear()
{
    _d->view->clear();
    LogState& state = logState();
    QMutexLocker lock(&state.mutex);
    state.lines.clear();
    for (Listener& listener : state.listeners)
        if (listener.window == this)
            listener.pending.clear();
}

QString VwwDebugWindow::getClassID() const
{
    return QStringLiteral("Debug");
}

bool VwwDebugWindow::askForSave()
{
    return true;
}

void VwwDebugWindow::projectAboutToClose() {}
void VwwDebugWindow::saveInProject() {}
void VwwDebugWindow::projectOpened(VssProject&) {}
