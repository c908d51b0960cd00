#include "canvas/DesktopMotion.h"
#include "tests/TestProgram.h"

#include <QProxyStyle>
#include <QWidget>
#include <QtTest>

// It has members of a name that is a macro of the toolkit's.
#pragma push_macro("signals")
#undef signals
#include <gio/gio.h>
#pragma pop_macro("signals")

namespace
{

class StillStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *answer) const override
    {
        return hint == SH_Widget_Animation_Duration
                   ? 0
                   : QProxyStyle::styleHint(hint, option, widget, answer);
    }
};

} // namespace

/// Desktops that want animations, and those that do not.
class DesktopMotionTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Nobody's own settings, and nothing is written.
        qputenv("GSETTINGS_BACKEND", "memory");
        GSettingsSchemaSource *source = g_settings_schema_source_get_default();
        GSettingsSchema *schema =
            g_settings_schema_source_lookup(source, "org.gnome.desktop.interface", TRUE);
        QVERIFY(schema);
        m_desktop = g_settings_new_full(schema, nullptr, nullptr);
        g_settings_schema_unref(schema);
    }
    void cleanupTestCase() { g_clear_object(&m_desktop); }

    void theDesktopIsAskedEachTime()
    {
        QWidget widget;
        QVERIFY(DesktopMotion::isWanted(widget));
        for (const bool wanted : {false, true, false}) {
            g_settings_set_boolean(m_desktop, "enable-animations", wanted);
            QCOMPARE(DesktopMotion::isWanted(widget), wanted);
        }
        g_settings_reset(m_desktop, "enable-animations");
    }

    void theStyleIsAskedToo()
    {
        StillStyle still;
        QWidget widget;
        QVERIFY(DesktopMotion::isWanted(widget));
        widget.setStyle(&still);
        QVERIFY(!DesktopMotion::isWanted(widget));
    }

private:
    GSettings *m_desktop = nullptr;
};

REGISTER_TEST(DesktopMotionTest)
#include "tst_desktop_motion.moc"
