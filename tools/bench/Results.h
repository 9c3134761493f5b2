#pragma once

#include <map>
#include <string>
#include <vector>

namespace bench {

double median(std::vector<double> values);

/// The figures of one measurement. Prints their medians, and beside some of them the target.
class Results
{
public:
    explicit Results(const char *measurement);

    void add(const std::string &program, const std::string &quantity, double value);

    /// One line: the median of a program's figures, with the smallest and the largest.
    void print(const std::string &program, const std::string &quantity) const;
    /// Prints the ratio of the program's median to the baseline's, beside the target: the maximum
    /// that the ratio may come to.
    void judgeRatio(const std::string &quantity, const std::string &program,
                    const std::string &baseline, double target);
    /// Prints the largest figure, beside the target.
    void judgeLargest(const std::string &program, const std::string &quantity, double target);

private:
    using Key = std::pair<std::string, std::string>;

    static void judge(const Key &key, const std::string &what, double figure, double target);

    std::map<Key, std::vector<double>> figures;
};

} // namespace bench
