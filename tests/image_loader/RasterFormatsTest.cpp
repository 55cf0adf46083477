#include "FormatsTest.h"
#include "SampleFiles.h"
#include "TiffDevice.h"

#include <tiffio.h>

namespace {

class RasterTest : public FormatsTest {};

} // namespace

TEST_F(RasterTest, targaRefusals) {
    const QByteArray good = tgaSamples()[6].bytes; // 24 bits
    ASSERT_FALSE(readBytes("a.tga", good).isNull());
    const LogCatcher log;
    const auto changed = [&](int offset, int value) {
        QByteArray bytes = good + QByteArray(1000, '\x01');
        bytes[offset] = char(value);
        return readBytes("a.tga", bytes).isNull();
    };
    for (const int type : {0, 1, 3, 4, 8, 9, 12, 32, 34}) // mapped without map, grey of 24 bits among them
        EXPECT_TRUE(changed(2, type)) << type;
    EXPECT_EQ(log.lines().count(QStringLiteral("*** loadTGA: Error, unsupported image type.")), 6);
    EXPECT_EQ(
        log.lines().count(QStringLiteral("*** loadTGA: Error, only 24bit paletted images are supported.")),
        2);
    for (const int bits : {8, 15, 48})
        EXPECT_TRUE(changed(16, bits)) << bits;
    EXPECT_TRUE(changed(12, 0));
    EXPECT_TRUE(changed(13, 0x10)) << "16 columns became 4112, more than there is";
    // A packet that reaches beyond the picture.
    QByteArray packed = tgaSamples()[8].bytes;
    packed[packed.size() - 7] = char(packed[packed.size() - 7] + 1);
    EXPECT_TRUE(readBytes("a.tga", packed + "xxx").isNull());
}

TEST_F(RasterTest, targaFilesAsWritten) {
    QImage picture(2, 2, QImage::Format_ARGB32);
    picture.fill(0x80102030);
    picture.setPixel(1, 0, 0xFF405060);
    const auto hex = [](const char* text) { return QByteArray::fromHex(text); };
    EXPECT_EQ(saved(QStringLiteral("a.tga"), QStringLiteral("tga"), picture),
              hex("0000 02 0000000000 00000000 0200 0200 20 2f 30201080 605040ff 30201080 30201080"));
    EXPECT_EQ(
        saved(QStringLiteral("b"), QStringLiteral("tga"), picture.convertToFormat(QImage::Format_RGB32)),
        hex("0000 02 0000000000 00000000 0200 0200 18 20 302010 605040 302010 302010"));
    EXPECT_FALSE(loader.save(path(QStringLiteral("c")), QStringLiteral("tga"), QImage()));
    EXPECT_FALSE(loader.save(path(QStringLiteral("c")), QStringLiteral("tga"),
                             QImage(65536, 1, QImage::Format_ARGB32)));
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("c"))));
}

TEST_F(RasterTest, pixmapDetails) {
    const auto colors = [](const QByteArray& bytes) {
        const QImage image = readBytes("a.ppm", bytes);
        QByteArray text;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                text += QByteArray::number(image.pixel(x, y), 16) + ' ';
        return text;
    };
    EXPECT_EQ(colors("P6 2 1 255\nabcdef"), "ff616263 ff646566 ");
    EXPECT_EQ(colors("P6 2 1 255\rXabcdef"), "ff616263 ff646566 ") << "a second byte goes with a return";
    EXPECT_EQ(colors("P6 2 1 255 #bcdefg"), "ff236263 ff646566 ") << "no comment behind the third number";
    EXPECT_EQ(colors("P6 2 2 255\nabcd"), "ff616263 ff640000 ff000000 ff000000 ") << "zero bytes";
    EXPECT_EQ(colors("P3 2 1 255\n1 2 3 4"), "ff010203 ff040000 ");
    EXPECT_EQ(colors("P62 1 255\nabcdef"), "ff616263 ff646566 ") << "the kind is one digit";
    for (const char* bad :
         {"", "P", "Q6 1 1 255\nabc", "P5 1 1 255\nabc", "P7 1 1 255\nabc", "P6 1 1\n", "P6 1 1 254\nabc",
          "P6 1 1 65535\nabcabc", "P6 0 1 255\nabc", "P6 -1 1 255\nabc", "P6 1x 1 255\nabc",
          "P6 99999999999 1 255\n", "P3 1 1 255\n1 2 256", "P3 1 1 255\n1 2 x", "P6 16385 1 255\n"})
        EXPECT_EQ(colors(bad), "") << bad;
}

TEST_F(RasterTest, pixmapsAsWritten) {
    QImage picture(2, 1, QImage::Format_ARGB32);
    picture.setPixel(0, 0, 0x00010203);
    picture.setPixel(1, 0, 0x80FFFEFD);
    const auto ppm = [&](const QHash<QString, QVariant>& options) {
        return saved(QStringLiteral("a.ppm"), QStringLiteral("ppm"), picture, options);
    };
    const QString key = QStringLiteral("format");
    const QByteArray binary = "P6\n2 1\n255\n\x01\x02\x03\xFF\xFE\xFD";
    const QByteArray ascii = "P3\n# Created by UIL library\n2 1\n255\n1 2 3 255 254 253 \n";
    EXPECT_EQ(ppm({{key, 0}}), binary);
    EXPECT_EQ(ppm({{key, QVariant::fromValue(UniversalImageLoader::ascii)}}), ascii);
    EXPECT_EQ(ppm({{key, 1}}), ascii);
    for (const QVariant& other : {QVariant(), QVariant(2), QVariant(QStringLiteral("ascii"))})
        EXPECT_EQ(ppm({{key, other}}), QByteArray());
    EXPECT_EQ(ppm({}), QByteArray());
}

TEST_F(RasterTest, pkmFiles) {
    QImage picture(5, 6, QImage::Format_ARGB32);
    picture.fill(qRgba(255, 255, 255, 9));
    const QByteArray file = saved(QStringLiteral("a.pkm"), QStringLiteral("pkm"), picture);
    EXPECT_EQ(file.size(), 16 + 4 * 8);
    EXPECT_EQ(file.left(16), QByteArray::fromHex("504b4d203130 0000 0008 0008 0005 0006"));
    const QImage white = readBytes("a.pkm", file);
    EXPECT_EQ(white.size(), picture.size());
    EXPECT_GT(qGreen(white.pixel(4, 5)), 250);
    EXPECT_EQ(qAlpha(white.pixel(4, 5)), 255);
    // Blocks of zeros are nearly black; so is what isn't there.
    const QImage cut = readBytes("a.pkm", file.left(16 + 2 * 8));
    EXPECT_EQ(cut.pixel(4, 3), white.pixel(4, 3));
    EXPECT_EQ(cut.copy(0, 4, 5, 2),
              readBytes("a.pkm", file.left(16) + QByteArray(32, '\0')).copy(0, 4, 5, 2));
    EXPECT_LT(qGreen(cut.pixel(0, 5)), 9);
    const auto changed = [&](int offset, int value) {
        QByteArray bytes = file;
        bytes[offset] = char(value);
        return readBytes("a.pkm", bytes).size();
    };
    EXPECT_EQ(changed(13, 8), QSize(8, 6));
    EXPECT_EQ(changed(9, 6), QSize(5, 6)) << "six columns are two blocks as well";
    for (const auto& [offset, value] : {std::pair{0, 'Q'},
                                        {3, '_'},
                                        {4, '2'},
                                        {5, '1'},
                                        {6, 1},
                                        {7, 1},
                                        {13, 9},
                                        {13, 4},
                                        {13, 0},
                                        {15, 4},
                                        {15, 9}})
        EXPECT_EQ(changed(offset, value), QSize(0, 0)) << offset << " " << value;
    EXPECT_TRUE(readBytes("a.pkm", file.left(15)).isNull());
}

TEST_F(RasterTest, photoshopDetails) {
    const LogCatcher log;
    const QByteArray good = psdSamples()[0].bytes;
    const auto changed = [&](int offset, int value) {
        QByteArray bytes = good + QByteArray(1000, '\0');
        bytes[offset] = char(value);
        return readBytes("a.psd", bytes);
    };
    EXPECT_EQ(changed(13, 16), psdSamples()[0].picture);
    for (const auto& [offset, value] : {std::pair{0, 'x'},
                                        {5, 2},
                                        {13, 17},
                                        {13, 0},
                                        {17, 0},
                                        {21, 0},
                                        {23, 16},
                                        {25, 4},
                                        {30, 0x7F},
                                        {49, 2},
                                        {18, 0x7F}})
        EXPECT_TRUE(changed(offset, value).isNull()) << offset;
    EXPECT_EQ(log.lines().mid(0, 4),
              (QStringList{QStringLiteral("invalid header!"), QStringLiteral("*** bad version number 2"),
                           QStringLiteral("unsupported file!"), QStringLiteral("unsupported file!")}));
    // White is taken out in integers that wrap around.
    const int first = good.size() - 4 * 35;
    QByteArray bytes = good;
    for (const auto& [plane, value] : {std::pair{0, 255}, {1, 200}, {2, 0}, {3, 128}})
        bytes[first + 35 * plane] = char(value);
    EXPECT_EQ(readBytes("a.psd", bytes).pixel(0, 0),
              qRgba(255, 73 * 255 / 128, (-127 * 255 / 128) & 0xFF, 128));
    // A run must end where its plane does.
    QByteArray packed = psdSamples()[2].bytes;
    EXPECT_TRUE(readBytes("a.psd", packed.left(packed.size() - 3) + char(0x80 + 1) + "x").isNull());
}

TEST_F(RasterTest, tiffRefusals) {
    const LogCatcher log;
    const auto changed = [](int sampleIndex, int tag, int value) {
        // A little-endian file: entries of twelve bytes, the value of a short at the ninth.
        QByteArray bytes = tiffSamples()[sampleIndex].bytes;
        const int at =
            bytes.lastIndexOf(littleEndian(uint(tag), 2) + littleEndian(3, 2) + littleEndian(1, 4));
        EXPECT_GE(at, 0);
        bytes.replace(at + 8, 2, littleEndian(uint(value), 2));
        return readBytes("a.tif", bytes).isNull();
    };
    constexpr int rgb = 0, tiles = 5, grey = 6;
    EXPECT_FALSE(changed(rgb, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB));
    EXPECT_TRUE(changed(rgb, TIFFTAG_SAMPLESPERPIXEL, 5));
    EXPECT_TRUE(changed(rgb, TIFFTAG_SAMPLESPERPIXEL, 0));
    EXPECT_TRUE(changed(rgb, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_CIELAB));
    EXPECT_TRUE(changed(rgb, TIFFTAG_IMAGEWIDTH, 20000));
    EXPECT_TRUE(changed(rgb, TIFFTAG_IMAGELENGTH, 0));
    EXPECT_TRUE(changed(grey, TIFFTAG_BITSPERSAMPLE, 4));
    EXPECT_TRUE(changed(grey, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB));
    EXPECT_TRUE(changed(grey, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_COMPLEXIEEEFP));
    EXPECT_TRUE(changed(tiles, TIFFTAG_TILELENGTH, 32768));
    EXPECT_TRUE(changed(tiles, TIFFTAG_TILEWIDTH, 0));
    EXPECT_TRUE(changed(tiles, TIFFTAG_TILEWIDTH, 8));
    EXPECT_TRUE(readBytes("a.tif", "II*\0 and no more").isNull());
    EXPECT_TRUE(
        log.lines().contains(QStringLiteral("Can't load 'a.tif', only 1 sample per pixel supported")));
    EXPECT_EQ(log.lines().constLast(), QStringLiteral("Can't open 'a.tif' for reading"));
}

TEST_F(RasterTest, tiffFilesAsWritten) {
    for (const bool alpha : {false, true}) {
        QByteArray file = saved(QStringLiteral("a.tif"), QStringLiteral("tiff"), samplePicture(alpha));
        QBuffer buffer(&file);
        buffer.open(QIODevice::ReadOnly);
        const TiffHandle handle = openTiff(buffer, "r");
        TIFF* tiff = handle.get();
        ASSERT_NE(tiff, nullptr);
        const auto number = [&](int tag) {
            uint16_t value = 9999;
            return TIFFGetField(tiff, uint32_t(tag), &value) ? int(value) : -1;
        };
        EXPECT_EQ(number(TIFFTAG_BITSPERSAMPLE), 32);
        EXPECT_EQ(number(TIFFTAG_SAMPLEFORMAT), SAMPLEFORMAT_IEEEFP);
        EXPECT_EQ(number(TIFFTAG_COMPRESSION), COMPRESSION_NONE);
        EXPECT_EQ(number(TIFFTAG_ORIENTATION), ORIENTATION_TOPLEFT);
        EXPECT_EQ(number(TIFFTAG_PLANARCONFIG), PLANARCONFIG_CONTIG);
        EXPECT_EQ(number(TIFFTAG_SAMPLESPERPIXEL), alpha ? 4 : 3);
        EXPECT_EQ(number(TIFFTAG_PHOTOMETRIC), alpha ? -1 : PHOTOMETRIC_RGB);
        float row[28] = {};
        EXPECT_EQ(TIFFReadScanline(tiff, row, 0, 0), 1);
        EXPECT_EQ(row[alpha ? 4 : 3], 0.0F);
        EXPECT_EQ(row[alpha ? 4 + 2 : 3 + 2], 1.0F);
    }
    const LogCatcher log;
    const QString nowhere = path(QStringLiteral("no/a.tif"));
    EXPECT_FALSE(loader.save(nowhere, QStringLiteral("tif"), samplePicture(true)));
    EXPECT_TRUE(loader.load(nowhere).isNull());
    EXPECT_EQ(log.lines(), (QStringList{QStringLiteral("Could not open '%1' for writing").arg(nowhere),
                                        QStringLiteral("Can't open '%1' for reading").arg(nowhere)}));
}
