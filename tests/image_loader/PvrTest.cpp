#include "FormatsTest.h"
#include "PvrPixelFormat.h"
#include "PvrWriter.h"
#include "SampleFiles.h"

#include <QDir>

#include <zlib.h>

namespace {

namespace Format = pvrPixelFormat;

class PvrTest : public FormatsTest {};

QHash<QString, QVariant> pvrOptions(quint64 format, bool flipped = false) {
    return {{QStringLiteral("pixelformat"), format}, {QStringLiteral("flipped"), flipped}};
}

/// Header and pixels of a sheet of two pixels, one above the other.
QByteArray written(quint64 format, bool flipped = false) {
    QImage image(1, 2, QImage::Format_ARGB32);
    image.setPixel(0, 0, 0x88FF4210);
    image.setPixel(0, 1, 0x00113399);
    return pvr2Data(image, pvrOptions(format, flipped));
}

} // namespace

// The published table of the header, and bytes worked out by hand.
TEST_F(PvrTest, headerAndPixelsOfEveryFormat) {
    struct Row {
        quint64 format;
        quint32 low, high; ///< halves of its number
        quint32 flags, bits, red, green, blue, alpha;
        const char* pixels;
    };
    const Row rows[] = {
        {Format::rgba8888, 0x61626772, 0x08080808, 0x8012, 32, 0xFF, 0xFF00, 0xFF0000, 0xFF000000,
         "ff421088 11339900"},
        {Format::bgra8888, 0x61726762, 0x08080808, 0x801A, 32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000,
         "1042ff88 99331100"},
        {Format::rgba4444, 0x61626772, 0x04040404, 0x8010, 16, 0xF000, 0xF00, 0xF0, 0xF, "18f4 9013"},
        {Format::rgba5551, 0x61626772, 0x01050505, 0x8011, 16, 0xF800, 0x7C0, 0x3E, 1, "05fa a611"},
        {Format::rgb565, 0x00626772, 0x00050605, 0x0013, 16, 0xF800, 0x7E0, 0x1F, 0, "02fa b311"},
        {Format::rgb888, 0x00626772, 0x00080808, 0x0015, 24, 0xFF0000, 0xFF00, 0xFF, 0, "ff4210 113399"},
        {Format::alphaIntensity, 0x30306961, 0x00000808, 0x0017, 16, 0, 0, 0, 0, "8870 004a"},
        {Format::alpha, 0x30303061, 0x00000008, 0x801B, 8, 0, 0, 0, 0xFF, "70 4a"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.format, quint64{row.high} << 32 | row.low);
        const QByteArray pixels = QByteArray::fromHex(row.pixels);
        QByteArray header;
        for (const quint32 word : {52U, 2U, 1U, 0U, row.flags, quint32(pixels.size()), row.bits, row.red,
                                   row.green, row.blue, row.alpha, 0x21525650U, 1U})
            header += littleEndian(word, 4);
        EXPECT_EQ(written(row.format).toHex(), (header + pixels).toHex()) << std::hex << row.flags;
        const int pitch = pixels.size() / 2;
        header.replace(16, 4, littleEndian(row.flags | 0x10000, 4));
        EXPECT_EQ(written(row.format, true), header + pixels.mid(pitch) + pixels.left(pitch));
    }
    EXPECT_EQ(pvr2Data(QImage(64, 32, QImage::Format_ARGB32), {}).size(), 8244);
    EXPECT_TRUE(written(Format::etc1).isEmpty());
    EXPECT_TRUE(written(Format::channels("rgba", {5, 5, 5, 5})).isEmpty());
    EXPECT_TRUE(pvr2Data(QImage(), {}).isEmpty());
}

TEST_F(PvrTest, compressedFormats) {
    QImage sheet(16, 16, QImage::Format_ARGB32);
    sheet.fill(qRgb(255, 0, 0));
    for (int format = 0; format < 4; ++format) {
        const bool four = format >= 2, alpha = format % 2 == 1;
        const QByteArray file = pvr2Data(sheet, pvrOptions(quint64(format)));
        ASSERT_EQ(file.size(), 52 + (four ? 128 : 64));
        EXPECT_EQ(file.mid(16, 12), littleEndian((four ? 0x19U : 0x18U) | (alpha ? 0x8000U : 0), 4) +
                                        littleEndian(four ? 128 : 64, 4) + littleEndian(four ? 4 : 2, 4));
        EXPECT_EQ(file.mid(28, 16), QByteArray(12, '\0') + littleEndian(alpha, 4));
        // The same blocks behind each version's header.
        const QByteArray blocks = file.mid(52);
        for (const QByteArray& other : {file, littleEndian(44, 4) + file.mid(4, 40) + blocks,
                                        pvr3File(quint64(format), 0, 16, 16, blocks)}) {
            const QImage image = readBytes("a.pvr", other);
            EXPECT_TRUE(samePixels(image, sheet));
        }
    }
    sheet.fill(0);
    EXPECT_EQ(readBytes("a.pvr", pvr2Data(sheet, pvrOptions(Format::pvrtc4))).pixel(3, 3) >> 24, 0U);
    EXPECT_EQ(readBytes("a.pvr", pvr2Data(sheet, pvrOptions(Format::pvrtc4Opaque))).pixel(3, 3) >> 24, 255U);
    // A side below a block, and one that is no power of two.
    EXPECT_EQ(readBytes("a.pvr", pvr2File(0x8018, 4, 2, QByteArray(8, '\0'))).size(), QSize(4, 2));
    EXPECT_TRUE(readBytes("a.pvr", pvr2File(0x8019, 12, 4, QByteArray(24, '\0'))).isNull());
    const LogCatcher log;
    for (const QSize size : {QSize(4, 4), QSize(12, 12), QSize(8192, 8)})
        EXPECT_TRUE(pvr2Data(QImage(size, QImage::Format_ARGB32), pvrOptions(Format::pvrtc2)).isEmpty());
    EXPECT_EQ(log.lines().count(QStringLiteral("Failed to transcode data")), 3);
    // ETC1: a block of zeros is nearly black.
    for (const QByteArray& etc1 :
         {pvr2File(0x36, 5, 4, QByteArray(16, '\0')), pvr3File(6, 0, 5, 4, QByteArray(16, '\0'))}) {
        EXPECT_EQ(readBytes("a.pvr", etc1).size(), QSize(5, 4));
        EXPECT_EQ(readBytes("a.pvr", etc1).pixel(4, 3) & 0xFFF0F0F0, 0xFF000000);
        EXPECT_TRUE(readBytes("a.pvr", etc1.left(etc1.size() - 1)).isNull());
    }
}

TEST_F(PvrTest, containersByName) {
    const QImage sheet = noise(40, 30, 1);
    const QByteArray plain = pvr2Data(sheet, pvrOptions(Format::rgba4444));
    const auto file = [&](const char* name) {
        return saved(QString::fromLatin1(name), QStringLiteral("pvr"), sheet, pvrOptions(Format::rgba4444));
    };
    EXPECT_EQ(file("A.PVR"), plain);
    EXPECT_EQ(file("a.pvrtc"), plain);
    const QByteArray ccz = file("SHEET.PVR.CCZ");
    EXPECT_EQ(ccz.left(16), QByteArray::fromHex("43435a21 0000 0002 00000000") + bigEndian(2452, 4));
    EXPECT_EQ(qUncompress(ccz.mid(12)), plain);
    const QByteArray gz = file("a.pvr.gz");
    const gzFile gzip = gzopen(QFile::encodeName(path(QStringLiteral("z.gz"))).constData(), "wb");
    ASSERT_EQ(gzwrite(gzip, plain.constData(), uint(plain.size())), plain.size());
    gzclose(gzip);
    EXPECT_EQ(gz, content(QStringLiteral("z.gz")));
    for (const char* name : {"a.ccz", "a.gz", "a.png", "a"})
        EXPECT_TRUE(file(name).isEmpty()) << name;
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 5);
    EXPECT_TRUE(file("no/a.pvr").isEmpty());
    if (QFile::link(QStringLiteral("/dev/full"), path(QStringLiteral("full.pvr")))) {
        EXPECT_FALSE(loader.save(path(QStringLiteral("full.pvr")), QStringLiteral("pvr"), sheet));
    }
}

TEST_F(PvrTest, damagedHeaders) {
    const QByteArray pixels(7 * 5 * 4, 'x');
    const QByteArray good = pvr2File(0x8012, 7, 5, pixels);
    ASSERT_FALSE(readBytes("a.pvr", good).isNull());
    const auto changed = [&](const QByteArray& file, int offset, quint32 word) {
        return readBytes("a.pvr", QByteArray(file).replace(offset, 4, littleEndian(word, 4))).isNull();
    };
    EXPECT_TRUE(changed(good, 0, 48));
    EXPECT_TRUE(changed(good, 44, 0)) << "no magic";
    for (const quint32 height : {0U, 6U, 16385U, 0xFFFFFFFFU})
        EXPECT_TRUE(changed(good, 4, height)) << height;
    EXPECT_TRUE(changed(good, 16, 0x8012 | 0x200)) << "twiddled";
    EXPECT_TRUE(changed(good, 16, 0x801C)) << "a type that nothing here reads";
    EXPECT_FALSE(changed(good, 20, 0)) << "the file itself tells how much there is";
    const QByteArray third = pvr3File(Format::rgba8888, 0, 7, 5, pixels);
    EXPECT_FALSE(changed(third, 20, 4));
    EXPECT_TRUE(changed(third, 20, 1)) << "signed";
    EXPECT_TRUE(changed(third, 8, 7));
    EXPECT_TRUE(changed(third, 12, 0x10080808)) << "sixteen bits";
    EXPECT_TRUE(changed(third, 48, 1));
    EXPECT_TRUE(changed(third, 48, 0xFFFFFFFF));
    EXPECT_TRUE(readBytes("a.pvr", "").isNull());
}

TEST_F(PvrTest, damagedContainers) {
    const QByteArray plain = pvr2File(0x8012, 7, 5, QByteArray(140, 'x'));
    const QByteArray stream = qCompress(plain).mid(4);
    const auto reads = [](const QByteArray& file) { return !readBytes("a.pvr.ccz", file).isNull(); };
    EXPECT_TRUE(reads(cczFile(stream, 1))) << "the size is a guess";
    EXPECT_TRUE(reads(cczFile(stream, 0xFFFFFFFF, 0, 0)));
    EXPECT_FALSE(reads(cczFile(stream, 0)));
    EXPECT_FALSE(reads(cczFile(stream, 192, 1)));
    EXPECT_FALSE(reads(cczFile(stream, 192, 0, 3)));
    EXPECT_FALSE(reads(cczFile(stream, 192).replace(0, 4, "CCZ?")));
    EXPECT_FALSE(reads(cczFile(QByteArray(stream).replace(stream.size() - 1, 1, "?"), 192))) << "checksum";
    // Damage behind the picture counts too.
    const QByteArray longer = qCompress(plain + QByteArray(5000, 'y')).mid(4);
    EXPECT_TRUE(reads(cczFile(longer, 192)));
    EXPECT_FALSE(reads(cczFile(longer.left(longer.size() - 6), 192)));

    const auto readsGz = [](const QByteArray& file) {
        return !readBytes("a.pvr.gz", gzipStream(file)).isNull();
    };
    EXPECT_TRUE(readsGz(plain));
    EXPECT_FALSE(readsGz(QByteArray(plain).replace(20, 4, littleEndian(141, 4)))) << "more promised";
    EXPECT_TRUE(readsGz(QByteArray(plain).replace(20, 4, littleEndian(141, 4)) + 'x'));
    EXPECT_FALSE(readsGz(QByteArray(plain).replace(20, 4, littleEndian(139, 4)))) << "less than a picture";
    EXPECT_FALSE(readsGz(pvr3File(Format::rgba8888, 0, 7, 5, QByteArray(140, 'x'))));
    EXPECT_FALSE(readsGz(QByteArray(plain).replace(44, 4, "PVR?")));
    EXPECT_FALSE(readBytes("a.pvr.gz", gzipStream(plain.left(99)) + gzipStream(plain.mid(99))).isNull())
        << "members that follow each other are one stream";
    EXPECT_TRUE(readBytes("a.pvr.gz", plain).isNull());
}

// A picture, and more than a gigabyte of zeros behind it, in a few megabytes.
TEST_F(PvrTest, refusesABombWithoutHoldingIt) {
    const QByteArray block(1 << 20, '\0');
    QByteArray packed(8 << 20, Qt::Uninitialized), first = pvr2File(0x8012, 7, 5, QByteArray(140, 'x'));
    z_stream stream = {};
    ASSERT_EQ(deflateInit(&stream, 1), Z_OK);
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = uInt(packed.size());
    const auto feed = [&](const QByteArray& bytes, int flush) {
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
        stream.avail_in = uInt(bytes.size());
        return deflate(&stream, flush);
    };
    feed(first, Z_NO_FLUSH);
    for (int i = 0; i < 1024; ++i)
        feed(block, Z_NO_FLUSH);
    ASSERT_EQ(feed({}, Z_FINISH), Z_STREAM_END);
    packed.truncate(int(stream.total_out));
    deflateEnd(&stream);
    const qint64 before = peakMemory();
    EXPECT_TRUE(readBytes("a.pvr.ccz", cczFile(packed, 1)).isNull());
    EXPECT_LT(peakMemory() - before, 50'000'000);
}
