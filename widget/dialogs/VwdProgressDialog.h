#pragma once
// Runs long work (reading a large file, say) on a worker thread while the GUI stays alive.
// A modal progress dialog appears when the work takes more than a moment; its Cancel button
// (or Esc) asks the work to stop through its KbcProgress, which the work polls.
//
//   VsdPolygonSet set;
//   const bool done = VwdProgressDialog::run(window, tr("Reading the boundary"),
//                                            [&](KbcProgress& progress) { set = read(path, &progress); });
//
// run() returns true when the work finished, false when it was cancelled (what the work
// threw after the stop request is dropped); any other exception of the work is thrown
// again on the calling thread. The work must not touch widgets.

#include <velmora_widget_export.h>

#include <QString>
#include <functional>

class KbcProgress;
class QWidget;

class VELMORA_WIDGET_EXPORT VwdProgressDialog
{
public:
    // How long work runs before the dialog shows.
    static constexpr int SHOW_AFTER_MS = 400;

    static bool run(QWidget* parent, const QString& title, const std::function<void(KbcProgress&)>& work);

    VwdProgressDialog() = delete;
};
