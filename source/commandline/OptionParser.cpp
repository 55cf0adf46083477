#include "OptionParser.h"

#include "ConsoleLog.h"
#include "Error.h"
#include "HelpText.h"
#include "OptionTable.h"
#include "Settings.h"
#include "product.h"

#include <QSet>

#include <algorithm>
#include <numeric>
#include <optional>

namespace {

[[noreturn]] void fail(const QString& message) { throw Error(Error::CommandLine, message); }

[[noreturn]] void failMissing(const QString& name) {
    fail(QStringLiteral("Missing value for parameter %1").arg(name));
}

std::optional<QString> takeValue(QStringList& arguments, const QString& name) {
    const int index = arguments.indexOf(name);
    if (index < 0)
        return std::nullopt;
    if (index + 1 == arguments.size())
        failMissing(name);
    const QString value = arguments.takeAt(index + 1);
    arguments.removeAt(index);
    if (arguments.contains(name))
        fail(QStringLiteral("Parameter %1 specified multiple times.").arg(name));
    return value;
}

/// In one pass: a build script may give thousands of patterns.
QStringList takeValues(QStringList& arguments, const QString& name) {
    QStringList values;
    QStringList others;
    for (int i = 0; i < arguments.size(); ++i) {
        if (arguments.at(i) != name) {
            others.append(arguments.at(i));
            continue;
        }
        if (++i == arguments.size())
            failMissing(name);
        values.append(arguments.at(i));
    }
    arguments = others;
    return values;
}

int toInteger(const Option& option, const QString& text) {
    bool isNumber = false;
    const int value = text.toInt(&isNumber, 10);
    if (!isNumber)
        fail(QStringLiteral("Illegal value for %1: %2, integer required").arg(option.name, text));
    if (option.range == OptionRange::Positive && value <= 0)
        fail(QStringLiteral("Value for %1 must be > 0 ").arg(option.name));
    if (option.range == OptionRange::NotNegative && value < 0)
        fail(QStringLiteral("Value for %1 must be >= 0 ").arg(option.name));
    return value;
}

float toReal(const Option& option, const QString& text) {
    bool isNumber = false;
    const float value = text.toFloat(&isNumber);
    if (!isNumber)
        fail(QStringLiteral("Illegal value for %1: %2, float required").arg(option.name, text));
    return value;
}

/// The option's value, taken out of the arguments; nothing if the option isn't among them.
std::optional<OptionValue> take(const Option& option, QStringList& arguments) {
    OptionValue value;
    if (option.kind == OptionKind::Flag) {
        if (!arguments.removeOne(option.name))
            return std::nullopt;
        return value;
    }
    if (option.kind == OptionKind::List) {
        value.list = takeValues(arguments, option.name);
        return value.list.isEmpty() ? std::nullopt : std::optional(value);
    }
    const std::optional<QString> text = takeValue(arguments, option.name);
    if (!text)
        return std::nullopt;
    value.text = *text;
    if (option.kind == OptionKind::Integer)
        value.integer = toInteger(option, *text);
    if (option.kind == OptionKind::Float)
        value.real = toReal(option, *text);
    return value;
}

void deriveTextureFormat(OptionContext& context) {
    using Format = SettingsBase::TextureFormat;
    static const std::pair<const char*, Format> suffixes[] = {
        {".pvr", Format::pvr2}, {".pvr.ccz", Format::pvr2ccz}, {".pvr.gz", Format::pvr2gz},
        {".png", Format::png},  {".jpg", Format::jpg},         {".jpeg", Format::jpg},
        {".bmp", Format::bmp},  {".tga", Format::tga},         {".tiff", Format::tiff}};
    Settings& settings = context.settings;
    const QString sheet = settings.textureFileName().path().toLower();
    for (const auto& [suffix, format] : suffixes) {
        if (sheet.endsWith(QLatin1String(suffix))) {
            settings.setTextureFormat(format);
            return;
        }
    }
    using PixelFormat = SettingsBase::OutputFormat;
    if (sheet.endsWith(QLatin1String(".pkm"))) {
        if (context.pixelFormatGiven && settings.outputFormat() != PixelFormat::ETC1)
            fail(QStringLiteral("pkm output format is only supported with ETC1 compression"));
        settings.setTextureFormat(Format::pkm);
        settings.setOutputFormat(PixelFormat::ETC1);
    } else if (sheet.endsWith(QLatin1String(".ppm"))) {
        fail(QStringLiteral("Can't derive ppm internal format. Please use --texture-format "
                            "(ppm_ascii|ppm_binary)"));
    }
}

[[noreturn]] void failUnknown(const QString& argument) {
    ConsoleLog::instance().print(helpText());
    QString message =
        QStringLiteral("Unknown argument %1 - please check parameters or visit %2 for newer version")
            .arg(argument, QLatin1String(product::homePage));
    const QString nearest = nearestOption(argument);
    if (!nearest.isEmpty())
        message += QStringLiteral("\ndid you mean %1?").arg(nearest);
    fail(message);
}

/// Number of letters to insert, remove or change to make one text of the other.
int editDistance(const QString& a, const QString& b) {
    std::vector<int> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < a.size(); ++i) {
        int diagonal = row[0];
        row[0] = i + 1;
        for (int j = 0; j < b.size(); ++j) {
            const int changed = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

/// Each as it stands, unless it is in the list. A shell makes a hundred thousand names of one pattern, which
/// addFile() would compare all with all.
void addFiles(Settings& settings, const QStringList& arguments) {
    GFileNameList files = settings.fileList();
    QSet<QString> known;
    for (const GFileName& file : qAsConst(files))
        known.insert(file.path());
    for (const QString& argument : arguments) {
        if (known.contains(argument))
            continue;
        known.insert(argument);
        files.append(argument);
    }
    settings.setFileList(files);
}

} // namespace

void parseOptions(OptionContext& context, QStringList arguments) {
    for (const Option& option : optionTable()) {
        if (!option.apply)
            continue;
        if (const std::optional<OptionValue> value = take(option, arguments))
            option.apply(context, *value);
    }
    if (!context.textureFormatGiven)
        deriveTextureFormat(context);
    for (const QString& argument : qAsConst(arguments)) {
        if (argument.startsWith(QLatin1String("--")))
            failUnknown(argument);
    }
    addFiles(context.settings, arguments);
}

QString nearestOption(const QString& mistyped) {
    // "--option=value" is another program's way of writing; the name is what can be found.
    const QString typed = mistyped.section(QLatin1Char('='), 0, 0);
    QString nearest;
    int distance = 2 + typed.size() / 6;
    for (const Option& option : optionTable()) {
        const int other = editDistance(typed, option.name);
        // A flag that stands twice is left over under its right name: nothing nearer can be meant.
        if (other == 0 && typed == mistyped)
            return {};
        if (other < distance) {
            distance = other;
            nearest = option.name;
        }
    }
    return nearest;
}
