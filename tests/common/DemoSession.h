#pragma once
// The demo as the tests that drive it like a user meet it: a fresh sample project in a
// temporary folder (made, not opened) and the demo's main window shown around it, with the
// demo's window factory installed. start() in a test's init(), stop() in its cleanup().
// Numbers are written in the C locale, and the preferences kept in the temporary folder, so
// that neither the machine's settings nor an earlier run change what a test sees.

#include "DemoMainWindow.h"
#include "DemoSampleProject.h"
#include "DemoWindowFactory.h"
#include "TestWindows.h"

#include <VupPreferenceRegistry.h>
#include <VwwWindowRegistry.h>

#include <QTemporaryDir>
#include <QTest>

#include <memory>

struct DemoSession
{
    QTemporaryDir dir;
    QString folder;
    std::unique_ptr<DemoMainWindow> main;

    DemoSession()
    {
        QLocale::setDefault(QLocale::c());
        VupPreferenceRegistry::getInstance()->setStorageFile(dir.filePath(QStringLiteral("preferences.ini")));
    }

    // False when the project cannot be made or the window is not shown.
    bool start(const QSize& size = QSize(1400, 900))
    {
        resetWindowFramework();
        static int count = 0;
        folder = dir.filePath(QStringLiteral("sample%1").arg(++count));
        QString message;
        if (!DemoSampleProject::ensure(folder, &message)) {
            qWarning("DemoSession::start: %s", qPrintable(message));
            return false;
        }
        VwwWindowRegistry::setWindowFactory(new DemoWindowFactory);
        main = std::make_unique<DemoMainWindow>();
        VwwWindowRegistry::setMainWindow(main.get());
        main->resize(size);
        main->show();
        // Exposed, not active: under Xvfb without a window manager nothing becomes active.
        return QTest::qWaitForWindowExposed(main.get());
    }

    void stop()
    {
        if (main)
            main->closeProject();
        VwwWindowRegistry::setMainWindow(nullptr);
        main.reset();
        resetWindowFramework();
    }

    bool open() { return main->openProject(folder, true); }
    bool reopen() { return main->closeProject() && open(); }

    // The first registered window of type W, or nullptr.
    template <class W>
    static W* window()
    {
        for (const auto& entry : VwwWindowRegistry::getInstance()->getWindows())
            if (auto* w = qobject_cast<W*>(entry.second.data()))
                return w;
        return nullptr;
    }
};
