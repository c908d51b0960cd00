#include "canvas/DesktopMotion.h"

#include <QStyle>
#include <QWidget>

// It has members of a name that is a macro of the toolkit's.
#pragma push_macro("signals")
#undef signals
#include <gio/gio.h>
#pragma pop_macro("signals")

namespace
{

constexpr const char *INTERFACE = "org.gnome.desktop.interface";
constexpr const char *ANIMATIONS = "enable-animations";

/// Null where no such desktop is installed: to ask for what is not there would end the program.
GSettings *interfaceSettings()
{
    GSettingsSchemaSource *source = g_settings_schema_source_get_default();
    GSettingsSchema *schema =
        source ? g_settings_schema_source_lookup(source, INTERFACE, TRUE) : nullptr;
    if (!schema)
        return nullptr;
    GSettings *settings = g_settings_schema_has_key(schema, ANIMATIONS)
                              ? g_settings_new_full(schema, nullptr, nullptr)
                              : nullptr;
    g_settings_schema_unref(schema);
    return settings;
}

} // namespace

bool DesktopMotion::isWanted(const QWidget &widget)
{
    // Kept, as it is then told of changes. Never destroyed.
    static GSettings *const settings = interfaceSettings();
    const bool styleMoves =
        widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) > 0;
    return styleMoves && (!settings || g_settings_get_boolean(settings, ANIMATIONS));
}
