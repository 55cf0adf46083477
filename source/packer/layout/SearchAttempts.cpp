#include "SearchAttempts.h"

void SearchAttempts::setFirstFitWins(bool wins) {
    m_parameters.setFirstFitWins(wins);
    m_resultsAhead.clear();
}

PackedResult SearchAttempts::make(QSize size, bool completeOnly) {
    PackerParameters parameters = m_parameters;
    parameters.setSize(size);
    parameters.setCompleteOnly(completeOnly);
    parameters.setResultAhead(find(size, completeOnly));
    return m_attempt(parameters);
}

PackedResult SearchAttempts::makeAhead(QSize size, bool completeOnly) {
    if (const auto known = find(size, completeOnly))
        return *known;
    PackerParameters parameters = m_parameters;
    parameters.setSize(size);
    parameters.setCompleteOnly(completeOnly);
    parameters.setAhead(true);
    const PackedResult result = m_attempt(parameters);
    const std::lock_guard lock(m_mutex);
    return m_resultsAhead[{size.width(), size.height()}] = result;
}

std::optional<PackedResult> SearchAttempts::find(QSize size, bool completeOnly) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_resultsAhead.find({size.width(), size.height()});
    // One that was given up says nothing about what fits.
    if (found == m_resultsAhead.end() || (found->second.isEmpty() && !completeOnly))
        return std::nullopt;
    return found->second;
}
