// Medians: the figures of the rounds of one benchmark, reported as their
// median, which a round slowed down by other work on the machine does not
// move; and the thread's own CPU clock the rounds are timed on.
#ifndef ZAVREL_BENCH_MEDIANS_H
#define ZAVREL_BENCH_MEDIANS_H

#include <time.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Zavrel::bench {

// CPU time of the calling thread, in seconds: time the machine gives to
// other work does not count.
inline double ThreadCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

class Rounds {
public:
    void Add(double value) { m_values.push_back(value); }
    size_t Count() const { return m_values.size(); }
    // The middle value (the mean of the two middle ones for an even
    // count); 0 without rounds.
    double Median() const {
        if (m_values.empty()) {
            return 0;
        }
        std::vector<double> sorted(m_values);
        std::sort(sorted.begin(), sorted.end());
        const size_t middle = sorted.size() / 2;
        return sorted.size() % 2 != 0 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
    }

private:
    std::vector<double> m_values;
};

}  // namespace Zavrel::bench

#endif
