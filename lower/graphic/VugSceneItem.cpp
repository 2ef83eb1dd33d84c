#include "VugSceneItem.h"

#include <QCoreApplication>

namespace {
QString tr(const char* text)
{
    return QCoreApplication::translate("VugSceneItem", text);
}
} // namespace

VugSceneItem::VugSceneItem(const QString& id, const QString& name, const VugERendering& rendering,
                           const QString& datasetKey, const QString& subDatasetKey)
    : _id(id)
    , _name(name)
    , _rendering(rendering)
    , _datasetKey(datasetKey)
    , _subDatasetKey(subDatasetKey)
{
}

QString VugSceneItem::textProblem(const QString& text, bool required)
{
    if (required && text.trimmed().isEmpty())
        return tr("it is empty");
    // XML 1.0 has no way to write these, so a saved scene would not read back.
    for (const QChar c : text)
        if (c.unicode() < 0x20 || c.unicode() == 0xFFFE || c.unicode() == 0xFFFF)
            return tr("it holds the control character U+%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    return QString();
}

QString VugSceneItem::problem() const
{
    const struct
    {
        const QString& text;
        bool required;
        const char* what;
    } texts[] = {
        {_id, true, QT_TRANSLATE_NOOP("VugSceneItem", "id")},
        {_name, true, QT_TRANSLATE_NOOP("VugSceneItem", "name")},
        {_datasetKey, false, QT_TRANSLATE_NOOP("VugSceneItem", "dataset key")},
        {_subDatasetKey, false, QT_TRANSLATE_NOOP("VugSceneItem", "sub-dataset key")},
    };
    for (const auto& t : texts) {
        const QString why = textProblem(t.text, t.required);
        if (!why.isEmpty())
            return tr("the item's %1 '%2' is refused: %3").arg(tr(t.what), t.text, why);
    }
    return QString();
}

bool VugSceneItem::operator==(const VugSceneItem& o) const
{
    return _id == o._id && _name == o._name && _active == o._active && _rendering == o._rendering
           && _datasetKey == o._datasetKey && _subDatasetKey == o._subDatasetKey && _style == o._style;
}
