#include "Error.h"
#include "GCachedImage.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QVariant>

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <thread>
#include <vector>

#include <sys/resource.h>

namespace {

constexpr int side = 10;
constexpr quint64 imageBytes = side * side * 4;

QImage filled(QRgb color) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

class GImageCacheTest : public testing::Test {
protected:
    GCachedImage handle(QRgb color) { return GCachedImage(filled(color), &cache); }
    QStringList files() const {
        return QDir(folder.path()).entryList(QDir::Files, QDir::Time | QDir::Reversed);
    }
    QString onlyFile() const { return folder.filePath(files().value(0)); }

    QTemporaryDir folder;
    GImageCache cache{2 * imageBytes, folder.path()};
};

int errorCode(const std::function<void()>& action) {
    try {
        action();
    } catch (const Error& error) {
        return error.code();
    }
    return 0;
}

} // namespace

TEST_F(GImageCacheTest, swapsLeastRecentlyUsedFirst) {
    int warnings = 0;
    QObject::connect(&cache, &GImageCache::lowMemoryWarning, [&] { ++warnings; });
    GCachedImage a = handle(1), b = handle(2);
    EXPECT_EQ(cache.used(), 2 * imageBytes);
    EXPECT_TRUE(files().isEmpty());
    EXPECT_EQ(warnings, 0);

    a.image(); // b is the oldest now
    GCachedImage c = handle(3);
    ASSERT_EQ(files().size(), 1);
    EXPECT_EQ(warnings, 1);
    EXPECT_EQ(cache.used(), 2 * imageBytes);
    b = GCachedImage();
    EXPECT_TRUE(files().isEmpty()) << "b was the one on disk";
    EXPECT_EQ(cache.used(), 2 * imageBytes);

    a = GCachedImage();
    c = GCachedImage();
    EXPECT_EQ(cache.used(), 0u);
}

TEST_F(GImageCacheTest, bringsImagesBackAndWritesThemOnce) {
    std::vector<GCachedImage> handles;
    for (QRgb color = 1; color <= 3; ++color)
        handles.push_back(handle(color));
    const QString file = onlyFile();
    EXPECT_EQ(handles[0].size(), QSize(side, side));
    EXPECT_EQ(cache.used(), 2 * imageBytes) << "asking for the size brings nothing back";

    EXPECT_EQ(handles[0].image(), filled(1));
    EXPECT_EQ(cache.used(), 3 * imageBytes) << "what comes back isn't counted before it is there";
    QFile::remove(file); // would be made again if the image were written a second time
    handle(4);           // swaps 2, 3 and then nothing more
    handle(5);
    handles[1].image();
    handles[2].image();
    handle(6);
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_EQ(errorCode([&] { handles[0].image(); }), 54)
        << "it was swapped out, on the strength of the first file";

    handles.clear();
    EXPECT_TRUE(files().isEmpty());
    EXPECT_EQ(cache.used(), 0u);
}

TEST_F(GImageCacheTest, keepsEveryFormatPixelForPixel) {
    const QImage::Format formats[] = {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied,
                                      QImage::Format_Indexed8, QImage::Format_Mono};
    QImage source(301, 77, QImage::Format_ARGB32);
    for (int y = 0; y < source.height(); ++y)
        for (int x = 0; x < source.width(); ++x)
            source.setPixel(x, y, qRgba(x, y, x * y, x + y)); // colours below alpha 0 too
    for (QImage::Format format : formats) {
        GImageCache tiny(0, folder.path());
        const QImage image = source.convertToFormat(format);
        const GCachedImage cached(image, &tiny);
        EXPECT_EQ(tiny.used(), 0u);
        EXPECT_EQ(cached.image(), image) << format;
        EXPECT_EQ(cached.image().format(), format);
    }
    GImageCache tiny(0, folder.path());
    QImage large(1200, 1500, QImage::Format_ARGB32); // several blocks of the file, the last one short
    for (int y = 0; y < large.height(); ++y)
        for (int x = 0; x < large.width(); ++x)
            large.setPixel(x, y, QRgb(x * 2654435761u + y * 40503u));
    EXPECT_EQ(GCachedImage(large, &tiny).image(), large);
}

TEST_F(GImageCacheTest, filesAreTheUsersAloneAndMadeNew) {
    const QString outside = folder.filePath(QStringLiteral("outside"));
    ASSERT_TRUE(QFile(outside).open(QIODevice::WriteOnly));
    GCachedImage a = handle(1);
    // Names can be guessed: a link that lies there must not be written through.
    GImageCache::Entry* entry = cache.add(filled(2));
    ASSERT_TRUE(QFile::link(outside, entry->fileName));
    a.image();
    handle(3);
    EXPECT_EQ(QFileInfo(outside).size(), 0);
    EXPECT_FALSE(QFileInfo(entry->fileName).isSymLink());
    EXPECT_EQ(QFileInfo(entry->fileName).fileName(),
              QStringLiteral("sorv.%1.%2").arg(QCoreApplication::applicationPid()).arg(quintptr(entry)));
    EXPECT_EQ(QFile::permissions(entry->fileName) & (QFile::ReadGroup | QFile::ReadOther), 0);
    EXPECT_EQ(cache.fetch(entry), filled(2));
    cache.release(entry);
}

TEST_F(GImageCacheTest, unwritableFolderLeavesImagesInMemory) {
    GImageCache lost(imageBytes, folder.filePath(QStringLiteral("missing")));
    GCachedImage a(filled(1), &lost);
    EXPECT_EQ(errorCode([&] { GCachedImage(filled(2), &lost); }), 54);
    EXPECT_EQ(lost.used(), imageBytes) << "the refused image isn't kept, the other one is";
    EXPECT_EQ(a.image(), filled(1));
}

TEST_F(GImageCacheTest, fullDiskLeavesNoFile) {
    QImage image(300, 300, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, QRgb(x * 2654435761u ^ y * 2246822519u));
    GImageCache tiny(0, folder.path());
    rlimit old;
    getrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, SIG_IGN);
    const rlimit small{1000, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const int code = errorCode([&] { GCachedImage(image, &tiny); });
    setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_EQ(code, 54);
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(GImageCacheTest, damagedFilesAreErrors) {
    GImageCache tiny(0, folder.path());
    const GCachedImage cached(filled(7), &tiny);
    QFile file(onlyFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    file.close();
    auto replace = [&](const QByteArray& bytes) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
    };
    for (int length = 0; length < content.size(); length += 3) {
        replace(content.left(length));
        EXPECT_EQ(errorCode([&] { cached.image(); }), 54) << length;
    }
    QByteArray damaged = content;
    damaged[damaged.size() - 6] = char(~damaged[damaged.size() - 6]);
    replace(damaged);
    EXPECT_EQ(errorCode([&] { cached.image(); }), 54);
    replace(content);
    EXPECT_EQ(cached.image(), filled(7)) << "a failed attempt changes nothing";
}

TEST_F(GImageCacheTest, handlesAreValues) {
    EXPECT_EQ(GCachedImage().size(), QSize(-1, -1));
    EXPECT_TRUE(GCachedImage().isNull());
    EXPECT_TRUE(GCachedImage().image().isNull());
    const GCachedImage null(QImage(), &cache);
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(cache.used(), 0u);

    const QImage image = filled(1);
    GCachedImage a(image, &cache);
    const GCachedImage b = a;
    EXPECT_EQ(b.image().constBits(), image.constBits()) << "pixels are shared";
    GCachedImage& self = a;
    a = self;
    a = GCachedImage();
    EXPECT_EQ(b.image(), image);
    EXPECT_EQ(cache.used(), imageBytes);
    a = image;
    EXPECT_EQ(a.image(), image);
    EXPECT_EQ(cache.used(), imageBytes) << "an assigned image goes to the cache of the process";

    const QVariant variant = QVariant::fromValue(b);
    EXPECT_STREQ(variant.typeName(), "GCachedImage");
    EXPECT_EQ(variant.value<GCachedImage>().image(), image);
}

TEST_F(GImageCacheTest, threadsShareImages) {
    std::vector<GCachedImage> handles;
    for (QRgb color = 0; color < 8; ++color)
        handles.push_back(handle(color));
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (QRgb n = 0; n < 200; ++n) {
                const QRgb color = (n * 5 + QRgb(t)) % 8;
                const GCachedImage copy = handles[color];
                wrong += copy.image() != filled(color);
                wrong += GCachedImage(filled(n), &cache).image() != filled(n);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_LE(cache.used(), 3 * imageBytes);
    handles.clear();
    EXPECT_EQ(cache.used(), 0u);
    EXPECT_TRUE(files().isEmpty());
}
