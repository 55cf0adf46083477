#include "TemplateFilters.h"

#include "TemplateNames.h"
#include "TemplateQuoting.h"

#include <grantlee/filter.h>
#include <grantlee/util.h>

#include <cmath>

namespace {

/// Gives a text, which is printed as it is.
class TextFilter : public Grantlee::Filter {
public:
    using Function = QString (*)(const QString& text);

    explicit TextFilter(Function function) : m_function(function) {}

    QVariant doFilter(const QVariant& input, const QVariant&, bool) const override {
        const QString text = m_function(Grantlee::getSafeString(input).get());
        return QVariant::fromValue(Grantlee::markSafe(Grantlee::SafeString(text)));
    }

private:
    Function m_function;
};

/// Nothing if one of the two isn't a number, or the result is none.
class NumberFilter : public Grantlee::Filter {
public:
    using Function = double (*)(double left, double right);

    explicit NumberFilter(Function function) : m_function(function) {}

    QVariant doFilter(const QVariant& input, const QVariant& argument, bool) const override {
        bool isNumber = false;
        const double left = numberOf(input, isNumber);
        const double right = isNumber ? numberOf(argument, isNumber) : 0;
        const double result = m_function(left, right);
        if (!isNumber || !std::isfinite(result))
            return {};
        // A whole number prints without a point and without an exponent.
        constexpr double exact = 1e15;
        return std::abs(result) < exact && result == std::trunc(result) ? QVariant(qint64(result))
                                                                        : QVariant(result);
    }

private:
    static double numberOf(const QVariant& value, bool& isNumber) {
        const bool isText = value.userType() == qMetaTypeId<Grantlee::SafeString>();
        return isText ? Grantlee::getSafeString(value).get().toDouble(&isNumber) : value.toDouble(&isNumber);
    }

    Function m_function;
};

class ListFilter : public Grantlee::Filter {
public:
    using Function = QVariantList (*)(const QVariantList& list);

    explicit ListFilter(Function function) : m_function(function) {}

    QVariant doFilter(const QVariant& input, const QVariant&, bool) const override {
        return m_function(input.toList());
    }

private:
    Function m_function;
};

QString stem(const QString& name) { return TemplateNames::frame(name).stem; }
QString number(const QString& name) { return TemplateNames::frame(name).number; }
QString pixelRatio(const QString& name) { return QString::number(TemplateNames::pixelRatio(name)); }

double plus(double left, double right) { return left + right; }
double minus(double left, double right) { return left - right; }
double times(double left, double right) { return left * right; }

} // namespace

QHash<QString, Grantlee::Filter*> TemplateFilters::filters(const QString&) {
    return {
        {QStringLiteral("json"), new TextFilter(TemplateQuoting::json)},
        {QStringLiteral("lua"), new TextFilter(TemplateQuoting::lua)},
        {QStringLiteral("css"), new TextFilter(TemplateQuoting::css)},
        {QStringLiteral("xml"), new TextFilter(TemplateQuoting::xml)},
        {QStringLiteral("line"), new TextFilter(TemplateQuoting::line)},
        {QStringLiteral("stem"), new TextFilter(stem)},
        {QStringLiteral("number"), new TextFilter(number)},
        {QStringLiteral("pixelRatio"), new TextFilter(pixelRatio)},
        {QStringLiteral("plus"), new NumberFilter(plus)},
        {QStringLiteral("minus"), new NumberFilter(minus)},
        {QStringLiteral("times"), new NumberFilter(times)},
        {QStringLiteral("numbered"), new ListFilter(TemplateNames::numbered)},
        {QStringLiteral("animations"), new ListFilter(TemplateNames::animations)},
    };
}
