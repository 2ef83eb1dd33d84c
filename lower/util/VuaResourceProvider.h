#pragma once
// Gives the application's icons and opens its help. Icons come from the desktop's icon
// theme where it has them and from the library's embedded set otherwise, so that every
// id gives a real icon on any desktop. Help goes to the handler the application installs.

#include <velmora_util_export.h>

#include <VuaResource.h>

#include <QCursor>
#include <QIcon>
#include <functional>

class VELMORA_UTIL_EXPORT VuaResourceProvider
{
public:
    using HelpHandler = std::function<void(const Vua::Resource::HelpId&)>;

    static QIcon getIcon(const Vua::Resource::IconId& id);
    // Drawn for the screen's pixel ratio; the standard arrow when the image is missing.
    static QCursor getCursor(const Vua::Resource::CursorId& id);
    // Whether the theme is asked first; off gives the same icons on every desktop.
    static void setUseThemeIcons(bool use);

    static void setHelpHandler(HelpHandler handler);
    static void showHelp(const Vua::Resource::HelpId& id);

    VuaResourceProvider() = delete;
};
