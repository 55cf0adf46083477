#pragma once

#include <QSet>
#include <QString>

#include <memory>

class Settings;

/// The resolutions that one job publishes: the main sheet first, then one variant for each AutoSDSettings of
/// the job's settings. Each gets a deep copy of them with scale, limits and file names changed.
class VariantPlan {
public:
    /// Not owned; must outlive the plan.
    explicit VariantPlan(const Settings& settings);

    /// Settings of the next sheet; null if none is left. Throws Error for settings that no sheet can be made
    /// of.
    std::unique_ptr<Settings> next();

    /// What a publish needs beyond a preview: scales that sheets can have, and a part of the names that
    /// variants replace. Throws Error.
    void checkVariants() const;

    /// Both sides of the main sheet, all positions and sizes are multiples of it; 1 without identical
    /// layouts.
    int baseFactor() const { return m_baseFactor; }

private:
    void computeBaseValues();
    void validate() const;
    void applyIdenticalLayout(Settings& variant, double scale) const;
    void applyFixedSize(Settings& variant, double scale) const;
    void applyExtension(Settings& variant, const QString& extension) const;
    void claimNames(const Settings& variant);

    const Settings& m_settings;
    int m_index = 0; ///< 0 for the main sheet, n for the n-th entry
    int m_baseShapePadding = 0;
    int m_baseBorderPadding = 0;
    int m_baseExtrude = 0;
    int m_baseFactor = 1;
    QSet<QString> m_names; ///< absolute paths of all files so far
};
