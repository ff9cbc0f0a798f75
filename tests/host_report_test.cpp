// The report as a page: nothing in a file becomes markup, no file is lost, and what it says makes it again.
// How it behaves in a browser is report_browser_test.py's business.
#include <gtest/gtest.h>

#include "support/gating_ml.h"
#include "support/host_program.h"

namespace Orvane::Testing {
namespace {

std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

/// The text of the only element `tag`, with its entities resolved.
std::string ContentOf(const std::string& page, const std::string& tag) {
    const std::size_t begin = page.find("<" + tag + ">") + tag.size() + 2;
    std::string text = page.substr(begin, page.find("</" + tag + ">") - begin);
    for (const auto& [entity, character] :
         {std::pair("&lt;", "<"), std::pair("&gt;", ">"), std::pair("&#39;", "'"), std::pair("&amp;", "&")}) {
        for (std::size_t at = 0; (at = text.find(entity)) != std::string::npos;)
            text.replace(at, std::string_view(entity).size(), character);
    }
    return text;
}

class HostReport : public HostTest {
protected:
    /// Two parameters whose names and stains are markup, among keywords that are.
    std::string Hostile() const {
        FcsBuilder builder = FcsBuilder::Floats(2, {1, 2, 10, 20, 5, 7});
        builder.delimiter = '|';
        builder.Set("$P1N", "</table><script>x</script>");
        builder.Set("$P1S", "\xEF\xBF\xBE \xEF\xB7\x90 \xF0\x9F\xBF\xBF");  // none of them a character
        builder.Set("$P2S", "\"><img src=x>");
        builder.Set("$CYT", "<b onclick='x'>&amp;");
        return Write(builder, "a <u> $(b) & c.fcs");
    }
};

TEST_F(HostReport, TakesNothingInAFileForMarkup) {
    const std::string gates = Rectangle("&lt;i&gt;", On("Par2", "min='5'")) +
                              Rectangle("child", On("Par2", "min='10'"), "&lt;i&gt;");
    const HostRun run =
        Run({"report", Hostile(), "--gates", Write(Document(gates), "gates.xml"), "-o", Path("r.html")});
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string page = ReadFile(Path("r.html"));
    EXPECT_EQ(CountOf(page, "<script"), 1U);
    for (const std::string markup : {"<u>", "<b ", "<i>", "<img src=x", "\"http", "url("})
        EXPECT_EQ(CountOf(page, markup), 0U) << markup;
    for (const std::string text :
         {"<figcaption>&lt;i&gt;: 2 of 3 (66.7 %)</", "<figcaption>child: 1 of 2 (50.0 %)</",
          "&lt;/table&gt;&lt;script&gt;x", "&lt;b onclick=&#39;x&#39;&gt;&amp;amp;"})
        EXPECT_GT(CountOf(page, text), 0U) << text;
    EXPECT_EQ(CountOf(page, "src=\""), CountOf(page, "src=\"data:image/png;base64,"));
    EXPECT_EQ(CountOf(page, "href=\""), CountOf(page, "href=\"#"));
}

TEST_F(HostReport, NamesRefusedFilesAndTheCommandThatMakesItAgain) {
    const std::string broken = Write("no list-mode file", "broken.fcs");
    const HostRun run = Run({"report", broken, Hostile(), "--jobs", "2", "-o", Path("r.html")});
    EXPECT_EQ(run.status, 1);
    const std::string page = ReadFile(Path("r.html"));
    EXPECT_EQ(CountOf(page, "<h2 id=\"file-"), 2U);
    EXPECT_EQ(CountOf(page, "class=\"refusal\""), 1U);
    const std::string reason = run.err.substr(run.err.find("broken.fcs: ") + 12);
    EXPECT_NE(ContentOf(page, "main").find(reason.substr(0, reason.find('"'))), std::string::npos) << reason;

    const std::string command = ContentOf(page, "code");
    ASSERT_EQ(command.rfind("orvane report ", 0), 0U);
    std::filesystem::remove(Path("r.html"));
    EXPECT_NE(std::system((ORVANE_HOST_PROGRAM + command.substr(6) + " 2>/dev/null").c_str()), 0);
    EXPECT_TRUE(ReadFile(Path("r.html")) == page);
}

}  // namespace
}  // namespace Orvane::Testing
