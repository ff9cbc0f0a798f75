#include "report/report_sections.h"

#include "text/base64.h"
#include "text/numbers.h"

namespace Host {
namespace {

using Element = Html::Element;

/// A section of a file, with its heading; its id is that of the file, a dash and `name`.
class Section {
public:
    Section(Html& html, const std::string& file, const char* name, const char* title)
        : section_(html, "section",
                   {{"id", file + "-" + name}, {"aria-labelledby", file + "-" + name + "-title"}}) {
        html.Leaf("h3", title, {{"id", file + "-" + name + "-title"}});
    }

private:
    Element section_;
};

/// A box in which a table that is wider than the page can be scrolled, by keyboard, too.
class ScrollBox {
public:
    ScrollBox(Html& html, const std::string& label)
        : box_(html, "div",
               {{"class", "scroll"}, {"role", "region"}, {"tabindex", "0"}, {"aria-label", label}}) {}

private:
    Element box_;
};

void WriteProperties(Html& html, const std::vector<Property>& properties) {
    const Element list(html, "dl");
    for (const Property& property : properties) {
        const Element group(html, "div");
        html.Leaf("dt", property.name);
        html.Leaf("dd", property.value);
    }
}

void WriteWarnings(Html& html, const std::vector<std::string>& warnings, const std::string& id) {
    if (warnings.empty()) return;
    const Section section(html, id, "warnings", "Warnings");
    const Element list(html, "ul", {{"class", "warnings"}});
    for (const std::string& warning : warnings)
        html.Leaf("li", warning);
}

const char* ColumnClass(const Table::Column& column) {
    return column.align == Table::Align::Right ? "number" : "text";
}

/// A table that the script makes sortable. The cells of `head` are the headings of their rows.
void WriteTable(Html& html, const Table& table, const std::string& caption, std::size_t head) {
    const ScrollBox box(html, caption);
    const Element element(html, "table", {{"class", "sortable"}});
    html.Leaf("caption", caption);
    const auto& columns = table.Columns();
    {
        const Element header(html, "thead");
        const Element row(html, "tr");
        for (const Table::Column& column : columns)
            html.Leaf("th", column.title, {{"scope", "col"}, {"class", ColumnClass(column)}});
    }
    const Element body(html, "tbody");
    for (const std::vector<std::string>& cells : table.Rows()) {
        const Element row(html, "tr");
        for (std::size_t c = 0; c < cells.size(); ++c) {
            if (c == head) {
                html.Leaf("th", cells[c], {{"scope", "row"}, {"class", ColumnClass(columns[c])}});
            } else {
                html.Leaf("td", cells[c], {{"class", ColumnClass(columns[c])}});
            }
        }
    }
}

/// The share as a number and as a bar.
void WriteShare(Html& html, const std::optional<float>& percent) {
    if (!percent) {
        html.Leaf("td", "-", {{"class", "number"}});
        return;
    }
    html.Leaf("td", PercentText(*percent),
              {{"class", "number share"}, {"style", "--share: " + PercentText(*percent) + "%"}});
}

void WriteTree(Html& html, const std::vector<PopulationSummary>& tree, const std::string& id) {
    if (tree.empty()) return;
    const Section section(html, id, "populations", "Populations");
    const ScrollBox box(html, "Populations");
    const Element table(html, "table", {{"class", "tree"}});
    html.Leaf("caption", "Every population below its parent");
    html.Raw(
        "<thead><tr><th scope=\"col\">population</th><th scope=\"col\" class=\"number\">events</th>"
        "<th scope=\"col\" class=\"number\">% of parent</th>"
        "<th scope=\"col\" class=\"number\">% of all</th></tr></thead>");
    const Element body(html, "tbody");
    for (const PopulationSummary& population : tree) {
        const Element row(html, "tr");
        html.Leaf("th", population.name,
                  {{"scope", "row"}, {"style", "--depth: " + std::to_string(population.depth)}});
        html.Leaf("td", Grouped(population.count), {{"class", "number"}});
        WriteShare(html, population.percentOfParent);
        WriteShare(html, population.percentOfTotal);
    }
}

void WritePicture(Html& html, const Picture& picture) {
    const Element figure(html, "figure");
    html.Void("img", {{"src", "data:image/png;base64," + ToBase64(picture.png)},
                      {"width", std::to_string(picture.size.width)},
                      {"height", std::to_string(picture.size.height)},
                      {"alt", picture.alternative}});
    html.Leaf("figcaption", picture.caption);
}

void WritePictures(Html& html, const std::vector<Picture>& pictures, const char* kind) {
    const Element box(html, "div", {{"class", kind}});
    for (const Picture& picture : pictures)
        WritePicture(html, picture);
}

void WriteGates(Html& html, const std::vector<Picture>& gates, const std::string& id) {
    if (gates.empty()) return;
    const Section section(html, id, "gates", "Gates");
    WritePictures(html, gates, "pictures");
}

void WriteStatistics(Html& html, const FileStatistics& statistics, const std::string& id) {
    const Section section(html, id, "statistics", "Statistics");
    for (const PopulationStatistics& population : statistics.populations) {
        WriteTable(html, TabulateStatistics(population, "parameter"),
                   population.population.name + ", " + Grouped(population.population.count) + " events", 0);
    }
}

void WriteHistograms(Html& html, const std::vector<Picture>& histograms, const std::string& id) {
    if (histograms.empty()) return;
    const Section section(html, id, "histograms", "Histograms");
    WritePictures(html, histograms, "small pictures");
}

void WriteCompensation(Html& html, const std::vector<CompensationPictures>& pairs, const std::string& id) {
    if (pairs.empty()) return;
    const Section section(html, id, "compensation", "Compensation");
    for (const CompensationPictures& pair : pairs) {
        html.Leaf("h4", pair.title);
        WritePictures(html, {pair.before, pair.after}, "pair pictures");
    }
}

/// Links to those of the sections that there are.
void WriteContents(Html& html, const ReportedFile& file, const std::string& id) {
    const struct {
        const char* name;
        const char* title;
        bool isThere;
    } sections[] = {{"warnings", "Warnings", !file.statistics.summary.warnings.empty()},
                    {"populations", "Populations", !file.statistics.tree.empty()},
                    {"gates", "Gates", !file.pictures.gates.empty()},
                    {"statistics", "Statistics", true},
                    {"histograms", "Histograms", !file.pictures.histograms.empty()},
                    {"compensation", "Compensation", !file.pictures.compensation.empty()},
                    {"format", "Format", true}};
    const Element nav(html, "nav", {{"aria-label", "Sections"}});
    const Element list(html, "ul");
    for (const auto& section : sections) {
        if (!section.isThere) continue;
        const Element item(html, "li");
        html.Leaf("a", section.title, {{"href", "#" + id + "-" + section.name}});
    }
}

}  // namespace

void WriteSections(Html& html, const ReportedFile& file, const std::string& id) {
    WriteProperties(html, file.sample);
    WriteContents(html, file, id);
    WriteWarnings(html, file.statistics.summary.warnings, id);
    WriteTree(html, file.statistics.tree, id);
    WriteGates(html, file.pictures.gates, id);
    WriteStatistics(html, file.statistics, id);
    WriteHistograms(html, file.pictures.histograms, id);
    WriteCompensation(html, file.pictures.compensation, id);
    const Section section(html, id, "format", "Format");
    WriteProperties(html, file.format);
    WriteTable(html, file.parameters, "Parameters as the file describes them", 1);
}

}  // namespace Host
