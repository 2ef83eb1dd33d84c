#pragma once
// A list model of the open windows, in the order they were added: the title as display
// text, the icon as decoration, and the kind and id under their own roles. Titles follow
// the windows' windowTitleUpdated() signal. Rows are added while a window is still being
// constructed, so the model reads nothing of it that a subclass provides.

#include <velmora_widget_export.h>

#include <QAbstractListModel>
#include <memory>

class VwwAWindow;

class VELMORA_WIDGET_EXPORT VwwWindowModel : public QAbstractListModel
{
    Q_OBJECT
public:
    enum Role {
        WindowIdRole = Qt::UserRole + 1, // int
        WindowTypeRole,                  // the kind's key, QString
        WindowTypeLabelRole,             // the kind's label, QString
    };

    explicit VwwWindowModel(QObject* parent = nullptr);
    ~VwwWindowModel() override;

    void addWindow(VwwAWindow* window);
    void removeWindow(VwwAWindow* window);

    VwwAWindow* windowAt(int row) const;
    int rowOf(const VwwAWindow* window) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::unique_ptr<class VwwWindowModelPrivate> const _d;
};
