// misplacingwm WIDTH HEIGHT FILE: a window manager that places every window where it wants to be,
// but full screen windows, when they first appear, on the screen of that size at the corner of the
// desktop. Asked again, it fills the screen that the window lies on; while FILE.stubborn exists it
// goes on misplacing. Makes FILE when it runs, and writes a line into it for each window that it
// makes full screen.
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{

struct Place {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

class WindowManager
{
public:
    WindowManager(const Place &wrong, std::string file)
        : m_wrong(wrong)
        , m_file(std::move(file))
        , m_x(xcb_connect(nullptr, nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_x)).data->root)
        , m_state(atom("_NET_WM_STATE"))
        , m_fullScreen(atom("_NET_WM_STATE_FULLSCREEN"))
        , m_active(atom("_NET_ACTIVE_WINDOW"))
    {
    }

    int run()
    {
        const std::uint32_t redirect =
            XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_x, m_root, XCB_CW_EVENT_MASK, &redirect);
        const std::vector<xcb_atom_t> supported{m_state, m_fullScreen, m_active};
        xcb_change_property(m_x, XCB_PROP_MODE_REPLACE, m_root, atom("_NET_SUPPORTED"),
                            XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(supported.size()),
                            supported.data());
        const xcb_window_t itself = xcb_generate_id(m_x);
        xcb_create_window(m_x, 0, itself, m_root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        for (const xcb_window_t window : {m_root, itself})
            xcb_change_property(m_x, XCB_PROP_MODE_REPLACE, window,
                                atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 32, 1, &itself);
        xcb_flush(m_x);
        write("");
        while (xcb_generic_event_t *event = xcb_wait_for_event(m_x)) {
            handle(*event);
            std::free(event);
            xcb_flush(m_x);
        }
        return 0;
    }

private:
    struct Window {
        Place wanted;
        bool isFull = false;
        bool wasMisplaced = false;
    };

    xcb_atom_t atom(const char *name)
    {
        const auto length = static_cast<std::uint16_t>(std::strlen(name));
        xcb_intern_atom_reply_t *reply =
            xcb_intern_atom_reply(m_x, xcb_intern_atom(m_x, 0, length, name), nullptr);
        const xcb_atom_t found = reply->atom;
        std::free(reply);
        return found;
    }

    void write(const char *line)
    {
        FILE *file = std::fopen(m_file.c_str(), "a");
        std::fputs(line, file);
        std::fclose(file);
    }

    void handle(const xcb_generic_event_t &event)
    {
        switch (event.response_type & 0x7f) {
        case XCB_MAP_REQUEST:
            map(reinterpret_cast<const xcb_map_request_event_t &>(event).window);
            break;
        case XCB_CONFIGURE_REQUEST:
            configure(reinterpret_cast<const xcb_configure_request_event_t &>(event));
            break;
        case XCB_CLIENT_MESSAGE:
            tell(reinterpret_cast<const xcb_client_message_event_t &>(event));
            break;
        case XCB_DESTROY_NOTIFY:
            m_windows.erase(reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window);
            break;
        default:
            break;
        }
    }

    void map(xcb_window_t window)
    {
        Window &known = m_windows[window];
        // The toolkit may have asked in two ways before its window appears.
        if (!known.isFull && asksForFullScreen(window))
            fill(window, known);
        if (!known.isFull)
            move(window, known.wanted);
        xcb_map_window(m_x, window);
        xcb_set_input_focus(m_x, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    }

    [[nodiscard]] bool asksForFullScreen(xcb_window_t window)
    {
        xcb_get_property_reply_t *reply = xcb_get_property_reply(
            m_x, xcb_get_property(m_x, 0, window, m_state, XCB_ATOM_ATOM, 0, 32), nullptr);
        bool asks = false;
        for (std::uint32_t i = 0; reply && i < reply->value_len; ++i)
            asks = asks || static_cast<const xcb_atom_t *>(xcb_get_property_value(reply))[i] ==
                               m_fullScreen;
        std::free(reply);
        return asks;
    }

    void configure(const xcb_configure_request_event_t &event)
    {
        Window &known = m_windows[event.window];
        if (event.value_mask & XCB_CONFIG_WINDOW_X)
            known.wanted.x = event.x;
        if (event.value_mask & XCB_CONFIG_WINDOW_Y)
            known.wanted.y = event.y;
        if (event.value_mask & XCB_CONFIG_WINDOW_WIDTH)
            known.wanted.width = event.width;
        if (event.value_mask & XCB_CONFIG_WINDOW_HEIGHT)
            known.wanted.height = event.height;
        if (!known.isFull)
            move(event.window, known.wanted);
    }

    void tell(const xcb_client_message_event_t &event)
    {
        if (event.type == m_active)
            xcb_set_input_focus(m_x, XCB_INPUT_FOCUS_POINTER_ROOT, event.window, XCB_CURRENT_TIME);
        const std::uint32_t *data = event.data.data32;
        if (event.type != m_state || (data[1] != m_fullScreen && data[2] != m_fullScreen))
            return;
        Window &known = m_windows[event.window];
        const bool on = data[0] == 1 || (data[0] == 2 && !known.isFull);
        if (on) {
            if (!known.isFull)
                fill(event.window, known);
            return;
        }
        known.isFull = false;
        xcb_delete_property(m_x, event.window, m_state);
        move(event.window, known.wanted);
    }

    void fill(xcb_window_t window, Window &known)
    {
        known.isFull = true;
        xcb_change_property(m_x, XCB_PROP_MODE_REPLACE, window, m_state, XCB_ATOM_ATOM, 32, 1,
                            &m_fullScreen);
        const bool isStubborn = access((m_file + ".stubborn").c_str(), F_OK) == 0;
        const bool misplaces = isStubborn || !known.wasMisplaced;
        known.wasMisplaced = true;
        // The program has asked for all of the screen that it wants.
        move(window, misplaces ? m_wrong : known.wanted);
        write(misplaces ? "wrong\n" : "right\n");
    }

    void move(xcb_window_t window, const Place &place)
    {
        if (place.width == 0)
            return;
        const std::uint32_t values[] = {static_cast<std::uint32_t>(place.x),
                                        static_cast<std::uint32_t>(place.y), place.width,
                                        place.height};
        xcb_configure_window(m_x, window,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT,
                             values);
    }

    Place m_wrong;
    std::string m_file;
    xcb_connection_t *m_x;
    xcb_window_t m_root;
    xcb_atom_t m_state;
    xcb_atom_t m_fullScreen;
    xcb_atom_t m_active;
    std::map<xcb_window_t, Window> m_windows;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4)
        return 2;
    const Place wrong{0, 0, static_cast<std::uint32_t>(std::atoi(argv[1])),
                      static_cast<std::uint32_t>(std::atoi(argv[2]))};
    return WindowManager(wrong, argv[3]).run();
}
