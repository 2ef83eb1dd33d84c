#include "VwdProgressDialog.h"

#include <KbcProgress.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QProgressDialog>
#include <QThread>
#include <QTimer>

#include <exception>

bool VwdProgressDialog::run(QWidget* parent, const QString& title, const std::function<void(KbcProgress&)>& work)
{
    KbcProgress progress(title);
    std::exception_ptr failure;
    QEventLoop loop;
    QThread* worker = QThread::create([&] {
        try {
            work(progress);
        } catch (...) {
            failure = std::current_exception();
        }
    });
    QObject::connect(worker, &QThread::finished, &loop, &QEventLoop::quit);

    QProgressDialog dialog(title, QCoreApplication::translate("VwdProgressDialog", "Cancel"), 0, 1000, parent);
    dialog.setObjectName(QStringLiteral("VwdProgressDialog"));
    dialog.setWindowTitle(title);
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.setMinimumDuration(SHOW_AFTER_MS);
    dialog.setAutoReset(false);
    dialog.setAutoClose(false);
    QObject::connect(&dialog, &QProgressDialog::canceled, [&progress] { progress.requestStop(); });
    // setValue() starts the dialog's own clock: it shows once SHOW_AFTER_MS have passed.
    dialog.setValue(0);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        const double fraction = progress.getFraction();
        dialog.setMaximum(fraction < 0 ? 0 : 1000);
        if (fraction >= 0)
            dialog.setValue(qBound(1, int(fraction * 1000), 999));
    });
    poll.start(50);

    worker->start();
    // The dialog is modal, so only it takes input while the loop waits.
    if (!worker->isFinished())
        loop.exec();
    worker->wait();
    delete worker;
    poll.stop();
    dialog.reset();

    if (progress.isStopRequested())
        return false;
    if (failure)
        std::rethrow_exception(failure);
    return true;
}
