#include "tools/bench/Results.h"

#include <algorithm>
#include <cstdio>

namespace bench {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2.0;
}

Results::Results(const char *measurement)
{
    std::printf("\n%s\n", measurement);
}

void Results::add(const std::string &program, const std::string &quantity, double value)
{
    figures[{program, quantity}].push_back(value);
}

void Results::print(const std::string &program, const std::string &quantity) const
{
    const std::vector<double> &values = figures.at({program, quantity});
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    std::printf("  %-28s %-28s %10.2f   (%.2f to %.2f, %zu rounds)\n", program.c_str(),
                quantity.c_str(), median(values), *least, *most, values.size());
    std::fflush(stdout);
}

void Results::judgeRatio(const std::string &quantity, const std::string &program,
                         const std::string &baseline, double target)
{
    const double ratio =
        median(figures.at({program, quantity})) / median(figures.at({baseline, quantity}));
    judge({program, quantity}, "ratio to " + baseline, ratio, target);
}

void Results::judgeLargest(const std::string &program, const std::string &quantity, double target)
{
    const std::vector<double> &values = figures.at({program, quantity});
    judge({program, quantity}, "largest", *std::max_element(values.begin(), values.end()), target);
}

void Results::judge(const Key &key, const std::string &what, double figure, double target)
{
    const char *const verdict = figure <= target ? "met" : "MISSED";
    std::printf("  %-57s %10.2f   target: at most %.2f, %s\n",
                (key.first + ": " + key.second + ", " + what).c_str(), figure, target, verdict);
    std::fflush(stdout);
}

} // namespace bench
