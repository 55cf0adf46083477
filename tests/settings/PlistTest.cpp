#include "Error.h"
#include "PlistReader.h"
#include "PlistWriter.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QPointF>
#include <QProcess>
#include <QRect>
#include <QTemporaryDir>
#include <QTextCodec>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/resource.h>

namespace {

const char header[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST 1.0//EN\" "
                      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                      "<plist version=\"1.0\">\n";

QVariantHash read(QByteArray document) {
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return PlistReader::read(buffer);
}

QString failure(const QByteArray& document) {
    try {
        read(document);
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), 39);
        return error.message();
    }
    return QString();
}

QByteArray nested(int depth) {
    QByteArray document = "<plist><dict><key>a</key>";
    for (int i = 0; i < depth; ++i)
        document += "<array>";
    for (int i = 0; i < depth; ++i)
        document += "</array>";
    return document + "</dict></plist>";
}

class PlistTest : public testing::Test {
protected:
    QString path() const { return folder.filePath(QStringLiteral("a.plist")); }
    QByteArray content() const {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    QByteArray written(const QVariant& root) {
        EXPECT_TRUE(PlistWriter(path()).write(root));
        return content();
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(PlistTest, writesEveryKind) {
    const QVariantMap root = {
        {QStringLiteral("b"), QVariantList{true, false, -7, 4000000000u, 0.1, 1234567.125, QString()}},
        {QStringLiteral("a&"), QStringLiteral("<ü>")},
        {QStringLiteral("c"),
         QVariantList{QRect(3, 4, 10, 20), QSize(-1, 2), QPoint(5, -6), QPointF(0.5, 1234567.125)}},
        {QStringLiteral("d"), QVariantMap()},
        {QStringLiteral("e"), QStringList{QStringLiteral("x")}},
    };
    EXPECT_EQ(written(root), QByteArray(header) + "    <dict>\n"
                                                  "        <key>a&amp;</key>\n"
                                                  "        <string>&lt;ü&gt;</string>\n"
                                                  "        <key>b</key>\n"
                                                  "        <array>\n"
                                                  "            <true/>\n"
                                                  "            <false/>\n"
                                                  "            <integer>-7</integer>\n"
                                                  "            <integer>4000000000</integer>\n"
                                                  "            <real>0.1</real>\n"
                                                  "            <real>1234567.125</real>\n"
                                                  "            <string></string>\n"
                                                  "        </array>\n"
                                                  "        <key>c</key>\n"
                                                  "        <array>\n"
                                                  "            <string>{{3,4},{10,20}}</string>\n"
                                                  "            <string>{-1,2}</string>\n"
                                                  "            <string>{5,-6}</string>\n"
                                                  "            <string>{0.5,1.23457e+06}</string>\n"
                                                  "        </array>\n"
                                                  "        <key>d</key>\n"
                                                  "        <dict/>\n"
                                                  "        <key>e</key>\n"
                                                  "        <array>\n"
                                                  "            <string>x</string>\n"
                                                  "        </array>\n"
                                                  "    </dict>\n"
                                                  "</plist>\n");
}

TEST_F(PlistTest, hashesGoInKeyOrder) {
    QVariantMap map;
    QVariantHash hash;
    for (int i = 0; i < 200; ++i) {
        const QString key = QString::number(i * 7919 % 1009);
        map.insert(key, i);
        hash.insert(key, i);
    }
    EXPECT_EQ(written(hash), written(map));
}

TEST_F(PlistTest, readsBackWhatWasWritten) {
    const QVariantHash inner = {
        {QStringLiteral("list"), QVariantList{1, 2.5, QVariantList{true}, QVariantHash()}},
        {QStringLiteral("text"), QStringLiteral(" äöü \n <&> ")}};
    const QVariantHash root = {{QStringLiteral("array"), QVariantList{inner, false}}};
    EXPECT_EQ(read(written(root)), root);
    const QVariantHash sizes = read(written(QVariantMap{{QStringLiteral("s"), QSize(1, 2)}}));
    EXPECT_EQ(sizes.value(QStringLiteral("s")), QVariant(QStringLiteral("{1,2}")));
}

TEST_F(PlistTest, otherReadersAgree) {
    written(QVariantMap{{QStringLiteral("a<"), QVariantList{true, 3, 0.1, QStringLiteral("ü&")}},
                        {QStringLiteral("empty"), QVariantMap()}});
    QProcess python;
    python.start(QStringLiteral("python3"),
                 {QStringLiteral("-c"),
                  QStringLiteral("import plistlib,sys; print(plistlib.load(open(sys.argv[1],'rb')) == "
                                 "{'a<': [True, 3, 0.1, '\\u00fc&'], 'empty': {}})"),
                  path()});
    ASSERT_TRUE(python.waitForFinished());
    EXPECT_EQ(python.readAllStandardOutput(), QByteArray("True\n"));
}

TEST_F(PlistTest, failedWriteLeavesFormerFile) {
    const QByteArray former = written(QVariantMap{{QStringLiteral("a"), 1}});
    // XML can't hold this character: no data file at all is better than one that no reader takes.
    EXPECT_FALSE(PlistWriter(path()).write(QVariantMap{{QStringLiteral("a\x01"), 1}}));
    EXPECT_FALSE(PlistWriter(folder.filePath(QStringLiteral("no/a.plist"))).write(QVariantMap()));
    rlimit old;
    getrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, SIG_IGN);
    const rlimit small{200, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const bool written = PlistWriter(path()).write(QVariantMap{{QStringLiteral("a"), 2}});
    setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_FALSE(written);
    EXPECT_EQ(content(), former);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 1);
}

TEST_F(PlistTest, unknownKindEndsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(PlistWriter(path()).write(QVariantList{QVariant(qlonglong(1))}), testing::ExitedWithCode(10),
                "Unknown format for export : qlonglong \\(4\\)");
    EXPECT_TRUE(QDir(folder.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST(PlistReaderTest, readsValues) {
    const QVariantHash values =
        read("<plist><array/><dict><!-- c --><key>n</key><integer>bad</integer><key>r</key><real>1e3</real>"
             "<key>n</key><integer>12</integer><key>t</key><string>a<![CDATA[<b>]]></string></dict></plist>");
    EXPECT_EQ(values.size(), 3);
    EXPECT_EQ(values.value(QStringLiteral("n")), QVariant(12)) << "the later pair counts";
    EXPECT_EQ(values.value(QStringLiteral("r")), QVariant(1000.0));
    EXPECT_EQ(values.value(QStringLiteral("t")), QVariant(QStringLiteral("a<b>")));
    EXPECT_EQ(
        read("<plist><dict><key>n</key><integer>x1</integer></dict></plist>").value(QStringLiteral("n")),
        QVariant(0));
}

TEST(PlistReaderTest, refusals) {
    EXPECT_NE(failure("<plist><dict>"), QString());
    EXPECT_NE(failure(""), QString());
    EXPECT_EQ(failure("<p/>"), QStringLiteral("No <plist> element found at the top-level of the XML file!"));
    EXPECT_EQ(failure("<plist><array/></plist>"), QStringLiteral("Unknown element type <>"));
    EXPECT_EQ(failure("<plist><dict><key>a</key></dict></plist>"), QStringLiteral("Unknown element type <>"));
    EXPECT_EQ(failure("<plist><dict><key>a</key><data/></dict></plist>"),
              QStringLiteral("Unknown element type <data>"));
    EXPECT_EQ(failure("<plist><dict><key>a</key><date/></dict></plist>"),
              QStringLiteral("<date> not yet supported"));
    EXPECT_EQ(failure("<plist><dict><string/></dict></plist>"), QStringLiteral("<key> missign in <dict>"));
}

TEST(PlistReaderTest, hostileDocuments) {
    EXPECT_EQ(failure(nested(100)), QString());
    EXPECT_NE(failure(nested(100'000)), QString());
    EXPECT_EQ(
        failure("<?xml version='1.0' encoding='UTF-7'?>" + nested(100'000).replace("<array>", "+ADw-array>")),
        QStringLiteral("Encoding UTF-7 is not supported"));
    EXPECT_EQ(failure("<?xml version='1.0' encoding='utf-8'?>" + nested(1)), QString());
    const QByteArray body = "<plist><dict><key>a</key><string>&a;</string></dict></plist>";
    for (const char* declarations :
         {"[<!ENTITY a \"x\">]", "SYSTEM \"x\" [<!ENTITY a SYSTEM \"file:///etc/hostname\">]",
          "[<!ENTITY % p \"<!ENTITY a 'x'>\"> %p;]"})
        EXPECT_EQ(failure("<!DOCTYPE plist " + QByteArray(declarations) + ">" + body),
                  QStringLiteral("Declarations inside a document are not supported"))
            << declarations;

    // Attributes are compared with each other. In UTF-16 their names have bytes that look like brackets.
    QString crowded = QStringLiteral("<plist");
    for (int i = 0; i < 60'000; ++i)
        crowded += QStringLiteral(" \u3c41%1 = ''").arg(i);
    crowded += QLatin1String("><dict/></plist>");
    for (const char* encoding : {"UTF-8", "UTF-16", "UTF-16BE", "UTF-16LE"})
        EXPECT_EQ(failure(QTextCodec::codecForName(encoding)->fromUnicode(crowded)),
                  QStringLiteral("An element has more than 200 attributes"))
            << encoding;
}
