#pragma once
// How a 3D view's picture and scene leave it: picture files, the clipboard and Inventor
// files, each reported in the log; and the file dialogs that remember the user's last file.

#include <QString>

class QImage;
class QWidget;
class SoNode;

namespace Vw3ViewExport {

// The file the user chose, starting from the last one chosen under `key`; empty when the
// user cancelled.
QString askFileName(QWidget* parent, const QString& title, const QString& key, const QString& filter);
bool saveImage(const QImage& image, const QString& fileName);
bool copyImage(const QImage& image);
// The graph under `root` as an Inventor text file, written aside and renamed.
bool saveScene(SoNode* root, const QString& fileName);

} // namespace Vw3ViewExport
