// The picture of Startup.cpp with cairo and Pango alone: `PlainStartup picture FILE`.

#include <pango/pangocairo.h>

int main(int count, char** arguments)
{
    if (count != 3)
        return 1;
    cairo_surface_t* const surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 240, 60);
    cairo_t* const context = cairo_create(surface);
    cairo_set_source_rgb(context, 1, 1, 1);
    cairo_paint(context);
    PangoLayout* const layout = pango_cairo_create_layout(context);
    PangoFontDescription* const font = pango_font_description_from_string("Liberation Sans 10");
    pango_layout_set_font_description(layout, font);
    pango_layout_set_text(layout, "The first text", -1);
    cairo_set_source_rgb(context, 0, 0, 0);
    pango_cairo_show_layout(context, layout);
    return cairo_surface_write_to_png(surface, arguments[2]) == CAIRO_STATUS_SUCCESS ? 0 : 1;
}
