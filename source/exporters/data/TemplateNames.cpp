#include "TemplateNames.h"

#include <grantlee/metatype.h>
#include <grantlee/util.h>

#include <QMap>
#include <QRegularExpression>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

/// So that the number fits into 32 bits everywhere.
constexpr int maxDigits = 9;

bool isDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

bool isSeparator(QChar c) { return c.isSpace() || QStringLiteral("/_-.").contains(c); }

TemplateNames::Frame frameOf(const QVariant& sprite) {
    const QVariant name = Grantlee::MetaType::lookup(sprite, QStringLiteral("trimmedName"));
    return TemplateNames::frame(Grantlee::getSafeString(name).get());
}

/// Below every number if there is none.
int valueOf(const TemplateNames::Frame& frame) { return frame.number.isEmpty() ? -1 : frame.number.toInt(); }

} // namespace

TemplateNames::Frame TemplateNames::frame(const QString& name) {
    int digits = name.size();
    while (digits > 0 && isDigit(name[digits - 1]))
        --digits;
    const int count = name.size() - digits;
    int stem = digits;
    while (stem > 0 && isSeparator(name[stem - 1]))
        --stem;
    if (count < 1 || count > maxDigits || stem == 0)
        return {name, {}};
    return {name.left(stem), QString::number(name.midRef(digits).toInt())};
}

double TemplateNames::pixelRatio(const QString& fileName) {
    static const QRegularExpression pattern(
        QStringLiteral(R"re(^.*@([0-9]{1,4}(?:\.[0-9]{1,4})?)x(?![0-9A-Za-z]))re"),
        QRegularExpression::DotMatchesEverythingOption);
    const double ratio = pattern.match(fileName).captured(1).toDouble();
    return ratio > 0 ? ratio : 1;
}

QVariantList TemplateNames::numbered(const QVariantList& sprites) {
    QVariantList result;
    std::copy_if(sprites.begin(), sprites.end(), std::back_inserter(result),
                 [](const QVariant& sprite) { return !frameOf(sprite).number.isEmpty(); });
    return result;
}

QVariantList TemplateNames::animations(const QVariantList& sprites) {
    QMap<QString, std::vector<std::pair<int, QVariant>>> groups;
    for (const QVariant& sprite : sprites) {
        const Frame frame = frameOf(sprite);
        groups[frame.stem].emplace_back(valueOf(frame), sprite);
    }
    QVariantList result;
    for (auto group = groups.begin(); group != groups.end(); ++group) {
        std::stable_sort(group->begin(), group->end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        QVariantList frames;
        for (const auto& [number, sprite] : *group)
            frames.append(sprite);
        result.append(QVariantMap{{QStringLiteral("name"), group.key()}, {QStringLiteral("frames"), frames}});
    }
    return result;
}
