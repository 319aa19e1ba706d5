#include "ForeignPDFs.h"

#include "support/Process.h"

#include <fstream>
#include <stdexcept>

namespace {

/// Text in subsets of Type 1 fonts, lines, and a raw piece of content, in a file with object streams.
constexpr const char* texIcon = R"tex(\pdfpagewidth=24bp \pdfpageheight=24bp \pdfhorigin=0bp \pdfvorigin=0bp
\hoffset=0bp \voffset=0bp \parindent=0pt \pdfcompresslevel=9 \pdfobjcompresslevel=2
\shipout\vbox to 24bp{\vskip 16bp\hbox to 24bp{\hss
  \pdfliteral{q .8 .9 1 rg -1 -6 20 18 re f Q}\pdfliteral{.1 .1 .5 rg}$\sqrt{x^2}$\hss}\vss}
\end
)tex";

/// A gradient, a translucent ellipse and a thick line.
constexpr const char* drawing = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
 xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0"
 xmlns:draw="urn:oasis:names:tc:opendocument:xmlns:drawing:1.0"
 xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0"
 xmlns:svg="urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0"
 office:version="1.2" office:mimetype="application/vnd.oasis.opendocument.graphics">
<office:styles><draw:gradient draw:name="g" draw:style="linear" draw:start-color="#66ccff" draw:end-color="#0033aa"/>
</office:styles><office:automatic-styles>
<style:page-layout style:name="p"><style:page-layout-properties fo:page-width="24pt" fo:page-height="24pt"
 fo:margin="0pt"/></style:page-layout>
<style:style style:name="gradient" style:family="graphic"><style:graphic-properties draw:stroke="none"
 draw:fill="gradient" draw:fill-gradient-name="g"/></style:style>
<style:style style:name="clear" style:family="graphic"><style:graphic-properties draw:stroke="none"
 draw:fill="solid" draw:fill-color="#ff3300" draw:opacity="50%"/></style:style>
<style:style style:name="line" style:family="graphic"><style:graphic-properties draw:stroke="solid"
 svg:stroke-width="2pt" svg:stroke-color="#222222" draw:fill="none"/></style:style>
</office:automatic-styles>
<office:master-styles><style:master-page style:name="m" style:page-layout-name="p"/></office:master-styles>
<office:body><office:drawing><draw:page draw:master-page-name="m">
<draw:rect draw:style-name="gradient" svg:x="2pt" svg:y="2pt" svg:width="20pt" svg:height="20pt"/>
<draw:ellipse draw:style-name="clear" svg:x="8pt" svg:y="8pt" svg:width="14pt" svg:height="14pt"/>
<draw:line draw:style-name="line" svg:x1="4pt" svg:y1="5pt" svg:x2="20pt" svg:y2="15pt"/>
</draw:page></office:drawing></office:body></office:document>)xml";

} // namespace

ForeignPDF writeTeXPDF(const std::string& folder)
{
    const auto source = folder + "/icon.tex";
    std::ofstream(source) << texIcon;
    const auto result = runProcess(
        {"pdftex", "-interaction=batchmode", "-output-directory=" + folder, source}, {{"HOME", folder}});
    if (result.exitCode != 0)
        throw std::runtime_error("pdftex: " + result.error + result.output);
    return {"pdfTeX: formula", folder + "/icon.pdf"};
}

std::optional<ForeignPDF> writeLibreOfficePDF(const std::string& folder)
{
    const auto source = folder + "/drawing.fodg";
    std::ofstream(source) << drawing;
    const auto result = runProcess({"soffice", "-env:UserInstallation=file://" + folder + "/profile",
                                       "--headless", "--convert-to", "pdf", "--outdir", folder, source},
        {{"HOME", folder}});
    constexpr int kNotFound = 127;
    if (result.exitCode == kNotFound)
        return std::nullopt;
    if (result.exitCode != 0)
        throw std::runtime_error("soffice: " + result.error + result.output);
    return ForeignPDF{"LibreOffice: drawing", folder + "/drawing.pdf"};
}
