#pragma once
// Lets a user inspect and try out a widget's style sheet: shows the current sheet for
// editing beside the one kept when inspection began, applies the edited sheet to the live
// widget, and puts the kept one back. Ctrl+Return applies. Closes with its widget.

#include <velmora_widget_export.h>

#include <QDialog>
#include <memory>

class VELMORA_WIDGET_EXPORT VwhStyleSheetDialog : public QDialog
{
    Q_OBJECT
public:
    VwhStyleSheetDialog(QWidget* target, const QString& keptStyleSheet, QWidget* parent = nullptr);
    ~VwhStyleSheetDialog() override;

    QWidget* target() const;
    QString editedStyleSheet() const;
    const QString& keptStyleSheet() const;
    void setEditedStyleSheet(const QString& styleSheet);

public Q_SLOTS:
    // Sets the edited sheet on the widget.
    void apply();
    // Sets the kept sheet on the widget and in the editor.
    void restore();

private:
    std::unique_ptr<class VwhStyleSheetDialogPrivate> const _d;
};
