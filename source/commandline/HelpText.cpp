#include "HelpText.h"

#include "ImageLoader.h"
#include "OptionSections.h"
#include "product.h"

#include <algorithm>

namespace {

QString blanks(int count) { return QString(count, QLatin1Char(' ')); }

QString optionLines(const Option& option, int column) {
    const OptionHelp& help = option.help;
    QString head = blanks(help.indent) + option.name;
    if (!help.value.isEmpty())
        head += QLatin1Char(' ') + help.value;
    QString text = help.heading.isEmpty() ? QString() : help.heading + QLatin1Char('\n');
    // An option too long for the column keeps one blank before its text.
    text += head.leftJustified(std::max(column, head.size() + 1)) + help.lines.first() + QLatin1Char('\n');
    for (int i = 1; i < help.lines.size(); ++i)
        text += blanks(30) + help.lines.at(i) + QLatin1Char('\n');
    if (help.list) {
        for (const auto& [name, description] : help.list())
            text +=
                blanks(34) + name.rightJustified(10) + QLatin1String(" - ") + description + QLatin1Char('\n');
    }
    return text;
}

QString sectionText(const OptionSectionLayout& layout) {
    QString text =
        QLatin1String(layout.isSubsection ? "  " : "") + QLatin1String(layout.title) + QLatin1String(":\n");
    QString late;
    for (const Option* option : optionsOf(layout.section)) {
        text += optionLines(*option, layout.column);
        if (!late.isEmpty())
            text += blanks(30) + late + QLatin1Char('\n');
        late = option->help.lateLine;
    }
    return text;
}

QString usage() {
    QString text = QStringLiteral(
        "Usage: Sorvane [options] [<*.png|gif|tif|jpg|swf|...>] [<imagefolder>] [<*.svs>*] \n"
        "You can specify one or more .png or .svs files or directories for processing.\n"
        "   <folder>                   Recursively adds all known files in the sprite sheet\n"
        "   <*.svs>                    Project file made with the graphical program\n"
        "                              Additional set options override settings in the *.svs file\n"
        "   <*.swf>                    Flash movie, one sprite per frame; needs --enable-swf-import\n"
        "   <images>                   Image formats, supported: \n");
    auto formats = QtUniversalImageLoader::ImageLoader::instance()->readableFormats();
    formats.insert(QStringLiteral("swf"), QStringLiteral("Flash"));
    for (auto format = formats.cbegin(); format != formats.cend(); ++format)
        text += blanks(37) + format.key().leftJustified(10) + format.value() + QLatin1Char('\n');
    return text;
}

QString examples() {
    return QStringLiteral(
        "Examples:\n"
        "  Sorvane assets/*.png\n"
        "        creates out.plist and out.png from all png files in assets\n"
        "        trimming all files and creating a texture with max. 2048x2048px \n"
        "  Sorvane --data main-hd.plist --format cocos2d --sheet main-hd.png assets/*.png\n"
        "        creates main-hd.plist and main-hd.png from all png files in assets\n"
        "        trimming all files and creating a texture with max. 2048x2048px \n"
        "  Sorvane --scale 0.5 --max-size 1024 --data main-sd.plist --format cocos2d --sheet main-sd.png "
        "assets/*.png\n"
        "        creates main-sd.plist and main-sd.png from all png files in assets\n"
        "        scaling all images to 50%, trimming all files and creating \n"
        "        a texture with max. 1024x1024px \n");
}

} // namespace

QString helpText() {
    QString text = QStringLiteral("Sorvane - %1\n").arg(QLatin1String(product::version));
    text += QStringLiteral("Packs sprites into sheets. Documentation and news: %1\n\n")
                .arg(QLatin1String(product::homePage));
    text += usage() + QLatin1Char('\n');
    for (const OptionSectionLayout& section : optionSections())
        text += sectionText(section) + QLatin1Char('\n');
    return text + examples();
}

QString versionText() { return QStringLiteral("Sorvane %1\n").arg(QLatin1String(product::version)); }
