#pragma once
// One item of a scene: what a view draws as one layer. The id names the item within its
// scene and never changes; the name is what the user sees. The dataset key names a dataset
// of the project and the sub-dataset key a part of it (the variable that colours points,
// for instance). The style holds drawing options that the renderer of the rendering reads.
// A plain value: a scene owns its items and changes them through its own operations, so
// that its views are told.

#include <velmora_graphic_export.h>

#include <VugERendering.h>

#include <QString>
#include <QVariantMap>

class VELMORA_GRAPHIC_EXPORT VugSceneItem
{
public:
    VugSceneItem() = default;
    VugSceneItem(const QString& id, const QString& name, const VugERendering& rendering,
                 const QString& datasetKey = QString(), const QString& subDatasetKey = QString());

    const QString& getId() const { return _id; }
    void setId(const QString& id) { _id = id; }
    const QString& getName() const { return _name; }
    void setName(const QString& name) { _name = name; }
    bool isActive() const { return _active; }
    void setActive(bool active) { _active = active; }
    const VugERendering& getRendering() const { return _rendering; }
    void setRendering(const VugERendering& rendering) { _rendering = rendering; }
    const QString& getDatasetKey() const { return _datasetKey; }
    void setDatasetKey(const QString& key) { _datasetKey = key; }
    const QString& getSubDatasetKey() const { return _subDatasetKey; }
    void setSubDatasetKey(const QString& key) { _subDatasetKey = key; }
    const QVariantMap& getStyle() const { return _style; }
    void setStyle(const QVariantMap& style) { _style = style; }

    // Why a scene cannot hold the item, or an empty string: an empty id or a blank name,
    // or a control character in a text (a scene file could not keep it).
    QString problem() const;
    // Why a text cannot serve as an id, a name or a key; the same rules as problem().
    static QString textProblem(const QString& text, bool required);

    bool operator==(const VugSceneItem& o) const;
    bool operator!=(const VugSceneItem& o) const { return !(*this == o); }

private:
    QString _id;
    QString _name;
    bool _active = true;
    VugERendering _rendering;
    QString _datasetKey;
    QString _subDatasetKey;
    QVariantMap _style;
};
