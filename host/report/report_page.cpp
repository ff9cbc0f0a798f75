#include "report/report_page.h"

#include <filesystem>

#include "report/report_resources.h"
#include "text/html.h"
#include "text/numbers.h"

namespace Host {
namespace {

using Element = Html::Element;

std::string FileName(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

std::string SectionId(std::size_t file) {
    return "file-" + std::to_string(file + 1);
}

std::string Title(const std::vector<std::string>& paths) {
    if (paths.size() == 1) return "Report on " + FileName(paths.front());
    return "Report on " + std::to_string(paths.size()) + " files";
}

void WriteHead(Html& html, const std::string& title) {
    const Element head(html, "head");
    html.Void("meta", {{"charset", "utf-8"}});
    html.Void("meta", {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}});
    html.Void("meta", {{"name", "generator"}, {"content", "orvane " ORVANE_VERSION}});
    html.Leaf("title", title);
    const Element style(html, "style");
    html.Raw(ReportStyle);
}

void WriteContents(Html& html, const std::vector<std::string>& paths,
                   const std::vector<Outcome<ReportedFile>>& files) {
    if (paths.size() == 1) return;
    const Element nav(html, "nav", {{"aria-labelledby", "contents"}, {"class", "contents"}});
    html.Leaf("h2", "Files", {{"id", "contents"}});
    const Element list(html, "ol");
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const Element item(html, "li");
        html.Leaf("a", FileName(paths[i]), {{"href", '#' + SectionId(i)}});
        html.Text(files[i].result ? ", " + Grouped(files[i].result->statistics.summary.events) + " events"
                                  : ", refused");
    }
}

void WriteFile(Html& html, std::size_t index, const std::string& path, const Outcome<ReportedFile>& outcome,
               bool isOnly) {
    const std::string id = SectionId(index);
    const Element section(html, "section",
                          {{"id", id}, {"class", "file"}, {"aria-labelledby", id + "-name"}});
    html.Leaf("h2", isOnly ? "The file" : FileName(path), {{"id", id + "-name"}});
    if (outcome.result) {
        WriteSections(html, *outcome.result, id);
        return;
    }
    const Element refusal(html, "p", {{"class", "refusal"}});
    html.Leaf("strong", "This file was refused.");
    html.Text(" " + outcome.refusal);
}

void WriteCommandLine(Html& html, const std::string& commandLine) {
    const Element section(html, "section", {{"id", "command"}, {"aria-labelledby", "command-title"}});
    html.Leaf("h2", "How to make this report again", {{"id", "command-title"}});
    const Element block(html, "pre");
    html.Leaf("code", commandLine);
}

}  // namespace

std::string FormatReport(const std::vector<std::string>& paths,
                         const std::vector<Outcome<ReportedFile>>& files, const std::string& commandLine) {
    const std::string title = Title(paths);
    Html html;
    html.Raw("<!DOCTYPE html>\n");
    {
        const Element root(html, "html", {{"lang", "en"}});
        WriteHead(html, title);
        const Element body(html, "body");
        {
            const Element main(html, "main");
            html.Leaf("h1", title);
            WriteContents(html, paths, files);
            for (std::size_t i = 0; i < paths.size(); ++i)
                WriteFile(html, i, paths[i], files[i], paths.size() == 1);
            WriteCommandLine(html, commandLine);
        }
        html.Leaf("footer", "Made by orvane " ORVANE_VERSION);
        const Element script(html, "script");
        html.Raw(ReportScript);
    }
    return html.Markup() + '\n';
}

}  // namespace Host
