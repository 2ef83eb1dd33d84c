#include "Vw3ViewExport.h"

#include "Vw3ImageFile.h"

#include <KbbDebug.h>

#include <Inventor/SoOutput.h>
#include <Inventor/actions/SoWriteAction.h>

#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QFileDialog>
#include <QImage>
#include <QSaveFile>
#include <QSettings>

#include <cstdlib>

namespace {

// The view's own translation context: these texts are the view's.
QString tr(const char* text) { return QCoreApplication::translate("Vw3AView", text); }

void* growBuffer(void* buffer, size_t size) { return std::realloc(buffer, size); }

} // namespace

QString Vw3ViewExport::askFileName(QWidget* parent, const QString& title, const QString& key, const QString& filter)
{
    QSettings settings;
    const QString fileName = QFileDialog::getSaveFileName(parent, title, settings.value(key).toString(), filter);
    if (!fileName.isEmpty())
        settings.setValue(key, fileName);
    return fileName;
}

bool Vw3ViewExport::saveImage(const QImage& image, const QString& fileName)
{
    QString error;
    if (!Vw3ImageFile::write(image, fileName, &error)) {
        // The usual words first, then what actually went wrong.
        QString message = tr("Error when saving view : File system full or write protected?");
        if (!error.isEmpty())
            message += QLatin1Char('\n') + error;
        KbbDebug::printWarning(message);
        return false;
    }
    KbbDebug::printInfo(tr("The view has been saved in %1.").arg(fileName));
    return true;
}

bool Vw3ViewExport::copyImage(const QImage& image)
{
    if (image.isNull())
        return false;
    QApplication::clipboard()->setImage(image);
    KbbDebug::printInfo(tr("The view has been copied to the clipboard."));
    return true;
}

bool Vw3ViewExport::saveScene(SoNode* root, const QString& fileName)
{
    SoOutput output;
    output.setBuffer(std::malloc(4096), 4096, &growBuffer);
    SoWriteAction writer(&output);
    writer.apply(root);
    void* buffer = nullptr;
    size_t size = 0;
    output.getBuffer(buffer, size);
    QSaveFile file(fileName);
    const bool ok = buffer && file.open(QIODevice::WriteOnly)
                    && file.write(static_cast<const char*>(buffer), qint64(size)) == qint64(size) && file.commit();
    std::free(buffer);
    output.resetBuffer();
    if (!ok)
        qWarning("Vw3AView::saveToIvFile: cannot write \"%s\"", qPrintable(fileName));
    return ok;
}
