#pragma once
// The Reporter: a read-only report to which the application appends text, HTML and
// images, saved as self-contained HTML (images embedded) or as PDF, and kept with the
// project in "report.html" in its database folder so that it comes back when it opens.

#include <velmora_widget_export.h>

#include <VwwAWindow.h>

#include <memory>

class QImage;

class VELMORA_WIDGET_EXPORT VwwReporterWindow : public VwwAWindow
{
    Q_OBJECT
public:
    explicit VwwReporterWindow(QWidget* parent = nullptr);
    ~VwwReporterWindow() override;

    // Each append starts a new paragraph at the end of the report.
    void appendText(const QString& text);
    void appendHtml(const QString& html);
    // A null image is refused; the caption, when given, goes below it.
    void appendImage(const QImage& image, const QString& caption = QString());
    void clear();
    bool isEmpty() const;

    // Self-contained HTML: the images are embedded as base64 data: URIs.
    QString toHtml() const;
    // Both throw KbeError when the file cannot be written; the previous file stays whole.
    void saveAsHtml(const QString& path);
    void saveAsPdf(const QString& path);

    QString getClassID() const override;
    bool askForSave() override;
    void projectAboutToClose() override;
    void saveInProject() override;
    void projectOpened(VssProject& project) override;

private:
    void _saveFromDialog(bool pdf);

    std::unique_ptr<class VwwReporterWindowPrivate> const _d;
};
