#include "VwwReporterWindow.h"

#include <KbbDebug.h>
#include <KbeError.h>
#include <VssProject.h>
#include <VuaResourceProvider.h>
#include <VusFileUtils.h>
#include <VusSaveFile.h>

#include <QAction>
#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QMessageBox>
#include <QPageSize>
#include <QPdfWriter>
#include <QPixmap>
#include <QPointer>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCodec>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextImageFormat>
#include <QUrl>
#include <memory>

namespace {

const QString kReportFile = QStringLiteral("report.html");
// A report is text and a few screenshots; anything larger is not one of ours.
constexpr qint64 kMaxReportBytes = 64 * 1024 * 1024;
// Guards against an embedded image whose header claims a size that would exhaust memory.
constexpr qint64 kMaxImagePixels = 64 * 1024 * 1024;

// For the private class, which is no QObject: the same context as the window's own tr().
QString tr(const char* text)
{
    return QCoreApplication::translate("VwwReporterWindow", text);
}

QString nativePath(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

QString dataUri(const QImage& image)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        return QString();
    return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(png.toBase64());
}

QImage imageFromResource(const QVariant& resource)
{
    switch (resource.userType()) {
    case QMetaType::QImage: return resource.value<QImage>();
    case QMetaType::QPixmap: return resource.value<QPixmap>().toImage();
    case QMetaType::QByteArray: return QImage::fromData(resource.toByteArray());
    default: return QImage();
    }
}

// Decodes "data:[<type>][;base64],<data>" into an image; a null image when it is not one
// or when it claims a size beyond kMaxImagePixels.
QImage decodeDataUri(const QString& uri)
{
    const int comma = uri.indexOf(QLatin1Char(','));
    if (comma < 0)
        return QImage();
    const QStringRef header = uri.midRef(5, comma - 5); // after "data:"
    const QByteArray payload = uri.midRef(comma + 1).toLatin1();
    QByteArray bytes;
    if (header.endsWith(QLatin1String(";base64"), Qt::CaseInsensitive)) {
        const auto decoded = QByteArray::fromBase64Encoding(payload, QByteArray::AbortOnBase64DecodingErrors);
        if (!decoded)
            return QImage();
        bytes = *decoded;
    } else {
        bytes = QByteArray::fromPercentEncoding(payload);
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() > kMaxImagePixels)
        return QImage();
    return reader.read();
}

} // namespace

class VwwReporterWindowPrivate
{
public:
    QTextBrowser* view = nullptr;
    QAction* saveHtml = nullptr;
    QAction* savePdf = nullptr;
    QAction* clear = nullptr;
    QPointer<VssProject> project;
    int imageCount = 0;
    // Set when the project's report could not be read: until something is added, saving
    // leaves that file alone rather than replacing it with an empty report.
    bool keepDamagedFile = false;

    QTextDocument* document() const { return view->document(); }

    QString addImageResource(const QImage& image)
    {
        const QString name = QStringLiteral("report-image-%1").arg(++imageCount);
        document()->addResource(QTextDocument::ImageResource, QUrl(name), image);
        return name;
    }

    // A cursor at the start of a fresh paragraph at the end of the report.
    QTextCursor endCursor() const
    {
        QTextCursor cursor(document());
        cursor.movePosition(QTextCursor::End);
        if (!document()->isEmpty())
            cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
        return cursor;
    }

    void scrollToEnd() const
    {
        view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
    }

    void updateActions() const
    {
        const bool hasContent = !document()->isEmpty();
        saveHtml->setEnabled(hasContent);
        savePdf->setEnabled(hasContent);
        clear->setEnabled(hasContent);
    }

    QString reportPath() const
    {
        return project ? QDir(project->getDatabaseDirectory()).filePath(kReportFile) : QString();
    }

    // Replaces the report with the file's; on any fault, warns and leaves the report empty.
    void load(const QString& path);
    // The document shows resources, not data: URIs: each embedded image becomes a named
    // resource and its <img> points at that name. An image that cannot be decoded is
    // left as it was and described in *damaged.
    QString resolveDataImages(const QString& html, QString* damaged);
};

QString VwwReporterWindowPrivate::resolveDataImages(const QString& html, QString* damaged)
{
    static const QRegularExpression dataSrc(QStringLiteral("(\\bsrc\\s*=\\s*)([\"'])(data:[^\"']*)\\2"),
                                            QRegularExpression::CaseInsensitiveOption);
    QString rewritten;
    rewritten.reserve(html.size());
    int last = 0;
    QRegularExpressionMatchIterator it = dataSrc.globalMatch(html);
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        const QImage image = decodeDataUri(match.captured(3));
        if (image.isNull()) {
            if (damaged && damaged->isEmpty())
                *damaged = tr("an embedded image is damaged.");
            continue;
        }
        rewritten += html.midRef(last, match.capturedStart() - last);
        rewritten += match.captured(1) + QLatin1Char('"') + addImageResource(image) + QLatin1Char('"');
        last = match.capturedEnd();
    }
    rewritten += html.midRef(last);
    return rewritten;
}

void VwwReporterWindowPrivate::load(const QString& path)
{
    auto reject = [&](const QString& why) {
        // Aside, so that the new report is saved beside it; where it cannot be moved, it
        // stays and the report of this session is not saved over it.
        const QString kept = VusFileUtils::keepAside(path);
        keepDamagedFile = kept.isEmpty();
        KbbDebug::printWarning(
            tr("The report of the project could not be read from '%1': %2 The Reporter starts empty. %3")
                .arg(nativePath(path), why,
                     kept.isEmpty() ? tr("The file is left as it is.")
                                    : tr("The file is kept as '%1'.").arg(nativePath(kept))));
    };

    document()->clear();
    keepDamagedFile = false;

    QFile file(path);
    try {
        VusFileUtils::openForReading(file);
    } catch (const KbeError& e) {
        reject(e.getMessage());
        return;
    }
    if (file.size() > kMaxReportBytes) {
        reject(tr("the file is %1 MB, more than a report can hold (%2 MB).")
                   .arg(file.size() / (1024 * 1024))
                   .arg(kMaxReportBytes / (1024 * 1024)));
        return;
    }
    const QByteArray bytes = file.readAll();
    file.close();

    QTextCodec::ConverterState state;
    QString html = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || bytes.contains('\0')) {
        reject(tr("the file is damaged (it is not UTF-8 text)."));
        return;
    }

    QString damaged;
    const QString resolved = resolveDataImages(html, &damaged);
    html.clear();
    if (!damaged.isEmpty()) {
        document()->clear();
        reject(damaged);
        return;
    }
    document()->setHtml(resolved);
}

VwwReporterWindow::VwwReporterWindow(QWidget* parent)
    : VwwAWindow(VwwEWindowType::REPORTER, tr("Reporter"), Vua::Resource::HelpId(QStringLiteral("reporter")),
                 DOCKED, QSize(640, 480), Vua::Resource::iconReporter(), parent)
    , _d(std::make_unique<VwwReporterWindowPrivate>())
{
    _d->view = new QTextBrowser(this);
    _d->view->setObjectName(QStringLiteral("REPORTER_VIEW"));
    _d->view->setReadOnly(true);
    _d->view->setOpenLinks(false);
    setMainView(_d->view);

    _d->saveHtml = new QAction(VuaResourceProvider::getIcon(Vua::Resource::iconSave()), tr("Save as HTML..."), this);
    _d->saveHtml->setObjectName(QStringLiteral("REPORTER_SAVE_HTML"));
    _d->saveHtml->setToolTip(tr("Save the report as a web page with its images"));
    connect(_d->saveHtml, &QAction::triggered, this, [this]() { _saveFromDialog(false); });

    _d->savePdf = new QAction(VuaResourceProvider::getIcon(Vua::Resource::iconExport()), tr("Save as PDF..."), this);
    _d->savePdf->setObjectName(QStringLiteral("REPORTER_SAVE_PDF"));
    _d->savePdf->setToolTip(tr("Save the report as a PDF document"));
    connect(_d->savePdf, &QAction::triggered, this, [this]() { _saveFromDialog(true); });

    _d->clear = new QAction(VuaResourceProvider::getIcon(Vua::Resource::iconClear()), tr("Clear"), this);
    _d->clear->setObjectName(QStringLiteral("REPORTER_CLEAR"));
    _d->clear->setToolTip(tr("Remove everything from the report"));
    connect(_d->clear, &QAction::triggered, this, &VwwReporterWindow::clear);

    addToolbarAction(MAIN_TOOLBAR, _d->saveHtml);
    addToolbarAction(MAIN_TOOLBAR, _d->savePdf);
    addToolbarSeparator(MAIN_TOOLBAR);
    addToolbarAction(MAIN_TOOLBAR, _d->clear);

    connect(_d->document(), &QTextDocument::contentsChanged, this, [this]() { _d->updateActions(); });
    _d->updateActions();
}

VwwReporterWindow::~VwwReporterWindow() = default;

void VwwReporterWindow::appendText(const QString& text)
{
    QTextCursor cursor = _d->endCursor();
    cursor.insertText(text);
    _d->keepDamagedFile = false;
    _d->scrollToEnd();
}

void VwwReporterWindow::appendHtml(const QString& html)
{
    QString damaged;
    const QString resolved = _d->resolveDataImages(html, &damaged);
    if (!damaged.isEmpty())
        qWarning("VwwReporterWindow::appendHtml: %s", qPrintable(damaged));
    QTextCursor cursor = _d->endCursor();
    cursor.insertHtml(resolved);
    _d->keepDamagedFile = false;
    _d->scrollToEnd();
}

void VwwReporterWindow::appendImage(const QImage& image, const QString& caption)
{
    if (image.isNull()) {
        qWarning("VwwReporterWindow::appendImage: null image");
        return;
    }
    QTextImageFormat format;
    format.setName(_d->addImageResource(image));
    format.setWidth(image.width());
    format.setHeight(image.height());

    QTextCursor cursor = _d->endCursor();
    cursor.insertImage(format);
    if (!caption.isEmpty()) {
        QTextCharFormat captionFormat;
        captionFormat.setFontItalic(true);
        cursor.insertBlock(QTextBlockFormat(), captionFormat);
        cursor.insertText(caption, captionFormat);
    }
    _d->keepDamagedFile = false;
    _d->scrollToEnd();
}

void VwwReporterWindow::clear()
{
    // Clearing an empty report changes nothing, so it does not release a damaged file.
    if (!isEmpty())
        _d->keepDamagedFile = false;
    _d->document()->clear();
    _d->updateActions();
}

bool VwwReporterWindow::isEmpty() const
{
    return _d->document()->isEmpty();
}

QString VwwReporterWindow::toHtml() const
{
    const QTextDocument* source = _d->document();
    std::unique_ptr<QTextDocument> copy(source->clone());

    // Fragments are collected first: changing formats while walking would split them.
    struct Image
    {
        int position;
        int length;
        QTextImageFormat format;
    };
    QVector<Image> images;
    for (QTextBlock block = copy->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (fragment.isValid() && fragment.charFormat().isImageFormat())
                images.append({fragment.position(), fragment.length(), fragment.charFormat().toImageFormat()});
        }
    }
    for (Image& image : images) {
        if (image.format.name().startsWith(QLatin1String("data:")))
            continue;
        const QVariant resource = source->resource(QTextDocument::ImageResource, QUrl(image.format.name()));
        const QString uri = dataUri(imageFromResource(resource));
        if (uri.isEmpty())
            continue;
        image.format.setName(uri);
        QTextCursor cursor(copy.get());
        cursor.setPosition(image.position);
        cursor.setPosition(image.position + image.length, QTextCursor::KeepAnchor);
        cursor.setCharFormat(image.format);
    }
    return copy->toHtml("utf-8");
}

void VwwReporterWindow::saveAsHtml(const QString& path)
{
    VusSaveFile::save(path, toHtml().toUtf8());
}

void VwwReporterWindow::saveAsPdf(const QString& path)
{
    // Printed into memory first, so that the file is replaced in one step.
    QByteArray pdf;
    {
        QBuffer buffer(&pdf);
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter writer(&buffer);
        writer.setTitle(tr("Report"));
        writer.setCreator(QCoreApplication::applicationName());
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setResolution(300);
        _d->document()->print(&writer);
    }
    if (pdf.isEmpty())
        throw KbeError(tr("The report cannot be printed to '%1'.").arg(nativePath(path)));

    VusSaveFile::save(path, pdf);
}

void VwwReporterWindow::_saveFromDialog(bool pdf)
{
    const QString caption = pdf ? tr("Save the Report as PDF") : tr("Save the Report as HTML");
    const QString filter = pdf ? tr("PDF files (*.pdf)") : tr("HTML files (*.html *.htm)");
    QString path = QFileDialog::getSaveFileName(this, caption, QString(), filter);
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += pdf ? QStringLiteral(".pdf") : QStringLiteral(".html");
    try {
        if (pdf)
            saveAsPdf(path);
        else
            saveAsHtml(path);
    } catch (const KbeError& e) {
        QMessageBox::warning(this, tr("Reporter"), e.getMessage());
    }
}

QString VwwReporterWindow::getClassID() const
{
    return QStringLiteral("Reporter");
}

bool VwwReporterWindow::askForSave()
{
    return true;
}

void VwwReporterWindow::projectAboutToClose()
{
    clear();
    _d->project = nullptr;
}

void VwwReporterWindow::saveInProject()
{
    const QString path = _d->reportPath();
    if (path.isEmpty())
        return;
    if (_d->keepDamagedFile)
        return;
    // An empty report leaves no file behind, but does replace one that was there.
    if (isEmpty() && !QFileInfo::exists(path))
        return;
    saveAsHtml(path);
}

void VwwReporterWindow::projectOpened(VssProject& project)
{
    _d->project = &project;
    const QString path = _d->reportPath();
    if (QFileInfo::exists(path))
        _d->load(path);
    else
        clear();
    _d->updateActions();
    _d->scrollToEnd();
}
