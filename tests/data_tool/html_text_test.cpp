#include "data_tool/html_text.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

TEST(HtmlText, IsNeverMarkup) {
  EXPECT_EQ(htmlText("<script>alert('1')</script> & \"x\""),
            "&lt;script&gt;alert(&#39;1&#39;)&lt;/script&gt; &amp; &quot;x&quot;");
  EXPECT_EQ(htmlText("a\x1B\u202E"), "a\\x1B\\u{202E}");
}

TEST(HtmlLines, KeepsLineBreaksOnly) {
  EXPECT_EQ(htmlLines("one\r\ntwo\nthree<"), "one\ntwo\nthree&lt;");
  EXPECT_EQ(htmlLines("end\r\n"), "end\n");
  EXPECT_EQ(htmlLines("a\rb"), "a\\x0Db");
}

TEST(HtmlAddress, CannotEndItsAttribute) {
  EXPECT_EQ(htmlAddress("http://a.b.c/?x=1&y=\"'<"), "http://a.b.c/?x=1&amp;y=&quot;&#39;&lt;");
  EXPECT_EQ(htmlAddress("http://a.b.c/\x01\n\x7F"
                        "caf\u00E9"),
            "http://a.b.c/%01%0A%7Fcaf\u00E9");
}

}  // namespace
}  // namespace quorrix
