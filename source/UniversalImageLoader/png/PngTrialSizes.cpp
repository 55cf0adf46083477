#include "PngTrialSizes.h"

#include "DeflateLazySize.h"
#include "DeflateQuickSize.h"
#include "PngDeflate.h"
#include "SideBySide.h"

#include <algorithm>
#include <array>
#include <list>

namespace {

/// The best size so far, for all threads.
class SharedLimit {
public:
    explicit SharedLimit(std::size_t limit) : m_limit(limit) {}

    const std::atomic<std::size_t>& value() const { return m_limit; }

    void lower(std::size_t size) {
        std::size_t limit = m_limit;
        while (size < limit && !m_limit.compare_exchange_weak(limit, size)) {
        }
    }

private:
    std::atomic<std::size_t> m_limit;
};

/// Trials of one filter that are worked out together: one search for matches serves all levels from 4 on,
/// both strategies and two memory levels; the levels below don't care for the strategy.
struct Group {
    int filter;
    bool isLazy;
    std::vector<std::size_t> places; ///< of the trials
};

bool isLazy(const PngTrial& trial) { return trial.strategy < 2 && trial.level >= DeflateLevel::firstLazy; }

/// Whether a trial's size is worked out with that of the group's first.
bool belongsTo(const Group& group, const std::vector<PngTrial>& trials, const PngTrial& trial) {
    const PngTrial& first = trials[group.places.front()];
    if (group.filter != trial.filter || group.isLazy != isLazy(trial))
        return false;
    if (!group.isLazy)
        return std::min(first.strategy, 1) == std::min(trial.strategy, 1) && first.strategy < 2 &&
               trial.strategy < 2 && first.level == trial.level && first.memory == trial.memory;
    std::vector<int> memories = {trial.memory};
    for (const std::size_t place : group.places)
        if (std::find(memories.begin(), memories.end(), trials[place].memory) == memories.end())
            memories.push_back(trials[place].memory);
    return memories.size() <= 2;
}

/// The groups in the order that they are begun. What usually wins and takes longest comes first, so that the
/// others know early when to give up.
std::vector<Group> groupsOf(const std::vector<PngTrial>& trials) {
    std::vector<Group> groups;
    for (const int filter : {FilterAdaptive, FilterNone, FilterPaeth, FilterLeft, FilterUp, FilterAverage})
        for (const bool lazy : {true, false})
            for (std::size_t place = 0; place < trials.size(); ++place) {
                if (trials[place].filter != filter || isLazy(trials[place]) != lazy)
                    continue;
                const auto group = std::find_if(groups.begin(), groups.end(), [&](const Group& candidate) {
                    return belongsTo(candidate, trials, trials[place]);
                });
                if (group != groups.end())
                    group->places.push_back(place);
                else
                    groups.push_back({filter, lazy, {place}});
            }
    return groups;
}

class Foretelling {
public:
    Foretelling(const std::vector<PngTrial>& trials, int windowBits, std::size_t limit)
        : m_trials(trials), m_windowBits(windowBits), m_limit(limit), m_sizes(trials.size()) {}

    /// Any number of threads at once, each with another group.
    void run(const Group& group, const PngFilteredRows& rows) {
        if (group.isLazy)
            runLazy(group, rows);
        else
            runQuick(group, rows);
    }

    PngTrialSizes takeSizes() { return std::move(m_sizes); }

private:
    void runQuick(const Group& group, const PngFilteredRows& rows) {
        const PngTrial& trial = m_trials[group.places.front()];
        const int windowBits = windowFor(trial, rows);
        std::optional<std::size_t> size;
        if (trial.strategy == 2)
            size = deflateHuffmanSize(rows, trial.memory, windowBits, m_limit.value());
        else if (trial.strategy == 3)
            size = deflateRunsSize(rows, trial.memory, windowBits, m_limit.value());
        else
            size = deflateFastSize(rows, trial.level, trial.memory, windowBits, m_limit.value());
        if (size)
            m_limit.lower(*size);
        for (const std::size_t place : group.places)
            m_sizes[place] = size;
    }

    struct Running {
        std::size_t place;
        DeflateLazySize size;
    };

    void runLazy(const Group& group, const PngFilteredRows& rows) {
        const PngTrial& first = m_trials[group.places.front()];
        const int windowBits = windowFor(first, rows);
        std::array<int, 2> memories = {first.memory, first.memory};
        unsigned chain = 0;
        std::list<Running> running;
        for (const std::size_t place : group.places) {
            const PngTrial& trial = m_trials[place];
            if (trial.memory != memories[0])
                memories[1] = trial.memory;
            chain = std::max(chain, DeflateLevel::of(trial.level).chain);
            running.push_back({place, DeflateLazySize(rows, trial.level, trial.memory, trial.strategy == 1,
                                                      windowBits, trial.memory == memories[0] ? 0 : 1)});
        }
        DeflateMatches matches(rows, DeflateFeed(rows, windowBits).maximumDistance(), chain, memories);
        while (!running.empty()) {
            const std::size_t end = matches.advance();
            running.remove_if([&](Running& trial) { return isDone(trial, matches, end); });
        }
    }

    /// Lets a trial go on. True if there is nothing left to do for it.
    bool isDone(Running& trial, DeflateMatches& matches, std::size_t end) {
        trial.size.run(matches, end);
        if (trial.size.streamBytes() > m_limit.value())
            return true;
        if (!trial.size.isFinished())
            return false;
        m_sizes[trial.place] = trial.size.streamBytes();
        m_limit.lower(trial.size.streamBytes());
        return true;
    }

    int windowFor(const PngTrial& trial, const PngFilteredRows& rows) const {
        return deflateWindowBits(rows.bytes.size(), deflateParameters(trial, m_windowBits).windowBits);
    }

    const std::vector<PngTrial>& m_trials;
    const int m_windowBits;
    SharedLimit m_limit;
    PngTrialSizes m_sizes;
};

} // namespace

PngDeflateParameters deflateParameters(const PngTrial& trial, int windowBits) {
    // Strategies 2 and 3 look no farther back than a byte.
    return {trial.level, trial.memory, trial.strategy, trial.strategy >= 2 ? 9 : windowBits};
}

PngTrialSizes measurePngTrials(PngRowsCache& rows, const std::vector<PngTrial>& trials, int windowBits,
                               std::size_t limit) {
    SharedLimit shared(limit);
    PngTrialSizes sizes(trials.size());
    sideBySide(trials.size(), [&](std::size_t place) {
        const auto filtered = rows.rows(trials[place].filter);
        const auto idat =
            deflateRows(*filtered, deflateParameters(trials[place], windowBits), shared.value());
        if (!idat)
            return;
        sizes[place] = idat->size();
        shared.lower(idat->size());
    });
    return sizes;
}

PngTrialSizes foretellPngTrials(PngRowsCache& rows, const std::vector<PngTrial>& trials, int windowBits,
                                std::size_t limit) {
    const std::vector<Group> groups = groupsOf(trials);
    Foretelling foretelling(trials, windowBits, limit);
    sideBySide(groups.size(), [&](std::size_t number) {
        foretelling.run(groups[number], *rows.rows(groups[number].filter));
    });
    return foretelling.takeSizes();
}
