#pragma once
// One item of a choice parameter: the integer key stored with the parameter, the label
// and tooltip shown in the choice list, whether it may be chosen, and its icon.

#include <VuaResource.h>

#include <QString>

class VpaItemDef
{
public:
    VpaItemDef(int key, const QString& label, bool enabled = true, const QString& tooltip = QString(),
               const Vua::Resource::IconId& icon = Vua::Resource::IconId())
        : _key(key)
        , _label(label)
        , _enabled(enabled)
        , _tooltip(tooltip)
        , _icon(icon)
    {
    }

    int getKey() const { return _key; }
    const QString& getLabel() const { return _label; }
    bool isEnabled() const { return _enabled; }
    void setEnabled(bool enabled) { _enabled = enabled; }
    const QString& getTooltip() const { return _tooltip; }
    const Vua::Resource::IconId& getIcon() const { return _icon; }

    bool operator==(const VpaItemDef& o) const
    {
        return _key == o._key && _label == o._label && _enabled == o._enabled && _tooltip == o._tooltip
            && _icon == o._icon;
    }
    bool operator!=(const VpaItemDef& o) const { return !(*this == o); }

private:
    int _key;
    QString _label;
    bool _enabled;
    QString _tooltip;
    Vua::Resource::IconId _icon;
};
