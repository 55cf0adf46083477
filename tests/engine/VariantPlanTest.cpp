#include "VariantPlan.h"

#include "Error.h"
#include "Settings.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

QString u(const char* text) { return QString::fromUtf8(text); }

void addVariant(Settings& settings, double scale, const char* extension) {
    auto* variant = new AutoSDSettings;
    variant->setScale(scale);
    variant->setExtension(u(extension));
    variant->setMaxTextureSize(QSize(512, 256));
    settings.addAutoSDSettings(variant);
}

QString errorOf(const Settings& settings, int sheets = 1) {
    VariantPlan plan(settings);
    try {
        for (int i = 0; i < sheets; ++i)
            plan.next();
    } catch (const Error& error) {
        return QStringLiteral("%1 %2").arg(error.code()).arg(error.message());
    }
    return u("no error");
}

} // namespace

TEST(VariantPlan, freeLayouts) {
    Settings settings;
    settings.setDataFileName(u("x@2x/a@2x.json"));
    settings.setTextureFileName(u("a@2x.png"));
    settings.setMainExtension(u("@2x"));
    settings.globalSpriteSettings()->setScale(0.5);
    settings.setFixedTextureSize(QSize(1023, 0));
    addVariant(settings, 0.5, "");
    VariantPlan plan(settings);
    const auto main = plan.next();
    EXPECT_EQ(main->textureFileName().path(), u("a@2x.png"));
    EXPECT_EQ(main->maxTextureSize(), QSize(2048, 2048));
    EXPECT_EQ(main->fixedTextureSize(), QSize(1023, 0));
    const auto half = plan.next();
    EXPECT_EQ(half->globalSpriteSettings()->scale(), 0.25);
    EXPECT_EQ(half->dataFileName().path(), u("x/a.json"));
    EXPECT_EQ(half->textureFileName().path(), u("a.png"));
    EXPECT_EQ(half->maxTextureSize(), QSize(512, 256));
    EXPECT_EQ(half->fixedTextureSize(), QSize(511, 0));
    EXPECT_EQ(half->shapePadding(), 2u);
    EXPECT_EQ(plan.next(), nullptr);
    EXPECT_EQ(plan.baseFactor(), 1);
}

TEST(VariantPlan, identicalLayoutsRaisePaddings) {
    Settings settings;
    settings.setDataFileName(u("a-hd.json"));
    settings.setTextureFileName(u("a-hd.png"));
    settings.setMainExtension(u("-hd"));
    settings.setForceIdenticalLayout(true);
    settings.setShapePadding(2);
    settings.setBorderPadding(0);
    settings.globalSpriteSettings()->setExtrude(1);
    addVariant(settings, 0.5, "-md");
    addVariant(settings, 0.25, "-sd");
    VariantPlan plan(settings);
    const uint expected[][4] = {{8, 0, 4, 4}, {4, 0, 2, 2}, {2, 0, 1, 1}};
    for (const auto& [shape, border, extrude, divisor] : expected) {
        const auto variant = plan.next();
        EXPECT_EQ(variant->shapePadding(), shape);
        EXPECT_EQ(variant->borderPadding(), border);
        EXPECT_EQ(variant->globalSpriteSettings()->extrude(), extrude);
        EXPECT_EQ(variant->commonDivisorX(), divisor);
        EXPECT_EQ(variant->commonDivisorY(), divisor);
    }
    EXPECT_EQ(plan.baseFactor(), 4);
}

TEST(VariantPlan, refusesBeforeAnythingIsRead) {
    Settings settings;
    settings.setCommonDivisorX(0);
    EXPECT_EQ(errorOf(settings), u("36 CommonDivisorX must be >= 1"));
    settings.setCommonDivisorX(1);
    settings.setCommonDivisorY(0);
    EXPECT_EQ(errorOf(settings), u("36 CommonDivisorY must be >= 1"));
    settings.setCommonDivisorY(1);
    settings.setOutputFormat(SettingsBase::OutputFormat::PVRTC2_NOALPHA);
    EXPECT_EQ(errorOf(settings), u("14 PVRTC compression can only be used with PVR file format"));
    settings.setTextureFormat(SettingsBase::TextureFormat::pvr2gz);
    EXPECT_EQ(errorOf(settings), u("no error"));
    settings.setOutputFormat(SettingsBase::OutputFormat::ETC1);
    EXPECT_EQ(errorOf(settings), u("12 ETC1 can only be used with PKM file format"));
    settings.setTextureFormat(SettingsBase::TextureFormat::pkm);
    EXPECT_EQ(errorOf(settings), u("no error"));
    settings.setForceIdenticalLayout(true);
    addVariant(settings, 0.37, "-sd");
    EXPECT_EQ(errorOf(settings),
              u("11 Can't derive a base factor for identical layout. Adjust the scale factors or set "
                "some of them to allow fractions"));
    settings.setForceIdenticalLayout(false);
    try {
        VariantPlan(settings).checkVariants();
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), 11);
    }
    settings.setMainExtension(u("-hd"));
    settings.setDataFileName(u("a.json"));
    settings.setTextureFileName(u("a-HD.png"));
    AutoSDSettings& variant = *settings.autoSDSettings().first();
    for (const double scale : {0.0, -1.0, 11.0, 1e300, std::nan("")}) {
        variant.setScale(scale);
        EXPECT_THROW(VariantPlan(settings).checkVariants(), Error) << scale;
    }
    for (const double scale : {double(0.01f), 10.0}) {
        variant.setScale(scale);
        EXPECT_NO_THROW(VariantPlan(settings).checkVariants()) << scale;
    }
    EXPECT_EQ(errorOf(settings), u("no error")) << "the main sheet keeps its names";
    EXPECT_EQ(errorOf(settings, 2), u("11 Data file name must contain \"-hd\""));
    settings.setDataFileName(u("a-hd.json"));
    EXPECT_EQ(errorOf(settings, 2), u("12 Texture file name must contain \"-hd\""));
}

TEST(VariantPlan, refusesNamesThatFallTogether) {
    Settings settings;
    settings.setDataFileName(u("x/../same"));
    settings.setTextureFileName(u("same"));
    EXPECT_TRUE(errorOf(settings).startsWith(u("11 "))) << "texture over data file";
    settings.setDataFileName(u("a-hd.json"));
    settings.setTextureFileName(u("a-hd.png"));
    settings.setMainExtension(u("-hd"));
    addVariant(settings, 0.5, "-hd");
    EXPECT_EQ(errorOf(settings), u("no error"));
    EXPECT_TRUE(errorOf(settings, 2).startsWith(u("11 "))) << "variant over main sheet";
}

TEST(VariantPlan, refusesPaddingsThatNoSheetHolds) {
    Settings settings;
    settings.setForceIdenticalLayout(true);
    settings.setShapePadding(4294967295u);
    EXPECT_TRUE(errorOf(settings).startsWith(u("36 A padding of 4294967295 pixels")));
    settings.setShapePadding(2);
    settings.globalSpriteSettings()->setScale(1e-30);
    EXPECT_TRUE(errorOf(settings).startsWith(u("36 A padding of 2 pixels")));
}
