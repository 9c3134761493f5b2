#include "tools/bench/Results.h"

#include <algorithm>
#include <cstdio>
#include <iomanip>
#include <stdexcept>

namespace bench {

namespace {

const char *verdict(bool met)
{
    return met ? "met" : "MISSED";
}

} // namespace

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2.0;
}

Results::Results(const std::string &folder, const std::string &measurement)
    : file(folder + '/' + measurement + ".csv")
{
    if (!file) {
        throw std::runtime_error{"cannot write in " + folder};
    }
    file << "round,program,quantity,value\n";
    std::printf("\n%s\n", measurement.c_str());
}

void Results::add(int round, const std::string &program, const std::string &quantity, double value)
{
    file << round << ',' << std::quoted(program) << ',' << quantity << ',' << value << std::endl;
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

void Results::printRatio(const std::string &quantity, const std::string &program,
                         const std::string &floor, double aim) const
{
    const double ratio =
        median(figures.at({program, quantity})) / median(figures.at({floor, quantity}));
    std::printf("  %-57s %10.2f   aim: at most %.2f, %s\n", ("ratio of " + quantity).c_str(), ratio,
                aim, verdict(ratio <= aim));
    std::fflush(stdout);
}

void Results::printLargest(const std::string &program, const std::string &quantity,
                           double aim) const
{
    const std::vector<double> &values = figures.at({program, quantity});
    const double most = *std::max_element(values.begin(), values.end());
    std::printf("  %-57s %10.2f   aim: at most %.2f, %s\n", ("largest " + quantity).c_str(), most,
                aim, verdict(most <= aim));
    std::fflush(stdout);
}

} // namespace bench
