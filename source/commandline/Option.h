#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <utility>
#include <vector>

class Settings;

/// How an option takes itself out of the argument list.
enum class OptionKind {
    Flag,    ///< the name alone, once
    String,  ///< name and value, once
    Integer, ///< the same, base 10
    Float,   ///< the same, single precision
    List,    ///< name and value, any number of times
};

/// What an integer may be.
enum class OptionRange { Any, NotNegative, Positive };

/// The value that an option was given, in the field of its kind.
struct OptionValue {
    QString text;
    int integer = 0;
    float real = 0;
    QStringList list;
};

/// What the options of one run act upon.
struct OptionContext {
    Settings& settings;
    std::function<void(const QString&)> warn;
    bool pixelFormatGiven = false;   ///< the pixel format was asked for by name
    bool textureFormatGiven = false; ///< the sheet's name doesn't decide the texture format
    bool forcePublish = false;
};

/// A name and its description in a list of the help text.
using OptionListEntry = std::pair<QString, QString>;

/// Sections of the help text, in its order.
enum class OptionSection {
    Hidden, ///< deprecated or without effect, not in the help
    Options,
    Output,
    AutoSD,
    Algorithm,
    Dimensions,
    Padding,
    Graphics,
    Additional,
    AndEngine,
    Debugging,
};

/// What the help tells of an option.
struct OptionHelp {
    OptionSection section = OptionSection::Hidden;
    int rank = 0;          ///< order within the section
    QString value;         ///< what stands behind the name, for instance "<int>"
    QStringList lines;     ///< the text; lines after the first stand under it
    QString lateLine = {}; ///< last line of the text, which in the help stands under the next option
    std::function<std::vector<OptionListEntry>()> list = {}; ///< choices, listed under the text
    QString heading = {};                                    ///< line in front of the option
    int indent = 2;
};

/// One row of the table of options: parser, help, manual and completion are made from it.
struct Option {
    QString name;
    OptionKind kind;
    OptionRange range;
    /// Empty for an option that is read elsewhere and stands here for the help alone.
    std::function<void(OptionContext&, const OptionValue&)> apply;
    OptionHelp help;
};
