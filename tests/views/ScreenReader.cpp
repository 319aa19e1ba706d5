#include <atspi/atspi.h>

#include <cstdio>
#include <memory>
#include <string>

// What a screen reader sees of a window, over the accessibility bus: a program for the tests, since it must
// not run in the process that has the window.
//
//     ScreenReader <window title>
//
// Prints a line for each element of the window: role, name, states, and description if it has one. Then
// performs the first action of each check box, waits for the next change event and prints that with the
// element, and gives the second element the focus. Ends with "end".

namespace {

constexpr unsigned kTimeout = 20000; // milliseconds

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using Accessible = std::unique_ptr<AtspiAccessible, Unref>;

std::string take(gchar* text)
{
    std::string copy = text ? text : "(none)";
    g_free(text);
    return copy;
}

std::string nameOf(AtspiAccessible* element)
{
    return take(atspi_accessible_get_name(element, nullptr));
}

bool has(AtspiAccessible* element, AtspiStateType state)
{
    AtspiStateSet* const states = atspi_accessible_get_state_set(element);
    const bool contains = atspi_state_set_contains(states, state);
    g_object_unref(states);
    return contains;
}

void print(AtspiAccessible* element)
{
    std::string line = take(atspi_accessible_get_role_name(element, nullptr)) + " '" + nameOf(element) + "'";
    const std::pair<AtspiStateType, const char*> states[] = {{ATSPI_STATE_CHECKED, "checked"},
        {ATSPI_STATE_FOCUSABLE, "focusable"}, {ATSPI_STATE_FOCUSED, "focused"},
        {ATSPI_STATE_ENABLED, "enabled"}};
    for (const auto& [state, name] : states) {
        if (has(element, state))
            line += std::string(" ") + name;
    }
    const std::string description = take(atspi_accessible_get_description(element, nullptr));
    if (!description.empty())
        line += " '" + description + "'";
    std::puts(line.c_str());
}

Accessible child(AtspiAccessible* parent, int index)
{
    return Accessible(atspi_accessible_get_child_at_index(parent, index, nullptr));
}

/// The window of that title in any application; null while there is none.
Accessible findWindow(const char* title)
{
    const Accessible desktop(atspi_get_desktop(0));
    atspi_accessible_clear_cache(desktop.get()); // which only a main loop would update
    for (int i = 0; i < atspi_accessible_get_child_count(desktop.get(), nullptr); ++i) {
        const Accessible application = child(desktop.get(), i);
        if (application)
            atspi_accessible_clear_cache(application.get());
        const int count = application ? atspi_accessible_get_child_count(application.get(), nullptr) : 0;
        for (int j = 0; j < count; ++j) {
            Accessible window = child(application.get(), j);
            if (window && nameOf(window.get()) == title)
                return window;
        }
    }
    return nullptr;
}

int events = 0; ///< printed, and not yet waited for

void printEvent(AtspiEvent* event, void*)
{
    std::printf("%s %d '%s'\n", event->type, event->detail1, nameOf(event->source).c_str());
    g_boxed_free(ATSPI_TYPE_EVENT, event);
    ++events;
}

/// Returns once an event has been printed, also one that came before the call.
void waitForEvent()
{
    for (unsigned waited = 0; events == 0 && waited < kTimeout; ++waited) {
        while (g_main_context_iteration(nullptr, FALSE)) { }
        g_usleep(1000);
    }
    if (events == 0)
        std::puts("no event");
    else
        --events;
}

} // namespace

int main(int count, char** arguments)
{
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ); // for whoever reads line by line
    if (count != 2 || atspi_init() != 0) {
        std::puts("no accessibility bus");
        return 1;
    }
    AtspiEventListener* const listener = atspi_event_listener_new(printEvent, nullptr, nullptr);
    atspi_event_listener_register(listener, "object:state-changed:checked", nullptr);
    atspi_event_listener_register(listener, "object:state-changed:focused", nullptr);
    atspi_event_listener_register(listener, "object:property-change:accessible-description", nullptr);

    Accessible window;
    for (unsigned waited = 0; !window && waited < kTimeout; waited += 50) {
        while (g_main_context_iteration(nullptr, FALSE)) { } // takes in the applications that have come
        window = findWindow(arguments[1]);
        g_usleep(50 * 1000);
    }
    if (!window) {
        std::puts("no window");
        return 1;
    }
    const int elements = atspi_accessible_get_child_count(window.get(), nullptr);
    for (int i = 0; i < elements; ++i)
        print(child(window.get(), i).get());

    for (int i = 0; i < elements; ++i) {
        const Accessible element = child(window.get(), i);
        if (atspi_accessible_get_role(element.get(), nullptr) != ATSPI_ROLE_CHECK_BOX)
            continue;
        AtspiAction* const action = atspi_accessible_get_action_iface(element.get());
        std::puts(take(atspi_action_get_action_name(action, 0, nullptr)).c_str());
        atspi_action_do_action(action, 0, nullptr);
        g_object_unref(action);
        waitForEvent();
        atspi_accessible_clear_cache(element.get());
        print(element.get());
    }

    const Accessible second = child(window.get(), 1);
    AtspiComponent* const component = atspi_accessible_get_component_iface(second.get());
    atspi_component_grab_focus(component, nullptr);
    g_object_unref(component);
    waitForEvent();
    // The window with the focus now gets a key from the test, which waits for this line.
    std::puts("focused");
    waitForEvent();
    atspi_accessible_clear_cache(second.get());
    print(second.get());
    std::puts("end");
    g_object_unref(listener);
    return 0;
}
