#include "exporters/TemplateFormat.h"

TEST_F(TemplateFormat, filtersTellNamesApart) {
    const struct {
        const char* name;
        std::string stem;
        std::string number;
    } cases[] = {
        {"run_01", "run", "1"},
        {"hero/run 007", "hero/run", "7"},
        {"walk/10", "walk", "10"},
        {"a - 0", "a", "0"},
        {"level1-2", "level1", "2"},
        {"coin2", "coin", "2"},
        {"coin", "coin", ""},
        {"01", "01", ""},
        {"_/7", "_/7", ""},
        {"x123456789", "x", "123456789"},
        {"x0123456789", "x0123456789", ""},
        {"run_\xd9\xa1", "run_\xd9\xa1", ""},
    };
    QStringList names;
    std::string expected;
    for (const auto& line : cases) {
        names.append(QString::fromUtf8(line.name));
        expected += line.stem + '|' + line.number + '\n';
    }
    texture = sheetOf(names);
    EXPECT_EQ(rendered("{% load sorvane %}{% for s in sprites %}{{ s.trimmedName|stem }}|"
                       "{{ s.trimmedName|number }}\n{% endfor %}"),
              expected);
}

TEST_F(TemplateFormat, filtersGroupFramesByNumber) {
    texture = sheetOf({"run_2", "run_10", "run.1", "b", "run", "a3.png", "run_1"});
    const QByteArray groups =
        "{% for a in list %}{{ a.name }}:{% for s in a.frames %} {{ s.fullName }}{% endfor %};"
        "{% endfor %}{% endwith %}";
    EXPECT_EQ(rendered("{% load sorvane %}{% with sprites|animations as list %}" + groups),
              "a: a3.png;b: b;run: run run.1 run_1 run_2 run_10;");
    EXPECT_EQ(rendered("{% load sorvane %}{% with sprites|numbered|animations as list %}" + groups),
              "a: a3.png;run: run.1 run_1 run_2 run_10;");
}

TEST_F(TemplateFormat, filtersCalculateAndQuote) {
    const std::pair<const char*, const char*> cases[] = {
        {"7|plus:2", "9"},
        {"7|minus:9", "-2"},
        {"7|times:0.5", "3.5"},
        {"sprites.1.frameRect.x|minus:sprites.1.frameRect.y", "37"},
        {"\"1.5\"|plus:\"2.5\"", "4"},
        {"100000|times:100000", "10000000000"},
        {"0|times:-3", "0"},
        {"\"a\"|plus:1", ""},
        {"1|plus:nosuch", ""},
        {"1|plus:\"1e400\"", ""},
        {"\"sheet@2x\"|pixelRatio", "2"},
        {"\"a@3x/b@1.5x.v2\"|pixelRatio", "1.5"},
        {"\"a@2xl\"|pixelRatio", "1"},
        {"\"a@0x\"|pixelRatio", "1"},
        {"\"@99999x\"|pixelRatio", "1"},
        {"\" a:b \"|line", "_a_b_"},
        {"nosuch|line", "_"},
        {"\"a<b\"|json", "\"a<b\""},
        {"nosuch|json", "\"\""},
        {"nosuch|animations|length", "0"},
    };
    QByteArray text = "{% load sorvane %}";
    std::string expected;
    for (const auto& [expression, value] : cases) {
        text += QByteArray("{{ ") + expression + " }}\n";
        expected += std::string(value) + '\n';
    }
    EXPECT_EQ(rendered(text), expected);

    // Control characters, and one that XML can't hold, before a digit.
    const std::string odd = "\xef\xbf\xbf";
    texture = sheetOf({QString::fromStdString("\x01\x7f\r" + odd + "1")});
    EXPECT_EQ(rendered("{% load sorvane %}{% with sprites.0.fullName as n %}"
                       "{{ n|json }} {{ n|lua }} {{ n|css }} {{ n|xml }} {{ n|line }}{% endwith %}"),
              R"("\u0001\u007f\u000d)" + odd + R"(1" "\001\127\013)" + odd + R"(1" "\1 \7f \d )" + odd +
                  "1\" \xef\xbf\xbd\x7f&#13;\xef\xbf\xbd" + "1 ___" + odd + "1");
}
