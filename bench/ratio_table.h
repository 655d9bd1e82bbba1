// A console reporter for the benchmark programs that prints, after the usual output, a table of
// CPU time per row and size (milliseconds), the ratio of each row to its peer (or limit) row at the
// same size, measured in the same run, and the growth from one size to the next.
//
// Usage:
//     facet_bench::ratio_table table({{"facet_mesh", "openmesh"}, {"stage_x", "pass_x"}});
//     benchmark::RunSpecifiedBenchmarks(&table);
//
// A row is a benchmark family (the name before the first '/'); its size is the first argument
// (0 without arguments). With --benchmark_repetitions the table keeps the smallest CPU time of
// each row and size (best of the repetitions) and the counters of that repetition. Rows appear
// in the order they were first reported; rows without a peer show "-" for the ratio. Counters
// named in the constructor get a column each (the value of the best repetition, "-" when the
// row has no such counter).
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace facet_bench {

class ratio_table : public benchmark::ConsoleReporter {
public:
    /// `peers`: pairs (row, peer row); `counters`: user counters to show as extra columns.
    explicit ratio_table(std::vector<std::pair<std::string, std::string>> peers,
                         std::vector<std::string> counters = {})
        : m_peers(peers.begin(), peers.end()), m_counters(std::move(counters)) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& r : runs) {
            if (r.run_type != Run::RT_Iteration || r.error_occurred) continue;
            const std::string& family = r.run_name.function_name;
            const std::string& args = r.run_name.args;
            const long size = args.empty() ? 0 : std::stol(args.substr(0, args.find('/')));
            if (m_rows.find(family) == m_rows.end()) m_order.push_back(family);
            cell& c = m_rows[family][size];
            // In milliseconds, whatever the row's unit.
            const double time =
                r.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(r.time_unit) * 1e3;
            if (c.time > 0.0 && c.time <= time) continue;
            c.time = time;
            c.counters.clear();
            for (const std::string& name : m_counters) {
                const auto it = r.counters.find(name);
                if (it != r.counters.end()) c.counters[name] = it->second.value;
            }
        }
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        GetOutputStream() << std::flush;
        std::printf("\n%-34s %6s %12s %-28s %8s %8s", "CPU time, ms (best)", "n", "time", "peer",
                    "ratio", "growth");
        for (const std::string& name : m_counters) std::printf(" %10s", name.c_str());
        std::printf("\n");
        for (const std::string& family : m_order) {
            const auto peer_name = m_peers.find(family);
            const std::map<long, cell>* peer = nullptr;
            if (peer_name != m_peers.end()) {
                const auto it = m_rows.find(peer_name->second);
                if (it != m_rows.end()) peer = &it->second;
            }
            double previous = 0.0;
            for (const auto& [size, c] : m_rows.at(family)) {
                std::printf("%-34s %6ld %12.3f", family.c_str(), size, c.time);
                const auto p =
                    peer == nullptr ? std::map<long, cell>::const_iterator{} : peer->find(size);
                if (peer != nullptr && p != peer->end() && p->second.time > 0.0)
                    std::printf(" %-28s %8.2f", peer_name->second.c_str(), c.time / p->second.time);
                else
                    std::printf(" %-28s %8s", "-", "-");
                if (previous > 0.0)
                    std::printf(" %8.2f", c.time / previous);
                else
                    std::printf(" %8s", "-");
                for (const std::string& name : m_counters) {
                    const auto it = c.counters.find(name);
                    if (it != c.counters.end())
                        std::printf(" %10.3g", it->second);
                    else
                        std::printf(" %10s", "-");
                }
                std::printf("\n");
                previous = c.time;
            }
        }
        std::fflush(stdout);
    }

private:
    struct cell {
        double time = 0.0;
        std::map<std::string, double> counters;
    };

    std::map<std::string, std::string> m_peers;
    std::vector<std::string> m_counters;
    std::vector<std::string> m_order;
    std::map<std::string, std::map<long, cell>> m_rows;
};

}  // namespace facet_bench
