#include "FormatsTest.h"

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>
#include <zlib.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace QtUniversalImageLoader;

namespace {

// A plug-in that says yes and notes its name.
class Dummy : public ImageLoaderPlugin {
public:
    Dummy(const QStringList& extensions, const QString& name, bool reads, bool writes)
        : ImageLoaderPlugin(extensions, name, true), m_reads(reads), m_writes(writes) {}

    bool save(const QString& path, const QImage&, const QHash<QString, QVariant>& options) const override {
        saved = path + QLatin1Char(' ') + options.value(formatKey).toString();
        return m_writes;
    }
    bool load(const QString&, QImage* image, QString* format, QHash<QString, QVariant>*) const override {
        *image = QImage(1, 1, QImage::Format_ARGB32); // left behind by a failure too
        if (format)
            *format = name();
        return m_reads;
    }
    QList<ImageLoaderOption> optionList() const override { return {}; }
    bool canRead() const override { return m_reads; }
    bool canWrite() const override { return m_writes; }
    QMap<QString, QString> formats() const override {
        QMap<QString, QString> all;
        for (const QString& extension : extensions())
            all.insert(extension, name());
        return all;
    }

    mutable QString saved;

private:
    bool m_reads;
    bool m_writes;
};

class DummyLoader : public ImageLoader {
public:
    void take(Dummy* plugin) { add(plugin); }
    QString loads(const QString& path) const {
        QString format;
        QImage image;
        return load(path, &format, &image, nullptr) ? format : QString();
    }
};

class ImageLoaderTest : public testing::Test {
protected:
    QString path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }
    void write(const QString& file, const QByteArray& content) {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
    }
    QImage picture() const {
        QImage image(20, 30, QImage::Format_ARGB32);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, qRgba(x * 12, y * 8, x * y % 256, 255 - y));
        return image;
    }

    QTemporaryDir folder;
    ImageLoader loader;
};

} // namespace

TEST(ImageLoaderSelection, takesFirstPluginThatIsAble) {
    DummyLoader loader;
    auto* reader =
        new Dummy({QStringLiteral("x.y"), QStringLiteral("both")}, QStringLiteral("R"), true, false);
    auto* writer =
        new Dummy({QStringLiteral("both"), QStringLiteral("out")}, QStringLiteral("W"), false, true);
    auto* late = new Dummy({QStringLiteral("y"), QStringLiteral("both")}, QStringLiteral("L"), true, true);
    for (Dummy* plugin : {reader, writer, late})
        loader.take(plugin);

    EXPECT_EQ(loader.loads(QStringLiteral("/a.both/b.X.Y")), QStringLiteral("R"));
    EXPECT_EQ(loader.loads(QStringLiteral("b.y")), QStringLiteral("L"));
    EXPECT_EQ(loader.loads(QStringLiteral("b.BOTH")), QStringLiteral("R"));
    EXPECT_EQ(loader.loads(QStringLiteral("b.out")), QString()) << "only a writer matches";
    EXPECT_EQ(loader.loads(QStringLiteral("both")), QString()) << "the dot belongs to the extension";
    EXPECT_TRUE(loader.canRead(QStringLiteral("both")));
    EXPECT_TRUE(loader.canWrite(QStringLiteral("Both")));
    EXPECT_TRUE(loader.canWrite(QStringLiteral("x.y"))) << "the shorter extension fits too";
    EXPECT_FALSE(loader.canRead(QStringLiteral("out")));
    EXPECT_FALSE(loader.canRead(QStringLiteral("nothing")));

    EXPECT_TRUE(loader.save(QStringLiteral("name.x.y"), QStringLiteral("both"), QImage()));
    EXPECT_EQ(writer->saved, QStringLiteral("name.x.y both")) << "the path has no say";
    EXPECT_EQ(loader.readableFormats().value(QStringLiteral("both")), QStringLiteral("L"));
    EXPECT_FALSE(loader.readableFormats().contains(QStringLiteral("out")));
    EXPECT_EQ(loader.writableFormats().value(QStringLiteral("out")), QStringLiteral("W"));
    EXPECT_FALSE(loader.readableFormats().contains(QStringLiteral("swf")));

    const int before = loader.plugins().size();
    delete reader;
    EXPECT_EQ(loader.plugins().size(), before - 1);
    EXPECT_EQ(loader.loads(QStringLiteral("b.both")), QStringLiteral("L"));
}

TEST_F(ImageLoaderTest, failedLoadLeavesNull) {
    write(path("broken.png"), "no picture");
    write(path("note.txt"), "no picture either");
    ASSERT_TRUE(picture().save(path("good.png")));
    ASSERT_TRUE(QFile::copy(path("good.png"), path("good")));
    ASSERT_TRUE(QFile::copy(path("good.png"), path("good.txt")));
    for (const char* name : {"broken.png", "note.txt", "missing.png", "good", "good.txt"}) {
        QImage image = picture();
        EXPECT_FALSE(loader.load(path(name), nullptr, &image, nullptr)) << name;
        EXPECT_TRUE(image.isNull()) << name;
        EXPECT_TRUE(loader.load(path(name)).isNull()) << name;
    }
    EXPECT_FALSE(loader.load(path("good.png"), nullptr, nullptr, nullptr));
}

TEST_F(ImageLoaderTest, readsWhatTheToolkitReads) {
    write(path("a.svg"), "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='5'><rect width='4' "
                         "height='5' fill='red'/></svg>");
    write(path("a.gif"),
          QByteArray::fromBase64("R0lGODlhAQABAIAAAP///wAAACH5BAEAAAAALAAAAAABAAEAAAICRAEAOw=="));
    for (const QByteArray& format : QImageWriter::supportedImageFormats())
        ASSERT_TRUE(picture().save(path("a.") + QString::fromLatin1(format))) << format.constData();
    const QStringList names = QDir(folder.path()).entryList(QDir::Files);
    EXPECT_GE(names.size(), 10);
    for (const QString& name : names) {
        QString format;
        QImage image;
        // The others have tests of their own.
        if (!loader.plugins().constLast()->extensions().contains(name.mid(2)))
            continue;
        EXPECT_TRUE(loader.load(folder.filePath(name), &format, &image, nullptr)) << name.toStdString();
        EXPECT_EQ(image, QImage(folder.filePath(name))) << name.toStdString();
        EXPECT_EQ(format, name.mid(2));
    }
    ASSERT_TRUE(QFile::rename(path("a.png"), path("A.PNG")));
    QString format;
    QImage image;
    EXPECT_TRUE(loader.load(path("A.PNG"), &format, &image, nullptr));
    EXPECT_EQ(format, QStringLiteral("PNG"));
    EXPECT_EQ(image, picture());
}

TEST_F(ImageLoaderTest, describesFormats) {
    const QMap<QString, QString> formats = loader.readableFormats();
    EXPECT_EQ(formats.value(QStringLiteral("bmp")), QStringLiteral("Bitmap"));
    EXPECT_EQ(formats.value(QStringLiteral("svgz")), QStringLiteral("Scalabe Vector Graphics"));
    EXPECT_EQ(formats.value(QStringLiteral("wbmp")), QStringLiteral("Image format"));
    EXPECT_FALSE(formats.contains(QStringLiteral("swf")));
    const ImageLoaderPlugin* last = loader.plugins().constLast();
    EXPECT_EQ(last->name(), QStringLiteral("qt-fallback"));
    EXPECT_TRUE(last->extensions().contains(QStringLiteral("png")));
    QStringList single = last->extensions();
    EXPECT_EQ(single.removeDuplicates(), 0);
    for (const QByteArray& format : QImageReader::supportedImageFormats())
        EXPECT_TRUE(loader.canRead(QString::fromUtf8(format).toUpper())) << format.constData();
}

TEST_F(ImageLoaderTest, refusesWhatIsTooLarge) {
    auto saved = [&](int width, int height) {
        QImage image(width, height, QImage::Format_Mono);
        image.fill(0);
        EXPECT_TRUE(image.save(path("size.png")));
        return loader.load(path("size.png")).size();
    };
    EXPECT_EQ(saved(16384, 1), QSize(16384, 1));
    EXPECT_EQ(saved(16385, 1), QSize(0, 0));
    EXPECT_EQ(saved(1, 16385), QSize(0, 0));
    EXPECT_EQ(saved(16384, 8192), QSize(16384, 8192));
    EXPECT_EQ(saved(16384, 8193), QSize(0, 0));
}

// Headers that claim a picture of 1.9 GB with nothing behind: what counts is that no memory was asked for.
TEST_F(ImageLoaderTest, refusesBeforeMemoryIsTaken) {
    const QByteArray png = QByteArray::fromHex(
        "89504e470d0a1a0a0000000d49484452000055f0000055f0080600000046515ee4000000004944415435af061e");
    QByteArray mng = png;
    mng.replace(0, 8, "\x8aMNG\r\n\x1a\n").replace(11, 5, "\x1cMHDR").insert(24, QByteArray(20, '\0'));
    const QByteArray directory = QByteArray::fromHex("00000100010000000000010020000010000016000000");
    const QByteArray bitmap = QByteArray::fromHex("28000000f0550000e0ab000001002000") + QByteArray(40, '\0');
    write(path("lie.png"), png);
    write(path("lie.mng"), mng);
    write(path("bitmap.ico"), directory + bitmap);
    write(path("png.ico"), directory + png);
    write(path("other name.jpg"), mng);
    for (const QString& name : QDir(folder.path()).entryList(QDir::Files)) {
        const qint64 before = peakMemory();
        EXPECT_TRUE(loader.load(folder.filePath(name)).isNull()) << name.toStdString();
        EXPECT_LT(peakMemory() - before, 500'000'000) << name.toStdString();
    }
}

// Texts that would inflate to a gigabyte, all of which the toolkit would keep.
TEST_F(ImageLoaderTest, leavesTextsAlone) {
    QByteArray text("zTXtkey\0\0", 9);
    text += qCompress(QByteArray(7'900'000, 'a')).mid(4);
    const uLong checksum =
        crc32(0, reinterpret_cast<const Bytef*>(text.constData()), static_cast<uInt>(text.size()));
    const auto number = [](quint32 value) {
        value = qToBigEndian(value);
        return QByteArray(reinterpret_cast<const char*>(&value), 4);
    };
    const QByteArray chunk =
        number(static_cast<quint32>(text.size()) - 4) + text + number(static_cast<quint32>(checksum));
    ASSERT_TRUE(picture().save(path("a.png")));
    QFile file(path("a.png"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray plain = file.readAll();
    QByteArray full = plain;
    full.insert(full.indexOf("IHDR") + 21, chunk.repeated(130));
    const QByteArray directory = QByteArray::fromHex("00000100010000000000010020000000100016000000");
    write(path("full.png"), full);
    write(path("plain.ico"), directory + plain);
    write(path("full.ico"), directory + full);
    // One that says it is two gigabytes long, in a file that nearly is.
    write(path("long.png"), plain.left(33) + QByteArray::fromHex("7fffffff") + "zTXt");
    ASSERT_TRUE(QFile::resize(path("long.png"), 2'147'483'000));
    EXPECT_EQ(loader.load(path("plain.ico")), picture());
    const qint64 before = peakMemory();
    EXPECT_EQ(loader.load(path("full.png")), picture());
    EXPECT_TRUE(loader.load(path("full.ico")).isNull());
    EXPECT_TRUE(loader.load(path("long.png")).isNull());
    EXPECT_LT(peakMemory() - before, 200'000'000);
}

TEST_F(ImageLoaderTest, savesAnyPathInTheFormatAsked) {
    EXPECT_TRUE(loader.save(path("plain"), QStringLiteral("BMP"), picture()));
    EXPECT_EQ(QImageReader::imageFormat(path("plain")), QByteArray("bmp"));
    EXPECT_TRUE(loader.save(path("sheet.tmp"), QStringLiteral("bmp"), picture()));
    EXPECT_EQ(QImageReader::imageFormat(path("sheet.tmp")), QByteArray("bmp"));
    EXPECT_TRUE(loader.save(path("sheet.jpg"), QStringLiteral("jpg"), picture()));
    ASSERT_TRUE(picture().save(path("toolkit.jpg")));
    QFile ours(path("sheet.jpg")), toolkit(path("toolkit.jpg"));
    ASSERT_TRUE(ours.open(QIODevice::ReadOnly) && toolkit.open(QIODevice::ReadOnly));
    EXPECT_EQ(ours.readAll(), toolkit.readAll());

    EXPECT_FALSE(loader.save(path("sheet.png"), QStringLiteral("nothing"), picture()));
    EXPECT_FALSE(loader.save(path("sheet.gif"), QStringLiteral("gif"), picture())) << "read, never written";
    EXPECT_FALSE(QFile::exists(path("sheet.gif")));
    EXPECT_FALSE(loader.save(path("null.bmp"), QStringLiteral("bmp"), QImage()));
    EXPECT_FALSE(QFile::exists(path("null.bmp")));
    EXPECT_FALSE(loader.save(path("no/such/folder.bmp"), QStringLiteral("bmp"), picture()));
}

TEST_F(ImageLoaderTest, threadsLoadAtOnce) {
    ASSERT_TRUE(picture().save(path("a.png")));
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int n = 0; n < 50; ++n)
                wrong += ImageLoader::instance()->load(path("a.png")) != picture();
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(ImageLoader::instance(true), nullptr);
    EXPECT_EQ(ImageLoader::instance(), ImageLoader::instance());
}
