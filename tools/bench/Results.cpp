#include "tools/bench/Results.h"

#include <algorithm>
#include <cstdio>
#include <iomanip>
#include <stdexcept>

namespace bench {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2.0;
}

Results::Results(const std::string &folder, const std::string &measurement)
    : file(folder + '/' + measurement + ".csv")
    , aims(folder + '/' + measurement + " aims.csv")
{
    if (!file || !aims) {
        throw std::runtime_error{"cannot write in " + folder};
    }
    file << "round,program,quantity,value\n";
    aims << "program,quantity,what,figure,aim,verdict\n";
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

void Results::judgeRatio(const std::string &quantity, const std::string &program,
                         const std::string &floor, double aim)
{
    const double ratio =
        median(figures.at({program, quantity})) / median(figures.at({floor, quantity}));
    judge({program, quantity}, "ratio to " + floor, ratio, aim);
}

void Results::judgeLargest(const std::string &program, const std::string &quantity, double aim)
{
    const std::vector<double> &values = figures.at({program, quantity});
    judge({program, quantity}, "largest", *std::max_element(values.begin(), values.end()), aim);
}

void Results::judge(const Key &key, const std::string &what, double figure, double aim)
{
    const char *const verdict = figure <= aim ? "met" : "MISSED";
    aims << std::quoted(key.first) << ',' << key.second << ',' << std::quoted(what) << ',' << figure
         << ',' << aim << ',' << verdict << std::endl;
    std::printf("  %-57s %10.2f   aim: at most %.2f, %s\n",
                (key.first + ": " + key.second + ", " + what).c_str(), figure, aim, verdict);
    std::fflush(stdout);
}

} // namespace bench
