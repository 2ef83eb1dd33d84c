#pragma once
// Files as the window framework's tests meet them: a project with a map, a 3D and a section
// scene, bytes written and read back, the saved windows of a "windows.xml", a file dialog
// answered as a user does, and work done from two threads at once.

#include <VsmModelScene.h>
#include <VssProject.h>
#include <VwwWindowRegistry.h>

#include <QApplication>
#include <QDomElement>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <thread>

namespace WindowFiles {

inline bool write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

inline QByteArray read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A saved project in `dir` with the scenes "Map" (2), and unless mapOnly "Volume" (3) and
// "Section" (4). Returns its folder.
inline QString makeProject(const QTemporaryDir& dir, bool mapOnly = false)
{
    static int count = 0;
    const QString folder = dir.filePath(QStringLiteral("project%1").arg(++count));
    auto project = VssProject::create(folder, QStringLiteral("Field %1").arg(count));
    project->getModelScene().createScene(QStringLiteral("Map"), 2);
    if (!mapOnly) {
        project->getModelScene().createScene(QStringLiteral("Volume"), 3);
        project->getModelScene().createScene(QStringLiteral("Section"), 4);
    }
    project->save();
    return folder;
}

inline QString windowsFile(const QString& folder)
{
    return folder + QStringLiteral("/database/windows.xml");
}

// The saved windows of a windows file; the workspace element goes to `workspace`.
inline VwwWindowRegistry::WindowData saved(const QString& path, QDomElement* workspace = nullptr)
{
    VwwWindowRegistry::WindowData data;
    QDomElement element;
    VwwWindowRegistry::readWindowsFile(path, data, element);
    if (workspace)
        *workspace = element;
    return data;
}

// Runs `work` while the process may not write files beyond `bytes`, as on a full disk: a
// write past it fails with EFBIG.
template <class F>
auto withFileSizeLimit(rlim_t bytes, F&& work)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit limit = old;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
    const auto result = work();
    setrlimit(RLIMIT_FSIZE, &old);
    return result;
}

// Answers the next file dialog as a user does: types the path and presses Return.
inline void answerFileDialog(const QString& path)
{
    auto* poll = new QTimer;
    poll->setInterval(10);
    QObject::connect(poll, &QTimer::timeout, [poll, path]() {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        poll->deleteLater();
        auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        edit->setText(path);
        QTest::keyClick(edit, Qt::Key_Return);
        if (dialog->isVisible()) // not accepted: give up rather than hang
            dialog->reject();
    });
    poll->start();
}

// Calls `say(i)` for i in [0, perThread) on a std::thread ("std") and on a QThread ("qt")
// at the same time, and waits for both.
inline void fromTwoThreads(int perThread, const std::function<void(const char* thread, int i)>& say)
{
    std::thread worker([&]() {
        for (int i = 0; i < perThread; ++i)
            say("std", i);
    });
    QThread* qthread = QThread::create([&]() {
        for (int i = 0; i < perThread; ++i)
            say("qt", i);
    });
    qthread->start();
    worker.join();
    qthread->wait();
    delete qthread;
}

// Makes and deletes a few windows of type W while another thread keeps saying something:
// the last ones must not be called from the thread after they died.
template <class W>
void windowsDieWhileAThreadSpeaks(const std::function<void()>& say)
{
    std::atomic<bool> stop{false};
    std::thread speaker([&]() {
        while (!stop)
            say();
    });
    for (int i = 0; i < 5; ++i) {
        auto* window = new W;
        QTest::qWait(1);
        delete window;
    }
    stop = true;
    speaker.join();
}

} // namespace WindowFiles
