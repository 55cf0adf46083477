#include "DataExporterCSS.h"

#include "DataFile.h"
#include "product.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

// In the order in which browsers have to find them, or one would hide the other.
constexpr const char* pseudoClasses[] = {"link", "visited", "focus", "hover", "active"};

struct Rule {
    QString className;
    int pseudoClass = -1; ///< place in pseudoClasses, -1: none
    PackedSprite sprite;

    QString selector() const {
        return pseudoClass < 0 ? className
                               : className + QLatin1Char(':') + QLatin1String(pseudoClasses[pseudoClass]);
    }
};

Rule rule(const PackedSprite& sprite) {
    Rule rule{sprite.trimmedName(), -1, sprite};
    for (int i = 0; i < int(std::size(pseudoClasses)); ++i) {
        const QString suffix = QLatin1Char('-') + QLatin1String(pseudoClasses[i]);
        if (rule.className.endsWith(suffix)) {
            rule.className.chop(suffix.size());
            rule.pseudoClass = i;
            break;
        }
    }
    // Only now: a folder's separator makes no pseudo-class.
    for (const char c : {'/', '\\', ' '})
        rule.className.replace(QLatin1Char(c), QLatin1Char('-'));
    return rule;
}

bool before(const Rule& a, const Rule& b) {
    return a.className == b.className ? a.pseudoClass < b.pseudoClass : a.className < b.className;
}

void writeRule(QTextStream& stream, const Rule& rule) {
    const QRect source = rule.sprite.sourceRect();
    const QRect frame = rule.sprite.frameRect();
    stream << '.' << rule.selector() << " {width:" << source.width() << "px; height:" << source.height()
           << "px; background-position: -" << frame.left() << "px -" << frame.top() << "px}\n";
}

void writeHead(QTextStream& stream, const QString& token, const QString& texture) {
    stream << "/* ----------------------------------------------------\n"
           << "   created with " << product::homePage << " \n"
           << "   ----------------------------------------------------\n"
           << "   " << token << '\n'
           << "   ----------------------------------------------------\n\n"
           << "   usage: <span class=\"{-spritename-} sprite\"></span>\n\n"
           << "   replace {-spritename-} with the sprite you like to use\n\n"
           << "*/\n\n"
           << ".sprite {display:inline-block; overflow:hidden; "
              "background-repeat: no-repeat;background-image:url("
           << texture << ");}\n\n";
}

} // namespace

DataExporterCSS::DataExporterCSS(const DataExporterInfo& info) : DataExporter(info) {}

QString DataExporterCSS::nameInFile(const PackedSprite& sprite) const { return rule(sprite).selector(); }

void DataExporterCSS::write() const {
    DataFile file(fileName(), QStringLiteral("Failed to write css file %1"));
    writeHead(file.text(), smartUpdateKey(), textureFilePath());
    std::vector<Rule> rules;
    for (const PackedSprite& sprite : sortedSprites())
        rules.push_back(rule(sprite));
    std::stable_sort(rules.begin(), rules.end(), before);
    for (const Rule& each : rules)
        writeRule(file.text(), each);
    file.commit();
}
