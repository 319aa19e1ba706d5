#include "ForeignPDFs.h"

#include "support/IconPDFs.h"
#include "support/Process.h"

#include <cairo-pdf.h>

#include <fstream>
#include <functional>
#include <numbers>
#include <stdexcept>

namespace {

constexpr double side = 24;

void run(const std::vector<std::string>& words)
{
    const auto result = runProcess(words);
    if (result.exitCode != 0)
        throw std::runtime_error(words.front() + ": " + result.error + result.output);
}

ForeignPDF byCairo(
    const std::string& folder, const std::string& name, const std::function<void(cairo_t*)>& draw)
{
    const auto path = folder + "/cairo " + name + ".pdf";
    cairo_surface_t* surface = cairo_pdf_surface_create(path.c_str(), side, side);
    cairo_t* cairo = cairo_create(surface);
    draw(cairo);
    cairo_destroy(cairo);
    cairo_surface_finish(surface);
    const bool succeeded = cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    if (!succeeded)
        throw std::runtime_error("cairo did not write " + path);
    return {"cairo: " + name, path};
}

void fillCircle(cairo_t* cairo, double x, double y, double radius)
{
    cairo_arc(cairo, x, y, radius, 0, 2 * std::numbers::pi);
    cairo_fill(cairo);
}

void dashes(cairo_t* cairo)
{
    const double lengths[] = {3, 2};
    cairo_set_line_width(cairo, 1.5);
    cairo_set_dash(cairo, lengths, 2, 1);
    cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
    cairo_arc(cairo, 12, 12, 9, 0, 2 * std::numbers::pi);
    cairo_stroke(cairo);
}

void gradient(cairo_t* cairo)
{
    cairo_pattern_t* colors = cairo_pattern_create_linear(0, 0, side, side);
    cairo_pattern_add_color_stop_rgb(colors, 0, 1, 0.2, 0);
    cairo_pattern_add_color_stop_rgb(colors, 0.5, 1, 1, 0);
    cairo_pattern_add_color_stop_rgb(colors, 1, 0, 0.3, 1);
    cairo_set_source(cairo, colors);
    fillCircle(cairo, 12, 12, 10);
    cairo_pattern_destroy(colors);
}

void translucentGradient(cairo_t* cairo)
{
    cairo_pattern_t* colors = cairo_pattern_create_radial(9, 9, 1, 12, 12, 11);
    cairo_pattern_add_color_stop_rgba(colors, 0, 1, 1, 0, 1);
    cairo_pattern_add_color_stop_rgba(colors, 1, 0, 0.4, 0.8, 0.2);
    cairo_set_source(cairo, colors);
    fillCircle(cairo, 12, 12, 11);
    cairo_pattern_destroy(colors);
}

void group(cairo_t* cairo)
{
    cairo_push_group(cairo);
    cairo_set_source_rgb(cairo, 1, 0, 0);
    cairo_rectangle(cairo, 3, 3, 12, 12);
    cairo_fill(cairo);
    cairo_set_source_rgb(cairo, 0, 0, 1);
    cairo_rectangle(cairo, 9, 9, 12, 12);
    cairo_fill(cairo);
    cairo_pop_group_to_source(cairo);
    cairo_paint_with_alpha(cairo, 0.5);
}

void mask(cairo_t* cairo)
{
    cairo_pattern_t* alpha = cairo_pattern_create_linear(0, 0, side, 0);
    cairo_pattern_add_color_stop_rgba(alpha, 0, 0, 0, 0, 0);
    cairo_pattern_add_color_stop_rgba(alpha, 1, 0, 0, 0, 1);
    cairo_set_source_rgb(cairo, 0.9, 0, 0.2);
    cairo_mask(cairo, alpha);
    cairo_pattern_destroy(alpha);
}

void text(cairo_t* cairo)
{
    cairo_select_font_face(cairo, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo, 14);
    cairo_move_to(cairo, 1, 17);
    cairo_show_text(cairo, "Ag9");
}

constexpr const char* svgIcon = R"svg(<svg xmlns="http://www.w3.org/2000/svg" width="24" height="24">
<defs><linearGradient id="a" x2="0" y2="1"><stop stop-color="#6cf"/><stop offset="1" stop-color="#03a"/></linearGradient></defs>
<rect x="2" y="2" width="20" height="20" rx="5" fill="url(#a)"/>
<path d="M7 12l4 4 7-8" fill="none" stroke="#fff" stroke-width="2.5" stroke-linecap="round" stroke-linejoin="round"/></svg>)svg";

constexpr const char* svgMask = R"svg(<svg xmlns="http://www.w3.org/2000/svg" width="24" height="24">
<mask id="m"><rect width="24" height="24" fill="#fff"/><circle cx="17" cy="7" r="6" fill="#000"/></mask>
<path mask="url(#m)" fill="#333" d="M12 2a10 10 0 1 0 0 20 10 10 0 0 0 0-20z"/><circle cx="17" cy="7" r="4" fill="#e33"/></svg>)svg";

ForeignPDF byRsvg(const std::string& folder, const std::string& name, const char* svg)
{
    const auto source = folder + "/" + name + ".svg";
    const auto path = folder + "/rsvg " + name + ".pdf";
    std::ofstream(source) << svg;
    run({"rsvg-convert", "--format=pdf", "--output=" + path, source});
    return {"rsvg: " + name, path};
}

/// One of our icons, saved to the folder.
std::string saved(const std::string& folder, const std::string& name)
{
    for (const auto& icon : iconPDFs()) {
        if (icon.name != name)
            continue;
        auto path = folder + "/" + name + ".pdf";
        std::ofstream(path, std::ios::binary) << icon.file;
        return path;
    }
    throw std::runtime_error("no icon has the name " + name);
}

ForeignPDF byQpdf(const std::string& folder, const std::string& icon, const std::vector<std::string>& options)
{
    const auto path = folder + "/qpdf " + options.front() + " " + icon + ".pdf";
    std::vector<std::string> words{"qpdf"};
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), {saved(folder, icon), path});
    run(words);
    return {"qpdf " + options.front() + ": " + icon, path};
}

ForeignPDF byGhostscript(const std::string& folder, const std::string& icon)
{
    const auto path = folder + "/gs " + icon + ".pdf";
    run({"gs", "-q", "-dNOPAUSE", "-dBATCH", "-dSAFER", "-sDEVICE=pdfwrite", "-sOutputFile=" + path,
        saved(folder, icon)});
    return {"Ghostscript: " + icon, path};
}

} // namespace

std::vector<ForeignPDF> writeForeignPDFs(const std::string& folder)
{
    return {
        byCairo(folder, "dashes", dashes),
        byCairo(folder, "gradient", gradient),
        byCairo(folder, "translucent gradient", translucentGradient),
        byCairo(folder, "group", group),
        byCairo(folder, "mask", mask),
        byCairo(folder, "text", text),
        byRsvg(folder, "icon", svgIcon),
        byRsvg(folder, "mask", svgMask),
        byQpdf(folder, "gear", {"--object-streams=generate", "--compress-streams=y"}),
        byQpdf(folder, "soft mask", {"--linearize"}),
        byQpdf(folder, "heart", {"--encrypt", "", "owner", "256", "--"}),
        byGhostscript(folder, "star"),
        byGhostscript(folder, "transparency group"),
        byGhostscript(folder, "axial gradient"),
        byGhostscript(folder, "dashed circle"),
    };
}
