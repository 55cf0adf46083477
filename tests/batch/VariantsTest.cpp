// Several resolutions of a sheet in one run.

#include "Program.h"

namespace {

using Rects = QMap<QString, QRect>;

class Variants : public Program {
protected:
    void SetUp() override {
        Program::SetUp();
        for (int i = 1; i <= 12; ++i)
            addNoise(qPrintable(QStringLiteral("n%1.png").arg(i)), 11 + 3 * i);
    }

    QJsonObject document(const char* file) const { return QJsonDocument::fromJson(content(file)).object(); }

    Rects rects(const char* file, const char* key) const {
        Rects rects;
        const QJsonObject all = document(file).value(u("frames")).toObject();
        for (auto frame = all.begin(); frame != all.end(); ++frame) {
            const QJsonObject rect = frame.value().toObject().value(u(key)).toObject();
            const auto number = [&rect](const char* name) { return rect.value(u(name)).toInt(); };
            rects.insert(frame.key(), {number("x"), number("y"), number("w"), number("h")});
        }
        return rects;
    }
};

} // namespace

TEST_F(Variants, haveLayoutsOfTheirOwn) {
    const Outcome outcome =
        run("--format json --data a@2x.json --sheet a@2x.png --size-constraints AnySize --auto-sd sprites");
    ASSERT_EQ(outcome.status, 0) << qPrintable(outcome.err);
    const Rects large = rects("a@2x.json", "frame"), small = rects("a.json", "frame");
    ASSERT_EQ(small.keys(), large.keys());
    ASSERT_EQ(small.size(), 14);
    for (const QString& name : large.keys()) {
        EXPECT_EQ(small[name].width(), qRound(large[name].width() / 2.0)) << qPrintable(name);
        EXPECT_EQ(small[name].height(), qRound(large[name].height() / 2.0)) << qPrintable(name);
    }
    const QSize sheet = QImage(path("a.png")).size();
    EXPECT_LT(sheet.width() * sheet.height() * 3,
              QImage(path("a@2x.png")).width() * QImage(path("a@2x.png")).height());
    EXPECT_TRUE(document("a.json").value(u("meta")).toObject().value(u("image")).toString() == u("a.png"));
    EXPECT_EQ(
        run("--format json --data a@2x.json --sheet a@2x.png --size-constraints AnySize --auto-sd sprites")
            .out,
        u("Nothing to do - sprite sheet not changed\nNothing to do - sprite sheet not changed\n"));
}

TEST_F(Variants, haveTheLayoutOfTheMainSheet) {
    const Outcome outcome =
        run("--format json --data a-hd.json --sheet a-hd.png --main-extension -hd --autosd-variant 0.5:-sd "
            "--autosd-variant 0.25:-ld:allowfraction:512 --force-identical-layout sprites");
    ASSERT_EQ(outcome.status, 0) << qPrintable(outcome.err);
    for (const char* key : {"frame", "spriteSourceSize"}) {
        const Rects large = rects("a-hd.json", key), half = rects("a-sd.json", key);
        ASSERT_EQ(large.size(), 14);
        ASSERT_EQ(half.keys(), large.keys());
        for (const QString& name : large.keys()) {
            const QRect rect = large[name];
            EXPECT_EQ(half[name], QRect(rect.x() / 2, rect.y() / 2, rect.width() / 2, rect.height() / 2))
                << qPrintable(name) << ' ' << key;
            // Nothing was lost in the halves.
            EXPECT_EQ((rect.x() | rect.y() | rect.width() | rect.height()) & 1, 0)
                << qPrintable(name) << ' ' << key;
        }
    }
    const Rects large = rects("a-hd.json", "frame"), quarter = rects("a-ld.json", "frame");
    for (const QString& name : large.keys()) {
        EXPECT_EQ(quarter[name].x(), qRound(large[name].x() / 4.0)) << qPrintable(name);
        EXPECT_EQ(quarter[name].y(), qRound(large[name].y() / 4.0)) << qPrintable(name);
    }
    EXPECT_EQ(QImage(path("a-sd.png")).size(), QImage(path("a-hd.png")).size() / 2);
    EXPECT_EQ(QImage(path("a-ld.png")).size(), QImage(path("a-hd.png")).size() / 4);
}

TEST_F(Variants, refusals) {
    const QString line = u("--format json --data a-hd.json --sheet a-hd.png sprites ");
    const struct {
        const char* options;
        const char* message;
    } cases[] = {
        {"--main-extension -xl --autosd-variant 0.5:-sd", "Data file name must contain \"-xl\""},
        {"--main-extension -hd --autosd-variant 0.5:-hd", "a-hd.png"},
        {"--main-extension -hd --autosd-variant 0.5:-sd --autosd-variant 0.3333:-ld --force-identical-layout",
         "Can't derive a base factor for identical layout."},
        {"--sheet b.png --auto-sd", "Parameter --sheet specified multiple times."},
        {"--autosd-variant 0.5",
         "--autosd-variant: Value must contain at least <scale>:<extenstion>, is: 0.5"},
    };
    for (const auto& fault : cases) {
        const Outcome outcome = run((line + u(fault.options)).split(QLatin1Char(' ')));
        EXPECT_EQ(outcome.status, 1) << fault.options;
        EXPECT_TRUE(outcome.err.contains(u(fault.message))) << fault.options << '\n'
                                                            << qPrintable(outcome.err);
    }
}
